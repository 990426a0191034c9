#include "compare/group_terms.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "base/number_text.h"
#include "history/element_words.h"
#include "params/volume_gain_table.h"

namespace tessavo {

namespace {

constexpr double tenth = 10;
constexpr double hundredth = 100;

/// A value that gives the word, or why there is none.
struct Choice {
    std::optional<float> value;
    std::string trouble;  ///< what follows on "Channel 3 stays: "
};

std::string text(double value) {
    std::string digits = fixedText(value, 1);
    if (digits.starts_with('-')) {
        digits.replace(0, 1, "\u2212");
    }
    return digits;
}

Choice outOfRange(const Field& field, double needed) {
    const bool isLow = needed < field.minimum;
    Choice choice;
    choice.trouble.append("its ").append(nameOf(field, {})).append(" would have to be ");
    choice.trouble.append(text(needed)).append(" ").append(field.unit).append(", and ");
    choice.trouble.append(text(isLow ? field.minimum : field.maximum)).append(" ").append(field.unit);
    choice.trouble.append(isLow ? " is the least" : " is the most");
    return choice;
}

// The level of a word that an edit can give.
std::optional<double> levelOf(std::uint32_t gainWord) {
    const auto& table = volumeGainTable();
    const auto entry = std::ranges::find(table, gainWord, &VolumeGainEntry::gainWord);
    if (entry == table.end() || entry->levelDb < static_cast<double>(lowestChannelGainDb) ||
        entry->levelDb > static_cast<double>(highestChannelGainDb)) {
        return std::nullopt;
    }
    return entry->levelDb;
}

// The first tenth from the needed volume on that gives the word: the sum of two singles may be just below the step.
Choice chooseVolume(std::uint32_t gainWord, float groupGainDb) {
    const Field& field = fieldOf(FieldId::volume);
    const auto level = levelOf(gainWord);
    if (!level || !std::isfinite(groupGainDb)) {
        return {std::nullopt, "no volume gives the gain that was received"};
    }
    const double needed = *level - static_cast<double>(groupGainDb);
    // At both ends of the range of their sum many volumes give the same word.
    const double first = std::nearbyint(std::clamp(needed, field.minimum, field.maximum) * tenth);
    for (double tenths = first; tenths <= first + 5 && tenths <= field.maximum * tenth; ++tenths) {
        const auto volume = static_cast<float>(tenths / tenth);
        if (gainWordOf(volume, groupGainDb) == gainWord) {
            return {volume, {}};
        }
    }
    return outOfRange(field, needed);
}

// A tenth where one gives the samples, as a person would have set it; otherwise a hundredth, of which every sample has
// two.
Choice chooseDelay(std::uint32_t samples, float groupDelayMs) {
    const Field& field = fieldOf(FieldId::delay);
    constexpr double samplesPerMs = 49.5;
    const double needed = static_cast<double>(samples) / samplesPerMs - static_cast<double>(groupDelayMs);
    for (const double parts : {tenth, hundredth}) {
        const double held = std::clamp(needed, field.minimum, field.maximum);
        const auto delay = static_cast<float>(std::nearbyint(held * parts) / parts);
        if (delaySamplesOf(delay, groupDelayMs) == samples) {
            return {delay, {}};
        }
    }
    return outOfRange(field, needed);
}

bool hasTerm(const OutputChannelParams& params) {
    return params.groupGainDb != 0 || params.groupDelayMs != 0;
}

bool isInRange(FieldId id, float value) {
    const Field& field = fieldOf(id);
    return static_cast<double>(value) >= field.minimum && static_cast<double>(value) <= field.maximum;
}

// Values that already give what was received, with nothing to take out. No delay at all comes back as less than none.
bool isVolumeRight(const OutputChannelParams& params, const ChannelImageBlock& received) {
    return params.groupGainDb == 0 && isInRange(FieldId::volume, params.volumeDb) &&
           gainWordOf(params.volumeDb, 0) == received.gainWord;
}
bool isDelayRight(const OutputChannelParams& params, const ChannelImageBlock& received) {
    return params.groupDelayMs == 0 && isInRange(FieldId::delay, params.delayMs) &&
           delaySamplesOf(params.delayMs, 0) == received.delaySamples;
}

std::string takeOut(OutputChannelParams& params, const ChannelImageBlock& received, GroupTerms terms) {
    const bool isKept = terms == GroupTerms::kept;
    OutputChannelParams taken = params;
    taken.groupGainDb = isKept ? params.groupGainDb : 0;
    taken.groupDelayMs = isKept ? params.groupDelayMs : 0;
    if (!isVolumeRight(params, received)) {
        const Choice volume = chooseVolume(received.gainWord, taken.groupGainDb);
        if (!volume.value) {
            return volume.trouble;
        }
        taken.volumeDb = *volume.value;
    }
    if (!isDelayRight(params, received)) {
        const Choice delay = chooseDelay(received.delaySamples, taken.groupDelayMs);
        if (!delay.value) {
            return delay.trouble;
        }
        taken.delayMs = *delay.value;
    }
    params = taken;
    return {};
}

}  // namespace

bool hasGroupTerms(const ParameterSet& set) {
    return std::ranges::any_of(set.channels, hasTerm);
}

GroupTermsResult takeOutGroupTerms(const ParameterSet& set, const ParameterImage& image, GroupTerms terms) {
    GroupTermsResult result;
    result.record = set;
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const RecordChannel channel = recordChannelAt({position});
        OutputChannelParams& params = result.record.channels.at(channel.value);
        const std::array<std::size_t, 1> record{channel.value};
        const std::string trouble = takeOut(params, image.channels.at(channel.value), terms);
        if (!trouble.empty()) {
            result.stays.push_back(
                {channel, channelList(record).append(" stays: ").append(trouble).append(".")});
        } else if (hasTerm(set.channels.at(channel.value))) {
            result.taken.push_back(channel);
        }
    }
    return result;
}

}  // namespace tessavo
