#include "house/source_tree.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <optional>
#include <utility>

#include "house/rooms.h"

namespace tessavo::house {
namespace {

std::string_view trimmed(std::string_view text) {
    const auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (!text.empty() && isSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

/// Text behind the '#' of a preprocessor line.
std::optional<std::string_view> directiveOf(std::string_view line) {
    line = trimmed(line);
    if (!line.starts_with('#')) {
        return std::nullopt;
    }
    return trimmed(line.substr(1));
}

std::optional<Include> includeOf(std::string_view directive) {
    constexpr std::string_view word = "include";
    if (!directive.starts_with(word)) {
        return std::nullopt;
    }
    directive = trimmed(directive.substr(word.size()));
    if (directive.empty() || (directive.front() != '"' && directive.front() != '<')) {
        return std::nullopt;
    }
    const bool quoted = directive.front() == '"';
    const std::size_t end = directive.find(quoted ? '"' : '>', 1);
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    return Include{std::string(directive.substr(1, end - 1)), quoted};
}

bool isToolkitHeader(std::string_view target) {
    return target.size() > 1 && target[0] == 'Q' &&
           (target[1] == 't' || std::isupper(static_cast<unsigned char>(target[1])) != 0);
}

bool saysItsPlatform(std::string_view path) {
    return path.ends_with("_posix.cpp") || path.ends_with("_win32.cpp");
}

/// Finds every block that a brace alone ends. It begins with the last line before at the same indentation.
std::vector<Block> blocksIn(const std::vector<std::string_view>& lines) {
    std::vector<Block> blocks;
    for (std::size_t end = 0; end < lines.size(); ++end) {
        const std::size_t indentation = lines[end].find('}');
        if (trimmed(lines[end]) != "}") {
            continue;
        }
        const auto beginsBlock = [&](std::string_view line) {
            return line.find_first_not_of(' ') == indentation && line[indentation] != '}' &&
                   line[indentation] != '#';
        };
        std::size_t opening = end;
        while (opening > 0 && !beginsBlock(lines[opening])) {
            --opening;
        }
        while (opening < end && !trimmed(lines[opening]).ends_with('{')) {
            ++opening;
        }
        if (opening < end) {
            blocks.push_back({opening + 1, end - opening - 1});
        }
    }
    return blocks;
}

/// Floor of the room that a file stands in, or in a folder of: the innermost folder that has one.
Floors::const_iterator floorOf(const Floors& floors, std::string_view path) {
    for (std::string folder = folderOf(path); !folder.empty(); folder = folderOf(folder)) {
        if (const auto floor = floors.find(folder); floor != floors.end()) {
            return floor;
        }
    }
    return floors.end();
}

/// Folders that each folder includes, itself left out.
std::map<std::string, std::set<std::string>> folderGraph(const SourceTree& tree) {
    std::map<std::string, std::set<std::string>> graph;
    for (const auto& [path, file] : tree) {
        const std::string folder = folderOf(path);
        for (const Include& include : file.includes) {
            if (include.quoted && tree.contains(include.target) && folderOf(include.target) != folder) {
                graph[folder].insert(folderOf(include.target));
            }
        }
    }
    return graph;
}

}  // namespace

const Floors& houseFloors() {
    static const Floors floors = [] {
        Floors all;
        for (const Room& room : houseRooms()) {
            all.emplace(room.folder, room.floor);
        }
        return all;
    }();
    return floors;
}

SourceFile parseSource(std::string_view text) {
    SourceFile file;
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        ++file.lines;
        lines.push_back(line);
        const auto directive = directiveOf(line);
        if (!directive) {
            continue;
        }
        if (auto include = includeOf(*directive)) {
            file.includes.push_back(std::move(*include));
        } else if (directive->starts_with("if") || directive->starts_with("elif")) {
            file.conditionals.emplace_back(trimmed(line));
        }
    }
    file.blocks = blocksIn(lines);
    return file;
}

SourceTree readSourceTree(const std::filesystem::path& root) {
    SourceTree tree;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        const std::filesystem::path& path = entry.path();
        if (!entry.is_regular_file() || (path.extension() != ".h" && path.extension() != ".cpp")) {
            continue;
        }
        std::ifstream stream(path, std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(stream), {}};
        tree.emplace(path.lexically_relative(root).generic_string(), parseSource(text));
    }
    return tree;
}

std::string folderOf(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string() : std::string(path.substr(0, slash));
}

std::vector<std::string> floorBreaches(const SourceTree& tree, const Floors& floors) {
    std::vector<std::string> breaches;
    for (const auto& [path, file] : tree) {
        const auto floor = floorOf(floors, path);
        if (floor == floors.end()) {
            breaches.push_back(path + " stands in no room with a floor");
            continue;
        }
        for (const Include& include : file.includes) {
            const auto other = floorOf(floors, include.target);
            if (other != floors.end() && other != floor && other->second >= floor->second) {
                breaches.push_back(path + " includes " + include.target + ", which is not on a lower floor");
            }
        }
    }
    return breaches;
}

std::vector<std::string> circles(const SourceTree& tree) {
    const auto graph = folderGraph(tree);
    std::vector<std::string> found;
    for (const auto& [start, neighbours] : graph) {
        std::set<std::string> seen;
        std::vector<std::string> open(neighbours.begin(), neighbours.end());
        while (!open.empty()) {
            const std::string room = open.back();
            open.pop_back();
            const auto next = graph.find(room);
            if (seen.insert(room).second && next != graph.end()) {
                open.insert(open.end(), next->second.begin(), next->second.end());
            }
        }
        if (seen.contains(start)) {
            found.push_back(start + " includes itself through other folders");
        }
    }
    return found;
}

std::vector<std::string> includePathBreaches(const SourceTree& tree) {
    std::vector<std::string> breaches;
    for (const auto& [path, file] : tree) {
        for (const Include& include : file.includes) {
            if (include.quoted != tree.contains(include.target)) {
                breaches.push_back(path + " includes " + include.target +
                                   (include.quoted ? ", which is no path below src" : " with brackets"));
            }
        }
    }
    return breaches;
}

std::vector<std::string> conditionalBreaches(const SourceTree& tree) {
    std::vector<std::string> breaches;
    for (const auto& [path, file] : tree) {
        for (const std::string& line : file.conditionals) {
            if (!saysItsPlatform(path)) {
                breaches.push_back(path + ": " + line);
            }
        }
    }
    return breaches;
}

std::vector<std::string> toolkitBreaches(const SourceTree& tree, const std::set<std::string>& sources) {
    std::vector<std::string> breaches;
    std::set<std::string> seen;
    std::vector<std::string> open(sources.begin(), sources.end());
    while (!open.empty()) {
        const std::string path = open.back();
        open.pop_back();
        const auto file = tree.find(path);
        if (file == tree.end() || !seen.insert(path).second) {
            continue;
        }
        for (const Include& include : file->second.includes) {
            if (isToolkitHeader(include.target)) {
                breaches.push_back(path + " includes " + include.target);
            }
            open.push_back(include.target);
        }
    }
    return breaches;
}

std::vector<std::string> libraryBreaches(const SourceTree& tree, std::string_view header,
                                         std::string_view room) {
    std::vector<std::string> breaches;
    const std::string inRoom = std::string(room) + "/";
    for (const auto& [path, file] : tree) {
        const bool includes = std::ranges::any_of(
            file.includes, [header](const Include& include) { return include.target == header; });
        if (includes && !path.starts_with(inRoom)) {
            breaches.push_back(path + " includes " + std::string(header));
        }
    }
    return breaches;
}

std::vector<std::string> lengthBreaches(const SourceTree& tree, std::size_t mostLines) {
    std::vector<std::string> breaches;
    for (const auto& [path, file] : tree) {
        if (file.lines > mostLines) {
            breaches.push_back(path + " has " + std::to_string(file.lines) + " lines");
        }
    }
    return breaches;
}

std::vector<std::string> blockBreaches(const SourceTree& tree, std::size_t mostLines) {
    std::vector<std::string> breaches;
    for (const auto& [path, file] : tree) {
        for (const Block& block : file.blocks) {
            if (block.lines > mostLines) {
                breaches.push_back(path + ":" + std::to_string(block.line) + " begins a block of " +
                                   std::to_string(block.lines) + " lines");
            }
        }
    }
    return breaches;
}

}  // namespace tessavo::house
