#include "measure/measurement_headings.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "measure/measurement_rows.h"
#include "text/line_text.h"

namespace tessavo {

namespace {

/// Longer lines name no columns.
constexpr std::size_t mostHeadingCharacters = 4096;

struct NameWord {
    std::string_view begin;  ///< of a word of small letters
    ColumnName name;
    bool isWhole = false;  ///< it is the whole word
};

constexpr std::array nameWords = {
    NameWord{"freq", ColumnName::frequency},     NameWord{"frek", ColumnName::frequency},
    NameWord{"hz", ColumnName::frequency, true}, NameWord{"khz", ColumnName::frequency, true},
    NameWord{"f", ColumnName::frequency, true},  NameWord{"db", ColumnName::level},
    NameWord{"spl", ColumnName::level},          NameWord{"mag", ColumnName::level},
    NameWord{"level", ColumnName::level},        NameWord{"pegel", ColumnName::level},
    NameWord{"raw", ColumnName::level, true},    NameWord{"gain", ColumnName::level},
    NameWord{"ampl", ColumnName::level},         NameWord{"offset", ColumnName::level},
    NameWord{"target", ColumnName::level},       NameWord{"correction", ColumnName::level},
    NameWord{"value", ColumnName::level},        NameWord{"pressure", ColumnName::level},
    NameWord{"volt", ColumnName::level},         NameWord{"phas", ColumnName::phase},
    NameWord{"deg", ColumnName::phase},          NameWord{"angle", ColumnName::phase, true},
    NameWord{"ohm", ColumnName::impedance},      NameWord{"imped", ColumnName::impedance},
    NameWord{"z", ColumnName::impedance, true},  NameWord{"zmag", ColumnName::impedance, true},
    NameWord{"coher", ColumnName::coherence},    NameWord{"time", ColumnName::time, true},
    NameWord{"sample", ColumnName::time, true},  NameWord{"samples", ColumnName::time, true},
    NameWord{"seconds", ColumnName::time, true}, NameWord{"ms", ColumnName::time, true},
    NameWord{"t", ColumnName::time, true},
};

/// Calls something for each word of letters; the words are in lower case.
template <typename Call>
void forWords(std::string_view text, const Call& call) {
    const std::string lower = lowerCase(text);
    for (std::size_t at = 0; at < lower.size();) {
        const auto* const begin = lower.data() + at;
        const auto* const end = std::find_if_not(begin, lower.data() + lower.size(), isLetter);
        const auto length = static_cast<std::size_t>(end - begin);
        if (length > 0) {
            call(std::string_view(begin, length));
        }
        at += std::max<std::size_t>(length, 1);
    }
}

bool hasWord(std::string_view text, std::string_view wanted) {
    bool isThere = false;
    forWords(text, [&](std::string_view word) { isThere = isThere || word == wanted; });
    return isThere;
}

/// What a cell is called: by its first word that means something. Impedance and coherence are meant wherever they stand,
/// for they have magnitudes and phases, too.
ColumnName nameOf(std::string_view cell) {
    ColumnName name = ColumnName::other;
    forWords(cell, [&](std::string_view word) {
        const auto found = std::ranges::find_if(nameWords, [&](const NameWord& known) {
            return known.isWhole ? word == known.begin : word.starts_with(known.begin);
        });
        if (found == nameWords.end()) {
            return;
        }
        const bool isStrong = found->name == ColumnName::impedance || found->name == ColumnName::coherence;
        const bool isUnit = name == ColumnName::phase;  // "Phase of Z" is a phase.
        name = name == ColumnName::other || (isStrong && !isUnit) ? found->name : name;
    });
    // Programs that tell radians are few; as degrees they would be wrong.
    const bool isRadians = hasWord(cell, "rad") || hasWord(cell, "radians");
    return name == ColumnName::phase && isRadians ? ColumnName::other : name;
}

/// The cells of a line whose words are parted by single blanks; what stands in parentheses belongs to the word before it.
std::vector<Cell> wordCells(std::string_view plain, std::size_t begin) {
    std::vector<Cell> cells;
    std::size_t at = begin;
    while ((at = plain.find_first_not_of(" \t,;\x1F\"", at)) != std::string_view::npos) {
        const bool isUnit = !cells.empty() && (plain[at] == '(' || plain[at] == '[');
        const std::size_t cellBegin = isUnit ? cells.back().begin : at;
        int depth = 0;
        while (at < plain.size() &&
               (depth > 0 || std::string_view(" \t,;\x1F\"").find(plain[at]) == std::string_view::npos)) {
            depth += plain[at] == '(' || plain[at] == '[' ? 1 : 0;
            depth -= plain[at] == ')' || plain[at] == ']' ? 1 : 0;
            ++at;
        }
        if (isUnit) {
            cells.pop_back();
        }
        cells.push_back({cellBegin, at});
    }
    return cells;
}

/// The cells of a line that are parted as those of a table are.
std::vector<Cell> tableCells(std::string_view plain, std::size_t begin, ColumnSeparator separator) {
    std::vector<Cell> cells;
    splitCells(plain.substr(begin), separator, cells);
    for (Cell& cell : cells) {
        cell.begin += begin;
        cell.end += begin;
    }
    return cells;
}

/// The cells of a line that two blanks or more part.
std::vector<Cell> spacedCells(std::string_view plain, std::size_t begin) {
    std::vector<Cell> cells;
    for (std::size_t at = begin; (at = plain.find_first_not_of(" \t", at)) != std::string_view::npos;) {
        std::size_t end = std::min(plain.find("  ", at), plain.size());
        end = std::min(end, plain.find('\t', at));
        cells.push_back({at, end});
        at = end;
    }
    return cells;
}

class HeadingLine {
 public:
    explicit HeadingLine(std::string_view source) : line_(source), plain_(line_.plain()) {
        const std::size_t first = plain_.find_first_not_of(" \t*#%;\"\x1F\x7F");
        begin_ = std::min(first, plain_.size());
    }

    /// The names of the columns, where the line is a heading.
    [[nodiscard]] std::optional<ColumnHeading> read(std::size_t columnCount,
                                                    std::optional<std::size_t> levelColumn) {
        words_ = wordCells(plain_, begin_);
        const bool isSentence = std::ranges::any_of(words_, [&](const Cell& word) {
            return cellNumber(word.of(plain_), NumberUse::other, '.') ||
                   cellNumber(word.of(plain_), NumberUse::other, ',');
        });
        if (isSentence || words_.size() < 2) {
            return std::nullopt;
        }
        const bool fits = findCells(columnCount);
        const auto known = static_cast<std::size_t>(std::ranges::count_if(
            words_, [&](const Cell& word) { return nameOf(word.of(plain_)) != ColumnName::other; }));
        if (firstOf(words_, ColumnName::time) == 1) {
            return 2 * known > words_.size() || isParted_ ? std::optional(timeHeading()) : std::nullopt;
        }
        const bool hasFrequency = firstOf(fits ? cells_ : words_, ColumnName::frequency) > 0;
        if (!hasFrequency || (2 * known < words_.size() && !isParted_) || (known < 2 && !isParted_)) {
            return std::nullopt;
        }
        return fits ? fittingHeading(levelColumn) : looseHeading(columnCount);
    }

 private:
    /// Parts the line so that it has as many cells as the rows have.
    bool findCells(std::size_t columnCount) {
        for (const ColumnSeparator separator :
             {ColumnSeparator::tab, ColumnSeparator::semicolon, ColumnSeparator::comma}) {
            cells_ = tableCells(plain_, begin_, separator);
            if (cells_.size() == columnCount) {
                isParted_ = true;
                return true;
            }
        }
        cells_ = spacedCells(plain_, begin_);
        if (cells_.size() != columnCount) {
            cells_ = words_;
        }
        return cells_.size() == columnCount;
    }

    /// The first cell of a name, from 1; 0 for none.
    [[nodiscard]] std::size_t firstOf(const std::vector<Cell>& cells, ColumnName name) const {
        const auto found =
            std::ranges::find_if(cells, [&](const Cell& cell) { return nameOf(cell.of(plain_)) == name; });
        return found == cells.end() ? 0 : static_cast<std::size_t>(found - cells.begin()) + 1;
    }

    [[nodiscard]] ColumnHeading timeHeading() const {
        ColumnHeading heading;
        heading.firstName = ColumnName::time;
        heading.firstPlace.column = words_.front().begin + 1;
        return heading;
    }

    void nameLevel(ColumnHeading& heading, const Cell& cell) const {
        heading.levelName = nameOf(cell.of(plain_));
        heading.levelPlace.column = cell.begin + 1;
    }

    [[nodiscard]] ColumnHeading fittingHeading(std::optional<std::size_t> levelColumn) const {
        ColumnHeading heading;
        heading.frequency = firstOf(cells_, ColumnName::frequency);
        heading.phase = firstOf(cells_, ColumnName::phase);
        heading.level = levelColumn.value_or(firstOf(cells_, ColumnName::level));
        for (std::size_t column = 1; column <= cells_.size() && heading.level == 0; ++column) {
            heading.level = column != heading.frequency && column != heading.phase ? column : 0;
        }
        if (heading.level == 0) {
            heading.level = heading.frequency == 1 ? 2 : 1;
            heading.phase = 0;
        }
        if (heading.level <= cells_.size()) {
            nameLevel(heading, cells_[heading.level - 1]);
        }
        noteScale(heading, cells_[heading.frequency - 1]);
        return heading;
    }

    [[nodiscard]] ColumnHeading looseHeading(std::size_t columnCount) const {
        constexpr std::size_t thirdColumn = 3;
        ColumnHeading heading;
        heading.phase =
            columnCount >= thirdColumn && firstOf(words_, ColumnName::phase) > 0 ? thirdColumn : 0;
        for (const ColumnName name : {ColumnName::coherence, ColumnName::impedance, ColumnName::level}) {
            if (const std::size_t found = firstOf(words_, name); found > 0) {
                nameLevel(heading, words_[found - 1]);
            }
        }
        noteScale(heading, words_[firstOf(words_, ColumnName::frequency) - 1]);
        return heading;
    }

    void noteScale(ColumnHeading& heading, const Cell& cell) const {
        constexpr double hertzInKilohertz = 1000.0;
        heading.frequencyScale = hasWord(cell.of(plain_), "khz") ? hertzInKilohertz : 1.0;
    }

    LineText line_;
    std::string_view plain_;
    std::size_t begin_ = 0;
    std::vector<Cell> words_;
    std::vector<Cell> cells_;
    bool isParted_ = false;  ///< by tabs, semicolons or commas into as many cells as the rows have
};

}  // namespace

std::optional<ColumnHeading> columnHeadingOf(std::span<const std::string_view> lines, std::size_t columnCount,
                                             std::optional<std::size_t> levelColumn) {
    for (std::size_t number = lines.size(); number > 0; --number) {
        if (lines[number - 1].size() > mostHeadingCharacters) {
            continue;
        }
        if (auto heading = HeadingLine(lines[number - 1]).read(columnCount, levelColumn)) {
            heading->firstPlace.line = number;
            heading->levelPlace.line = number;
            return heading;
        }
    }
    return std::nullopt;
}

TextPlace placeOf(std::span<const std::string_view> lines, std::string_view words) {
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const std::size_t found = lowerCase(LineText(lines[index]).plain()).find(words);
        if (found != std::string::npos) {
            return {index + 1, found + 1};
        }
    }
    return {};
}

}  // namespace tessavo
