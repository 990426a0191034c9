#include "params/field_table.h"

#include <array>

#include "dsp/band_types.h"
#include "params/surround_delays.h"

namespace tessavo {

namespace {

using enum FieldType;

// Offsets of members of the repeated blocks, in the first block, from the start of the record or of the
// image.
constexpr std::size_t inChannel(std::size_t member) {
    return offsetof(ParameterSet, channels) + member;
}
constexpr std::size_t inBand(std::size_t member) {
    return inChannel(offsetof(OutputChannelParams, bands)) + member;
}
constexpr std::size_t inCrossover(std::size_t member) {
    return inChannel(offsetof(OutputChannelParams, crossovers)) + member;
}
constexpr std::size_t inBlock(std::size_t member) {
    return offsetof(ParameterImage, channels) + member;
}
constexpr std::size_t inBlockBand(std::size_t member) {
    return inBlock(offsetof(ChannelImageBlock, bands)) + member;
}
constexpr std::size_t inBlockCrossover(std::size_t member) {
    return inBlock(offsetof(ChannelImageBlock, crossovers)) + member;
}

// Dimensions of repeated fields: how often, and how far apart in the record and in the image.
constexpr Repeat tones{toneBandCount, sizeof(EqBandParams), sizeof(std::int8_t)};
constexpr Repeat inputBands{inputBandCount, sizeof(EqBandParams), sizeof(std::int8_t)};
constexpr Repeat channels{channelCount, sizeof(OutputChannelParams), sizeof(ChannelImageBlock)};
constexpr Repeat bands{bandCount, sizeof(EqBandParams), sizeof(EqBandParams)};
constexpr Repeat crossovers{crossoverCount, sizeof(CrossoverParams), sizeof(CrossoverParams)};
constexpr Repeat groupWords{channelCount, sizeof(OutputChannelParams), sizeof(std::uint32_t)};
constexpr Repeat groupLetters{channelCount, sizeof(OutputChannelParams), sizeof(std::uint8_t)};
constexpr Repeat sources{channelCount, sizeof(std::uint8_t), sizeof(std::uint32_t)};
constexpr Repeat limiters{channelCount, sizeof(LimiterParams), sizeof(LimiterParams)};
constexpr Repeat decoderGains{4, sizeof(std::uint16_t), sizeof(std::uint16_t)};
// The image has one word for all of these, so its stride is 0.
constexpr Repeat delayCopies{3, sizeof(std::uint16_t), 0};

constexpr auto bandTypes = [] {
    std::array<FieldCode, bandTypeNames.size()> codes{};
    for (std::size_t i = 0; i < codes.size(); ++i) {
        const BandTypeName& name = bandTypeNames[i];
        codes[i] = {static_cast<std::uint8_t>(name.type), name.shown, name.script, name.inText};
    }
    return codes;
}();
constexpr std::array<FieldCode, 2> filterKinds{{{0, "HP", "hp", "high-pass"}, {1, "LP", "lp", "low-pass"}}};
constexpr std::array<FieldCode, 2> filterOrders{{{2, "2", "2"}, {4, "4", "4"}}};
constexpr std::array<FieldCode, 8> groupLetterCodes{
    {{0, "A"}, {1, "B"}, {2, "C"}, {3, "D"}, {4, "E"}, {5, "F"}, {6, "G"}, {7, "H"}}};
constexpr std::array<FieldCode, surroundModeCount> surroundModeCodes{
    {{0, "Music Club"}, {1, "Concert Hall"}, {2, "Stadium"}}};
constexpr std::array<FieldCode, 14> sourceCodes{{{0, "Silenced"},
                                                 {1, "FrontLeft"},
                                                 {2, "FrontRight"},
                                                 {3, "Center"},
                                                 {4, "RearLeft"},
                                                 {5, "RearRight"},
                                                 {6, "Subwoofer"},
                                                 {7, "FrontLeftCenter"},
                                                 {8, "FrontRightCenter"},
                                                 {9, "LeftTotal"},
                                                 {10, "RightTotal"},
                                                 {11, "LeftRightTotal"},
                                                 {12, "RearLeftTotal"},
                                                 {13, "RearRightTotal"}}};

/// What the codes of a field mean, in lower case: "0 high shelf, 1 low shelf, 2 peak".
template <const auto& codes>
struct CodeList {
    static constexpr std::string_view wordsOf(const FieldCode& code) {
        return code.inText.empty() ? code.shown : code.inText;
    }
    static constexpr std::size_t length = [] {
        std::size_t sum = 0;
        for (const FieldCode& code : codes) {
            sum += std::string_view("0 , ").size() + wordsOf(code).size();
        }
        return sum - std::string_view(", ").size();
    }();
    static constexpr auto letters = [] {
        std::array<char, length> text{};
        std::size_t end = 0;
        const auto add = [&](char letter) { text[end++] = letter; };
        for (const FieldCode& code : codes) {
            if (end != 0) {
                add(',');
                add(' ');
            }
            add(static_cast<char>('0' + code.code));
            add(' ');
            for (const char letter : wordsOf(code)) {
                add(letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter);
            }
        }
        return text;
    }();
    static_assert(codes.back().code < 10, "a code has one digit here");
    static constexpr std::string_view text{letters.data(), letters.size()};
};

// Defaults of a fresh store, in the field's unit.
constexpr std::array<double, 1> zero{0};
constexpr std::array<double, 1> one{1};
constexpr std::array<double, 1> two{2};
constexpr std::array<double, 1> ten{10};
constexpr std::array<double, toneBandCount> toneTypes{1, 2, 0};
constexpr std::array<double, toneBandCount> toneFrequencies{150, 4000, 15000};
constexpr std::array<double, toneBandCount> toneQs{0.7, 1.0, 0.7};
constexpr std::array<double, inputBandCount> inputBandFrequencies{60,   170,  310,   600,   1000,
                                                                  3000, 6000, 12000, 14000, 16000};
constexpr std::array<double, bandCount> bandFrequencies{60, 170, 500, 1000, 2500, 6000, 12000, 16000};
constexpr std::array<double, crossoverCount> crossoverKinds{0, 1};
constexpr std::array<double, crossoverCount> crossoverFrequencies{20, 20000};
constexpr std::array<double, 1> pone{-10};
constexpr std::array<double, 1> compressorGain{8};
constexpr std::array<double, 1> compressorLowerLimit{-30};
constexpr std::array<double, 1> expanderFactor{-20};
constexpr std::array<double, 1> expanderUpperLimit{-50};
constexpr std::array<double, 1> compressorCrossover{120};
constexpr std::array<double, 1> limiterAttack{50};
constexpr std::array<double, 1> limiterRelease{120};
constexpr std::array<double, 1> limiterGain{-6};
constexpr std::array<double, 1> limiterActivate{-7};
constexpr std::array<double, 1> limiterDeactivate{-21};

// Every slider of the output group page starts in a group of its own.
constexpr auto groupSliders = [] {
    std::array<double, channelCount> groups{};
    for (std::size_t slider = 0; slider < groups.size(); ++slider) {
        groups[groupSliderMap[slider]] = static_cast<double>(slider);
    }
    return groups;
}();

// clang-format off
constexpr std::array<Field, fieldCount> table{{
    {.id = FieldId::recordSize, .path = "recordSize", .meaning = "tells a valid record",
     .type = u32, .recordOffset = offsetof(ParameterSet, recordSize),
     .minimum = 2120, .maximum = 2120, .editable = false},
    {.id = FieldId::inputEqOn, .path = "inputEqOn", .meaning = "input equalizer switched on",
     .type = u8, .recordOffset = offsetof(ParameterSet, inputEqOn),
     .rule = ImageRule::inverse, .imageType = u8, .imageOffset = offsetof(ParameterImage, inputRow0) + offsetof(InputGainRow, bypass),
     .secondImageOffset = offsetof(ParameterImage, inputRow1) + offsetof(InputGainRow, bypass),
     .minimum = 0, .maximum = 1},
    {.id = FieldId::toneType, .path = "tone[].type", .meaning = CodeList<bandTypes>::text,
     .type = u8, .recordOffset = offsetof(ParameterSet, inputToneBands) + offsetof(EqBandParams, type), .outer = tones,
     .minimum = 0, .maximum = bandTypes.back().code, .defaults = toneTypes, .codes = bandTypes, .shapes = Shapes::inputSection},
    {.id = FieldId::toneFrequency, .path = "tone[].frequency", .meaning = "corner or centre frequency",
     .type = u16, .recordOffset = offsetof(ParameterSet, inputToneBands) + offsetof(EqBandParams, frequencyHz), .outer = tones,
     .unit = "Hz", .minimum = 20, .maximum = 20000, .defaults = toneFrequencies, .shapes = Shapes::inputSection},
    {.id = FieldId::toneGain, .path = "tone[].gain", .meaning = "gain of bass, middle, treble",
     .type = f32, .recordOffset = offsetof(ParameterSet, inputToneBands) + offsetof(EqBandParams, gainDb), .outer = tones,
     .rule = ImageRule::wholeNumber, .imageType = i8, .imageOffset = offsetof(ParameterImage, inputRow0) + offsetof(InputGainRow, toneGainDb),
     .secondImageOffset = offsetof(ParameterImage, inputRow1) + offsetof(InputGainRow, toneGainDb),
     .unit = "dB", .minimum = -20, .maximum = 20, .decimals = 1, .defaults = zero, .shapes = Shapes::inputSection},
    {.id = FieldId::toneQ, .path = "tone[].q", .meaning = "quality factor",
     .type = f32, .recordOffset = offsetof(ParameterSet, inputToneBands) + offsetof(EqBandParams, q), .outer = tones,
     .minimum = 0.1, .maximum = 20, .decimals = 1, .defaults = toneQs, .shapes = Shapes::inputSection},
    {.id = FieldId::toneOff, .path = "tone[].off", .meaning = "band bypassed",
     .type = u8, .recordOffset = offsetof(ParameterSet, inputToneBands) + offsetof(EqBandParams, off), .outer = tones,
     .minimum = 0, .maximum = 1},
    {.id = FieldId::inputBandType, .path = "inputBand[].type", .meaning = CodeList<bandTypes>::text,
     .type = u8, .recordOffset = offsetof(ParameterSet, inputEqBands) + offsetof(EqBandParams, type), .outer = inputBands,
     .minimum = 0, .maximum = bandTypes.back().code, .defaults = two, .codes = bandTypes, .shapes = Shapes::inputSection},
    {.id = FieldId::inputBandFrequency, .path = "inputBand[].frequency", .meaning = "centre frequency",
     .type = u16, .recordOffset = offsetof(ParameterSet, inputEqBands) + offsetof(EqBandParams, frequencyHz), .outer = inputBands,
     .unit = "Hz", .minimum = 20, .maximum = 20000, .defaults = inputBandFrequencies, .shapes = Shapes::inputSection},
    {.id = FieldId::inputBandGain, .path = "inputBand[].gain", .meaning = "gain of a graphic band",
     .type = f32, .recordOffset = offsetof(ParameterSet, inputEqBands) + offsetof(EqBandParams, gainDb), .outer = inputBands,
     .rule = ImageRule::wholeNumber, .imageType = i8, .imageOffset = offsetof(ParameterImage, inputRow0) + offsetof(InputGainRow, bandGainDb),
     .secondImageOffset = offsetof(ParameterImage, inputRow1) + offsetof(InputGainRow, bandGainDb),
     .unit = "dB", .minimum = -20, .maximum = 20, .decimals = 1, .defaults = zero, .shapes = Shapes::inputSection},
    {.id = FieldId::inputBandQ, .path = "inputBand[].q", .meaning = "quality factor",
     .type = f32, .recordOffset = offsetof(ParameterSet, inputEqBands) + offsetof(EqBandParams, q), .outer = inputBands,
     .minimum = 0.1, .maximum = 20, .decimals = 1, .defaults = ten, .shapes = Shapes::inputSection},
    {.id = FieldId::inputBandOff, .path = "inputBand[].off", .meaning = "band bypassed",
     .type = u8, .recordOffset = offsetof(ParameterSet, inputEqBands) + offsetof(EqBandParams, off), .outer = inputBands,
     .minimum = 0, .maximum = 1},
    {.id = FieldId::inputGain, .path = "inputGain", .meaning = "input level",
     .type = f32, .recordOffset = offsetof(ParameterSet, inputGainDb),
     .rule = ImageRule::wholeNumber, .imageType = i16, .imageOffset = offsetof(ParameterImage, inputGainDb),
     .unit = "dB", .minimum = -40, .maximum = 18},
    {.id = FieldId::powerampGain, .path = "powerampGain", .meaning = "power amplifier gain",
     .type = u8, .recordOffset = offsetof(ParameterSet, powerampGainDb),
     .rule = ImageRule::copy, .imageType = u8, .imageOffset = offsetof(ParameterImage, powerampGainDb),
     .unit = "dB", .minimum = 0, .maximum = 40},
    {.id = FieldId::preampGain, .path = "preampGain", .meaning = "preamplifier gain",
     .type = i8, .recordOffset = offsetof(ParameterSet, preampGainDb),
     .rule = ImageRule::copy, .imageType = i8, .imageOffset = offsetof(ParameterImage, preampGainDb),
     .unit = "dB", .minimum = -20, .maximum = 20},
    {.id = FieldId::bandType, .path = "channel[].band[].type", .meaning = CodeList<bandTypes>::text,
     .type = u8, .recordOffset = inBand(offsetof(EqBandParams, type)), .outer = channels, .inner = bands,
     .rule = ImageRule::copy, .imageType = u8, .imageOffset = inBlockBand(offsetof(EqBandParams, type)),
     .minimum = 0, .maximum = bandTypes.back().code, .defaults = two, .codes = bandTypes, .shapes = Shapes::band},
    {.id = FieldId::bandFrequency, .path = "channel[].band[].frequency", .meaning = "centre or corner frequency",
     .type = u16, .recordOffset = inBand(offsetof(EqBandParams, frequencyHz)), .outer = channels, .inner = bands,
     .rule = ImageRule::copy, .imageType = u16, .imageOffset = inBlockBand(offsetof(EqBandParams, frequencyHz)),
     .unit = "Hz", .minimum = 20, .maximum = 20000, .defaults = bandFrequencies, .shapes = Shapes::band},
    {.id = FieldId::bandGain, .path = "channel[].band[].gain", .meaning = "gain",
     .type = f32, .recordOffset = inBand(offsetof(EqBandParams, gainDb)), .outer = channels, .inner = bands,
     .rule = ImageRule::copy, .imageType = f32, .imageOffset = inBlockBand(offsetof(EqBandParams, gainDb)),
     .unit = "dB", .minimum = -18, .maximum = 18, .decimals = 1, .defaults = zero, .shapes = Shapes::band},
    {.id = FieldId::bandQ, .path = "channel[].band[].q", .meaning = "quality factor",
     .type = f32, .recordOffset = inBand(offsetof(EqBandParams, q)), .outer = channels, .inner = bands,
     .rule = ImageRule::copy, .imageType = f32, .imageOffset = inBlockBand(offsetof(EqBandParams, q)),
     .minimum = 0.1, .maximum = 20, .decimals = 1, .defaults = one, .shapes = Shapes::band},
    {.id = FieldId::bandOff, .path = "channel[].band[].off", .meaning = "band bypassed",
     .type = u8, .recordOffset = inBand(offsetof(EqBandParams, off)), .outer = channels, .inner = bands,
     .rule = ImageRule::copy, .imageType = u8, .imageOffset = inBlockBand(offsetof(EqBandParams, off)),
     .minimum = 0, .maximum = 1, .defaults = one},
    {.id = FieldId::crossoverEnabled, .path = "channel[].crossover[].enabled", .meaning = "crossover in circuit",
     .type = u8, .recordOffset = inCrossover(offsetof(CrossoverParams, enabled)), .outer = channels, .inner = crossovers,
     .rule = ImageRule::copy, .imageType = u8, .imageOffset = inBlockCrossover(offsetof(CrossoverParams, enabled)),
     .minimum = 0, .maximum = 1, .defaults = zero, .shapes = Shapes::crossovers},
    {.id = FieldId::crossoverKind, .path = "channel[].crossover[].kind", .meaning = CodeList<filterKinds>::text,
     .type = u8, .recordOffset = inCrossover(offsetof(CrossoverParams, kind)), .outer = channels, .inner = crossovers,
     .rule = ImageRule::copy, .imageType = u8, .imageOffset = inBlockCrossover(offsetof(CrossoverParams, kind)),
     .minimum = 0, .maximum = filterKinds.back().code, .defaults = crossoverKinds, .codes = filterKinds, .shapes = Shapes::crossovers},
    {.id = FieldId::crossoverFrequency, .path = "channel[].crossover[].frequency", .meaning = "corner frequency",
     .type = u16, .recordOffset = inCrossover(offsetof(CrossoverParams, frequencyHz)), .outer = channels, .inner = crossovers,
     .rule = ImageRule::copy, .imageType = u16, .imageOffset = inBlockCrossover(offsetof(CrossoverParams, frequencyHz)),
     .unit = "Hz", .minimum = 20, .maximum = 20000, .defaults = crossoverFrequencies, .shapes = Shapes::crossovers},
    {.id = FieldId::crossoverOrder, .path = "channel[].crossover[].order", .meaning = "2 or 4",
     .type = u8, .recordOffset = inCrossover(offsetof(CrossoverParams, order)), .outer = channels, .inner = crossovers,
     .rule = ImageRule::copy, .imageType = u8, .imageOffset = inBlockCrossover(offsetof(CrossoverParams, order)),
     .minimum = 2, .maximum = filterOrders.back().code, .defaults = two, .codes = filterOrders, .shapes = Shapes::crossovers},
    {.id = FieldId::volume, .path = "channel[].volume", .meaning = "channel volume",
     .type = f32, .recordOffset = inChannel(offsetof(OutputChannelParams, volumeDb)), .outer = channels,
     .rule = ImageRule::gainWord, .imageType = u32, .imageOffset = inBlock(offsetof(ChannelImageBlock, gainWord)),
     .unit = "dB", .minimum = -6, .maximum = 18, .decimals = 1, .defaults = zero},
    {.id = FieldId::groupGain, .path = "channel[].groupGain", .meaning = "gain from the output group, added to the volume",
     .type = f32, .recordOffset = inChannel(offsetof(OutputChannelParams, groupGainDb)), .outer = groupWords,
     .rule = ImageRule::groupGain, .imageType = i32, .imageOffset = offsetof(ParameterImage, groupGainTenthDb),
     .unit = "dB", .minimum = -6, .maximum = 18, .decimals = 1},
    {.id = FieldId::gainGroup, .path = "channel[].gainGroup", .meaning = "output group of the gain, 0 to 7 for A to H",
     .type = u32, .recordOffset = inChannel(offsetof(OutputChannelParams, gainGroup)), .outer = groupLetters,
     .rule = ImageRule::copy, .imageType = u8, .imageOffset = offsetof(ParameterImage, gainGroup),
     .minimum = 0, .maximum = groupLetterCodes.back().code, .defaults = groupSliders, .codes = groupLetterCodes},
    {.id = FieldId::channelFlag, .path = "channel[].channelFlag", .meaning = "check box of the main view",
     .type = u8, .recordOffset = inChannel(offsetof(OutputChannelParams, channelFlag)), .outer = channels,
     .rule = ImageRule::flag, .imageType = u8, .imageOffset = inBlock(offsetof(ChannelImageBlock, channelFlag)),
     .minimum = 0, .maximum = 1, .defaults = zero},
    {.id = FieldId::invertPhase, .path = "channel[].invertPhase", .meaning = "phase inverted",
     .type = u8, .recordOffset = inChannel(offsetof(OutputChannelParams, invertPhase)), .outer = channels,
     .rule = ImageRule::neverCleared, .imageType = u8, .imageOffset = inBlock(offsetof(ChannelImageBlock, invertPhase)),
     .minimum = 0, .maximum = 1, .defaults = zero},
    {.id = FieldId::delay, .path = "channel[].delay", .meaning = "channel delay",
     .type = f32, .recordOffset = inChannel(offsetof(OutputChannelParams, delayMs)), .outer = channels,
     .rule = ImageRule::delaySamples, .imageType = u32, .imageOffset = inBlock(offsetof(ChannelImageBlock, delaySamples)),
     .unit = "ms", .minimum = 0, .maximum = 2, .decimals = 1, .defaults = zero},
    {.id = FieldId::groupDelay, .path = "channel[].groupDelay", .meaning = "delay from the output group, added to the delay",
     .type = f32, .recordOffset = inChannel(offsetof(OutputChannelParams, groupDelayMs)), .outer = groupWords,
     .rule = ImageRule::groupDelay, .imageType = u32, .imageOffset = offsetof(ParameterImage, groupDelayTenthMs),
     .unit = "ms", .minimum = 0, .maximum = 2, .decimals = 1},
    {.id = FieldId::delayGroup, .path = "channel[].delayGroup", .meaning = "output group of the delay, 0 to 7 for A to H",
     .type = u32, .recordOffset = inChannel(offsetof(OutputChannelParams, delayGroup)), .outer = groupLetters,
     .rule = ImageRule::copy, .imageType = u8, .imageOffset = offsetof(ParameterImage, delayGroup),
     .minimum = 0, .maximum = groupLetterCodes.back().code, .defaults = groupSliders, .codes = groupLetterCodes},
    {.id = FieldId::routerSource, .path = "routerSource[]", .meaning = "source of an output channel",
     .type = u8, .recordOffset = offsetof(ParameterSet, routerSource), .outer = sources,
     .rule = ImageRule::allSets, .imageType = u32, .imageOffset = offsetof(ParameterImage, routerSource),
     .minimum = 0, .maximum = sourceCodes.back().code, .codes = sourceCodes},
    {.id = FieldId::surroundOff, .path = "surroundOff", .meaning = "surround switched off",
     .type = u8, .recordOffset = offsetof(ParameterSet, surroundOff),
     .minimum = 0, .maximum = 1},
    {.id = FieldId::roomSize, .path = "roomSize", .meaning = "room size, small to large",
     .type = u8, .recordOffset = offsetof(ParameterSet, roomSize),
     .rule = ImageRule::copy, .imageType = u32, .imageOffset = offsetof(ParameterImage, roomSize),
     .minimum = 0, .maximum = 4},
    {.id = FieldId::surroundMode, .path = "surroundMode", .meaning = CodeList<surroundModeCodes>::text,
     .type = u8, .recordOffset = offsetof(ParameterSet, surroundMode),
     .rule = ImageRule::copy, .imageType = u32, .imageOffset = offsetof(ParameterImage, surroundMode),
     .minimum = 0, .maximum = surroundModeCodes.back().code, .codes = surroundModeCodes},
    {.id = FieldId::lineInGain, .path = "lineInGain", .meaning = "line-in gain",
     .type = i8, .recordOffset = offsetof(ParameterSet, lineInGainDb),
     .rule = ImageRule::copy, .imageType = i8, .imageOffset = offsetof(ParameterImage, lineInGainDb),
     .unit = "dB", .minimum = -20, .maximum = 20},
    {.id = FieldId::suppression, .path = "suppression", .meaning = "suppression",
     .type = u8, .recordOffset = offsetof(ParameterSet, suppression),
     .rule = ImageRule::copy, .imageType = u8, .imageOffset = offsetof(ParameterImage, suppression),
     .unit = "dB", .minimum = 0, .maximum = 100},
    {.id = FieldId::gainDetectionLevel, .path = "gainDetectionLevel", .meaning = "level of the gain detection",
     .type = u32, .recordOffset = offsetof(ParameterSet, gainDetectionLevel),
     .rule = ImageRule::copy, .imageType = u32, .imageOffset = offsetof(ParameterImage, gainDetectionLevel),
     .unit = "dB", .minimum = 0, .maximum = 1000},
    {.id = FieldId::turnOffDelayOn, .path = "turnOffDelayOn", .meaning = "long turn-off delay in use",
     .type = u8, .recordOffset = offsetof(ParameterSet, turnOffDelayOn),
     .rule = ImageRule::copy, .imageType = u8, .imageOffset = offsetof(ParameterImage, turnOffDelayOn),
     .minimum = 0, .maximum = 1},
    {.id = FieldId::turnOffDelay, .path = "turnOffDelay", .meaning = "long turn-off delay",
     .type = u16, .recordOffset = offsetof(ParameterSet, turnOffDelayMs),
     .rule = ImageRule::copy, .imageType = u16, .imageOffset = offsetof(ParameterImage, turnOffDelayMs),
     .unit = "ms", .minimum = 0, .maximum = 30000},
    {.id = FieldId::delaySize1, .path = "delaySize1", .meaning = "surround delay size 1 in force",
     .type = u16, .recordOffset = offsetof(ParameterSet, delaySize1Ms),
     .rule = ImageRule::copy, .imageType = u16, .imageOffset = offsetof(ParameterImage, delaySize1Ms),
     .unit = "ms", .minimum = 0, .maximum = 100},
    {.id = FieldId::delaySize1Copies, .path = "delaySize1Copy[]", .meaning = "written together with delay size 1",
     .type = u16, .recordOffset = offsetof(ParameterSet, delaySize1Ms) + 1 * sizeof(std::uint16_t), .outer = delayCopies,
     .rule = ImageRule::fromImageOnly, .imageType = u16, .imageOffset = offsetof(ParameterImage, delaySize1Ms),
     .unit = "ms", .minimum = 0, .maximum = 100},
    {.id = FieldId::delaySize1Last, .path = "delaySize1Last", .meaning = "written together with delay size 1, not carried by the image",
     .type = u16, .recordOffset = offsetof(ParameterSet, delaySize1Ms) + 4 * sizeof(std::uint16_t),
     .unit = "ms", .minimum = 0, .maximum = 100},
    {.id = FieldId::delaySize2, .path = "delaySize2", .meaning = "surround delay size 2",
     .type = u16, .recordOffset = offsetof(ParameterSet, delaySize2Ms),
     .rule = ImageRule::copy, .imageType = u16, .imageOffset = offsetof(ParameterImage, delaySize2Ms),
     .unit = "ms", .minimum = 0, .maximum = 100},
    {.id = FieldId::decoderGain, .path = "decoderGain[]", .meaning = "300 + level in tenths: center, panorama, hall effect, rear to front mix",
     .type = u16, .recordOffset = offsetof(ParameterSet, decoderGain), .outer = decoderGains,
     .rule = ImageRule::copy, .imageType = u16, .imageOffset = offsetof(ParameterImage, decoderGain),
     .minimum = 0, .maximum = 300},
    {.id = FieldId::rearForSurround, .path = "rearForSurround", .meaning = "rear channels take part in the surround calculation",
     .type = u8, .recordOffset = offsetof(ParameterSet, rearForSurround),
     .rule = ImageRule::copy, .imageType = u8, .imageOffset = offsetof(ParameterImage, rearForSurround),
     .minimum = 0, .maximum = 1},
    {.id = FieldId::pone, .path = "pone", .meaning = "PONE",
     .type = i16, .recordOffset = offsetof(ParameterSet, poneTenthDb),
     .rule = ImageRule::copy, .imageType = i16, .imageOffset = offsetof(ParameterImage, poneTenthDb),
     .unit = "dB", .minimum = -40, .maximum = 0, .storedPerShown = 10, .decimals = 1, .defaults = pone},
    {.id = FieldId::compressorGain, .path = "compressorGain", .meaning = "compressor gain",
     .type = i16, .recordOffset = offsetof(ParameterSet, compressorGainTenthDb),
     .rule = ImageRule::copy, .imageType = i16, .imageOffset = offsetof(ParameterImage, compressorGainTenthDb),
     .unit = "dB", .minimum = 0, .maximum = 20, .storedPerShown = 10, .decimals = 1, .defaults = compressorGain},
    {.id = FieldId::compressorLowerLimit, .path = "compressorLowerLimit", .meaning = "compressor lower limit",
     .type = i16, .recordOffset = offsetof(ParameterSet, compressorLowerLimitTenthDb),
     .rule = ImageRule::copy, .imageType = i16, .imageOffset = offsetof(ParameterImage, compressorLowerLimitTenthDb),
     .unit = "dB", .minimum = -60, .maximum = 0, .storedPerShown = 10, .decimals = 1, .defaults = compressorLowerLimit},
    {.id = FieldId::expanderFactor, .path = "expanderFactor", .meaning = "expander factor",
     .type = i16, .recordOffset = offsetof(ParameterSet, expanderFactorTenth),
     .rule = ImageRule::copy, .imageType = i16, .imageOffset = offsetof(ParameterImage, expanderFactorTenth),
     .minimum = -40, .maximum = 0, .storedPerShown = 10, .decimals = 1, .defaults = expanderFactor},
    {.id = FieldId::expanderUpperLimit, .path = "expanderUpperLimit", .meaning = "expander upper limit",
     .type = i16, .recordOffset = offsetof(ParameterSet, expanderUpperLimitTenthDb),
     .rule = ImageRule::copy, .imageType = i16, .imageOffset = offsetof(ParameterImage, expanderUpperLimitTenthDb),
     .unit = "dB", .minimum = -80, .maximum = 0, .storedPerShown = 10, .decimals = 1, .defaults = expanderUpperLimit},
    {.id = FieldId::compressorAttack, .path = "compressorAttack", .meaning = "compressor attack time",
     .type = u16, .recordOffset = offsetof(ParameterSet, compressorAttackMs),
     .rule = ImageRule::copy, .imageType = u16, .imageOffset = offsetof(ParameterImage, compressorAttackMs),
     .unit = "ms", .minimum = 0, .maximum = 1000, .defaults = ten},
    {.id = FieldId::compressorRelease, .path = "compressorRelease", .meaning = "compressor release time",
     .type = u16, .recordOffset = offsetof(ParameterSet, compressorReleaseMs),
     .rule = ImageRule::copy, .imageType = u16, .imageOffset = offsetof(ParameterImage, compressorReleaseMs),
     .unit = "ms", .minimum = 0, .maximum = 1000, .defaults = ten},
    {.id = FieldId::compressorCrossover, .path = "compressorCrossover", .meaning = "compressor crossover frequency",
     .type = u16, .recordOffset = offsetof(ParameterSet, compressorCrossoverHz),
     .rule = ImageRule::copy, .imageType = u16, .imageOffset = offsetof(ParameterImage, compressorCrossoverHz),
     .unit = "Hz", .minimum = 20, .maximum = 500, .defaults = compressorCrossover},
    {.id = FieldId::compressorDisabled, .path = "compressorDisabled", .meaning = "compressor bypassed",
     .type = u8, .recordOffset = offsetof(ParameterSet, compressorDisabled),
     .rule = ImageRule::copy, .imageType = u8, .imageOffset = offsetof(ParameterImage, compressorDisabled),
     .minimum = 0, .maximum = 1, .defaults = zero},
    {.id = FieldId::limiterAttack, .path = "limiter[].attack", .meaning = "attack time",
     .type = i32, .recordOffset = offsetof(ParameterSet, limiters) + offsetof(LimiterParams, attackMs), .outer = limiters,
     .rule = ImageRule::copy, .imageType = i32, .imageOffset = offsetof(ParameterImage, limiters) + offsetof(LimiterParams, attackMs),
     .unit = "ms", .minimum = 0, .maximum = 200, .defaults = limiterAttack},
    {.id = FieldId::limiterRelease, .path = "limiter[].release", .meaning = "release time",
     .type = i32, .recordOffset = offsetof(ParameterSet, limiters) + offsetof(LimiterParams, releaseMs), .outer = limiters,
     .rule = ImageRule::copy, .imageType = i32, .imageOffset = offsetof(ParameterImage, limiters) + offsetof(LimiterParams, releaseMs),
     .unit = "ms", .minimum = 0, .maximum = 200, .defaults = limiterRelease},
    {.id = FieldId::limiterGain, .path = "limiter[].gain", .meaning = "limiter gain",
     .type = i32, .recordOffset = offsetof(ParameterSet, limiters) + offsetof(LimiterParams, gainTenthDb), .outer = limiters,
     .rule = ImageRule::copy, .imageType = i32, .imageOffset = offsetof(ParameterImage, limiters) + offsetof(LimiterParams, gainTenthDb),
     .unit = "dB", .minimum = -20, .maximum = 0, .storedPerShown = 10, .decimals = 1, .defaults = limiterGain},
    {.id = FieldId::limiterActivateLevel, .path = "limiter[].activateLevel", .meaning = "level above which the limiter acts",
     .type = i32, .recordOffset = offsetof(ParameterSet, limiters) + offsetof(LimiterParams, activateTenthDb), .outer = limiters,
     .rule = ImageRule::copy, .imageType = i32, .imageOffset = offsetof(ParameterImage, limiters) + offsetof(LimiterParams, activateTenthDb),
     .unit = "dB", .minimum = -40, .maximum = 0, .storedPerShown = 10, .decimals = 1, .defaults = limiterActivate},
    {.id = FieldId::limiterDeactivateLevel, .path = "limiter[].deactivateLevel", .meaning = "level below which it lets go",
     .type = i32, .recordOffset = offsetof(ParameterSet, limiters) + offsetof(LimiterParams, deactivateTenthDb), .outer = limiters,
     .rule = ImageRule::copy, .imageType = i32, .imageOffset = offsetof(ParameterImage, limiters) + offsetof(LimiterParams, deactivateTenthDb),
     .unit = "dB", .minimum = -40, .maximum = 0, .storedPerShown = 10, .decimals = 1, .defaults = limiterDeactivate},
    {.id = FieldId::limiterEnabled, .path = "limiter[].enabled", .meaning = "limiter in circuit",
     .type = u8, .recordOffset = offsetof(ParameterSet, limiters) + offsetof(LimiterParams, enabled), .outer = limiters,
     .rule = ImageRule::copy, .imageType = u8, .imageOffset = offsetof(ParameterImage, limiters) + offsetof(LimiterParams, enabled),
     .minimum = 0, .maximum = 1, .defaults = one},
    {.id = FieldId::lineOutUse, .path = "lineOutUse", .meaning = "channels 7 and 8 deactivated for line-out use",
     .type = u8, .recordOffset = offsetof(ParameterSet, lineOutUse),
     .rule = ImageRule::copy, .imageType = u8, .imageOffset = offsetof(ParameterImage, lineOutUse),
     .minimum = 0, .maximum = 1},
}};
// clang-format on

constexpr bool isIndexedById() {
    for (std::size_t i = 0; i < table.size(); ++i) {
        if (table[i].id != static_cast<FieldId>(i)) {
            return false;
        }
    }
    return true;
}

static_assert(isIndexedById());

}  // namespace

std::span<const Field, fieldCount> fieldTable() {
    return table;
}

const Field& fieldOf(FieldId id) {
    return table[static_cast<std::size_t>(id)];
}

}  // namespace tessavo
