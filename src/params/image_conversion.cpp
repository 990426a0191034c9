#include "params/image_conversion.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "base/saturate.h"
#include "params/volume_gain_table.h"

namespace tessavo {

namespace {

unsigned char* bytesOf(ParameterImage& image) {
    return reinterpret_cast<unsigned char*>(&image);
}

const unsigned char* bytesOf(const ParameterImage& image) {
    return reinterpret_cast<const unsigned char*>(&image);
}

const unsigned char* bytesOf(const ParameterSet& set) {
    return reinterpret_cast<const unsigned char*>(&set);
}

std::size_t imageOffset(const Field& field, FieldIndex index) {
    return static_cast<std::size_t>(field.imageOffset) + imageStrideOf(field, index);
}

// Copies the bytes that both sides have and fills the rest of a wider image field with zeros; bit patterns of
// singles survive.
void copyIntoImage(ParameterImage& image, const ParameterSet& set, const Field& field, FieldIndex index) {
    std::array<unsigned char, 4> bytes{};
    std::memcpy(bytes.data(), bytesOf(set) + recordOffsetOf(field, index), widthOf(field.type));
    std::memcpy(bytesOf(image) + imageOffset(field, index), bytes.data(), widthOf(field.imageType));
}

void copyFromImage(ParameterSet& set, const ParameterImage& image, const Field& field, FieldIndex index) {
    std::array<unsigned char, 4> bytes{};
    std::memcpy(bytes.data(), bytesOf(image) + imageOffset(field, index), widthOf(field.imageType));
    std::memcpy(reinterpret_cast<unsigned char*>(&set) + recordOffsetOf(field, index), bytes.data(),
                widthOf(field.type));
}

double imageValue(const ParameterImage& image, const Field& field, FieldIndex index) {
    return readNumber(bytesOf(image) + imageOffset(field, index), field.imageType);
}

void writeBothPlaces(ParameterImage& image, const Field& field, FieldIndex index, double value) {
    writeNumber(bytesOf(image) + imageOffset(field, index), field.imageType, value);
    if (field.secondImageOffset >= 0) {
        const auto second = static_cast<std::size_t>(field.secondImageOffset) + imageStrideOf(field, index);
        writeNumber(bytesOf(image) + second, field.imageType, value);
    }
}

void writeGainWord(ParameterImage& image, const ParameterSet& set, std::size_t channel) {
    const OutputChannelParams& params = set.channels[channel];
    image.channels[channel].gainWord = gainWordOf(params.volumeDb, params.groupGainDb);
}

void writeDelaySamples(ParameterImage& image, const ParameterSet& set, std::size_t channel) {
    const OutputChannelParams& params = set.channels[channel];
    image.channels[channel].delaySamples = delaySamplesOf(params.delayMs, params.groupDelayMs);
}

// The product is formed in single precision, where a tenth times ten is a whole number again; in double
// precision it may be just below, and truncation would lose one.
double tenthsOf(float value) {
    return static_cast<double>(value * 10.0F);
}

void readImageField(ParameterStore& store, std::size_t setIndex, const ParameterImage& image,
                    const Field& field, FieldIndex index) {
    ParameterSet& set = store.sets[setIndex];
    switch (field.rule) {
        case ImageRule::none:
            break;
        case ImageRule::copy:
        case ImageRule::fromImageOnly:
            copyFromImage(set, image, field, index);
            break;
        case ImageRule::wholeNumber:
            setStoredValue(set, field, index, imageValue(image, field, index));
            break;
        case ImageRule::inverse:
            setStoredValue(set, field, index, imageValue(image, field, index) == 0.0 ? 1.0 : 0.0);
            break;
        case ImageRule::gainWord:
            setStoredValue(set, field, index, levelOfGainWord(image.channels[index.outer].gainWord));
            break;
        case ImageRule::delaySamples:
            set.channels[index.outer].delayMs = delayOfSamples(image.channels[index.outer].delaySamples);
            break;
        case ImageRule::groupGain:
        case ImageRule::groupDelay:
            setStoredValue(set, field, index, imageValue(image, field, index) / 10.0);
            break;
        case ImageRule::flag:
            setStoredValue(set, field, index, imageValue(image, field, index) != 0.0 ? 1.0 : 0.0);
            break;
        case ImageRule::neverCleared:
            if (imageValue(image, field, index) != 0.0) {
                setStoredValue(set, field, index, 1.0);
            }
            break;
        case ImageRule::allSets:
            for (ParameterSet& each : store.sets) {
                copyFromImage(each, image, field, index);
            }
            break;
    }
}

}  // namespace

void writeImageField(ParameterImage& image, const ParameterSet& set, const Field& field, FieldIndex index) {
    switch (field.rule) {
        case ImageRule::none:
        case ImageRule::fromImageOnly:
            break;
        case ImageRule::copy:
        case ImageRule::flag:
        case ImageRule::neverCleared:
        case ImageRule::allSets:
            copyIntoImage(image, set, field, index);
            break;
        case ImageRule::wholeNumber:
            writeBothPlaces(image, field, index, storedValue(set, field, index));
            break;
        case ImageRule::inverse:
            writeBothPlaces(image, field, index, storedValue(set, field, index) == 0.0 ? 1.0 : 0.0);
            break;
        case ImageRule::gainWord:
            writeGainWord(image, set, index.outer);
            break;
        case ImageRule::groupGain:
            writeBothPlaces(image, field, index, tenthsOf(set.channels[index.outer].groupGainDb));
            writeGainWord(image, set, index.outer);
            break;
        case ImageRule::delaySamples:
            writeDelaySamples(image, set, index.outer);
            break;
        case ImageRule::groupDelay:
            writeBothPlaces(image, field, index, tenthsOf(set.channels[index.outer].groupDelayMs));
            writeDelaySamples(image, set, index.outer);
            break;
    }
}

void writeImageFields(ParameterImage& image, const ParameterSet& set) {
    for (const Field& field : fieldTable()) {
        if (field.rule != ImageRule::inverse) {
            forEachElement(field, [&](FieldIndex index) { writeImageField(image, set, field, index); });
        }
    }
}

void readImageFields(ParameterStore& store, std::size_t setIndex, const ParameterImage& image) {
    for (const Field& field : fieldTable()) {
        forEachElement(field,
                       [&](FieldIndex index) { readImageField(store, setIndex, image, field, index); });
    }
}

bool haveEqualImageFields(const ParameterSet& one, const ParameterSet& other) {
    return std::ranges::all_of(fieldTable(), [&](const Field& field) {
        bool same = true;
        if (field.rule != ImageRule::none) {
            forEachElement(field, [&](FieldIndex index) {
                const std::size_t offset = recordOffsetOf(field, index);
                same = same &&
                       std::memcmp(bytesOf(one) + offset, bytesOf(other) + offset, widthOf(field.type)) == 0;
            });
        }
        return same;
    });
}

}  // namespace tessavo
