#include "history/image_changes.h"

#include <algorithm>
#include <span>
#include <vector>

#include "history/element_words.h"

namespace tessavo {

namespace {

using Numbers = std::vector<std::size_t>;

template <typename Value>
bool differ(const Value& one, const Value& other) {
    return !std::ranges::equal(std::as_bytes(std::span(&one, 1)), std::as_bytes(std::span(&other, 1)));
}

std::size_t differingBytes(std::span<const std::uint8_t> one, std::span<const std::uint8_t> other) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < one.size(); ++i) {
        count += one[i] != other[i] ? 1U : 0U;
    }
    return count;
}

std::span<const std::uint8_t> bytesOfImage(const ParameterImage& image) {
    return {reinterpret_cast<const std::uint8_t*>(&image), sizeof image};
}

// The channels of which only the phase byte differs, where nothing else does.
std::string phaseText(const ParameterImage& before, const ParameterImage& after) {
    ParameterImage with = before;
    Numbers channels;
    bool isSame = true;
    for (std::size_t c = 0; c < channelCount; ++c) {
        const std::uint8_t phase = after.channels[c].invertPhase;
        if (phase != before.channels[c].invertPhase) {
            channels.push_back(c);
            isSame = isSame && phase == after.channels[channels.front()].invertPhase;
        }
        with.channels[c].invertPhase = phase;
    }
    if (channels.empty() || differ(with, after)) {
        return {};
    }
    std::string text = channelList(channels) + ", phase of what plays";
    if (isSame) {
        text += ' ';
        text += valueText(fieldOf(FieldId::invertPhase), after.channels[channels.front()].invertPhase);
    }
    return text;
}

std::string bypassText(const ParameterImage& before, const ParameterImage& after) {
    ParameterImage with = before;
    with.inputRow0.bypass = after.inputRow0.bypass;
    with.inputRow1.bypass = after.inputRow1.bypass;
    if (differ(with, after)) {
        return {};
    }
    const std::uint8_t bypass = after.inputRow0.bypass;
    // The switch names what plays, whatever the set says.
    return bypass > 1    ? "Input EQ code " + std::to_string(bypass)
           : bypass == 0 ? "Input EQ on"
                         : "Input EQ off";
}

// The bands or crossovers whose coefficients differ, where no more than one block of them does.
template <typename Table>
std::string coefficientText(const Table& before, const Table& after, FieldId field) {
    Numbers outer;
    Numbers inner;
    std::size_t count = 0;
    const auto addTo = [](Numbers& numbers, std::size_t number) {
        if (std::find(numbers.begin(), numbers.end(), number) == numbers.end()) {
            numbers.push_back(number);
        }
    };
    for (std::size_t c = 0; c < before.size(); ++c) {
        for (std::size_t i = 0; i < before[c].size(); ++i) {
            if (before[c][i] != after[c][i]) {
                addTo(outer, c);
                addTo(inner, i);
                ++count;
            }
        }
    }
    if (count == 0 || count != outer.size() * inner.size()) {
        return {};
    }
    std::sort(inner.begin(), inner.end());
    const ElementPlace place = placeOf(fieldOf(field), outer, inner);
    return place.outer + ", " + place.inner + " computed anew";
}

std::string computedText(const TuningSnapshot& before, const TuningSnapshot& after) {
    const bool bandsDiffer = before.bandWords != after.bandWords;
    const bool crossoversDiffer = before.crossoverWords != after.crossoverWords;
    const bool inputDiffers = before.inputWords != after.inputWords;
    std::string text;
    if (bandsDiffer && !crossoversDiffer && !inputDiffers) {
        text = coefficientText(before.bandWords, after.bandWords, FieldId::bandGain);
    } else if (crossoversDiffer && !bandsDiffer && !inputDiffers) {
        text = coefficientText(before.crossoverWords, after.crossoverWords, FieldId::crossoverFrequency);
    } else if (inputDiffers && !bandsDiffer && !crossoversDiffer) {
        text = "Input computed anew";
    }
    return !text.empty() || (!bandsDiffer && !crossoversDiffer && !inputDiffers) ? text
                                                                                 : "Filters computed anew";
}

std::string receiptText(const TuningSnapshot& before, const TuningSnapshot& after) {
    Numbers sets;
    for (std::size_t set = 0; set < setCount; ++set) {
        if (differ(before.received[set], after.received[set])) {
            sets.push_back(set + 1);
        }
    }
    return sets.size() == 1 ? "What set " + std::to_string(sets.front()) + " was received with"
                            : "What " + countWords(sets.size(), "set") + " were received with";
}

}  // namespace

std::string describeImageChange(const TuningSnapshot& before, const TuningSnapshot& after) {
    // An edit that computes coefficients anew changes them in the image as well.
    if (std::string text = computedText(before, after); !text.empty()) {
        return text;
    }
    if (const std::size_t bytes = differingBytes(bytesOfImage(before.image), bytesOfImage(after.image))) {
        std::string text = phaseText(before.image, after.image);
        if (text.empty()) {
            text = bypassText(before.image, after.image);
        }
        return text.empty() ? countWords(bytes, "byte") + " of what plays" : text;
    }
    if (differ(before.received, after.received)) {
        return receiptText(before, after);
    }
    return "Set " + std::to_string(after.currentSet + 1) + " chosen";
}

}  // namespace tessavo
