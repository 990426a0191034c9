#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "compare/element_text.h"
#include "compare/set_element.h"
#include "params/channels.h"
#include "params/records.h"

namespace tessavo {

/// One element of two sets.
struct ComparedLine {
    SetElement element;
    std::string name;  ///< within its group: "Filter 2 frequency", "Crossover 1 order", "Channel 4 source"
    /// The values with their units, as history/element_words.h writes them. Two values that would read alike have
    /// all their digits.
    std::string left;
    std::string right;
    bool differs = false;
    /// Whether the values differ in more than the target's number formats make them; false where they do not differ.
    bool isReal = false;
};

/// The lines of one group; never empty.
struct CompareGroup {
    CompareGroupKind kind = CompareGroupKind::set;
    RecordChannel channel{};  ///< of a channel's group
    std::string
        heading;  ///< "Set", "Input", "Channel 3", "Router"; channels are numbered as "Channel Selection"
    /// The channel's other number, which its row in "Channel Selection", the page "Output Group" and the flags have:
    /// "Ch 4". Empty for other groups.
    std::string otherNumber;
    std::string leftSource;   ///< word of the channel's source: "FrontLeft"; empty for other groups
    std::string rightSource;  ///< the same of the right set
    std::vector<ComparedLine> lines;
};

/// Two sets side by side.
struct SetComparison {
    std::vector<CompareGroup> groups;  ///< channels in the order of the pages
    /// Differing bytes that belong to no value that a person knows; bytes behind the end of a text that reads
    /// the same are among them, the word of the record's size is not.
    std::size_t spareBytes = 0;

    [[nodiscard]] std::size_t differenceCount() const;      ///< lines whose values differ
    [[nodiscard]] std::size_t realDifferenceCount() const;  ///< those of them that are real
    [[nodiscard]] std::vector<SetElement> differing() const;
};

/// Which elements compareSets() lists.
enum class ListedElements : std::uint8_t { differing, all };

/// Compares two sets. What is always written together counts once: the copies of delay size 1 stand under it, and have
/// lines of their own only where they differ and it does not. The size of the record is no value for a person.
[[nodiscard]] SetComparison compareSets(const ParameterSet& left, const ParameterSet& right,
                                        ListedElements listed = ListedElements::differing);

}  // namespace tessavo
