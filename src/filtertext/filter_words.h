#pragma once

#include <string>

#include "filtertext/filter_text.h"

namespace tessavo {

/// What became of a line, by the look of its verdict.
enum class Verdict : std::uint8_t { none, taken, converted, clamped, off, empty, notPossible };

/// The verdict on a line: taken where the target's values are those of the text on its steps, converted where they are
/// others.
[[nodiscard]] Verdict verdictOf(const FilterLine& line);

/// The verdict in words for a list: "no filter in this line", "taken", "converted: Q 2.00 -> 2.8",
/// "clamped: 21.0 -> 18.0 dB, Q 0.90 -> 3.0", "off: taken as a band that is off, Q 4.9", "empty",
/// "not possible: a notch; the target has none".
[[nodiscard]] std::string verdictText(const FilterLine& line);

/// How many lines of each verdict there are: "12 lines: 2 taken, 3 converted, 1 clamped, 1 off, 1 empty, 3 not possible,
/// 1 no filter." What does not occur is left out.
[[nodiscard]] std::string verdictCounts(const FilterText& text);

}  // namespace tessavo
