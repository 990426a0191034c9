#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tessavo {

/// Wide form of a device's name, whatever the locale: UTF-8, with 0xDC00 + byte for a byte that is none.
[[nodiscard]] std::wstring wideDeviceName(std::string_view name);

/// The way back; nothing for what no name widens to.
[[nodiscard]] std::optional<std::string> narrowDeviceName(std::wstring_view name);

}  // namespace tessavo
