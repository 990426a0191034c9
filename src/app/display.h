#pragma once

namespace tessavo {

/// Whether a window could be shown: without a display the toolkit would end the program with a message of its
/// own.
[[nodiscard]] bool hasDisplay();

}  // namespace tessavo
