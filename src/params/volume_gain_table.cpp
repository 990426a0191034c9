#include "params/volume_gain_table.h"

#include <algorithm>
#include <cmath>

#include "base/saturate.h"
#include "dsp/filter_kind.h"

namespace tessavo {

namespace {

constexpr double highestLevelDb = 42.0;
constexpr double levelStepDb = 0.5;
constexpr auto lowestChannelEntry =
    static_cast<std::size_t>((highestLevelDb - static_cast<double>(lowestChannelGainDb)) / levelStepDb);
constexpr double unityGainWord = 16777216.0;
constexpr double receivedSamplesPerMs = 48.0;

std::array<VolumeGainEntry, volumeGainCount> makeTable() {
    std::array<VolumeGainEntry, volumeGainCount> table{};
    for (std::size_t j = 0; j + 1 < table.size(); ++j) {
        const double level = highestLevelDb - levelStepDb * static_cast<double>(j);
        const double word = std::pow(10.0, level / 20.0) * unityGainWord;
        table[j] = {level, truncateTo<std::uint32_t>(std::floor(word + 0.5))};
    }
    table.back() = {-108.9, 60};
    return table;
}

}  // namespace

const std::array<VolumeGainEntry, volumeGainCount>& volumeGainTable() {
    static const auto table = makeTable();
    return table;
}

std::uint32_t gainWordOf(float volumeDb, float groupGainDb) {
    float sum = volumeDb + groupGainDb;
    if (!(sum >= lowestChannelGainDb)) {
        sum = lowestChannelGainDb;
    }
    sum = std::min(sum, highestChannelGainDb);
    const auto level = static_cast<double>(sum);
    const auto& table = volumeGainTable();
    const auto entry =
        std::find_if(table.begin(), table.end() - 1, [&](const auto& e) { return e.levelDb <= level; });
    return entry->gainWord;
}

double levelOfGainWord(std::uint32_t gainWord) {
    const auto& table = volumeGainTable();
    const auto entry = std::find_if(table.begin() + 1, table.end() - 1,
                                    [&](const auto& e) { return e.gainWord <= gainWord; });
    return entry->levelDb;
}

unsigned stepsAboveLowest(std::uint32_t gainWord) {
    const auto& table = volumeGainTable();
    const auto lowest = table.begin() + lowestChannelEntry;
    const auto entry =
        std::find_if(table.begin(), lowest, [&](const auto& e) { return e.gainWord <= gainWord; });
    return static_cast<unsigned>(lowest - entry);
}

std::uint32_t loweredGainWord(std::uint32_t gainWord, unsigned steps) {
    const unsigned room = stepsAboveLowest(gainWord);
    if (steps == 0 || room == 0) {
        return gainWord;
    }
    return volumeGainTable()[lowestChannelEntry - (room - std::min(room, steps))].gainWord;
}

std::uint32_t delaySamplesOf(float delayMs, float groupDelayMs) {
    const double total = static_cast<double>(delayMs) + static_cast<double>(groupDelayMs);
    return truncateTo<std::uint32_t>(total * responseSamplingRateHz / 1000.0 + 0.5);
}

float delayOfSamples(std::uint32_t samples) {
    return static_cast<float>((static_cast<double>(samples) - 0.5) / receivedSamplesPerMs);
}

}  // namespace tessavo
