#pragma once

#include <string>
#include <string_view>

namespace tessavo {

/// A text from a file for a report: on one line and not longer than a line.
[[nodiscard]] std::string shownText(std::string_view text);

/// The same in quotes.
[[nodiscard]] std::string inQuotes(std::string_view text);

}  // namespace tessavo
