#include "pages/rows/control_row.h"

#include <algorithm>

namespace tessavo {

std::vector<ControlEntry> entriesOf(const ControlRow& row) {
    std::vector<ControlEntry> entries;
    if (!row.entries.empty()) {
        for (std::size_t i = 0; i < row.entries.size(); ++i) {
            entries.push_back(
                {row.entries[i], i < row.codes.size() ? row.codes[i] : static_cast<std::uint8_t>(i)});
        }
    } else if (row.field && row.kind == ControlKind::combo) {
        const Field& field = fieldOf(*row.field);
        for (const FieldCode& each : field.codes) {
            entries.push_back({each.shown, each.code});
        }
        if (!row.codes.empty()) {
            entries.clear();
            for (const std::uint8_t code : row.codes) {
                entries.push_back({codeOf(field, code)->shown, code});
            }
        }
    }
    return entries;
}

const std::string& nameOf(const ControlRow& row) {
    return row.name.empty() ? row.caption : row.name;
}

Colour valueColour(const ControlRow& row) {
    if (row.colour || !row.field) {
        return row.colour.value_or(theme::level);
    }
    const std::string_view unit = fieldOf(*row.field).unit;
    if (unit == "Hz") {
        return theme::frequency;
    }
    return unit == "ms" || row.field == FieldId::bandQ ? theme::quality : theme::level;
}

const ControlRow* findRow(std::span<const ControlRow> rows, int identifier) {
    const auto found = std::ranges::find(rows, identifier, &ControlRow::identifier);
    return found == rows.end() ? nullptr : &*found;
}

const ControlRow* groupAround(std::span<const ControlRow> rows, const ControlRow& row) {
    const ControlRow* around = nullptr;
    for (const ControlRow& each : rows) {
        if (&each == &row) {
            break;
        }
        const bool isAround = row.bounds.isEmpty()
                                  ? row.kind != ControlKind::group
                                  : each.isHidden <= row.isHidden && each.bounds.contains(row.bounds);
        if (each.kind == ControlKind::group && isAround) {
            around = &each;
        }
    }
    return around;
}

}  // namespace tessavo
