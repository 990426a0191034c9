#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace tessavo {

/// A cell of a row without quotation marks and blanks around it, as places in the line. Empty where both are equal.
struct TableCell {
    std::size_t begin = 0;
    std::size_t end = 0;

    [[nodiscard]] bool isEmpty() const { return begin == end; }
    [[nodiscard]] std::string_view in(std::string_view plain) const {
        return plain.substr(begin, end - begin);
    }
};

using TableCells = std::vector<TableCell>;

/// The cells of a line between two partings each.
[[nodiscard]] TableCells cellsOf(std::string_view plain, char parting);

/// The cells of a line that are parted by any number of blanks and tabs.
[[nodiscard]] TableCells cellsBetweenBlanks(std::string_view plain);

}  // namespace tessavo
