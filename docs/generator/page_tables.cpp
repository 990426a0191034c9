#include "page_tables.h"

#include <algorithm>
#include <span>
#include <vector>

#include "base/number_text.h"
#include "markdown.h"

namespace tessavo {

std::string numberRange(const Field& field) {
    return shortestText(field.minimum) + " … " + shortestText(field.maximum);
}

namespace {

/// A control of a page, or several that stand for one field, and what the manual tells of them.
struct Control {
    const ControlRow* first;
    const ControlRow* last;
    std::string caption;
};

std::string inOneLine(std::string text) {
    std::ranges::replace(text, '\n', ' ');
    return text;
}

std::string runOf(const std::string& first, const std::string& last) {
    return first == last ? first : first + " … " + last;
}

// Title of the card that a control stands on.
std::string cardOf(const ControlRows& rows, const ControlRow& row) {
    std::string title;
    for (const ControlRow* group = groupAround(rows, row); group != nullptr;
         group = groupAround(rows, *group)) {
        title = group->caption;
    }
    return title;
}

std::string captionOf(const ControlRows& rows, const Control& control) {
    const auto textOf = [](const ControlRow& row) {
        return inOneLine(row.caption.empty() ? row.name : row.caption);
    };
    const std::string card = runOf(cardOf(rows, *control.first), cardOf(rows, *control.last));
    const std::string text = runOf(textOf(*control.first), textOf(*control.last));
    return "**" + card + "**" + (text == card ? "" : " " + text);
}

std::vector<Control> controlsOf(const ControlRows& rows) {
    std::vector<Control> controls;
    for (const ControlRow& row : rows) {
        if (row.manual.effect.empty()) {
            continue;
        }
        const auto same = std::ranges::find_if(
            controls, [&](const Control& control) { return control.first->field == row.field; });
        if (same == controls.end()) {
            controls.push_back({&row, &row, {}});
        } else {
            same->last = &row;
        }
    }
    for (Control& control : controls) {
        control.caption = captionOf(rows, control);
    }
    return controls;
}

const Field& fieldOf(const ControlRow& row) {
    return fieldOf(row.field.value());
}

bool hasWords(const ControlRow& row) {
    return row.kind == ControlKind::check || !entriesOf(row).empty();
}

// What a control does, with the meaning of each of its numbers where they stand for something.
std::string effectOf(const ControlRow& row) {
    std::string text(row.manual.effect);
    if (!hasWords(row)) {
        std::string_view before = ": ";
        for (const FieldCode& code : fieldOf(row).codes) {
            text += std::string(before) + std::to_string(code.code) + " " + std::string(code.shown);
            before = ", ";
        }
    }
    return text;
}

// What a person reads for a value; empty for one that the field does not have.
std::string wordOf(const ControlRow& row, double value) {
    if (row.kind == ControlKind::check) {
        return (value != 0) != row.inverted ? "yes" : "no";
    }
    for (const ControlEntry& entry : entriesOf(row)) {
        if (entry.code == value) {
            return std::string(entry.word);
        }
    }
    return "";
}

std::string rangeOf(const ControlRow& row) {
    const Field& field = fieldOf(row);
    if (!row.manual.range.empty()) {
        return std::string(row.manual.range);
    }
    if (!hasWords(row)) {
        return numberRange(field);
    }
    std::string text;
    for (double value = field.minimum; value <= field.maximum; ++value) {
        if (const std::string word = wordOf(row, value); !word.empty()) {
            text += (text.empty() ? "" : ", ") + word;
        }
    }
    return text;
}

std::string unitOf(const ControlRow& row) {
    return row.field == FieldId::decoderGain ? "dB" : std::string(fieldOf(row).unit);
}

std::string stepOf(const ControlRow& row) {
    if (hasWords(row)) {
        return "";
    }
    return fieldOf(row).decimals > 0 || row.field == FieldId::decoderGain ? "0.1" : "1";
}

std::string startOf(const ControlRow& row) {
    if (!row.manual.start.empty()) {
        return std::string(row.manual.start);
    }
    constexpr double zero = 0;
    const Field& field = fieldOf(row);
    std::string text;
    for (const double value : field.defaults.empty() ? std::span(&zero, 1) : field.defaults) {
        text += (text.empty() ? "" : ", ") + (hasWords(row) ? wordOf(row, value) : shortestText(value));
    }
    return text;
}

}  // namespace

std::string controlTable(const ControlRows& controls) {
    std::vector<Row> rows;
    for (const Control& control : controlsOf(controls)) {
        const ControlRow& row = *control.first;
        rows.push_back(
            {control.caption, rangeOf(row), unitOf(row), stepOf(row), startOf(row), effectOf(row)});
    }
    return table({"Control", "Range", "Unit", "Step", "At first", "What it does"}, rows);
}

}  // namespace tessavo
