#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "filtertext/written_filter.h"
#include "text/line_text.h"

namespace tessavo {

/// Unit that may stand behind a value.
enum class ValueUnit : std::uint8_t { none, hertz, decibels, octaves };

/// The place behind a unit, in any case and with blanks in it; `at` where it does not stand there.
/// \param word in small letters
[[nodiscard]] std::size_t afterUnit(std::string_view plain, std::size_t at, std::size_t end,
                                    std::string_view word);

/// Reads the value between two places of a line, and its unit, which may be left out.
/// \return the place behind both
std::size_t readValue(const LineText& line, std::size_t begin, std::size_t end, ValueUnit unit,
                      WrittenValue& value);

}  // namespace tessavo
