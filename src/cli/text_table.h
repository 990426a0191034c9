#pragma once

#include <string>
#include <vector>

namespace tessavo::cli {

/// Rows of cells as aligned columns, two spaces apart, each line led by `indent` and without blanks at its
/// end.
[[nodiscard]] std::string alignedTable(const std::vector<std::vector<std::string>>& rows,
                                       const std::string& indent);

}  // namespace tessavo::cli
