#include "filtertext/yaml_values.h"

#include <algorithm>
#include <array>

#include "base/number_text.h"
#include "text/shown_text.h"

namespace tessavo {

namespace {

// Aliases can repeat a text of megabytes as often as a file has values.
constexpr std::size_t longestNumber = 64;

bool canBeNumber(const YamlNode& node) {
    return node.kind == YamlKind::scalar && node.text.size() <= longestNumber;
}

template <std::size_t Count>
bool isOneOf(const YamlNode& node, const std::array<std::string_view, Count>& words) {
    return node.kind == YamlKind::scalar && node.isPlain &&
           std::ranges::find(words, node.text) != words.end();
}

}  // namespace

const YamlNode* valueOf(const YamlTree& tree, const YamlNode& mapping, std::string_view key) {
    if (mapping.kind != YamlKind::mapping) {
        return nullptr;
    }
    for (std::size_t item = 0; item + 1 < mapping.items.size(); item += 2) {
        if (tree.nodes[mapping.items[item]].text == key) {
            const YamlNode& value = tree.nodes[mapping.items[item + 1]];
            return isNull(value) ? nullptr : &value;
        }
    }
    return nullptr;
}

bool isNull(const YamlNode& node) {
    constexpr std::array<std::string_view, 5> words{"", "~", "null", "Null", "NULL"};
    return isOneOf(node, words);
}

std::optional<double> numberIn(const YamlNode& node) {
    if (!canBeNumber(node)) {
        return std::nullopt;
    }
    std::string_view text = node.text;
    if (text.starts_with('+') && !text.starts_with("+-")) {
        text.remove_prefix(1);
    }
    return finiteNumber(text);
}

std::optional<std::size_t> countIn(const YamlNode& node) {
    return canBeNumber(node) ? wholeNumber<std::size_t>(node.text) : std::nullopt;
}

std::optional<bool> flagIn(const YamlNode& node) {
    constexpr std::array<std::string_view, 3> yes{"true", "True", "TRUE"};
    constexpr std::array<std::string_view, 3> no{"false", "False", "FALSE"};
    if (isOneOf(node, yes)) {
        return true;
    }
    return isOneOf(node, no) || isNull(node) ? std::optional(false) : std::nullopt;
}

std::string shownNode(const YamlNode& node) {
    switch (node.kind) {
        case YamlKind::sequence:
            return "a list";
        case YamlKind::mapping:
            return "a map";
        case YamlKind::scalar:
            break;
    }
    return inQuotes(node.text);
}

}  // namespace tessavo
