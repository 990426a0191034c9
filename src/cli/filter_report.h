#pragma once

#include <optional>
#include <string>
#include <vector>

#include "filtertext/filter_import.h"
#include "filtertext/filter_text.h"
#include "params/channels.h"

namespace tessavo::cli {

/// What an import made of one channel.
struct ChannelImport {
    PagePosition channel{};
    ImportPlan plan{};
    std::optional<ImportDeviation> deviation{};  ///< by the chosen method; nothing where no filter plays
};

/// A filter text as JSON: an object that ends with a line feed. Numbers are not rounded and have no exponent; lines that
/// speak of no filter are left out.
[[nodiscard]] std::string filtersJson(const FilterText& text);

/// The same for people: a line for each that speaks of a filter, then the counts and what holds for the whole file.
[[nodiscard]] std::string filtersTable(const FilterText& text);

/// What an import did, as JSON: the channels, and the lines as filtersJson() has them.
[[nodiscard]] std::string importJson(const FilterText& text, const std::vector<ChannelImport>& channels);

/// The same for people.
[[nodiscard]] std::string importTable(const FilterText& text, const std::vector<ChannelImport>& channels);

}  // namespace tessavo::cli
