#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace tessavo {

/// Whether a byte of UTF-8 goes on with a character that began before it.
[[nodiscard]] constexpr bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// How many characters a text in UTF-8 has, each code point being one.
[[nodiscard]] constexpr std::size_t characterCount(std::string_view text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char byte) { return !continuesCharacter(byte); }));
}

}  // namespace tessavo
