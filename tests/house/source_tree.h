#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tessavo::house {

/// One line that says `#include`.
struct Include {
    std::string target;   ///< what stands between the quotes or brackets
    bool quoted = false;  ///< "..." rather than <...>
};

/// Body of a function, or a block in one.
struct Block {
    std::size_t line = 0;   ///< where its brace opens, from 1
    std::size_t lines = 0;  ///< between its braces
};

/// What the rules look at in one file under src/.
struct SourceFile {
    std::vector<Include> includes;
    /// Preprocessor lines that make code depend on a condition: #if, #ifdef, #ifndef, #elif.
    std::vector<std::string> conditionals;
    std::size_t lines = 0;
    std::vector<Block> blocks;
};

/// Files by their path below src/, with '/' between folders: "params/records.h".
using SourceTree = std::map<std::string, SourceFile>;

/// Floors by room. A folder inside a room belongs to the room, unless it has a floor of its own.
using Floors = std::map<std::string, int, std::less<>>;

/// The floor of every room there is.
[[nodiscard]] const Floors& houseFloors();

/// \param text as clang-format lays it out, which puts the closing brace of a block under the line that begins it
[[nodiscard]] SourceFile parseSource(std::string_view text);
[[nodiscard]] SourceTree readSourceTree(const std::filesystem::path& root);

/// Folder that a file stands in: "pages/input" for "pages/input/input_eq.h".
[[nodiscard]] std::string folderOf(std::string_view path);

// Each rule gives one line for every breach, and nothing when the house stands.

/// Files in folders without a floor, and includes of a room on the same floor or above.
[[nodiscard]] std::vector<std::string> floorBreaches(const SourceTree& tree, const Floors& floors);

/// Folders that include each other, directly or through others.
[[nodiscard]] std::vector<std::string> circles(const SourceTree& tree);

/// Quoted includes that are no path below src/, and project files included with brackets.
[[nodiscard]] std::vector<std::string> includePathBreaches(const SourceTree& tree);

/// Conditionals outside the sources whose names say their platform (_posix.cpp, _win32.cpp).
[[nodiscard]] std::vector<std::string> conditionalBreaches(const SourceTree& tree);

/// Everything of the window toolkit that the given sources include, themselves or through project headers.
[[nodiscard]] std::vector<std::string> toolkitBreaches(const SourceTree& tree,
                                                       const std::set<std::string>& sources);

/// Sources outside of one room that include a header of a library which only that room may use.
[[nodiscard]] std::vector<std::string> libraryBreaches(const SourceTree& tree, std::string_view header,
                                                       std::string_view room);

/// Files with more lines than that.
[[nodiscard]] std::vector<std::string> lengthBreaches(const SourceTree& tree, std::size_t mostLines);

/// Functions with more lines between their braces than that, with the blocks in them of which this holds, too.
[[nodiscard]] std::vector<std::string> blockBreaches(const SourceTree& tree, std::size_t mostLines);

}  // namespace tessavo::house
