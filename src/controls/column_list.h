#pragma once

#include <QString>

namespace tessavo {

/// The look of a list with columns (QTreeView and its header), as a style sheet. Its edge shows whether it has the
/// focus. User-interface thread.
[[nodiscard]] QString columnListSheet();

}  // namespace tessavo
