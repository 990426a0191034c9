#include "history/element_words.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "base/number_text.h"

namespace tessavo {

namespace {

using Numbers = std::vector<std::size_t>;

// Names that the path does not give as the pages do.
struct OwnName {
    FieldId field;
    std::string_view name;
};
constexpr auto ownNames = std::to_array<OwnName>({
    {FieldId::inputEqOn, "input EQ"},
    {FieldId::groupGain, "gain"},
    {FieldId::gainGroup, "gain group"},
    {FieldId::groupDelay, "delay"},
    {FieldId::delayGroup, "delay group"},
    {FieldId::channelFlag, ""},
    {FieldId::routerSource, "source"},
    {FieldId::turnOffDelayOn, "long turn-off delay"},
    {FieldId::turnOffDelay, "long turn-off delay"},
    {FieldId::rearForSurround, "rear channels for surround"},
    {FieldId::pone, "PONE"},
    {FieldId::lineOutUse, "line-out use of channels 7 and 8"},
});
constexpr std::array<std::string_view, 4> decoderGainNames{"center gain", "panorama gain", "hall effect gain",
                                                           "rear to front mix gain"};
constexpr std::array<std::string_view, toneBandCount> toneNames{"Bass", "Mid", "Treble"};

// "channel[].band[]" of "channel[].band[].gain".
std::string_view groupOf(const Field& field) {
    const std::size_t dot = field.path.rfind('.');
    return dot == std::string_view::npos ? std::string_view() : field.path.substr(0, dot);
}

// The words of "activateLevel" in "limiter[].activateLevel".
std::vector<std::string> wordsOf(const Field& field) {
    std::vector<std::string> words(1);
    const auto isDigit = [](char letter) { return letter >= '0' && letter <= '9'; };
    for (const char letter : field.path.substr(field.path.rfind('.') + 1)) {
        const bool isUpper = letter >= 'A' && letter <= 'Z';
        if (isUpper || (isDigit(letter) && (words.back().empty() || !isDigit(words.back().back())))) {
            words.emplace_back();
        }
        if (letter != '[' && letter != ']') {
            words.back() += isUpper ? static_cast<char>(letter - 'A' + 'a') : letter;
        }
    }
    if (words.back() == "q") {
        words.back() = "Q";
    }
    return words;
}

bool isSwitch(const Field& field) {
    return field.minimum == 0 && field.maximum == 1 && field.unit.empty() && field.codes.empty();
}

// Words at the end of a switch's path that say what it means when it is 1.
bool saysOn(std::string_view word) {
    return word == "on" || word == "enabled";
}
bool saysOff(std::string_view word) {
    return word == "off" || word == "disabled";
}

std::string joined(std::span<const std::string> parts) {
    std::string text;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        text += i == 0 ? "" : i + 1 == parts.size() ? " and " : ", ";
        text += parts[i];
    }
    return text;
}

// "1, 3 and 5", "1 to 8".
std::string listOf(const Numbers& rising) {
    std::vector<std::string> parts;
    for (std::size_t i = 0; i < rising.size();) {
        std::size_t end = i + 1;
        while (end < rising.size() && rising[end] == rising[end - 1] + 1) {
            ++end;
        }
        // Two numbers in a row are no range to a reader.
        if (end - i < 3) {
            end = i + 1;
        }
        parts.push_back(std::to_string(rising[i]));
        if (end > i + 1) {
            parts.back() += " to " + std::to_string(rising[end - 1]);
        }
        i = end;
    }
    return joined(parts);
}

// "Filter 3", "Filters 1 to 8".
std::string numbered(std::string_view noun, Numbers numbers) {
    std::ranges::sort(numbers);
    return std::string(noun) + (numbers.size() > 1 ? "s " : " ") + listOf(numbers);
}

Numbers countedFromOne(std::span<const std::size_t> indexes) {
    Numbers numbers(indexes.begin(), indexes.end());
    for (std::size_t& number : numbers) {
        ++number;
    }
    return numbers;
}

Numbers groupNumbers(std::span<const std::size_t> records) {
    Numbers numbers;
    for (const std::size_t record : records) {
        numbers.push_back(channelCheckBoxMap.at(record));
    }
    return numbers;
}

std::string inputBandList(const Field& field, std::span<const std::size_t> bands) {
    const bool isTone = field.outer.count == toneBandCount;
    std::vector<std::string> names;
    for (const std::size_t band : bands) {
        names.push_back(isTone ? std::string(toneNames.at(band))
                               : shortestText(fieldOf(FieldId::inputBandFrequency).defaults[band]) + " Hz");
    }
    return joined(names);
}

// What of a channel the field belongs to.
std::string partOfChannel(const Field& field, std::span<const std::size_t> inner) {
    const std::string_view group = groupOf(field);
    if (group == "channel[].band[]") {
        return numbered("Filter", countedFromOne(inner));
    }
    if (group == "channel[].crossover[]") {
        return numbered("Crossover Filter", countedFromOne(inner));
    }
    return group == "limiter[]" ? "Limiter" : "";
}

std::string numberText(double value, int decimals) {
    // Longer than any menu; no field means such a number.
    constexpr double tooLong = 1e7;
    std::string text = std::abs(value) < tooLong ? fixedText(value, decimals) : shortNumber(value);
    const bool isZero = text.find_first_of("123456789n") == std::string::npos;
    if (text.starts_with('-')) {
        text.replace(0, 1, isZero ? "" : "\u2212");
    }
    return text;
}

std::string decoderGainText(double stored) {
    const double highest = fieldOf(FieldId::decoderGain).maximum;
    return stored == 0 ? "\u2212Inf. dB" : numberText((stored - highest) / 10, 1) + " dB";
}

}  // namespace

ElementFamily familyOf(const Field& field) {
    switch (field.id) {
        case FieldId::groupGain:
        case FieldId::gainGroup:
        case FieldId::groupDelay:
        case FieldId::delayGroup:
            return ElementFamily::outputGroup;
        case FieldId::channelFlag:
            return ElementFamily::channelFlag;
        default:
            break;
    }
    if (field.outer.count == channelCount) {
        return ElementFamily::channel;
    }
    const std::string_view group = groupOf(field);
    return group == "inputBand[]" || group == "tone[]" ? ElementFamily::input : ElementFamily::set;
}

bool standTogether(const Field& one, const Field& other) {
    return familyOf(one) == familyOf(other) && groupOf(one) == groupOf(other) &&
           one.outer.count == other.outer.count;
}

ElementPlace placeOf(const Field& field, std::span<const std::size_t> outer,
                     std::span<const std::size_t> inner) {
    switch (familyOf(field)) {
        case ElementFamily::set:
            return {};
        case ElementFamily::input:
            return {"Input", "Input", inputBandList(field, outer)};
        case ElementFamily::channelFlag:
            return {numbered("Channel flag", groupNumbers(outer)), countWords(outer.size(), "channel flag"),
                    ""};
        case ElementFamily::outputGroup:
            return {"Output Group, " + numbered("Channel", groupNumbers(outer)),
                    "Output Group, " + countWords(outer.size(), "channel"), ""};
        case ElementFamily::channel:
            break;
    }
    return {channelList(outer), countWords(outer.size(), "channel"), partOfChannel(field, inner)};
}

std::string channelList(std::span<const std::size_t> records) {
    Numbers numbers;
    for (const std::size_t record : records) {
        const auto position = std::ranges::find(channelMap, record);
        numbers.push_back(static_cast<std::size_t>(position - channelMap.begin()) + 1);
    }
    return numbered("Channel", std::move(numbers));
}

std::string nameOf(const Field& field, FieldIndex index) {
    if (field.id == FieldId::decoderGain) {
        return std::string(decoderGainNames.at(index.outer));
    }
    const auto own = std::ranges::find(ownNames, field.id, &OwnName::field);
    if (own != ownNames.end()) {
        return std::string(own->name);
    }
    std::vector<std::string> words = wordsOf(field);
    if (isSwitch(field) && (saysOn(words.back()) || saysOff(words.back()))) {
        words.pop_back();
    }
    std::string name;
    for (const std::string& word : words) {
        name += (name.empty() ? "" : " ") + word;
    }
    if (familyOf(field) == ElementFamily::set && field.outer.count > 1) {
        name += ' ';
        name += std::to_string(index.outer + 1);
    }
    return name;
}

std::string valueText(const Field& field, double stored) {
    if (field.id == FieldId::decoderGain) {
        return decoderGainText(stored);
    }
    if (const FieldCode* code = codeOf(field, stored)) {
        return std::string(code->shown);
    }
    const bool hasWords = isSwitch(field);
    if (hasWords && (stored == 0 || stored == 1)) {
        return (stored == 1) != saysOff(wordsOf(field).back()) ? "on" : "off";
    }
    if (hasWords || !field.codes.empty()) {
        return "code " + numberText(stored, 0);
    }
    std::string text = numberText(stored / field.storedPerShown, shownDecimals(field));
    if (!field.unit.empty()) {
        text += ' ';
        text += field.unit;
    }
    return text;
}

std::string countWords(std::size_t count, std::string_view noun) {
    return std::to_string(count) + ' ' + std::string(noun) + (count == 1 ? "" : "s");
}

}  // namespace tessavo
