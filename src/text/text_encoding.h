#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessavo {

/// The bytes as UTF-8, without a byte order mark: as they are where they are UTF-8, else read as Latin-1.
[[nodiscard]] std::string utf8Of(std::string_view bytes);

/// The lines of a text without their ends, which may be LF, CR LF, CR CR LF or CR. A last line without an end counts; an end
/// at the very end begins no further line.
[[nodiscard]] std::vector<std::string_view> linesOf(std::string_view text);

}  // namespace tessavo
