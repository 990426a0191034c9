#include "filtertext/raw_filter.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tessavo {

namespace {

constexpr std::array<std::string_view, 4> blanks{" ", "\t", "\xC2\xA0", "\xE2\x80\xAF"};
/// Words that name a value, or what is known not to matter.
constexpr std::array<std::string_view, 5> keys{"Fc", "Gain", "Q", "BW", "T60"};

/// Length of the blank at a position, or 0.
std::size_t blankAt(std::string_view text, std::size_t at) {
    for (const std::string_view blank : blanks) {
        if (text.substr(at).starts_with(blank)) {
            return blank.size();
        }
    }
    return 0;
}

bool isDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

char lower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool isKey(std::string_view word) {
    return std::any_of(keys.begin(), keys.end(), [&](std::string_view key) { return sameWord(word, key); });
}

/// Where a unit begins in a text, whatever the case and with blanks between its letters.
std::size_t findUnit(std::string_view text, std::string_view unit) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        std::size_t end = at;
        std::size_t matched = 0;
        while (end < text.size() && matched < unit.size()) {
            const std::size_t blank = matched == 0 ? 0 : blankAt(text, end);
            if (blank != 0) {
                end += blank;
            } else if (lower(text[end]) == lower(unit[matched])) {
                ++end;
                ++matched;
            } else {
                break;
            }
        }
        if (matched == unit.size()) {
            return at;
        }
    }
    return std::string_view::npos;
}

/// What stands between the name of a value and the next name.
struct Segment {
    std::string_view text;
    std::size_t offset = 0;
};

RawNumber rawNumber(std::string_view line, Segment segment, double scale = 1.0) {
    std::size_t front = 0;
    while (front < segment.text.size() && blankAt(segment.text, front) != 0) {
        front += blankAt(segment.text, front);
    }
    return {std::string(trimmed(segment.text)), columnOf(line, segment.offset + front), scale};
}

RawNumber frequencyOf(std::string_view line, Segment segment) {
    const std::size_t unit = findUnit(segment.text, "Hz");
    if (unit == std::string_view::npos) {
        return rawNumber(line, segment);
    }
    segment.text = segment.text.substr(0, unit);
    const bool kilo = segment.text.ends_with('k') || segment.text.ends_with('K');
    if (kilo) {
        segment.text.remove_suffix(1);
    }
    return rawNumber(line, segment, kilo ? 1000.0 : 1.0);
}

/// A number that ends at its unit or, without one, with its first word.
RawNumber firstNumber(std::string_view line, Segment segment, std::string_view unit) {
    const std::size_t end = unit.empty() ? std::string_view::npos : findUnit(segment.text, unit);
    if (end != std::string_view::npos) {
        segment.text = segment.text.substr(0, end);
        return rawNumber(line, segment);
    }
    const std::vector<Word> words = wordsOf(segment.text);
    if (!words.empty()) {
        segment = {words[0].text, segment.offset + words[0].offset};
    }
    return rawNumber(line, segment);
}

void takeValue(RawFilter& filter, std::string_view line, std::string_view key, Segment segment) {
    if (sameWord(key, "Fc")) {
        filter.frequency = frequencyOf(line, segment);
    } else if (sameWord(key, "Gain")) {
        filter.gain = firstNumber(line, segment, "dB");
    } else if (sameWord(key, "Q")) {
        filter.q = firstNumber(line, segment, {});
    } else if (sameWord(key, "BW")) {
        std::vector<Word> words = wordsOf(segment.text);
        if (!words.empty() && sameWord(words[0].text, "Oct")) {
            const std::size_t skipped = words[0].offset + words[0].text.size();
            segment = {segment.text.substr(skipped), segment.offset + skipped};
        }
        filter.octaves = firstNumber(line, segment, {});
    }
}

/// A slope that belongs to the type: "6dB", "9.6 dB".
std::size_t takeSlope(RawFilter& filter, std::string_view line, const std::vector<Word>& words,
                      std::size_t at) {
    if (at >= words.size() || words[at].text.empty() || !isDigit(words[at].text[0])) {
        return 0;
    }
    const std::string_view word = words[at].text;
    const std::size_t unit = findUnit(word, "dB");
    const bool apart =
        unit == std::string_view::npos && at + 1 < words.size() && sameWord(words[at + 1].text, "dB");
    if (unit == std::string_view::npos && !apart) {
        return 0;
    }
    filter.slope = rawNumber(line, {word.substr(0, unit), words[at].offset});
    filter.type.append(" ").append(word).append(apart ? "dB" : "");
    return apart ? 2 : 1;
}

}  // namespace

std::vector<Word> wordsOf(std::string_view line) {
    std::vector<Word> words;
    std::size_t begin = std::string_view::npos;
    for (std::size_t at = 0; at < line.size();) {
        const std::size_t blank = blankAt(line, at);
        if (blank == 0 && begin == std::string_view::npos) {
            begin = at;
        }
        if (blank != 0 && begin != std::string_view::npos) {
            words.push_back({line.substr(begin, at - begin), begin});
            begin = std::string_view::npos;
        }
        at += blank == 0 ? 1 : blank;
    }
    if (begin != std::string_view::npos) {
        words.push_back({line.substr(begin), begin});
    }
    return words;
}

std::string_view trimmed(std::string_view text) {
    const std::vector<Word> words = wordsOf(text);
    if (words.empty()) {
        return {};
    }
    return text.substr(words.front().offset,
                       words.back().offset + words.back().text.size() - words.front().offset);
}

bool sameWord(std::string_view one, std::string_view other) {
    return one.size() == other.size() && std::equal(one.begin(), one.end(), other.begin(),
                                                    [](char a, char b) { return lower(a) == lower(b); });
}

std::size_t columnOf(std::string_view line, std::size_t offset) {
    const std::string_view before = line.substr(0, offset);
    return 1 + static_cast<std::size_t>(std::count_if(before.begin(), before.end(), [](char byte) {
               return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
           }));
}

std::optional<RawFilter> readFilterLine(std::string_view line) {
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    const std::vector<Word> head = wordsOf(line.substr(0, colon));
    const bool numbered = head.size() == 2 && std::all_of(head[1].text.begin(), head[1].text.end(), isDigit);
    // "Filter1:" is written too.
    const bool glued = head.size() == 1 && head[0].text.size() > 6 &&
                       sameWord(head[0].text.substr(0, 6), "Filter") &&
                       std::all_of(head[0].text.begin() + 6, head[0].text.end(), isDigit);
    if (!glued && (head.empty() || head.size() > 2 || (head.size() == 2 && !numbered) ||
                   !sameWord(head[0].text, "Filter"))) {
        return std::nullopt;
    }
    const std::string_view whole = line.substr(0, line.find('#'));
    std::vector<Word> words = wordsOf(whole.substr(std::min(colon + 1, whole.size())));
    for (Word& word : words) {
        word.offset += colon + 1;
    }
    RawFilter filter;
    filter.endColumn = columnOf(line, trimmed(whole).empty() ? 0 : whole.size());
    std::size_t at = 0;
    if (!words.empty() && (sameWord(words[0].text, "ON") || sameWord(words[0].text, "OFF"))) {
        filter.isOn = sameWord(words[0].text, "ON");
        ++at;
    }
    if (at >= words.size()) {
        return filter;
    }
    filter.type = words[at].text;
    filter.typeColumn = columnOf(line, words[at].offset);
    ++at;
    at += takeSlope(filter, line, words, at);
    while (at < words.size()) {
        std::size_t next = at + 1;
        while (next < words.size() && !isKey(words[next].text)) {
            ++next;
        }
        if (isKey(words[at].text)) {
            const std::size_t begin = words[at].offset + words[at].text.size();
            const std::size_t end = next < words.size() ? words[next].offset : whole.size();
            takeValue(filter, line, words[at].text, {whole.substr(begin, end - begin), begin});
        }
        at = next;
    }
    return filter;
}

bool FilterTable::takeHead(std::string_view line) {
    char separator = ' ';
    for (const char candidate : {'\t', ';', ','}) {
        if (line.find(candidate) != std::string_view::npos) {
            separator = candidate;
            break;
        }
    }
    std::swap(separator, separator_);
    std::vector<std::string> names;
    for (const Word& cell : cellsOf(line)) {
        std::string name(cell.text);
        std::transform(name.begin(), name.end(), name.begin(), lower);
        names.push_back(std::move(name));
    }
    const auto has = [&](std::string_view name) {
        return std::find(names.begin(), names.end(), name) != names.end();
    };
    if (!has("type") || !has("frequency(hz)")) {
        std::swap(separator, separator_);
        return false;
    }
    columns_ = std::move(names);
    isCompound_ = false;
    return true;
}

std::vector<Word> FilterTable::cellsOf(std::string_view line) const {
    if (separator_ == ' ') {
        return wordsOf(line);
    }
    std::vector<Word> cells;
    std::size_t begin = 0;
    while (begin <= line.size()) {
        const std::size_t end = std::min(line.find(separator_, begin), line.size());
        std::string_view cell = trimmed(line.substr(begin, end - begin));
        if (cell.size() >= 2 && cell.front() == '"' && cell.back() == '"') {
            cell = trimmed(cell.substr(1, cell.size() - 2));
        }
        cells.push_back({cell, cell.empty() ? begin : static_cast<std::size_t>(cell.data() - line.data())});
        begin = end + 1;
    }
    return cells;
}

std::optional<RawFilter> FilterTable::take(std::string_view line) {
    if (takeHead(line)) {
        return std::nullopt;
    }
    if (columns_.empty()) {
        return std::nullopt;
    }
    const std::vector<Word> cells = cellsOf(line);
    const auto cell = [&](std::string_view name) -> const Word* {
        const auto column = std::find(columns_.begin(), columns_.end(), name);
        const auto index = static_cast<std::size_t>(column - columns_.begin());
        return column == columns_.end() || index >= cells.size() || cells[index].text.empty() ? nullptr
                                                                                              : &cells[index];
    };
    if (!cells.empty() && cells[0].text.size() > 8 && sameWord(cells[0].text.substr(0, 8), "Compound")) {
        isCompound_ = true;
        return std::nullopt;
    }
    const Word* const number = cell("number");
    const Word* const enabled = cell("enabled");
    const Word* const type = cell("type");
    const bool isRow = number != nullptr && std::all_of(number->text.begin(), number->text.end(), isDigit) &&
                       enabled != nullptr &&
                       (sameWord(enabled->text, "True") || sameWord(enabled->text, "False"));
    if (!isRow) {
        if (!cells.empty() && cells[0].text.size() > 8 && sameWord(cells[0].text.substr(0, 9), "Crossover")) {
            isCompound_ = false;
        }
        return std::nullopt;
    }
    RawFilter filter;
    filter.isOn = sameWord(enabled->text, "True");
    filter.endColumn = columnOf(line, line.size());
    const auto value = [&](std::string_view name) -> std::optional<RawNumber> {
        const Word* const found = cell(name);
        return found == nullptr
                   ? std::nullopt
                   : std::optional(RawNumber{std::string(found->text), columnOf(line, found->offset), 1.0});
    };
    if (type != nullptr) {
        filter.type = type->text;
        filter.typeColumn = columnOf(line, type->offset);
    }
    filter.frequency = value("frequency(hz)");
    filter.gain = value("gain(db)");
    filter.q = value("q");
    filter.slope = value("slope_db/oct");
    filter.isCompound = isCompound_ || value("frequency2(hz)") || value("frequency2");
    if (const Word* const shape = cell("shape"); shape != nullptr) {
        filter.shape = shape->text;
    }
    return filter;
}

}  // namespace tessavo
