#pragma once

#include <string>
#include <vector>

namespace tessavo::cli {

/// Writes rows of cells, texts in UTF-8, as aligned columns, two spaces apart. Each line begins with `indent` and has no
/// blanks at its end.
[[nodiscard]] std::string alignedTable(const std::vector<std::vector<std::string>>& rows,
                                       const std::string& indent);

}  // namespace tessavo::cli
