#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "measure/measurement_text.h"
#include "text/decimal_sign.h"

namespace tessavo {

// Rows of numbers in a text: what parts their columns, what their decimal sign is, and what stands in a cell.

/// What parts the columns of a table.
enum class ColumnSeparator {
    tab,
    semicolon,
    commaAndBlank,  ///< a comma with a blank behind it, beside decimal commas without one
    comma,
    blanks,  ///< blanks and tabs, however many
};

/// How the rows of a table are written.
struct TableForm {
    ColumnSeparator separator = ColumnSeparator::blanks;
    char decimalSign = '.';
};

/// A cell without blanks around it, as places in its line.
struct Cell {
    std::size_t begin = 0;
    std::size_t end = 0;

    [[nodiscard]] std::string_view of(std::string_view line) const { return line.substr(begin, end - begin); }
};

/// Most columns that are told apart; a row may have more.
inline constexpr std::size_t mostColumns = 4096;

/// The cells of a line, at most mostColumns of them. Empty ones at its end are left out.
/// \param plain LineText::plain()
/// \param cells takes them
void splitCells(std::string_view plain, ColumnSeparator separator, std::vector<Cell>& cells);

/// The number that a cell holds; nothing where it holds anything else.
[[nodiscard]] std::optional<double> cellNumber(std::string_view cell, NumberUse use, char decimalSign);

/// Whether a line of LineText::plain() holds nothing but blanks.
[[nodiscard]] bool isBlankLine(std::string_view plain);

/// Whether a line of LineText::plain() is a comment: '*', '#', '%', ';' or a quotation mark stands first.
[[nodiscard]] bool isCommentLine(std::string_view plain);

/// How the rows of a text are written: the form in which most of them have two numbers in these columns. A tab, a semicolon
/// or a comma that parts half of them is rather a separator with an empty cell somewhere than a blank.
/// \param lines of the text, in UTF-8
/// \return nothing where no line is a row in any form
[[nodiscard]] std::optional<TableForm> formOf(std::span<const std::string_view> lines,
                                              const MeasurementColumns& columns);

/// Whether a line is a row: no comment, and both columns hold a number.
/// \param cells takes its cells
[[nodiscard]] bool isRow(std::string_view plain, const TableForm& form, const MeasurementColumns& columns,
                         std::vector<Cell>& cells);

}  // namespace tessavo
