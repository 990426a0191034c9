#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/number_text.h"
#include "filtertext/filter_text.h"
#include "filtertext/readers.h"

namespace tessavo {

inline std::string saidNumber(const std::optional<double>& number) {
    return number ? shortNumber(*number) : std::string("-");
}

/// Everything that a reader says of a line, but for its text: "band PK 100 -3 2 = peak 100 -3 2", "error@29 PK 100 - 2: the gain
/// is missing", "crossover HP 80 - - = high-pass 80 0 0.707107 x4".
inline std::string said(const FilterLine& line) {
    std::string words(kindWord(line.kind));
    if (line.column != 0) {
        words.append("@").append(std::to_string(line.column));
    }
    if (line.source) {
        words.append(" ").append(line.source->type).append(" ").append(saidNumber(line.source->frequencyHz));
        words.append(" ")
            .append(saidNumber(line.source->gainDb))
            .append(" ")
            .append(saidNumber(line.source->q));
    }
    if (line.meaning) {
        words.append(" = ").append(shapeWord(line.meaning->shape)).append(" ");
        words.append(shortNumber(line.meaning->frequencyHz))
            .append(" ")
            .append(shortNumber(line.meaning->gainDb));
        words.append(" ").append(shortNumber(line.meaning->q)).append(line.meaning->order == 4 ? " x4" : "");
    }
    return words.append(line.reason.empty() ? "" : ": ").append(line.reason);
}

/// What is said of the lines of a text that are of a kind.
inline std::vector<std::string> said(const FilterText& text) {
    std::vector<std::string> lines;
    for (const FilterLine& line : text.lines) {
        if (line.kind != FilterLineKind::none) {
            lines.push_back(said(line));
        }
    }
    return lines;
}

/// What is said of a text of one line.
inline std::string saidOf(std::string_view line) {
    const FilterText text = readTextLines(line, {});
    return text.lines.size() == 1 ? said(text.lines.front()) : std::string("not one line");
}

}  // namespace tessavo
