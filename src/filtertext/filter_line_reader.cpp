#include "filtertext/filter_line_reader.h"

#include <algorithm>
#include <array>

#include "filtertext/filter_types.h"
#include "filtertext/written_value.h"

namespace tessavo {

namespace {

/// The name of a value.
enum class Key : std::uint8_t { frequency, gain, q, bandwidth, decayTime };

struct KeyWord {
    std::string_view word;
    Key key = Key::frequency;
};

constexpr std::array keyWords{
    KeyWord{"fc", Key::frequency},
    KeyWord{"frequency", Key::frequency},
    KeyWord{"freq", Key::frequency},
    KeyWord{"gain", Key::gain},
    KeyWord{"q", Key::q},
    KeyWord{"bandwidth", Key::bandwidth},
    KeyWord{"bw", Key::bandwidth},
    KeyWord{"t60", Key::decayTime},
};

struct FoundKey {
    Key key = Key::frequency;
    std::size_t begin = 0;
    std::size_t end = 0;
};

bool mayFollowKey(char character) {
    return isBlank(character) || isDigit(character) ||
           std::string_view(":=+-.,/").find(character) != std::string_view::npos;
}

/// The name that begins at a place, which is where a word begins.
std::optional<FoundKey> keyAt(std::string_view plain, std::size_t at, std::size_t end) {
    for (const KeyWord& known : keyWords) {
        const std::size_t behind = at + known.word.size();
        if (behind <= end && isWordAt(plain, at, known.word) &&
            (behind == end || mayFollowKey(plain[behind]))) {
            return FoundKey{known.key, at, behind};
        }
    }
    return std::nullopt;
}

bool beginsWord(std::string_view plain, std::size_t at) {
    return isBlank(plain[at - 1]) || plain[at - 1] == ',' || plain[at - 1] == ';';
}

std::optional<FoundKey> nextKey(std::string_view plain, std::size_t begin, std::size_t end) {
    for (std::size_t at = std::max<std::size_t>(begin, 1); at < end; ++at) {
        if (beginsWord(plain, at) && isLetter(plain[at])) {
            if (const auto key = keyAt(plain, at, end)) {
                return key;
            }
        }
    }
    return std::nullopt;
}

/// Where a remark begins that a '#' behind a blank opens.
std::size_t remarkBegin(std::string_view plain, std::size_t begin) {
    for (std::size_t at = plain.find('#', begin); at != std::string_view::npos;
         at = plain.find('#', at + 1)) {
        if (at > 0 && isBlank(plain[at - 1])) {
            return at;
        }
    }
    return plain.size();
}

/// Words behind a value are a remark; numbers there may be a value under a name that nobody knows.
void checkRest(const LineText& line, std::size_t begin, std::size_t end, WrittenFilter& filter) {
    const std::string_view plain = line.plain();
    std::size_t first = begin;
    while (first < end && (isBlank(plain[first]) || plain[first] == ',' || plain[first] == ';')) {
        ++first;
    }
    if (first == end || std::string_view("#(/[*\"").find(plain[first]) != std::string_view::npos) {
        return;
    }
    const std::string_view rest = plain.substr(first, end - first);
    if (std::ranges::any_of(rest, isDigit)) {
        std::size_t last = end;
        while (isBlank(plain[last - 1])) {
            --last;
        }
        noteProblem(filter, first + 1, line.quoted(first, last).append(" is not understood"));
    }
}

std::string_view nameOf(Key key) {
    switch (key) {
        case Key::frequency:
            return "frequency";
        case Key::gain:
            return "gain";
        case Key::q:
            return "Q";
        default:
            return "bandwidth";
    }
}

void readBandwidth(const LineText& line, std::size_t begin, std::size_t end, WrittenFilter& filter) {
    const std::string_view plain = line.plain();
    std::size_t first = afterBlanks(plain, begin, end);
    const std::size_t behindUnit =
        std::max(afterUnit(plain, first, end, "oct"), afterUnit(plain, first, end, "octaves"));
    const bool isUnitFirst = behindUnit != first;
    const std::size_t behind = readValue(line, behindUnit, end, ValueUnit::octaves, filter.octaves);
    const auto number = numberAt(plain, afterBlanks(plain, behindUnit, end), end, NumberUse::other);
    const bool isUnitBehind = number && behind != number->end;
    if (filter.octaves.isThere && filter.octaves.problem.empty() && !isUnitFirst && !isUnitBehind) {
        filter.octaves.problem = "the bandwidth is not in octaves";
    }
    checkRest(line, behind, end, filter);
}

void readKey(const LineText& line, const FoundKey& key, std::size_t end, WrittenFilter& filter) {
    const std::string_view plain = line.plain();
    std::size_t begin = afterBlanks(plain, key.end, end);
    if (begin < end && (plain[begin] == ':' || plain[begin] == '=')) {
        ++begin;
    } else {
        begin = key.end;
    }
    if (key.key == Key::decayTime) {
        return;
    }
    const std::array<WrittenValue*, 4> values{&filter.frequency, &filter.gain, &filter.q, &filter.octaves};
    WrittenValue& value = *values.at(static_cast<std::size_t>(key.key));
    if (value.isThere) {
        noteProblem(filter, key.begin + 1, std::string("a second ").append(nameOf(key.key)));
        return;
    }
    if (key.key == Key::bandwidth) {
        readBandwidth(line, begin, end, filter);
        return;
    }
    constexpr std::array units{ValueUnit::hertz, ValueUnit::decibels, ValueUnit::none};
    const std::size_t behind =
        readValue(line, begin, end, units.at(static_cast<std::size_t>(key.key)), value);
    if (value.isThere && value.problem.empty()) {
        checkRest(line, behind, end, filter);
    }
}

/// Reads ON or OFF where it stands.
/// \return the place behind it
std::size_t readState(std::string_view plain, std::size_t begin, WrittenFilter& filter) {
    const std::size_t first = afterBlanks(plain, begin, plain.size());
    const std::size_t end = afterWord(plain, first, plain.size());
    filter.stateColumn = first + 1;
    const std::string word = end - first > 3 ? std::string() : lowerCase(plain.substr(first, end - first));
    if (word == "on" || word == "off") {
        filter.state = word == "on" ? WrittenState::on : WrittenState::off;
        return end;
    }
    return first;
}

/// The place behind "Filter 1:".
/// \return nothing where a line does not begin so
std::optional<std::size_t> afterFilterHead(std::string_view plain) {
    constexpr std::string_view word = "filter";
    const std::size_t begin = afterBlanks(plain, 0, plain.size());
    std::size_t at = begin + word.size();
    if (!isWordAt(plain, begin, word) || (at < plain.size() && isLetter(plain[at]))) {
        return std::nullopt;
    }
    bool hasNumber = false;
    while (at < plain.size() &&
           (isBlank(plain[at]) || isDigit(plain[at]) || plain[at] == '#' || plain[at] == '.')) {
        hasNumber = hasNumber || isDigit(plain[at]);
        ++at;
    }
    if (at < plain.size() && plain[at] == ':') {
        return at + 1;
    }
    // Prose begins so too. Without a colon a number must stand there or a state, and then a type.
    WrittenFilter tried;
    const std::size_t behindState = readState(plain, at, tried);
    const std::size_t type = afterBlanks(plain, behindState, plain.size());
    const bool isAlone = type == plain.size() && (hasNumber || tried.state != WrittenState::missing);
    const std::size_t typeEnd = afterWord(plain, type, plain.size());
    const bool hasType = typeEnd > type && filterType(plain.substr(type, typeEnd - type)) != nullptr;
    if (isAlone || (hasType && (tried.state != WrittenState::missing ||
                                (hasNumber && nextKey(plain, typeEnd, plain.size()))))) {
        return at;
    }
    // A name in place of the number: "Filter bass: ON PK".
    const std::size_t colon = plain.find(':', at);
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    WrittenFilter named;
    static_cast<void>(readState(plain, colon + 1, named));
    return named.state == WrittenState::missing ? std::nullopt : std::optional(colon + 1);
}

}  // namespace

std::optional<WrittenFilter> filterOfLine(const LineText& line) {
    const std::string_view plain = line.plain();
    const auto head = afterFilterHead(plain);
    if (!head) {
        return std::nullopt;
    }
    WrittenFilter filter;
    const std::size_t behindState = readState(plain, *head, filter);
    std::size_t end = remarkBegin(plain, behindState);
    while (end > behindState && isBlank(plain[end - 1])) {
        --end;
    }
    filter.endColumn = end + 1;
    auto key = nextKey(plain, behindState, end);
    const std::size_t typeLimit = key ? key->begin : end;
    const std::size_t behindType = readType(line, behindState, typeLimit, filter);
    checkRest(line, behindType, typeLimit, filter);
    while (key) {
        const auto following = nextKey(plain, key->end, end);
        readKey(line, *key, following ? following->begin : end, filter);
        key = following;
    }
    return filter;
}

std::optional<WrittenValue> preampOfLine(const LineText& line) {
    constexpr std::string_view word = "preamp";
    const std::string_view plain = line.plain();
    const std::size_t begin = afterBlanks(plain, 0, plain.size());
    if (!isWordAt(plain, begin, word)) {
        return std::nullopt;
    }
    std::size_t at = afterBlanks(plain, begin + word.size(), plain.size());
    const bool hasColon = at < plain.size() && plain[at] == ':';
    at += hasColon ? 1U : 0U;
    const std::size_t end = remarkBegin(plain, at);
    const auto number = numberAt(plain, afterBlanks(plain, at, end), end, NumberUse::other);
    if (!hasColon && !number) {
        return std::nullopt;
    }
    WrittenValue value;
    const std::size_t behind = readValue(line, at, end, ValueUnit::decibels, value);
    WrittenFilter rest;
    checkRest(line, behind, end, rest);
    if (value.isThere && value.problem.empty() && !rest.problem.empty()) {
        value.problem = rest.problem;
        value.column = rest.problemColumn;
    }
    return value;
}

}  // namespace tessavo
