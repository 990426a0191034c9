#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "params/parameter_image.h"
#include "params/records.h"

namespace tessavo {

/// Every field of a parameter set but its two texts, in record order: its number is its row in fieldTable().
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

/// Binary form of a number in record or image: unsigned, signed or floating point, with its width in bits.
/// All are little-endian.
enum class FieldType : std::uint8_t { u8, i8, u16, i16, u32, i32, f32 };

/// Bytes that a number of this type takes.
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

/// How a field's value in the record and its value in the image depend on each other. What stands behind
/// "back" is done when a received image is converted into a record.
enum class ImageRule : std::uint8_t {
    none,  ///< the image does not carry the field
    copy,  ///< the same value, in the image's width; back: its low bytes
    /// Truncated towards zero to the image's integer; back: as a float. The image may hold it twice.
    wholeNumber,
    /// 1 where the record has 0, and 0 where it has anything else; back likewise. The image holds it twice.
    inverse,
    gainWord,       ///< word of the volumeGainTable() for volume + group gain; back: the volume alone
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
    std::uint16_t count = 1;         ///< number of elements; 1 for a dimension that the field does not have
    std::uint16_t recordStride = 0;  ///< bytes from one element to the next in the record
    std::uint16_t imageStride = 0;   ///< the same in the image
};

/// One value of a field that holds codes, and the words for it.
struct FieldCode {
    std::uint8_t code;             ///< as it is stored
    std::string_view shown;        ///< word on the screen
    std::string_view script = {};  ///< word in edit scripts; empty where they have none
    std::string_view inText = {};  ///< word in reports; that of the screen when empty
};

/// The coefficients that depend on a field, and have to be computed anew when it changes.
enum class Shapes : std::uint8_t {
    nothing,
    band,          ///< those of the band of the same indices
    crossovers,    ///< those of both crossovers of the channel
    inputSection,  ///< those of the graphic or tone band of the same index
};

/// One parameter: its name, unit, range and defaults, and where record and image hold it. Whatever reads,
/// writes, converts, shows or documents a set works from this description.
struct Field {
    FieldId id;
    /// Name with "[]" for each repeated dimension: "channel[].band[].frequency".
    std::string_view path;
    std::string_view meaning;  ///< a few words for documents

    FieldType type;              ///< in the record
    std::uint16_t recordOffset;  ///< of the first element, in bytes from the record's start
    Repeat outer{};              ///< channels, or the bands of the input side
    Repeat inner{};              ///< bands or crossovers within a channel

    ImageRule rule = ImageRule::none;
    FieldType imageType = FieldType::u8;
    std::int16_t imageOffset =
        -1;  ///< of the first element, in bytes; -1 where the image does not carry the field
    std::int16_t secondImageOffset =
        -1;  ///< of the copy, where the image holds the field twice; otherwise -1

    std::string_view unit{};    ///< of the shown value; empty for counts, codes and switches
    double minimum = 0;         ///< lowest value a person may set, in `unit`
    double maximum = 0;         ///< highest value a person may set, in `unit`
    double storedPerShown = 1;  ///< stored value = shown value times this
    int decimals = 0;           ///< of the step between two values: 1 for tenths
    /// Values of a fresh store, in `unit`: none, which stands for 0, one for all elements, or one for each
    /// index of the last dimension.
    std::span<const double> defaults{};
    /// What each stored code means, by rising code; empty for numbers and switches.
    std::span<const FieldCode> codes{};

    Shapes shapes = Shapes::nothing;
    bool editable = true;  ///< false where an edit would damage the set, as in its size
};

/// Decimals that a shown value is written with. Levels in dB always have one, so that columns of them align.
[[nodiscard]] constexpr int shownDecimals(const Field& field) {
    return field.unit == "dB" ? 1 : field.decimals;
}

inline constexpr std::size_t fieldCount = static_cast<std::size_t>(FieldId::count);

/// All fields, in record order.
[[nodiscard]] std::span<const Field, fieldCount> fieldTable();
/// The row of a field. `id` is not FieldId::count.
[[nodiscard]] const Field& fieldOf(FieldId id);

/// The words for a stored value; null where the field has no such code.
[[nodiscard]] const FieldCode* codeOf(const Field& field, double stored);

/// Which element of a repeated field, counted from 0; 0 for a dimension that the field does not have.
struct FieldIndex {
    std::size_t outer = 0;
    std::size_t inner = 0;
};

/// Whether the field has this element.
[[nodiscard]] constexpr bool contains(const Field& field, FieldIndex index) {
    return index.outer < field.outer.count && index.inner < field.inner.count;
}

/// Offset of an element in the record, in bytes. `index` lies within the field.
[[nodiscard]] constexpr std::size_t recordOffsetOf(const Field& field, FieldIndex index) {
    return field.recordOffset + index.outer * field.outer.recordStride +
           index.inner * field.inner.recordStride;
}

/// Distance of an element from the field's first element in the image, in bytes. `index` lies within the
/// field.
[[nodiscard]] constexpr std::size_t imageStrideOf(const Field& field, FieldIndex index) {
    return index.outer * field.outer.imageStride + index.inner * field.inner.imageStride;
}

/// Reads a number of this type from bytes that need no alignment.
/// \param bytes at least as many as the type is wide
[[nodiscard]] double readNumber(const unsigned char* bytes, FieldType type);
/// Writes a number, truncated and saturated to this type, over bytes that need no alignment.
/// \param bytes at least as many as the type is wide
void writeNumber(unsigned char* bytes, FieldType type, double value);

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
