#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "params/channels.h"

namespace tessavo {

/// One equalizer band, in the record and in the image alike.
struct EqBandParams {
    std::uint8_t type = 0;  ///< code of a BandType
    std::uint8_t spare1 = 0;
    std::uint16_t frequencyHz = 0;
    float gainDb = 0;
    float q = 0;
    std::uint8_t off = 0;  ///< 1 = bypassed
    std::array<std::uint8_t, 3> spare13{};
};

/// One crossover filter, in the record and in the image alike.
struct CrossoverParams {
    std::uint8_t enabled = 0;  ///< 1 = in circuit
    std::uint8_t kind = 0;     ///< code of a CrossoverKind
    std::uint16_t frequencyHz = 0;
    std::uint8_t order = 0;  ///< 2 or 4
    std::uint8_t spare5 = 0;
};

/// Everything of one output channel but its limiter.
struct OutputChannelParams {
    std::array<EqBandParams, bandCount> bands{};
    std::array<CrossoverParams, crossoverCount> crossovers{};
    float volumeDb = 0;
    float groupGainDb = 0;        ///< what the channel's output group adds to the volume
    std::uint32_t gainGroup = 0;  ///< 0 to 7 for A to H
    std::uint8_t channelFlag = 0;
    std::uint8_t invertPhase = 0;
    std::array<std::uint8_t, 2> spare154{};
    float delayMs = 0;
    float groupDelayMs = 0;        ///< what the channel's output group adds to the delay
    std::uint32_t delayGroup = 0;  ///< 0 to 7 for A to H
};

/// Limiter of one channel, in the record and in the image alike. Levels in tenths of a dB.
struct LimiterParams {
    std::int32_t attackMs = 0;
    std::int32_t releaseMs = 0;
    std::int32_t gainTenthDb = 0;
    std::int32_t activateTenthDb = 0;
    std::int32_t deactivateTenthDb = 0;
    std::uint8_t enabled = 0;
    std::array<std::uint8_t, 3> spare21{};
};

inline constexpr std::uint32_t parameterSetSize = 2120;  ///< in bytes
inline constexpr std::size_t textUnits = 64;  ///< UTF-16 units of a set's texts, the closing zero included

/// One parameter set as settings files hold it.
///
/// Offsets, widths and spare bytes are a binary format: the assertions below hold each of them. Units stand
/// in the names, "Tenth" for tenths; ranges and defaults stand in the field table. Spare bytes have no known
/// meaning; they survive loading and saving.
struct ParameterSet {
    std::uint32_t recordSize = 0;  ///< 2120 in a valid record
    std::uint8_t inputEqOn = 0;
    std::array<std::uint8_t, 3> spare5{};
    std::array<EqBandParams, toneBandCount> inputToneBands{};  ///< bass, middle, treble
    std::array<EqBandParams, inputBandCount> inputEqBands{};
    float inputGainDb = 0;
    std::uint8_t powerampGainDb = 0;
    std::int8_t preampGainDb = 0;
    std::array<std::uint8_t, 2> spare222{};
    std::array<OutputChannelParams, channelCount> channels{};  ///< by record channel
    std::array<std::uint8_t, channelCount> routerSource{};     ///< by record channel
    std::uint8_t surroundOff = 0;
    std::uint8_t roomSize = 0;
    std::uint8_t surroundMode = 0;
    std::uint8_t spare1579 = 0;
    std::array<char16_t, textUnits> setName{};
    std::array<char16_t, textUnits> setVersion{};
    std::int8_t lineInGainDb = 0;
    std::uint8_t suppression = 0;
    std::array<std::uint8_t, 2> spare1838{};
    std::uint32_t gainDetectionLevel = 0;
    std::uint8_t turnOffDelayOn = 0;
    std::uint8_t spare1845 = 0;
    std::uint16_t turnOffDelayMs = 0;
    std::array<std::uint16_t, 5> delaySize1Ms{};  ///< the first four share one word of the image
    std::array<std::uint8_t, 20> spare1858{};
    std::uint16_t delaySize2Ms = 0;
    std::array<std::uint16_t, 4> decoderGain{};  ///< center, panorama, hall effect, rear to front mix
    std::array<std::uint8_t, 16> spare1888{};
    std::uint8_t rearForSurround = 0;
    std::uint8_t spare1905 = 0;
    std::int16_t poneTenthDb = 0;
    std::int16_t compressorGainTenthDb = 0;
    std::int16_t compressorLowerLimitTenthDb = 0;
    std::int16_t expanderFactorTenth = 0;
    std::int16_t expanderUpperLimitTenthDb = 0;
    std::uint16_t compressorAttackMs = 0;
    std::uint16_t compressorReleaseMs = 0;
    std::uint16_t compressorCrossoverHz = 0;
    std::uint8_t compressorDisabled = 0;
    std::uint8_t spare1923 = 0;
    std::array<LimiterParams, channelCount> limiters{};  ///< by record channel
    std::uint8_t lineOutUse = 0;                         ///< channels 7 and 8 deactivated
    std::array<std::uint8_t, 3> spare2117{};
};

/// All five sets, set 0 first; the raw content of a settings file.
struct ParameterStore {
    std::array<ParameterSet, setCount> sets{};
};

inline constexpr std::size_t parameterStoreSize = 10600;  ///< in bytes

static_assert(std::is_trivially_copyable_v<ParameterStore>);
static_assert(sizeof(EqBandParams) == 16 && offsetof(EqBandParams, frequencyHz) == 2 &&
              offsetof(EqBandParams, gainDb) == 4 && offsetof(EqBandParams, q) == 8 &&
              offsetof(EqBandParams, off) == 12);
static_assert(sizeof(CrossoverParams) == 6 && offsetof(CrossoverParams, kind) == 1 &&
              offsetof(CrossoverParams, frequencyHz) == 2 && offsetof(CrossoverParams, order) == 4);
static_assert(
    sizeof(OutputChannelParams) == 168 && offsetof(OutputChannelParams, crossovers) == 128 &&
    offsetof(OutputChannelParams, volumeDb) == 140 && offsetof(OutputChannelParams, groupGainDb) == 144 &&
    offsetof(OutputChannelParams, gainGroup) == 148 && offsetof(OutputChannelParams, channelFlag) == 152 &&
    offsetof(OutputChannelParams, invertPhase) == 153 && offsetof(OutputChannelParams, delayMs) == 156 &&
    offsetof(OutputChannelParams, groupDelayMs) == 160 && offsetof(OutputChannelParams, delayGroup) == 164);
static_assert(sizeof(LimiterParams) == 24 && offsetof(LimiterParams, releaseMs) == 4 &&
              offsetof(LimiterParams, gainTenthDb) == 8 && offsetof(LimiterParams, activateTenthDb) == 12 &&
              offsetof(LimiterParams, deactivateTenthDb) == 16 && offsetof(LimiterParams, enabled) == 20);
static_assert(sizeof(ParameterSet) == parameterSetSize && sizeof(ParameterStore) == parameterStoreSize);
static_assert(
    offsetof(ParameterSet, inputEqOn) == 4 && offsetof(ParameterSet, inputToneBands) == 8 &&
    offsetof(ParameterSet, inputEqBands) == 56 && offsetof(ParameterSet, inputGainDb) == 216 &&
    offsetof(ParameterSet, powerampGainDb) == 220 && offsetof(ParameterSet, preampGainDb) == 221 &&
    offsetof(ParameterSet, channels) == 224 && offsetof(ParameterSet, routerSource) == 1568 &&
    offsetof(ParameterSet, surroundOff) == 1576 && offsetof(ParameterSet, roomSize) == 1577 &&
    offsetof(ParameterSet, surroundMode) == 1578 && offsetof(ParameterSet, setName) == 1580 &&
    offsetof(ParameterSet, setVersion) == 1708 && offsetof(ParameterSet, lineInGainDb) == 1836 &&
    offsetof(ParameterSet, suppression) == 1837 && offsetof(ParameterSet, gainDetectionLevel) == 1840 &&
    offsetof(ParameterSet, turnOffDelayOn) == 1844 && offsetof(ParameterSet, turnOffDelayMs) == 1846 &&
    offsetof(ParameterSet, delaySize1Ms) == 1848 && offsetof(ParameterSet, delaySize2Ms) == 1878 &&
    offsetof(ParameterSet, decoderGain) == 1880 && offsetof(ParameterSet, rearForSurround) == 1904 &&
    offsetof(ParameterSet, poneTenthDb) == 1906 && offsetof(ParameterSet, compressorGainTenthDb) == 1908 &&
    offsetof(ParameterSet, compressorLowerLimitTenthDb) == 1910 &&
    offsetof(ParameterSet, expanderFactorTenth) == 1912 &&
    offsetof(ParameterSet, expanderUpperLimitTenthDb) == 1914 &&
    offsetof(ParameterSet, compressorAttackMs) == 1916 &&
    offsetof(ParameterSet, compressorReleaseMs) == 1918 &&
    offsetof(ParameterSet, compressorCrossoverHz) == 1920 &&
    offsetof(ParameterSet, compressorDisabled) == 1922 && offsetof(ParameterSet, limiters) == 1924 &&
    offsetof(ParameterSet, lineOutUse) == 2116);

}  // namespace tessavo
