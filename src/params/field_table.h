#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "params/parameter_image.h"
#include "params/records.h"

namespace tessavo {

/// Every field of a parameter set but its two texts, in record order. The table is indexed by it.
enum class FieldId : std::uint8_t {
    recordSize,
    inputEqOn,
    toneType,
    toneFrequency,
    toneGain,
    toneQ,
    toneOff,
    inputBandType,
    inputBandFrequency,
    inputBandGain,
    inputBandQ,
    inputBandOff,
    inputGain,
    powerampGain,
    preampGain,
    bandType,
    bandFrequency,
    bandGain,
    bandQ,
    bandOff,
    crossoverEnabled,
    crossoverKind,
    crossoverFrequency,
    crossoverOrder,
    volume,
    groupGain,
    gainGroup,
    channelFlag,
    invertPhase,
    delay,
    groupDelay,
    delayGroup,
    routerSource,
    surroundOff,
    roomSize,
    surroundMode,
    lineInGain,
    suppression,
    gainDetectionLevel,
    turnOffDelayOn,
    turnOffDelay,
    delaySize1,
    delaySize1Copies,
    delaySize1Last,
    delaySize2,
    decoderGain,
    rearForSurround,
    pone,
    compressorGain,
    compressorLowerLimit,
    expanderFactor,
    expanderUpperLimit,
    compressorAttack,
    compressorRelease,
    compressorCrossover,
    compressorDisabled,
    limiterAttack,
    limiterRelease,
    limiterGain,
    limiterActivateLevel,
    limiterDeactivateLevel,
    limiterEnabled,
    lineOutUse,
    count
};

enum class FieldType : std::uint8_t { u8, i8, u16, i16, u32, i32, f32 };

[[nodiscard]] constexpr std::size_t widthOf(FieldType type) {
    switch (type) {
        case FieldType::u8:
        case FieldType::i8:
            return 1;
        case FieldType::u16:
        case FieldType::i16:
            return 2;
        default:
            return 4;
    }
}

/// How a record field and its place in the image depend on each other.
enum class ImageRule : std::uint8_t {
    none,           ///< the image does not carry the field
    copy,           ///< the same value, in the image's width; back: its low bytes
    wholeNumber,    ///< truncated towards zero to the image's integer; back: as a float. May have a second
                    ///< place
    inverse,        ///< 1 where the record has 0 and 0 where it has anything else; back likewise. Two places
    gainWord,       ///< volumeGainTable word of volume + group gain; back: the volume alone
    groupGain,      ///< tenths in a word of its own, and part of the gain word; back: the tenths
    delaySamples,   ///< samples of delay + group delay at 49.5 per ms; back: the delay alone at 48 per ms
    groupDelay,     ///< tenths in a word of its own, and part of the samples; back: the tenths
    flag,           ///< copied; back: 1 for anything but 0
    neverCleared,   ///< copied; back: 1 for anything but 0, otherwise the record keeps what it has
    allSets,        ///< copied; back: into all five sets
    fromImageOnly,  ///< never written into the image; back: copied
};

/// One dimension of a repeated field.
struct Repeat {
    std::uint16_t count = 1;
    std::uint16_t recordStride = 0;
    std::uint16_t imageStride = 0;
};

/// One value of a field that holds codes.
struct FieldCode {
    std::uint8_t code;
    std::string_view shown;        ///< on the screen
    std::string_view script = {};  ///< in edit scripts; empty where these know no word for it
    std::string_view inText = {};  ///< in reports; as on the screen when empty
};

/// The coefficients that depend on a field.
enum class Shapes : std::uint8_t {
    nothing,
    band,          ///< those of the band of the same indices
    crossovers,    ///< those of both crossovers of the channel
    inputSection,  ///< those of the graphic or tone band of the same index
};

/// One parameter: its name, unit, range, defaults and places. Everything that reads, writes, converts, shows
/// or documents a set works from this description.
struct Field {
    FieldId id;
    /// Name with "[]" for each repeated dimension: "channel[].band[].frequency".
    std::string_view path;
    std::string_view meaning;

    FieldType type;
    std::uint16_t recordOffset;
    Repeat outer{};
    Repeat inner{};

    ImageRule rule = ImageRule::none;
    FieldType imageType = FieldType::u8;
    std::int16_t imageOffset = -1;        ///< -1 where the image does not carry it
    std::int16_t secondImageOffset = -1;  ///< -1 where there is no second place

    std::string_view unit{};    ///< of the shown value; empty for counts, codes and switches
    double minimum = 0;         ///< lowest value a person may set, in `unit`
    double maximum = 0;         ///< highest
    double storedPerShown = 1;  ///< stored value = shown value times this
    int decimals = 0;           ///< of the step between two values: 1 for tenths
    /// Values of a fresh store, in `unit`: none (0), one for all, or one for each index of the last repeated
    /// dimension.
    std::span<const double> defaults{};
    /// What each stored code means, by rising code; empty for numbers and switches.
    std::span<const FieldCode> codes{};

    Shapes shapes = Shapes::nothing;
    bool editable = true;  ///< false for what no edit may change
};

/// Decimals of the shown value: levels have one, whole ones too.
[[nodiscard]] constexpr int shownDecimals(const Field& field) {
    return field.unit == "dB" ? 1 : field.decimals;
}

inline constexpr std::size_t fieldCount = static_cast<std::size_t>(FieldId::count);

/// All fields, in record order.
[[nodiscard]] std::span<const Field, fieldCount> fieldTable();
[[nodiscard]] const Field& fieldOf(FieldId id);

/// Words of a stored code; null for a code that the field does not have.
[[nodiscard]] const FieldCode* codeOf(const Field& field, double stored);

/// Which element of a repeated field: 0 for a dimension that it does not have.
struct FieldIndex {
    std::size_t outer = 0;
    std::size_t inner = 0;
};

[[nodiscard]] constexpr bool contains(const Field& field, FieldIndex index) {
    return index.outer < field.outer.count && index.inner < field.inner.count;
}

[[nodiscard]] constexpr std::size_t recordOffsetOf(const Field& field, FieldIndex index) {
    return field.recordOffset + index.outer * field.outer.recordStride +
           index.inner * field.inner.recordStride;
}

/// Distance of an element's place in the image from the field's first place.
[[nodiscard]] constexpr std::size_t imageStrideOf(const Field& field, FieldIndex index) {
    return index.outer * field.outer.imageStride + index.inner * field.inner.imageStride;
}

/// Reads or writes a number of this type at any address, without alignment; writing truncates and saturates.
[[nodiscard]] double readNumber(const unsigned char* place, FieldType type);
void writeNumber(unsigned char* place, FieldType type, double value);

/// Stored value of an element. `index` lies within the field.
[[nodiscard]] double storedValue(const ParameterSet& set, const Field& field, FieldIndex index = {});

/// Writes a stored value, truncated and saturated to the field's type. `index` lies within the field.
void setStoredValue(ParameterSet& set, const Field& field, FieldIndex index, double value);

/// The element's value as a person reads it, in the field's unit.
[[nodiscard]] double shownValue(const ParameterSet& set, const Field& field, FieldIndex index = {});

/// Stored form of a shown value: a single for f32 fields, otherwise the nearest whole number.
[[nodiscard]] double storedFromShown(const Field& field, double shown);

/// Default of an element as it is stored; 0 where the table gives none.
[[nodiscard]] double storedDefault(const Field& field, FieldIndex index);

/// Calls `visit(index)` for every element of the field, outer dimension first.
template <typename Visit>
void forEachElement(const Field& field, Visit visit) {
    for (std::size_t outer = 0; outer < field.outer.count; ++outer) {
        for (std::size_t inner = 0; inner < field.inner.count; ++inner) {
            visit(FieldIndex{outer, inner});
        }
    }
}

}  // namespace tessavo
