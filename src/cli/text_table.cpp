#include "cli/text_table.h"

#include <algorithm>

namespace tessavo::cli {

namespace {

/// Characters of a text in UTF-8: all bytes but those that continue one.
std::size_t widthOf(const std::string& text) {
    return static_cast<std::size_t>(std::ranges::count_if(
        text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }));
}

}  // namespace

std::string alignedTable(const std::vector<std::vector<std::string>>& rows, const std::string& indent) {
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths[column], widthOf(row[column]));
        }
    }
    std::string text;
    for (const auto& row : rows) {
        std::string line = indent;
        for (std::size_t column = 0; column < row.size(); ++column) {
            line += row[column];
            line.append(widths[column] - widthOf(row[column]) + 2, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}

}  // namespace tessavo::cli
