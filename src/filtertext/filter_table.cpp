#include "filtertext/filter_table.h"

#include <algorithm>
#include <array>
#include <string>

#include "filtertext/filter_types.h"
#include "filtertext/table_cells.h"
#include "filtertext/written_value.h"

namespace tessavo {

namespace {

using Columns = std::vector<TableColumn>;

const Columns& usualColumns() {
    static const Columns columns{TableColumn::number, TableColumn::enabled,   TableColumn::control,
                                 TableColumn::type,   TableColumn::frequency, TableColumn::gain,
                                 TableColumn::q,      TableColumn::bandwidth, TableColumn::decayTime,
                                 TableColumn::shape,  TableColumn::slope,     TableColumn::secondFrequency,
                                 TableColumn::other,  TableColumn::other};
    return columns;
}

TableColumn columnOf(std::string_view name) {
    struct Named {
        std::string_view name;
        TableColumn column;
    };
    constexpr std::array names{
        Named{"number", TableColumn::number},
        Named{"enabled", TableColumn::enabled},
        Named{"control", TableColumn::control},
        Named{"type", TableColumn::type},
        Named{"frequency", TableColumn::frequency},
        Named{"frequencyhz", TableColumn::frequency},
        Named{"freq", TableColumn::frequency},
        Named{"fc", TableColumn::frequency},
        Named{"gain", TableColumn::gain},
        Named{"gaindb", TableColumn::gain},
        Named{"q", TableColumn::q},
        Named{"bandwidth", TableColumn::bandwidth},
        Named{"targett60", TableColumn::decayTime},
        Named{"shape", TableColumn::shape},
        Named{"slope", TableColumn::slope},
        Named{"slopedb", TableColumn::slope},
        Named{"frequency2", TableColumn::secondFrequency},
    };
    std::string letters;
    for (const char character : lowerCase(name)) {
        if (character == '(' || character == '/') {
            break;
        }
        if (isLetter(character) || isDigit(character)) {
            letters.push_back(character);
        }
    }
    const auto* const found = std::ranges::find(names, letters, &Named::name);
    return found == names.end() ? TableColumn::other : found->column;
}

bool has(const Columns& columns, TableColumn column) {
    return std::ranges::find(columns, column) != columns.end();
}

/// A row with the columns that its head names.
struct RowCells {
    const Columns& columns;
    TableCells cells;

    [[nodiscard]] std::size_t placeOf(TableColumn column) const {
        return static_cast<std::size_t>(std::ranges::find(columns, column) - columns.begin());
    }
    [[nodiscard]] TableCell at(TableColumn column) const {
        const std::size_t place = placeOf(column);
        return place < columns.size() && place < cells.size() ? cells[place] : TableCell{};
    }
};

std::optional<WrittenState> stateOf(std::string_view word) {
    const std::string lower = word.size() > 5 ? std::string() : lowerCase(word);
    if (lower == "true" || lower == "on") {
        return WrittenState::on;
    }
    if (lower == "false" || lower == "off") {
        return WrittenState::off;
    }
    return std::nullopt;
}

bool beginsNumber(std::string_view cell) {
    return !cell.empty() &&
           (isDigit(cell.front()) || std::string_view("+-.,").find(cell.front()) != std::string_view::npos);
}

/// Whether a row speaks of a filter.
bool isRow(std::string_view plain, const RowCells& row) {
    const std::string_view number = row.at(TableColumn::number).in(plain);
    const bool hasNumber = !number.empty() && std::ranges::all_of(number, isDigit);
    if (has(row.columns, TableColumn::enabled) && stateOf(row.at(TableColumn::enabled).in(plain))) {
        return hasNumber || !has(row.columns, TableColumn::number) ||
               filterType(row.at(TableColumn::type).in(plain)) != nullptr;
    }
    const std::string_view type = row.at(TableColumn::type).in(plain);
    return !type.empty() && filterType(type) != nullptr &&
           (hasNumber || !has(row.columns, TableColumn::number));
}

/// Whether every cell of a row holds what its column wants.
bool fits(std::string_view plain, const RowCells& row) {
    for (std::size_t place = 0; place < row.cells.size(); ++place) {
        const TableCell& cell = row.cells[place];
        const TableColumn column = place < row.columns.size() ? row.columns[place] : TableColumn::other;
        const bool isWord = column == TableColumn::shape || column == TableColumn::control;
        const bool isNumber =
            column >= TableColumn::frequency && column <= TableColumn::secondFrequency && !isWord;
        if (!cell.isEmpty() &&
            ((isNumber && !beginsNumber(cell.in(plain))) || (isWord && beginsNumber(cell.in(plain))))) {
            return false;
        }
    }
    return !row.at(TableColumn::frequency).isEmpty() && isRow(plain, row);
}

/// Puts the cells of a row without empty ones in their columns: a slope belongs to the type before it, and the first word behind
/// the numbers is the shape.
TableCells arranged(std::string_view plain, const Columns& columns, const TableCells& cells) {
    const RowCells empty{columns, {}};
    const std::size_t typePlace = empty.placeOf(TableColumn::type);
    const std::size_t shapePlace = empty.placeOf(TableColumn::shape);
    TableCells placed;
    for (const TableCell& cell : cells) {
        const std::string_view text = cell.in(plain);
        const bool isDecibels = beginsNumber(text) && lowerCase(text).find("db") != std::string::npos;
        if (placed.size() == typePlace + 1 && isDecibels) {
            placed.back().end = cell.end;
            continue;
        }
        const bool isWord = !beginsNumber(text) && placed.size() > typePlace + 1;
        if (isWord && shapePlace < columns.size() && placed.size() < shapePlace) {
            placed.resize(shapePlace, TableCell{cell.begin, cell.begin});
        }
        placed.push_back(cell);
    }
    return placed;
}

TableCells cellsOfRow(std::string_view plain, const Columns& columns, char parting) {
    if (parting != ' ') {
        return cellsOf(plain, parting);
    }
    TableCells cells = arranged(plain, columns, cellsBetweenBlanks(plain));
    const RowCells row{columns, cells};
    const FilterType* const type = filterType(row.at(TableColumn::type).in(plain));
    const bool hasGain = type != nullptr && type->use == TypeUse::filter && isBand(type->shape);
    // Columns that a filter does not have are empty in its row, and then blanks stand side by side.
    if (!hasGain) {
        TableCells withEmpty = cellsOf(plain, ' ');
        if (fits(plain, {columns, withEmpty})) {
            return withEmpty;
        }
    }
    return cells;
}

void readCell(const LineText& line, const TableCell& cell, ValueUnit unit, WrittenFilter& filter,
              WrittenValue& value) {
    if (cell.isEmpty()) {
        return;
    }
    const std::size_t behind = readValue(line, cell.begin, cell.end, unit, value);
    if (value.isThere && value.problem.empty() && afterBlanks(line.plain(), behind, cell.end) != cell.end) {
        noteProblem(filter, cell.begin + 1, line.quoted(cell.begin, cell.end).append(" is not a number"));
    }
}

/// Finds cells that tell that the row was not parted as its head is.
void checkCells(const LineText& line, const RowCells& row, WrittenFilter& filter) {
    const TableCell shape = row.at(TableColumn::shape);
    if (beginsNumber(shape.in(line.plain()))) {
        noteProblem(filter, shape.begin + 1,
                    line.quoted(shape.begin, shape.end).append(" stands where the shape should"));
        // The row is parted wrongly, and what stands in later columns is not theirs.
        filter.secondFrequency.isThere = false;
    }
    for (std::size_t place = row.columns.size(); place < row.cells.size(); ++place) {
        if (!row.cells[place].isEmpty()) {
            noteProblem(filter, row.cells[place].begin + 1, "more cells than the head of the table has");
        }
    }
}

bool isNotZero(std::string_view cell) {
    return std::ranges::any_of(
        cell, [](char character) { return isLetter(character) || (isDigit(character) && character != '0'); });
}

WrittenFilter filterOf(const LineText& line, const RowCells& row) {
    const std::string_view plain = line.plain();
    WrittenFilter filter;
    const TableCell enabled = row.at(TableColumn::enabled);
    filter.stateColumn = enabled.begin + 1;
    filter.state = has(row.columns, TableColumn::enabled)
                       ? stateOf(enabled.in(plain)).value_or(WrittenState::missing)
                       : WrittenState::on;
    std::size_t end = plain.size();
    while (end > 0 && isBlank(plain[end - 1])) {
        --end;
    }
    filter.endColumn = end + 1;
    const TableCell type = row.at(TableColumn::type);
    static_cast<void>(readType(line, type.begin, type.end, filter));
    filter.typeColumn = type.isEmpty() ? filter.endColumn : filter.typeColumn;
    readCell(line, row.at(TableColumn::frequency), ValueUnit::hertz, filter, filter.frequency);
    readCell(line, row.at(TableColumn::gain), ValueUnit::decibels, filter, filter.gain);
    readCell(line, row.at(TableColumn::q), ValueUnit::none, filter, filter.q);
    const FilterType* const known = filterType(filter.type);
    const bool isPass = known != nullptr && !isBand(known->shape);
    const bool isPeak = known != nullptr && known->shape == FilterShape::peak;
    if (isPass || (!isPeak && !filter.q.isThere && !filter.slope.isThere)) {
        readCell(line, row.at(TableColumn::slope), ValueUnit::decibels, filter, filter.slope);
    }
    const TableCell second = row.at(TableColumn::secondFrequency);
    filter.secondFrequency.isThere = isNotZero(second.in(plain));
    const TableCell shape = row.at(TableColumn::shape);
    if (isPass) {
        filter.shape = line.original(shape.begin, shape.end);
    }
    checkCells(line, row, filter);
    return filter;
}

char partingOfHead(std::string_view plain) {
    for (const char parting : {'\t', ';', ','}) {
        if (plain.find(parting) != std::string_view::npos) {
            return parting;
        }
    }
    return ' ';
}

/// What parts the cells of a row that begins with a number.
char partingOfRow(std::string_view plain) {
    std::size_t at = afterBlanks(plain, 0, plain.size());
    while (at < plain.size() && (isDigit(plain[at]) || plain[at] == '"')) {
        ++at;
    }
    return at < plain.size() && std::string_view("\t;,").find(plain[at]) != std::string_view::npos ? plain[at]
                                                                                                   : ' ';
}

/// The columns that a line names.
/// \return empty where it is no head of a table
Columns columnsOfHead(std::string_view plain, char parting) {
    Columns columns;
    const std::string lower = lowerCase(plain);
    if (lower.find("type") == std::string::npos || isDigit(plain.front())) {
        return columns;
    }
    for (const TableCell& cell : parting == ' ' ? cellsBetweenBlanks(plain) : cellsOf(plain, parting)) {
        if (parting != ' ' || cell.isEmpty() || plain[cell.begin] != '(') {
            columns.push_back(columnOf(cell.in(plain)));
        }
    }
    const bool isHead = has(columns, TableColumn::type) && has(columns, TableColumn::frequency) &&
                        (has(columns, TableColumn::gain) || has(columns, TableColumn::q));
    return isHead ? columns : Columns();
}

}  // namespace

FilterTable::FilterTable() : columns_(usualColumns()) {}

std::optional<WrittenFilter> FilterTable::read(const LineText& line) {
    const std::string_view plain = line.plain();
    if (plain.empty()) {
        return std::nullopt;
    }
    const char headParting = partingOfHead(plain);
    Columns named = columnsOfHead(plain, headParting);
    if (!named.empty()) {
        columns_ = std::move(named);
        parting_ = headParting;
        hasHead_ = true;
        return std::nullopt;
    }
    if (hasHead_) {
        const RowCells row{columns_, cellsOfRow(plain, columns_, parting_)};
        if (isRow(plain, row)) {
            return filterOf(line, row);
        }
    }
    const char ownParting = partingOfRow(plain);
    if (!isDigit(plain[afterBlanks(plain, 0, plain.size() - 1)]) || (hasHead_ && ownParting == parting_)) {
        return std::nullopt;
    }
    const RowCells row{columns_, cellsOfRow(plain, columns_, ownParting)};
    const bool isKnown = filterType(row.at(TableColumn::type).in(plain)) != nullptr;
    return isKnown && stateOf(row.at(TableColumn::enabled).in(plain)) ? std::optional(filterOf(line, row))
                                                                      : std::nullopt;
}

}  // namespace tessavo
