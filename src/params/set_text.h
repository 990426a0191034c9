#pragma once

#include <array>
#include <string>
#include <string_view>

#include "params/records.h"

namespace tessavo {

/// Longest set name that a person can give, in UTF-16 units.
inline constexpr std::size_t setNameLimit = 31;

using SetText = std::array<char16_t, textUnits>;

/// Writes as much of a text as `limit` UTF-16 units hold and fills the rest with zeros. A pair of surrogates
/// is never split.
void writeSetText(SetText& field, std::u16string_view text, std::size_t limit = textUnits - 1);

/// Text up to the first zero.
[[nodiscard]] std::u16string readSetText(const SetText& field);

/// Conversions between UTF-8 and UTF-16; what is not valid becomes U+FFFD.
[[nodiscard]] std::u16string utf16FromUtf8(std::string_view text);
[[nodiscard]] std::string utf8FromUtf16(std::u16string_view text);

}  // namespace tessavo
