#include "filtertext/filter_types.h"

#include <algorithm>
#include <array>

#include "filtertext/written_value.h"

namespace tessavo {

namespace {

constexpr FilterType filter(std::string_view word, FilterShape shape, bool isCentre = false,
                            bool needsQ = false) {
    return {word, TypeUse::filter, shape, isCentre, needsQ, {}};
}

constexpr FilterType refused(std::string_view word, std::string_view reason) {
    return {word, TypeUse::refused, FilterShape::peak, false, false, reason};
}

constexpr std::string_view notch = "a notch; the target has none";
constexpr std::string_view allPass = "an all-pass; the target has none";
constexpr std::string_view bandPass = "a band-pass; the target has none";

constexpr std::array types{
    filter("pk", FilterShape::peak, true, true),
    filter("peq", FilterShape::peak, true, true),
    filter("modal", FilterShape::peak, true, true),
    filter("ls", FilterShape::lowShelf),
    filter("lsc", FilterShape::lowShelf, true),
    filter("lsq", FilterShape::lowShelf, true),
    filter("hs", FilterShape::highShelf),
    filter("hsc", FilterShape::highShelf, true),
    filter("hsq", FilterShape::highShelf, true),
    filter("lp", FilterShape::lowPass),
    filter("lowpass", FilterShape::lowPass),
    filter("lpq", FilterShape::lowPass, false, true),
    filter("hp", FilterShape::highPass),
    filter("highpass", FilterShape::highPass),
    filter("hpq", FilterShape::highPass, false, true),
    refused("no", notch),
    refused("notch", notch),
    refused("ap", allPass),
    refused("allpass", allPass),
    refused("bp", bandPass),
    refused("bandpass", bandPass),
    refused("iir", "coefficients of a filter; what it does is not told"),
    FilterType{"none", TypeUse::nothing, FilterShape::peak, false, false, {}},
};

bool isJoint(char character) {
    return isBlank(character) || character == '_' || character == '-';
}

/// The type whose word are the letters of a text up to its first digit.
const FilterType* typeOfLetters(std::string_view text) {
    std::string word;
    for (const char character : text) {
        if (isDigit(character)) {
            break;
        }
        if (!isJoint(character)) {
            word.push_back(character);
        }
    }
    const std::string lower = lowerCase(word);
    const auto* const found = std::ranges::find(types, lower, &FilterType::word);
    return found == types.end() ? nullptr : found;
}

std::size_t afterTypeWord(std::string_view plain, std::size_t at, std::size_t end) {
    while (at < end && !isBlank(plain[at]) && plain[at] != ',' && plain[at] != ';') {
        ++at;
    }
    return at;
}

}  // namespace

const FilterType* filterType(std::string_view name) {
    const std::size_t digit = std::min(name.find_first_of("0123456789"), name.size());
    // A number that is no slope makes it another type: "LP1" is of first order.
    if (digit < name.size() && lowerCase(name.substr(digit)).find("db") == std::string::npos) {
        return nullptr;
    }
    return typeOfLetters(name);
}

std::size_t readType(const LineText& line, std::size_t begin, std::size_t end, WrittenFilter& filter) {
    const std::string_view plain = line.plain();
    const std::size_t first = afterBlanks(plain, begin, end);
    filter.typeColumn = first + 1;
    const std::size_t wordEnd = afterTypeWord(plain, first, end);
    filter.type = line.original(first, wordEnd);
    std::size_t number = first;
    while (number < wordEnd && !isDigit(plain[number])) {
        ++number;
    }
    if (typeOfLetters(plain.substr(first, number - first)) == nullptr) {
        return wordEnd;
    }
    while (number < end && isJoint(plain[number])) {
        ++number;
    }
    const auto written = numberAt(plain, number, end, NumberUse::other);
    const std::size_t behind = written ? afterUnit(plain, written->end, end, "db") : number;
    if (!written || behind == written->end) {
        return wordEnd;
    }
    std::size_t typeEnd = behind;
    for (const std::string_view perOctave : {"/oct", "/octave"}) {
        typeEnd = std::max(typeEnd, afterUnit(plain, behind, end, perOctave));
    }
    static_cast<void>(readValue(line, number, behind, ValueUnit::decibels, filter.slope));
    filter.type = line.original(first, typeEnd);
    return typeEnd;
}

}  // namespace tessavo
