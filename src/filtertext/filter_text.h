#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "filtertext/cookbook.h"
#include "filtertext/filter_forms.h"

namespace tessavo {

/// What became of a line of a filter text.
enum class FilterLineKind : std::uint8_t {
    none,         ///< it speaks of no filter
    band,         ///< a band of the equalizer
    crossover,    ///< a low-pass or high-pass
    off,          ///< a filter that the text has switched off
    empty,        ///< a place for a filter that holds none
    unsupported,  ///< the target has nothing of this kind
    error         ///< it speaks of a filter and cannot be read
};

/// What a line says, in the words and numbers of its program.
struct SourceFilter {
    std::string type;                   ///< "PK", "LS 12dB", "Peaking"
    std::optional<double> frequencyHz;  ///< nothing where the line tells none or an unreadable one
    std::optional<double> gainDb;
    std::optional<double>
        q;  ///< as it stands there; nothing where the line gives a slope, a bandwidth or neither
};

/// One line of a filter text, or one filter of a file whose filters take several lines.
struct FilterLine {
    std::size_t line = 0;  ///< from 1; of a filter over several lines the first
    std::size_t column =
        0;  ///< from 1, in characters: where that begins which cannot be read; 0 where nothing is wrong
    FilterLineKind kind = FilterLineKind::none;
    std::string text;  ///< the line without its end, in UTF-8, tabs and no-break spaces as they are
    std::optional<SourceFilter> source;     ///< of every line that speaks of a filter and names a type
    std::optional<CookbookFilter> meaning;  ///< of bands, crossovers, and filters that are off and readable
    std::optional<DeviceFilter> device;     ///< the same on the steps of the target
    std::vector<FilterValue> clamped;       ///< values of `device` that were out of range
    std::string
        reason;  ///< why it is unsupported or cannot be read, or what else there is to say; empty where nothing is
};

/// A filter text as it was read.
struct FilterText {
    std::vector<FilterLine>
        lines;            ///< in the order of the file: all lines of a text, all filters of a YAML file
    double preampDb = 0;  ///< sum of the gains that apply to the channel that was read
    bool hasPreamp = false;
    double samplingRateHz = textSamplingRateHz;  ///< the rate at which it was converted
    bool tellsSamplingRate = false;
    char decimalSign = '.';  ///< '.' or ','
    std::vector<std::string>
        channels;  ///< names of the channels that the text speaks of, in the order of the text; may be none
    std::string channel;  ///< the one of them that was read; empty where there are none
    /// Why nothing of the file can be used, as a sentence for a person; empty where something can. Lines may be there all the
    /// same.
    std::string trouble;
    std::size_t troubleLine = 0;    ///< from 1; 0 where the trouble has no place
    std::size_t troubleColumn = 0;  ///< from 1, in characters; 0 where the trouble has no place
};

/// Most bytes that a filter text may have.
inline constexpr std::size_t mostFilterTextBytes = std::size_t{4} << 20U;

/// Most filters that a text may have for the channel that is read.
inline constexpr std::size_t mostFilters = 1000;

/// Reads filters of other programs: lines such as "Filter 1: ON PK Fc 100 Hz Gain -3.0 dB Q 2.00", tables of filters, and
/// YAML files with a list of filters. The form is told from the content. Any bytes may be given; what is not UTF-8 is read
/// as Latin-1.
/// \param bytes the file
/// \param channelName the channel to read where the text speaks of several; empty for the first
[[nodiscard]] FilterText readFilterText(std::string_view bytes, std::string_view channelName = {});

/// Word for a shape, as reports and JSON have it: "peak", "low-shelf", "high-shelf", "low-pass", "high-pass".
[[nodiscard]] std::string_view shapeWord(FilterShape shape);

/// Word for a kind in JSON: "none", "band", "crossover", "off", "empty", "unsupported", "error".
[[nodiscard]] std::string_view kindWord(FilterLineKind kind);

/// Word for a value in JSON: "frequency", "gain", "q".
[[nodiscard]] std::string_view valueWord(FilterValue value);

}  // namespace tessavo
