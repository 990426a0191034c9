#pragma once

#include <optional>

#include "filtertext/written_filter.h"
#include "text/line_text.h"

namespace tessavo {

/// Reads a line such as "Filter 1: ON PK Fc 100 Hz Gain -3.0 dB Q 2.00". The number and the units may be left out, and values may
/// stand in any order.
/// \return nothing for a line that speaks of no filter
[[nodiscard]] std::optional<WrittenFilter> filterOfLine(const LineText& line);

/// Reads a line such as "Preamp: -6.3 dB".
/// \return nothing for a line that speaks of no preamp
[[nodiscard]] std::optional<WrittenValue> preampOfLine(const LineText& line);

}  // namespace tessavo
