#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tessavo {

/// Where something stands in a text.
struct YamlPlace {
    std::size_t line = 0;    ///< from 1
    std::size_t column = 0;  ///< from 1, in characters

    bool operator==(const YamlPlace&) const = default;
};

enum class YamlKind : std::uint8_t { scalar, sequence, mapping };

/// A value of a YAML document.
struct YamlNode {
    YamlKind kind = YamlKind::scalar;
    YamlPlace place{};
    std::string text{};    ///< of a scalar: its content as valid UTF-8, which may hold any characters
    bool isPlain = false;  ///< of a scalar: neither in quotes nor as a block of lines
    std::vector<std::size_t>
        items{};  ///< numbers of nodes: of a sequence its items, of a mapping each key and then its value
};

/// A YAML document. Every key is a scalar of at most longestYamlKey bytes and stands once in its mapping. An alias is the node
/// that it names, so a node may stand at several places; none contains itself. Counted at each of them there are at most
/// mostYamlNodes.
struct YamlTree {
    std::deque<YamlNode> nodes;
    std::size_t root = 0;  ///< number of the outermost node; nodes is empty where the document is
};

/// Why a text cannot be read, as a sentence for a person, and where.
struct YamlTrouble {
    std::string text;
    YamlPlace place{};  ///< zeros where it has no place
};

inline constexpr std::size_t longestYamlKey = 1000;
inline constexpr std::size_t mostYamlNodes = 100000;
inline constexpr std::size_t deepestYamlNode = 32;

/// Reads the one document of a text. Refused beside what is no YAML: a second document, a merge key, an alias inside of what it
/// names, a key that is no text or stands twice, a tag that is not of YAML itself, and what goes beyond the limits above.
/// \param text UTF-8; lines end with LF, CR LF, CR CR LF or CR
[[nodiscard]] std::variant<YamlTree, YamlTrouble> readYamlTree(std::string_view text);

}  // namespace tessavo
