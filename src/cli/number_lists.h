#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "measure/measurement_text.h"
#include "params/channels.h"

namespace tessavo::cli {

/// Channels named as "1,3,8": page positions counted from 1, in the order in which they were named.
/// \return nothing unless each is 1 to 8 and named once
[[nodiscard]] std::optional<std::vector<PagePosition>> channelList(std::string_view text);

/// Bands named as "1-3,8": counted from 1 in the text and from 0 in what it gives, in the order in which they were named.
/// \return nothing unless each is 1 to 8 and named once, and no range falls
[[nodiscard]] std::optional<std::vector<std::size_t>> bandList(std::string_view text);

/// Frequencies in Hz named as "20,1000.5,2e4", in the order in which they were named.
/// \return nothing unless each is a finite number, 0 or above
[[nodiscard]] std::optional<std::vector<double>> frequencyList(std::string_view text);

/// Columns of frequency and level named as "1,3", counted from 1.
/// \return nothing unless they are two, and not the same
[[nodiscard]] std::optional<MeasurementColumns> columnPair(std::string_view text);

/// Values of all channels by page position, as "112,142.5,-,138,124,148,96,245"; "-" gives none.
/// \return nothing unless these are eight, each "-" or 0 to mostToldOfPlace, and one at least is a number
[[nodiscard]] std::optional<std::vector<std::optional<double>>> positionList(std::string_view text);

}  // namespace tessavo::cli
