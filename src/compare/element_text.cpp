#include "compare/element_text.h"

#include <array>
#include <cstring>

#include "base/number_text.h"
#include "history/element_words.h"

namespace tessavo {

namespace {

struct OwnName {
    FieldId field;
    std::string_view name;
};
// Names that would be another's, or none, without what stands around them on the page.
constexpr auto ownNames = std::to_array<OwnName>({
    {FieldId::groupGain, "Group gain"},
    {FieldId::groupDelay, "Group delay"},
    {FieldId::channelFlag, "Channel flag"},
    {FieldId::invertPhase, "Invert Phase"},
    {FieldId::turnOffDelay, "Long turn-off delay time"},
    {FieldId::delaySize1Last, "Delay size 1 last copy"},
});
constexpr std::array<std::string_view, toneBandCount> toneNames{"Bass", "Mid", "Treble"};

std::string withCapital(std::string text) {
    if (!text.empty() && text.front() >= 'a' && text.front() <= 'z') {
        text.front() = static_cast<char>(text.front() - 'a' + 'A');
    }
    return text;
}

// "3K", as above the slider of the band.
std::string headOf(std::size_t band) {
    constexpr double thousand = 1000;
    const double frequency = fieldOf(FieldId::inputBandFrequency).defaults[band];
    return frequency < thousand ? shortestText(frequency) : shortestText(frequency / thousand).append("K");
}

// What of its group an element belongs to: "Filter 2", "Equalizer 3K"; empty for what a group has once.
std::string partOf(const Field& field, FieldIndex index) {
    std::string part;
    if (familyOf(field) == ElementFamily::input) {
        if (field.outer.count == toneBandCount) {
            return std::string(toneNames.at(index.outer));
        }
        return part.append("Equalizer ").append(headOf(index.outer));
    }
    if (field.id == FieldId::routerSource) {
        return channelList(std::array{index.outer});
    }
    if (field.inner.count == bandCount) {
        return part.append("Filter ").append(std::to_string(index.inner + 1));
    }
    if (field.inner.count == crossoverCount) {
        return part.append("Crossover ").append(std::to_string(index.inner + 1));
    }
    return field.path.starts_with("limiter[]") ? "Limiter" : "";
}

std::string bitsOf(const ParameterSet& set, const Field& field, FieldIndex index) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, reinterpret_cast<const unsigned char*>(&set) + recordOffsetOf(field, index),
                widthOf(field.type));
    return std::string("0x").append(hexNumber(bits, 2 * widthOf(field.type)));
}

std::string allDigits(const ParameterSet& set, const Field& field, FieldIndex index) {
    std::string text = field.type == FieldType::f32
                           ? shortestText(static_cast<float>(storedValue(set, field, index)))
                           : shortestText(shownValue(set, field, index));
    if (text.starts_with('-')) {
        text.replace(0, 1, "\u2212");
    }
    if (!field.unit.empty()) {
        text.append(" ").append(field.unit);
    }
    return text;
}

}  // namespace

CompareGroupKind groupKindOf(const SetElement& element) {
    if (element.kind != ElementKind::field) {
        return CompareGroupKind::set;
    }
    const Field& field = fieldOf(element.field);
    if (field.outer.count == channelCount && field.id != FieldId::routerSource) {
        return CompareGroupKind::channel;
    }
    switch (element.field) {
        case FieldId::inputEqOn:
        case FieldId::inputGain:
        case FieldId::powerampGain:
        case FieldId::preampGain:
        case FieldId::lineInGain:
        case FieldId::suppression:
        case FieldId::gainDetectionLevel:
        case FieldId::pone:
        case FieldId::compressorGain:
        case FieldId::compressorLowerLimit:
        case FieldId::expanderFactor:
        case FieldId::expanderUpperLimit:
        case FieldId::compressorAttack:
        case FieldId::compressorRelease:
        case FieldId::compressorCrossover:
        case FieldId::compressorDisabled:
            return CompareGroupKind::input;
        default:
            return familyOf(field) == ElementFamily::input ? CompareGroupKind::input
                                                           : CompareGroupKind::router;
    }
}

std::string shortNameOf(const SetElement& element) {
    if (element.kind != ElementKind::field) {
        return element.kind == ElementKind::name ? "Name" : "Version";
    }
    for (const OwnName& own : ownNames) {
        if (own.field == element.field) {
            return std::string(own.name);
        }
    }
    const Field& field = fieldOf(element.field);
    std::string name = partOf(field, element.index);
    const std::string value = nameOf(field, element.index);
    if (name.empty()) {
        return withCapital(value);
    }
    if (!value.empty()) {
        name.append(" ").append(value);
    }
    return name;
}

std::pair<std::string, std::string> elementTexts(const Field& field, FieldIndex index,
                                                 const ParameterSet& left, const ParameterSet& right) {
    std::pair<std::string, std::string> texts{valueText(field, storedValue(left, field, index)),
                                              valueText(field, storedValue(right, field, index))};
    const std::string leftBits = bitsOf(left, field, index);
    const std::string rightBits = bitsOf(right, field, index);
    if (texts.first == texts.second && leftBits != rightBits) {
        texts = {allDigits(left, field, index), allDigits(right, field, index)};
        if (texts.first == texts.second) {
            texts.first.append(" (").append(leftBits).append(")");
            texts.second.append(" (").append(rightBits).append(")");
        }
    }
    return texts;
}

}  // namespace tessavo
