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

inline constexpr std::size_t volumeGainCount = 303;  ///< entries of the table

/// The steps of the target's volume, from the loudest to the softest.
///
/// Entry j has the level 42.0 - 0.5 j dB and the word round(10^(level / 20) 2^24), down to -108.5 dB. The
/// last entry, -108.9 dB with the word 60, is not a whole step below the one before it.
[[nodiscard]] const std::array<VolumeGainEntry, volumeGainCount>& volumeGainTable();

/// Range of volume and group gain together.
inline constexpr float lowestChannelGainDb = -6.0F;
inline constexpr float highestChannelGainDb = 18.0F;

/// Gain word of a volume and a group gain, both in dB. Their sum is formed in single precision, clamped to -6
/// to +18 dB (NaN counts as -6) and rounded down to the table's steps of 0.5 dB.
[[nodiscard]] std::uint32_t gainWordOf(float volumeDb, float groupGainDb);

/// Level in dB that a received gain word stands for: that of the first entry whose word is not greater, where
/// the search begins at the second entry. Where all words are greater, it is the level of the last entry.
[[nodiscard]] double levelOfGainWord(std::uint32_t gainWord);

/// Steps of the table from the level of a gain word down to -6 dB; 0 for a lower one. A word between two entries has the
/// level of the lower one.
[[nodiscard]] unsigned stepsAboveLowest(std::uint32_t gainWord);

/// The gain word so many steps of the table lower, but not below -6 dB. A word that is not higher than that stays as it
/// is, and so does every word for 0 steps.
[[nodiscard]] std::uint32_t loweredGainWord(std::uint32_t gainWord, unsigned steps);

/// Delay in samples for a delay and a group delay in ms: their sum at 49.5 samples per ms, rounded to the
/// nearest sample. A negative sum gives 0.
[[nodiscard]] std::uint32_t delaySamplesOf(float delayMs, float groupDelayMs);

/// Delay in ms that a received number of samples stands for, at 48 samples per ms. The rates differ on
/// purpose: this is not the inverse of delaySamplesOf().
[[nodiscard]] float delayOfSamples(std::uint32_t samples);

}  // namespace tessavo
