#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessavo {

using Row = std::vector<std::string>;

/// A Markdown table; every row has as many cells as the head.
[[nodiscard]] std::string table(const Row& head, const std::vector<Row>& rows);

/// The text between backticks.
[[nodiscard]] std::string inBackticks(std::string_view name);

}  // namespace tessavo
