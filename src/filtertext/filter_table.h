#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "filtertext/written_filter.h"
#include "text/line_text.h"

namespace tessavo {

/// What a column of a table of filters holds.
enum class TableColumn : std::uint8_t {
    number,
    enabled,
    control,
    type,
    frequency,
    gain,
    q,
    bandwidth,
    decayTime,
    shape,
    slope,
    secondFrequency,
    other  ///< what nobody here needs
};

/// Reads tables of filters, whose head names the columns and whose cells are parted by blanks, tabs, commas or semicolons. Cells
/// may be quoted, and those at the end of a row may be left out.
class FilterTable {
 public:
    FilterTable();

    /// Reads the next line of a text: a head, after which columns are as it says, a row, or neither. Rows without a head before
    /// them have the columns in the order in which the room acoustics program writes them.
    /// \return the filter of a row
    [[nodiscard]] std::optional<WrittenFilter> read(const LineText& line);

 private:
    std::vector<TableColumn> columns_;
    bool hasHead_ = false;
    char parting_ = ' ';
};

}  // namespace tessavo
