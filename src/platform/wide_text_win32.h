#pragma once

#include <string>
#include <string_view>

namespace tessavo {

/// UTF-8 as the system's functions take it.
[[nodiscard]] std::wstring wide(std::string_view text);

/// What the system's functions give, as UTF-8.
[[nodiscard]] std::string narrow(std::wstring_view text);

}  // namespace tessavo
