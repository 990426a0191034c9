#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "params/records.h"

namespace tessavo {

/// Form of an exported filter text.
enum class ExportForm : std::uint8_t { text, csv, yaml };

/// The form of a name: "text", "csv" or "yaml".
[[nodiscard]] std::optional<ExportForm> exportFormOf(std::string_view name);

/// Ending of files of a form, with its dot: ".txt", ".csv", ".yml".
[[nodiscard]] std::string_view endingOf(ExportForm form);

/// What an export says besides the filters.
struct ExportOptions {
    std::string title{};  ///< one line of UTF-8 for a comment; empty for none
    bool withVolume =
        false;  ///< the channel's volume and group gain as a preamp; otherwise they stand in a comment
};

/// The bands and crossovers of a channel as other programs mean them, exact for the bilinear method at 49500 Hz. Bands that are
/// off are written as such, so that reading the text and importing it into the same bands gives the same bands: frequency,
/// gain, Q, type and whether they are on. A band of an unknown type is an empty place. Crossovers are written where they are
/// enabled. UTF-8, lines end with a line feed.
[[nodiscard]] std::string exportFilters(const OutputChannelParams& channel, ExportForm form,
                                        const ExportOptions& options = {});

}  // namespace tessavo
