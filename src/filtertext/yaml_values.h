#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "filtertext/yaml_tree.h"

namespace tessavo {

/// What stands under a key of a mapping.
/// \return nothing where the key is not there or its value is null, or the node is no mapping
[[nodiscard]] const YamlNode* valueOf(const YamlTree& tree, const YamlNode& mapping, std::string_view key);

/// Whether a node says that there is nothing: an empty one, "~" or "null", without quotes.
[[nodiscard]] bool isNull(const YamlNode& node);

/// A scalar as a number, quoted or not: a sign, digits with a decimal point, an exponent.
/// \return nothing for anything else: hexadecimal digits, ".inf", ".nan", and what a double cannot hold
[[nodiscard]] std::optional<double> numberIn(const YamlNode& node);

/// A scalar as a number of something, from 0.
[[nodiscard]] std::optional<std::size_t> countIn(const YamlNode& node);

/// A scalar as true or false; null is false.
[[nodiscard]] std::optional<bool> flagIn(const YamlNode& node);

/// What a node is, for a report: a scalar in quotes, "a list" or "a map".
[[nodiscard]] std::string shownNode(const YamlNode& node);

}  // namespace tessavo
