#pragma once

#include <string>
#include <string_view>

#include "filtertext/filter_text.h"
#include "filtertext/raw_filter.h"

namespace tessavo {

/// Reads the numbers of a filter and finds what it means: fills the line's kind, source, meaning, reason and column.
/// \param decimalSign that of the file: '.' or ','
void findMeaning(FilterLine& line, const RawFilter& filter, char decimalSign);

/// A text between quotation marks.
[[nodiscard]] std::string quoted(std::string_view text);

}  // namespace tessavo
