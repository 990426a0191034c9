#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tessavo {

/// One step of the target's volume: a level and the linear gain with 24 fraction bits that stands for it.
struct VolumeGainEntry {
    double levelDb;
    std::uint32_t gainWord;
};

inline constexpr std::size_t volumeGainCount = 303;

/// Entry j is 42.0 - 0.5 j dB with the word round(10^(level / 20) 2^24), down to -108.5 dB; a last entry of
/// -108.9 dB with the word 60 ends the table.
[[nodiscard]] const std::array<VolumeGainEntry, volumeGainCount>& volumeGainTable();

inline constexpr float lowestChannelGainDb = -6.0F;
inline constexpr float highestChannelGainDb = 18.0F;

/// Gain word of a volume and a group gain in dB: their sum as a single, clamped to -6 ... +18 dB (NaN to -6),
/// rounded down to the table's 0.5 dB grid.
[[nodiscard]] std::uint32_t gainWordOf(float volumeDb, float groupGainDb);

/// Level in dB of a received gain word: that of the first entry, from the second on, whose word is not
/// greater; the last entry's where all are greater.
[[nodiscard]] double levelOfGainWord(std::uint32_t gainWord);

/// Samples of a delay and a group delay in ms, at 49.5 samples per ms, rounded to the nearest sample; below 0
/// gives 0.
[[nodiscard]] std::uint32_t delaySamplesOf(float delayMs, float groupDelayMs);

/// Delay in ms that a received number of samples stands for, at 48 samples per ms: on purpose not the inverse
/// of delaySamplesOf().
[[nodiscard]] float delayOfSamples(std::uint32_t samples);

}  // namespace tessavo
