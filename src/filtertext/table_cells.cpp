#include "filtertext/table_cells.h"

#include <algorithm>

#include "text/line_text.h"

namespace tessavo {

namespace {

TableCell trimmed(std::string_view plain, std::size_t begin, std::size_t end) {
    begin = afterBlanks(plain, begin, end);
    while (end > begin && isBlank(plain[end - 1])) {
        --end;
    }
    return {begin, end};
}

/// The place of the mark that closes a quoted cell, and the end of the line where none does.
std::size_t closingMark(std::string_view plain, std::size_t begin) {
    std::size_t at = std::min(plain.find('"', begin), plain.size());
    while (at + 1 < plain.size() && plain[at + 1] == '"') {
        at = std::min(plain.find('"', at + 2), plain.size());
    }
    return at;
}

}  // namespace

TableCells cellsOf(std::string_view plain, char parting) {
    TableCells cells;
    std::size_t at = 0;
    while (at <= plain.size()) {
        std::size_t first = at;
        while (parting != ' ' && first < plain.size() && plain[first] == ' ') {
            ++first;
        }
        const bool isQuoted = first < plain.size() && plain[first] == '"';
        const std::size_t close = isQuoted ? closingMark(plain, first + 1) : at;
        const std::size_t end = std::min(plain.find(parting, close), plain.size());
        cells.push_back(isQuoted ? trimmed(plain, first + 1, close) : trimmed(plain, at, end));
        at = end + 1;
    }
    return cells;
}

TableCells cellsBetweenBlanks(std::string_view plain) {
    const auto parts = [plain](std::size_t at) { return plain[at] == ' ' || plain[at] == '\t'; };
    TableCells cells;
    std::size_t at = 0;
    while (at < plain.size()) {
        if (parts(at)) {
            ++at;
            continue;
        }
        const bool isQuoted = plain[at] == '"';
        const std::size_t begin = at;
        at = isQuoted ? closingMark(plain, at + 1) : at;
        const std::size_t close = at;
        while (at < plain.size() && !parts(at)) {
            ++at;
        }
        cells.push_back(isQuoted ? trimmed(plain, begin + 1, close) : TableCell{begin, at});
    }
    return cells;
}

}  // namespace tessavo
