#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "filtertext/filter_text.h"

namespace tessavo {

// The readers of the forms, each of which gives lines with `source`, `meaning` and `reason`. readFilterText() chooses
// between them and puts what they give on the steps of the target.

/// The bytes as UTF-8, without a byte order mark: as they are where they are UTF-8, else read as Latin-1.
[[nodiscard]] std::string utf8Of(std::string_view bytes);

/// The lines of a text without their ends, which may be LF, CR LF, CR CR LF or CR. A last line without an end counts; an end
/// at the very end begins no further line.
[[nodiscard]] std::vector<std::string_view> linesOf(std::string_view text);

/// Whether a text is YAML with filters: it has a line that is "filters:" without an indent, or "pipeline:" or "devices:".
[[nodiscard]] bool looksLikeYaml(std::string_view text);

/// Reads the lines of equalizer programs, tables of filters, and lists of biquad coefficients, which it refuses.
/// \param text UTF-8
[[nodiscard]] FilterText readTextLines(std::string_view text, std::string_view channelName);

/// Reads the filters of a CamillaDSP configuration.
/// \param text UTF-8
[[nodiscard]] FilterText readYamlFilters(std::string_view text, std::string_view channelName);

}  // namespace tessavo
