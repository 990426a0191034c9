#include "measure/measurement_rows.h"

#include <algorithm>
#include <array>
#include <string>

#include "base/number_text.h"
#include "text/line_text.h"

namespace tessavo {

namespace {

/// Lines that are tried to learn the form; they are taken from everywhere in the text.
constexpr std::size_t triedLines = 512;

/// More than a number that means something has.
constexpr std::size_t mostNumberCharacters = 64;

constexpr std::array<ColumnSeparator, 5> separators = {ColumnSeparator::tab, ColumnSeparator::semicolon,
                                                       ColumnSeparator::commaAndBlank, ColumnSeparator::comma,
                                                       ColumnSeparator::blanks};

bool isSeparatorAt(std::string_view plain, std::size_t at, ColumnSeparator separator) {
    switch (separator) {
        case ColumnSeparator::tab:
            return plain[at] == '\t';
        case ColumnSeparator::semicolon:
            return plain[at] == ';';
        case ColumnSeparator::comma:
            return plain[at] == ',';
        case ColumnSeparator::commaAndBlank:
            return plain[at] == ',' && at + 1 < plain.size() && isBlank(plain[at + 1]);
        case ColumnSeparator::blanks:
            return isBlank(plain[at]);
    }
    return false;
}

Cell trimmed(std::string_view plain, std::size_t begin, std::size_t end) {
    Cell cell = {afterBlanks(plain, begin, end), end};
    while (cell.end > cell.begin && isBlank(plain[cell.end - 1])) {
        --cell.end;
    }
    return cell;
}

/// Whether a blank other than one that breaks no line stands in a cell; no group of digits is parted so in a table.
bool hasBlank(std::string_view cell) {
    return cell.find_first_of(" \t") != std::string_view::npos;
}

/// The lines that may be rows, or as many of them as are tried.
std::vector<std::string_view> linesToTry(std::span<const std::string_view> lines) {
    std::vector<std::string_view> rows;
    for (const std::string_view line : lines) {
        const bool hasDigit = line.find_first_of("0123456789") != std::string_view::npos;
        if (hasDigit && !isCommentLine(line)) {
            rows.push_back(line);
        }
    }
    if (rows.size() > triedLines) {
        for (std::size_t index = 0; index < triedLines; ++index) {
            rows[index] = rows[index * rows.size() / triedLines];
        }
        rows.resize(triedLines);
    }
    return rows;
}

/// Tries a form on some lines.
class FormTrial {
 public:
    FormTrial(std::span<const std::string_view> lines, const MeasurementColumns& columns)
        : columns_(columns) {
        lines_.reserve(lines.size());
        for (const std::string_view line : lines) {
            lines_.emplace_back(line);
        }
    }

    /// How many lines are rows in that form.
    [[nodiscard]] std::size_t rowsIn(const TableForm& form) {
        return static_cast<std::size_t>(std::ranges::count_if(lines_, [&](const LineText& line) {
            return isRow(line.plain(), form, columns_, cells_) &&
                   (form.separator != ColumnSeparator::commaAndBlank || hasBothCommas(line.plain()));
        }));
    }

    /// The decimal sign where both fit: that of the other columns. A comma in every frequency is one, too, for who parts
    /// thousands has frequencies below one.
    [[nodiscard]] char signOf(ColumnSeparator separator) {
        DecimalSignVotes votes;
        std::size_t rows = 0;
        std::size_t commas = 0;
        for (const LineText& line : lines_) {
            const std::string_view plain = line.plain();
            if (!isRow(plain, {separator, '.'}, columns_, cells_)) {
                continue;
            }
            ++rows;
            for (std::size_t index = 0; index < cells_.size(); ++index) {
                const std::string_view cell = cells_[index].of(plain);
                const bool isFrequency = index + 1 == columns_.frequency;
                votes.add(cell, isFrequency ? NumberUse::frequency : NumberUse::other);
                commas += isFrequency && cell.find(',') != std::string_view::npos ? 1U : 0U;
            }
        }
        return rows > 0 && commas == rows ? ',' : votes.sign();
    }

 private:
    /// Whether both cells have a decimal comma, beside the comma that parts them.
    [[nodiscard]] bool hasBothCommas(std::string_view plain) const {
        return cells_[columns_.frequency - 1].of(plain).find(',') != std::string_view::npos &&
               cells_[columns_.level - 1].of(plain).find(',') != std::string_view::npos;
    }

    MeasurementColumns columns_;
    std::vector<LineText> lines_;
    std::vector<Cell> cells_;
};

}  // namespace

void splitCells(std::string_view plain, ColumnSeparator separator, std::vector<Cell>& cells) {
    cells.clear();
    std::size_t begin = 0;
    std::size_t filled = 0;
    for (std::size_t at = 0; at <= plain.size() && cells.size() < mostColumns; ++at) {
        if (at < plain.size() && !isSeparatorAt(plain, at, separator)) {
            continue;
        }
        const Cell cell = trimmed(plain, begin, at);
        if (separator != ColumnSeparator::blanks || cell.begin < cell.end) {
            cells.push_back(cell);
        }
        filled = cell.begin < cell.end ? cells.size() : filled;
        begin = at + 1;
    }
    cells.resize(filled);
}

std::optional<double> cellNumber(std::string_view cell, NumberUse use, char decimalSign) {
    if (cell.empty() || cell.size() > mostNumberCharacters) {
        return std::nullopt;
    }
    if (decimalSign == '.') {
        // What most programs write needs no closer look.
        if (const auto number = finiteNumber(cell)) {
            return number;
        }
    }
    const auto written = hasBlank(cell) ? std::nullopt : numberAt(cell, 0, cell.size(), use);
    return written && written->end == cell.size() ? valueOf(written->text, use, decimalSign) : std::nullopt;
}

bool isBlankLine(std::string_view plain) {
    return std::ranges::all_of(plain, isBlank);
}

bool isCommentLine(std::string_view plain) {
    const std::size_t first = afterBlanks(plain, 0, plain.size());
    return first < plain.size() && std::string_view("*#%;\"").find(plain[first]) != std::string_view::npos;
}

bool isRow(std::string_view plain, const TableForm& form, const MeasurementColumns& columns,
           std::vector<Cell>& cells) {
    splitCells(plain, form.separator, cells);
    if (isCommentLine(plain) || std::max(columns.frequency, columns.level) > cells.size()) {
        return false;
    }
    return cellNumber(cells[columns.frequency - 1].of(plain), NumberUse::frequency, form.decimalSign) &&
           cellNumber(cells[columns.level - 1].of(plain), NumberUse::other, form.decimalSign);
}

std::optional<TableForm> formOf(std::span<const std::string_view> lines, const MeasurementColumns& columns) {
    FormTrial trial(linesToTry(lines), columns);
    std::array<std::size_t, separators.size()> rows{};
    std::array<char, separators.size()> signs{};
    for (std::size_t index = 0; index < separators.size(); ++index) {
        const ColumnSeparator separator = separators[index];
        const std::size_t points =
            separator == ColumnSeparator::commaAndBlank ? 0 : trial.rowsIn({separator, '.'});
        const std::size_t commas = separator == ColumnSeparator::comma ? 0 : trial.rowsIn({separator, ','});
        rows[index] = std::max(points, commas);
        signs[index] = points != commas ? (points > commas ? '.' : ',') : trial.signOf(separator);
    }
    const std::size_t most = *std::ranges::max_element(rows);
    if (most == 0) {
        return std::nullopt;
    }
    for (std::size_t index = 0; index < separators.size(); ++index) {
        if (2 * rows[index] >= most && rows[index] > 0) {
            return TableForm{separators[index], signs[index]};
        }
    }
    return std::nullopt;
}

}  // namespace tessavo
