#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <string_view>

#include "params/records.h"

namespace tessavo {

/// Longest set name that a person can give, in UTF-16 units. The record could hold more.
inline constexpr std::size_t setNameLimit = 31;

/// A text of a set as the record holds it: UTF-16, with zeros behind its end.
using SetText = std::array<char16_t, textUnits>;

/// Writes a text and fills the rest with zeros. A longer text is cut, but never between two surrogates.
/// \param limit most UTF-16 units to write, below `textUnits` so that a zero follows
void writeSetText(SetText& field, std::u16string_view text, std::size_t limit = textUnits - 1);

/// The text up to the first zero, or all of it where there is none.
[[nodiscard]] std::u16string readSetText(const SetText& field);

/// Converts UTF-8 to UTF-16. What is not valid becomes U+FFFD.
[[nodiscard]] std::u16string utf16FromUtf8(std::string_view text);
/// Converts UTF-16 to UTF-8. What is not valid becomes U+FFFD.
[[nodiscard]] std::string utf8FromUtf16(std::u16string_view text);
/// A path in UTF-8. A name need not be text in any encoding: what is none becomes U+FFFD, where the standard
/// library's own conversions throw.
[[nodiscard]] std::string utf8FromPath(const std::filesystem::path& path);

}  // namespace tessavo
