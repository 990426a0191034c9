#pragma once

#include <string_view>

#include "filtertext/filter_text.h"

namespace tessavo {

// The readers of the forms, each of which gives lines with `source`, `meaning` and `reason`. readFilterText() chooses
// between them and puts what they give on the steps of the target.

/// Whether a text is YAML with filters: it has a line that is "filters:" without an indent, or "pipeline:" or "devices:".
[[nodiscard]] bool looksLikeYaml(std::string_view text);

/// Reads the lines of equalizer programs, tables of filters, and lists of biquad coefficients, which it refuses.
/// \param text UTF-8
[[nodiscard]] FilterText readTextLines(std::string_view text, std::string_view channelName);

/// Reads the filters of a CamillaDSP configuration.
/// \param text UTF-8
[[nodiscard]] FilterText readYamlFilters(std::string_view text, std::string_view channelName);

}  // namespace tessavo
