#include "params/field_table.h"

#include <array>
#include <cmath>
#include <cstring>

#include "dsp/saturate.h"

namespace tessavo {

namespace {

using enum FieldType;

constexpr Repeat single{};

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

// Identity and meaning; then record type, record place, repetitions, rule, image type, image places; then
// unit, range, stored per shown, decimals and defaults.
// clang-format off
constexpr std::array<Field, fieldCount> table{{
    {FieldId::recordSize, "recordSize", "tells a valid record",
     u32, 0, single, single, ImageRule::none, u32, -1, -1, "", 2120, 2120, 1, 0, {}},
    {FieldId::inputEqOn, "inputEqOn", "input equalizer switched on",
     u8, 4, single, single, ImageRule::inverse, u8, 6, 22, "", 0, 1, 1, 0, {}},
    {FieldId::toneType, "tone[].type", "0 high shelf, 1 low shelf, 2 peak",
     u8, 8, {toneBandCount, 16, 1}, single, ImageRule::none, u8, -1, -1, "", 0, 2, 1, 0, toneTypes},
    {FieldId::toneFrequency, "tone[].frequency", "corner or centre frequency",
     u16, 10, {toneBandCount, 16, 1}, single, ImageRule::none, u16, -1, -1, "Hz", 20, 20000, 1, 0, toneFrequencies},
    {FieldId::toneGain, "tone[].gain", "gain of bass, middle, treble",
     f32, 12, {toneBandCount, 16, 1}, single, ImageRule::wholeNumber, i8, 7, 23, "dB", -20, 20, 1, 1, zero},
    {FieldId::toneQ, "tone[].q", "quality factor",
     f32, 16, {toneBandCount, 16, 1}, single, ImageRule::none, f32, -1, -1, "", 0.1, 20, 1, 1, toneQs},
    {FieldId::toneOff, "tone[].off", "band bypassed",
     u8, 20, {toneBandCount, 16, 1}, single, ImageRule::none, u8, -1, -1, "", 0, 1, 1, 0, {}},
    {FieldId::inputBandType, "inputBand[].type", "0 high shelf, 1 low shelf, 2 peak",
     u8, 56, {inputBandCount, 16, 1}, single, ImageRule::none, u8, -1, -1, "", 0, 2, 1, 0, two},
    {FieldId::inputBandFrequency, "inputBand[].frequency", "centre frequency",
     u16, 58, {inputBandCount, 16, 1}, single, ImageRule::none, u16, -1, -1, "Hz", 20, 20000, 1, 0, inputBandFrequencies},
    {FieldId::inputBandGain, "inputBand[].gain", "gain of a graphic band",
     f32, 60, {inputBandCount, 16, 1}, single, ImageRule::wholeNumber, i8, 10, 26, "dB", -20, 20, 1, 1, zero},
    {FieldId::inputBandQ, "inputBand[].q", "quality factor",
     f32, 64, {inputBandCount, 16, 1}, single, ImageRule::none, f32, -1, -1, "", 0.1, 20, 1, 1, ten},
    {FieldId::inputBandOff, "inputBand[].off", "band bypassed",
     u8, 68, {inputBandCount, 16, 1}, single, ImageRule::none, u8, -1, -1, "", 0, 1, 1, 0, {}},
    {FieldId::inputGain, "inputGain", "input level",
     f32, 216, single, single, ImageRule::wholeNumber, i16, 4, -1, "dB", -40, 18, 1, 0, {}},
    {FieldId::powerampGain, "powerampGain", "power amplifier gain",
     u8, 220, single, single, ImageRule::copy, u8, 2957, -1, "dB", 0, 40, 1, 0, {}},
    {FieldId::preampGain, "preampGain", "preamplifier gain",
     i8, 221, single, single, ImageRule::copy, i8, 2956, -1, "dB", -20, 20, 1, 0, {}},
    {FieldId::bandType, "channel[].band[].type", "0 high shelf, 1 low shelf, 2 peak",
     u8, 224, {channelCount, 168, 360}, {bandCount, 16, 16}, ImageRule::copy, u8, 52, -1, "", 0, 2, 1, 0, two},
    {FieldId::bandFrequency, "channel[].band[].frequency", "centre or corner frequency",
     u16, 226, {channelCount, 168, 360}, {bandCount, 16, 16}, ImageRule::copy, u16, 54, -1, "Hz", 20, 20000, 1, 0, bandFrequencies},
    {FieldId::bandGain, "channel[].band[].gain", "gain",
     f32, 228, {channelCount, 168, 360}, {bandCount, 16, 16}, ImageRule::copy, f32, 56, -1, "dB", -18, 18, 1, 1, zero},
    {FieldId::bandQ, "channel[].band[].q", "quality factor",
     f32, 232, {channelCount, 168, 360}, {bandCount, 16, 16}, ImageRule::copy, f32, 60, -1, "", 0.1, 20, 1, 1, one},
    {FieldId::bandOff, "channel[].band[].off", "band bypassed",
     u8, 236, {channelCount, 168, 360}, {bandCount, 16, 16}, ImageRule::copy, u8, 64, -1, "", 0, 1, 1, 0, one},
    {FieldId::crossoverEnabled, "channel[].crossover[].enabled", "crossover in circuit",
     u8, 352, {channelCount, 168, 360}, {crossoverCount, 6, 6}, ImageRule::copy, u8, 180, -1, "", 0, 1, 1, 0, zero},
    {FieldId::crossoverKind, "channel[].crossover[].kind", "0 high-pass, 1 low-pass",
     u8, 353, {channelCount, 168, 360}, {crossoverCount, 6, 6}, ImageRule::copy, u8, 181, -1, "", 0, 1, 1, 0, crossoverKinds},
    {FieldId::crossoverFrequency, "channel[].crossover[].frequency", "corner frequency",
     u16, 354, {channelCount, 168, 360}, {crossoverCount, 6, 6}, ImageRule::copy, u16, 182, -1, "Hz", 20, 20000, 1, 0, crossoverFrequencies},
    {FieldId::crossoverOrder, "channel[].crossover[].order", "2 or 4",
     u8, 356, {channelCount, 168, 360}, {crossoverCount, 6, 6}, ImageRule::copy, u8, 184, -1, "", 2, 4, 1, 0, two},
    {FieldId::volume, "channel[].volume", "channel volume",
     f32, 364, {channelCount, 168, 360}, single, ImageRule::gainWord, u32, 40, -1, "dB", -6, 18, 1, 1, zero},
    {FieldId::groupGain, "channel[].groupGain", "gain from the output group, added to the volume",
     f32, 368, {channelCount, 168, 4}, single, ImageRule::groupGain, i32, 3304, -1, "dB", -6, 18, 1, 1, {}},
    {FieldId::gainGroup, "channel[].gainGroup", "output group of the gain, 0 to 7 for A to H",
     u32, 372, {channelCount, 168, 1}, single, ImageRule::copy, u8, 3368, -1, "", 0, 7, 1, 0, groupSliders},
    {FieldId::channelFlag, "channel[].channelFlag", "check box of the main view",
     u8, 376, {channelCount, 168, 360}, single, ImageRule::flag, u8, 44, -1, "", 0, 1, 1, 0, zero},
    {FieldId::invertPhase, "channel[].invertPhase", "phase inverted",
     u8, 377, {channelCount, 168, 360}, single, ImageRule::raisedOnly, u8, 45, -1, "", 0, 1, 1, 0, zero},
    {FieldId::delay, "channel[].delay", "channel delay",
     f32, 380, {channelCount, 168, 360}, single, ImageRule::delaySamples, u32, 48, -1, "ms", 0, 2, 1, 1, zero},
    {FieldId::groupDelay, "channel[].groupDelay", "delay from the output group, added to the delay",
     f32, 384, {channelCount, 168, 4}, single, ImageRule::groupDelay, u32, 3336, -1, "ms", 0, 2, 1, 1, {}},
    {FieldId::delayGroup, "channel[].delayGroup", "output group of the delay, 0 to 7 for A to H",
     u32, 388, {channelCount, 168, 1}, single, ImageRule::copy, u8, 3376, -1, "", 0, 7, 1, 0, groupSliders},
    {FieldId::routerSource, "routerSource[]", "source of an output channel",
     u8, 1568, {channelCount, 1, 4}, single, ImageRule::allSets, u32, 2916, -1, "", 0, 13, 1, 0, {}},
    {FieldId::surroundOff, "surroundOff", "surround switched off",
     u8, 1576, single, single, ImageRule::none, u8, -1, -1, "", 0, 1, 1, 0, {}},
    {FieldId::roomSize, "roomSize", "room size, small to large",
     u8, 1577, single, single, ImageRule::copy, u32, 2948, -1, "", 0, 4, 1, 0, {}},
    {FieldId::surroundMode, "surroundMode", "0 music club, 1 concert hall, 2 stadium",
     u8, 1578, single, single, ImageRule::copy, u32, 2952, -1, "", 0, 2, 1, 0, {}},
    {FieldId::lineInGain, "lineInGain", "line-in gain",
     i8, 1836, single, single, ImageRule::copy, i8, 2958, -1, "dB", -20, 20, 1, 0, {}},
    {FieldId::suppression, "suppression", "suppression",
     u8, 1837, single, single, ImageRule::copy, u8, 2959, -1, "dB", 0, 100, 1, 0, {}},
    {FieldId::gainDetectionLevel, "gainDetectionLevel", "level of the gain detection",
     u32, 1840, single, single, ImageRule::copy, u32, 2960, -1, "dB", 0, 1000, 1, 0, {}},
    {FieldId::turnOffDelayOn, "turnOffDelayOn", "long turn-off delay in use",
     u8, 1844, single, single, ImageRule::copy, u8, 2964, -1, "", 0, 1, 1, 0, {}},
    {FieldId::turnOffDelay, "turnOffDelay", "long turn-off delay",
     u16, 1846, single, single, ImageRule::copy, u16, 2968, -1, "ms", 0, 30000, 1, 0, {}},
    {FieldId::delaySize1, "delaySize1", "surround delay size 1 in force",
     u16, 1848, single, single, ImageRule::copy, u16, 2970, -1, "ms", 0, 100, 1, 0, {}},
    {FieldId::delaySize1Copies, "delaySize1Copy[]", "written together with delay size 1",
     u16, 1850, {3, 2, 0}, single, ImageRule::receivedOnly, u16, 2970, -1, "ms", 0, 100, 1, 0, {}},
    {FieldId::delaySize1Last, "delaySize1Last", "written together with delay size 1, not carried by the image",
     u16, 1856, single, single, ImageRule::none, u16, -1, -1, "ms", 0, 100, 1, 0, {}},
    {FieldId::delaySize2, "delaySize2", "surround delay size 2",
     u16, 1878, single, single, ImageRule::copy, u16, 2972, -1, "ms", 0, 100, 1, 0, {}},
    {FieldId::decoderGain, "decoderGain[]", "300 + level in tenths: center, panorama, hall effect, rear to front mix",
     u16, 1880, {4, 2, 2}, single, ImageRule::copy, u16, 2974, -1, "", 0, 300, 1, 0, {}},
    {FieldId::rearForSurround, "rearForSurround", "rear channels take part in the surround calculation",
     u8, 1904, single, single, ImageRule::copy, u8, 2982, -1, "", 0, 1, 1, 0, {}},
    {FieldId::pone, "pone", "PONE",
     i16, 1906, single, single, ImageRule::copy, i16, 2984, -1, "dB", -40, 0, 10, 1, pone},
    {FieldId::compressorGain, "compressorGain", "compressor gain",
     i16, 1908, single, single, ImageRule::copy, i16, 2986, -1, "dB", 0, 20, 10, 1, compressorGain},
    {FieldId::compressorLowerLimit, "compressorLowerLimit", "compressor lower limit",
     i16, 1910, single, single, ImageRule::copy, i16, 2988, -1, "dB", -60, 0, 10, 1, compressorLowerLimit},
    {FieldId::expanderFactor, "expanderFactor", "expander factor",
     i16, 1912, single, single, ImageRule::copy, i16, 2990, -1, "", -40, 0, 10, 1, expanderFactor},
    {FieldId::expanderUpperLimit, "expanderUpperLimit", "expander upper limit",
     i16, 1914, single, single, ImageRule::copy, i16, 2992, -1, "dB", -80, 0, 10, 1, expanderUpperLimit},
    {FieldId::compressorAttack, "compressorAttack", "compressor attack time",
     u16, 1916, single, single, ImageRule::copy, u16, 2994, -1, "ms", 0, 1000, 1, 0, ten},
    {FieldId::compressorRelease, "compressorRelease", "compressor release time",
     u16, 1918, single, single, ImageRule::copy, u16, 2996, -1, "ms", 0, 1000, 1, 0, ten},
    {FieldId::compressorCrossover, "compressorCrossover", "compressor crossover frequency",
     u16, 1920, single, single, ImageRule::copy, u16, 3104, -1, "Hz", 20, 500, 1, 0, compressorCrossover},
    {FieldId::compressorDisabled, "compressorDisabled", "compressor bypassed",
     u8, 1922, single, single, ImageRule::copy, u8, 3040, -1, "", 0, 1, 1, 0, zero},
    {FieldId::limiterAttack, "limiter[].attack", "attack time",
     i32, 1924, {channelCount, 24, 24}, single, ImageRule::copy, i32, 3108, -1, "ms", 0, 200, 1, 0, limiterAttack},
    {FieldId::limiterRelease, "limiter[].release", "release time",
     i32, 1928, {channelCount, 24, 24}, single, ImageRule::copy, i32, 3112, -1, "ms", 0, 200, 1, 0, limiterRelease},
    {FieldId::limiterGain, "limiter[].gain", "limiter gain",
     i32, 1932, {channelCount, 24, 24}, single, ImageRule::copy, i32, 3116, -1, "dB", -20, 0, 10, 1, limiterGain},
    {FieldId::limiterActivateLevel, "limiter[].activateLevel", "level above which the limiter acts",
     i32, 1936, {channelCount, 24, 24}, single, ImageRule::copy, i32, 3120, -1, "dB", -40, 0, 10, 1, limiterActivate},
    {FieldId::limiterDeactivateLevel, "limiter[].deactivateLevel", "level below which it lets go",
     i32, 1940, {channelCount, 24, 24}, single, ImageRule::copy, i32, 3124, -1, "dB", -40, 0, 10, 1, limiterDeactivate},
    {FieldId::limiterEnabled, "limiter[].enabled", "limiter in circuit",
     u8, 1944, {channelCount, 24, 24}, single, ImageRule::copy, u8, 3128, -1, "", 0, 1, 1, 0, one},
    {FieldId::lineOutUse, "lineOutUse", "channels 7 and 8 deactivated for line-out use",
     u8, 2116, single, single, ImageRule::copy, u8, 3300, -1, "", 0, 1, 1, 0, {}},
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

template <typename Stored>
double readAs(const unsigned char* place) {
    Stored value;
    std::memcpy(&value, place, sizeof value);
    return static_cast<double>(value);
}

template <typename Stored>
void writeAs(unsigned char* place, double value) {
    const auto stored = truncateTo<Stored>(value);
    std::memcpy(place, &stored, sizeof stored);
}

}  // namespace

std::span<const Field, fieldCount> fieldTable() {
    return table;
}

const Field& fieldOf(FieldId id) {
    return table[static_cast<std::size_t>(id)];
}

double readNumber(const unsigned char* place, FieldType type) {
    switch (type) {
        case u8:
            return readAs<std::uint8_t>(place);
        case i8:
            return readAs<std::int8_t>(place);
        case u16:
            return readAs<std::uint16_t>(place);
        case i16:
            return readAs<std::int16_t>(place);
        case u32:
            return readAs<std::uint32_t>(place);
        case i32:
            return readAs<std::int32_t>(place);
        case f32:
            break;
    }
    return readAs<float>(place);
}

void writeNumber(unsigned char* place, FieldType type, double value) {
    switch (type) {
        case u8:
            return writeAs<std::uint8_t>(place, value);
        case i8:
            return writeAs<std::int8_t>(place, value);
        case u16:
            return writeAs<std::uint16_t>(place, value);
        case i16:
            return writeAs<std::int16_t>(place, value);
        case u32:
            return writeAs<std::uint32_t>(place, value);
        case i32:
            return writeAs<std::int32_t>(place, value);
        case f32:
            break;
    }
    const auto stored = static_cast<float>(value);
    std::memcpy(place, &stored, sizeof stored);
}

double storedValue(const ParameterSet& set, const Field& field, FieldIndex index) {
    std::array<unsigned char, 4> bytes{};
    std::memcpy(bytes.data(), reinterpret_cast<const unsigned char*>(&set) + recordOffsetOf(field, index),
                widthOf(field.type));
    return readNumber(bytes.data(), field.type);
}

void setStoredValue(ParameterSet& set, const Field& field, FieldIndex index, double value) {
    writeNumber(reinterpret_cast<unsigned char*>(&set) + recordOffsetOf(field, index), field.type, value);
}

double shownValue(const ParameterSet& set, const Field& field, FieldIndex index) {
    return storedValue(set, field, index) / field.storedPerShown;
}

double storedFromShown(const Field& field, double shown) {
    const double stored = shown * field.storedPerShown;
    return field.type == f32 ? static_cast<double>(static_cast<float>(stored)) : std::nearbyint(stored);
}

double storedDefault(const Field& field, FieldIndex index) {
    if (field.id == FieldId::recordSize) {
        return parameterSetSize;
    }
    if (field.defaults.empty()) {
        return 0.0;
    }
    const std::size_t position = field.inner.count > 1 ? index.inner : index.outer;
    return storedFromShown(field, field.defaults[field.defaults.size() > 1 ? position : 0]);
}

}  // namespace tessavo
