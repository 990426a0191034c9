#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessavo {

/// Order of port names: digits count as numbers, so that ttyUSB2 stands before ttyUSB10.
[[nodiscard]] bool portNameLess(std::string_view left, std::string_view right);

/// Names in a list that is separated by commas or white space.
[[nodiscard]] std::vector<std::string> splitPortNames(std::string_view list);

/// Appends the names that are not there yet.
void appendPortNames(std::vector<std::string>& names, const std::vector<std::string>& more);

/// Serial ports among a Windows system's device names: COM and the number behind it, each once, sorted.
/// \param deviceNames zero-terminated names one after the other
[[nodiscard]] std::vector<std::string> comPortNames(std::wstring_view deviceNames);

/// A name without the prefix, when it carries it.
[[nodiscard]] std::string_view withoutPrefix(std::string_view name, std::string_view prefix);

}  // namespace tessavo
