#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "compare/set_element.h"
#include "params/records.h"

namespace tessavo {

/// What the lines of a comparison are gathered under, in the order in which they are shown.
enum class CompareGroupKind : std::uint8_t {
    set,      ///< name and version
    input,    ///< everything of the page "Equalizing Input"
    channel,  ///< one output channel, its limiter, its output groups and its flag
    router,   ///< the sources and everything else of the page "Channel Config"
};

[[nodiscard]] CompareGroupKind groupKindOf(const SetElement& element);

/// Name of an element within its group: "Filter 2 frequency", "Crossover 1 order", "Volume", "Channel 4 source". No two
/// elements of a group share one. Channels are numbered as "Channel Selection" does.
[[nodiscard]] std::string shortNameOf(const SetElement& element);

/// The values of an element in two sets, each with its unit, as history/element_words.h writes them. Where the bytes
/// differ but both would read alike, they have all their digits, and their bits where even those are the same.
[[nodiscard]] std::pair<std::string, std::string> elementTexts(const Field& field, FieldIndex index,
                                                               const ParameterSet& left,
                                                               const ParameterSet& right);

}  // namespace tessavo
