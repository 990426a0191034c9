#pragma once

#include <map>
#include <string>

namespace tessavo {

/// The tables of the manual, in Markdown, by the name in its markers: every control of a page with its unit,
/// range and first value, and the words of edit scripts. Ranges, units and first values are those of the
/// field table.
[[nodiscard]] std::map<std::string, std::string> manualTables();

}  // namespace tessavo
