#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "dsp/biquad_words.h"
#include "params/records.h"

namespace tessavo {

/// One output channel in the target's form. Offsets, widths and spare bytes are the target's and must not
/// move.
struct ChannelImageBlock {
    std::array<std::uint8_t, 4> spare0{};
    std::uint32_t gainWord = 0;    ///< linear gain of volume + group gain with 24 fraction bits
    std::uint8_t channelFlag = 0;  ///< the main view's check box of the channel
    std::uint8_t invertPhase = 0;  ///< 1 = inverted
    std::array<std::uint8_t, 2> spare10{};
    std::uint32_t delaySamples = 0;  ///< of delay + group delay, at 49.5 samples per ms
    std::array<EqBandParams, bandCount> bands{};
    std::array<CrossoverParams, crossoverCount> crossovers{};
    std::array<BiquadWords, crossoverCount> crossoverWords{};
    std::array<std::uint8_t, 4> spare196{};
    std::array<BiquadWords, bandCount> bandWords{};
};

/// The gains of the input bands in whole dB. The image holds the same row twice.
struct InputGainRow {
    std::uint8_t bypass = 0;  ///< 1 = input equalizer off
    std::array<std::int8_t, toneBandCount> toneGainDb{};
    std::array<std::int8_t, inputBandCount> bandGainDb{};
};

inline constexpr std::uint32_t parameterImageSize = 3384;  ///< in bytes

/// The current set in the target's form, as it is sent, exported and received.
///
/// Offsets, widths and spare bytes are a binary format: the assertions below hold each of them. Units stand
/// in the names, "Tenth" for tenths. Spare bytes have no known meaning; they survive every conversion.
struct ParameterImage {
    std::uint32_t imageSize = 0;  ///< 3384
    std::int16_t inputGainDb = 0;
    InputGainRow inputRow0{};
    std::array<std::uint8_t, 2> spare20{};
    InputGainRow inputRow1{};                                ///< same content as row 0
    std::array<ChannelImageBlock, channelCount> channels{};  ///< by record channel
    std::array<std::uint32_t, channelCount> routerSource{};  ///< by record channel
    std::uint32_t roomSize = 0;
    std::uint32_t surroundMode = 0;
    std::int8_t preampGainDb = 0;
    std::uint8_t powerampGainDb = 0;
    std::int8_t lineInGainDb = 0;
    std::uint8_t suppression = 0;
    std::uint32_t gainDetectionLevel = 0;
    std::uint8_t turnOffDelayOn = 0;
    std::array<std::uint8_t, 3> spare2965{};
    std::uint16_t turnOffDelayMs = 0;
    std::uint16_t delaySize1Ms = 0;
    std::uint16_t delaySize2Ms = 0;
    std::array<std::uint16_t, 4> decoderGain{};
    std::uint8_t rearForSurround = 0;
    std::uint8_t spare2983 = 0;
    std::int16_t poneTenthDb = 0;
    std::int16_t compressorGainTenthDb = 0;
    std::int16_t compressorLowerLimitTenthDb = 0;
    std::int16_t expanderFactorTenth = 0;
    std::int16_t expanderUpperLimitTenthDb = 0;
    std::uint16_t compressorAttackMs = 0;
    std::uint16_t compressorReleaseMs = 0;
    std::array<std::uint8_t, 42> spare2998{};
    std::uint8_t compressorDisabled = 0;
    std::array<std::uint8_t, 63> spare3041{};
    std::uint16_t compressorCrossoverHz = 0;
    std::array<std::uint8_t, 2> spare3106{};
    std::array<LimiterParams, channelCount> limiters{};  ///< by record channel
    std::uint8_t lineOutUse = 0;
    std::array<std::uint8_t, 3> spare3301{};
    std::array<std::int32_t, channelCount> groupGainTenthDb{};    ///< by record channel
    std::array<std::uint32_t, channelCount> groupDelayTenthMs{};  ///< by record channel
    std::array<std::uint8_t, channelCount> gainGroup{};           ///< by record channel
    std::array<std::uint8_t, channelCount> delayGroup{};          ///< by record channel
};

static_assert(std::is_trivially_copyable_v<ParameterImage>);
static_assert(sizeof(ChannelImageBlock) == 360 && offsetof(ChannelImageBlock, gainWord) == 4 &&
              offsetof(ChannelImageBlock, channelFlag) == 8 &&
              offsetof(ChannelImageBlock, invertPhase) == 9 &&
              offsetof(ChannelImageBlock, delaySamples) == 12 && offsetof(ChannelImageBlock, bands) == 16 &&
              offsetof(ChannelImageBlock, crossovers) == 144 &&
              offsetof(ChannelImageBlock, crossoverWords) == 156 &&
              offsetof(ChannelImageBlock, bandWords) == 200);
static_assert(sizeof(ParameterImage) == parameterImageSize);
static_assert(
    offsetof(ParameterImage, inputGainDb) == 4 && offsetof(ParameterImage, inputRow0) == 6 &&
    offsetof(ParameterImage, inputRow1) == 22 && offsetof(ParameterImage, channels) == 36 &&
    offsetof(ParameterImage, routerSource) == 2916 && offsetof(ParameterImage, roomSize) == 2948 &&
    offsetof(ParameterImage, surroundMode) == 2952 && offsetof(ParameterImage, preampGainDb) == 2956 &&
    offsetof(ParameterImage, powerampGainDb) == 2957 && offsetof(ParameterImage, lineInGainDb) == 2958 &&
    offsetof(ParameterImage, suppression) == 2959 && offsetof(ParameterImage, gainDetectionLevel) == 2960 &&
    offsetof(ParameterImage, turnOffDelayOn) == 2964 && offsetof(ParameterImage, turnOffDelayMs) == 2968 &&
    offsetof(ParameterImage, delaySize1Ms) == 2970 && offsetof(ParameterImage, delaySize2Ms) == 2972 &&
    offsetof(ParameterImage, decoderGain) == 2974 && offsetof(ParameterImage, rearForSurround) == 2982 &&
    offsetof(ParameterImage, poneTenthDb) == 2984 && offsetof(ParameterImage, compressorReleaseMs) == 2996 &&
    offsetof(ParameterImage, compressorDisabled) == 3040 &&
    offsetof(ParameterImage, compressorCrossoverHz) == 3104 && offsetof(ParameterImage, limiters) == 3108 &&
    offsetof(ParameterImage, lineOutUse) == 3300 && offsetof(ParameterImage, groupGainTenthDb) == 3304 &&
    offsetof(ParameterImage, groupDelayTenthMs) == 3336 && offsetof(ParameterImage, gainGroup) == 3368 &&
    offsetof(ParameterImage, delayGroup) == 3376);

}  // namespace tessavo
