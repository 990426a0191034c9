#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "base/saturate.h"
#include "params/field_table.h"

namespace tessavo {

namespace {

using enum FieldType;

template <typename Stored>
double readAs(const unsigned char* bytes) {
    Stored value;
    std::memcpy(&value, bytes, sizeof value);
    return static_cast<double>(value);
}

template <typename Stored>
void writeAs(unsigned char* bytes, double value) {
    const auto stored = truncateTo<Stored>(value);
    std::memcpy(bytes, &stored, sizeof stored);
}

}  // namespace

const FieldCode* codeOf(const Field& field, double stored) {
    const auto known = std::find_if(field.codes.begin(), field.codes.end(), [stored](const FieldCode& code) {
        return static_cast<double>(code.code) == stored;
    });
    return known == field.codes.end() ? nullptr : &*known;
}

double readNumber(const unsigned char* bytes, FieldType type) {
    switch (type) {
        case u8:
            return readAs<std::uint8_t>(bytes);
        case i8:
            return readAs<std::int8_t>(bytes);
        case u16:
            return readAs<std::uint16_t>(bytes);
        case i16:
            return readAs<std::int16_t>(bytes);
        case u32:
            return readAs<std::uint32_t>(bytes);
        case i32:
            return readAs<std::int32_t>(bytes);
        case f32:
            break;
    }
    return readAs<float>(bytes);
}

void writeNumber(unsigned char* bytes, FieldType type, double value) {
    switch (type) {
        case u8:
            return writeAs<std::uint8_t>(bytes, value);
        case i8:
            return writeAs<std::int8_t>(bytes, value);
        case u16:
            return writeAs<std::uint16_t>(bytes, value);
        case i16:
            return writeAs<std::int16_t>(bytes, value);
        case u32:
            return writeAs<std::uint32_t>(bytes, value);
        case i32:
            return writeAs<std::int32_t>(bytes, value);
        case f32:
            break;
    }
    const auto stored = static_cast<float>(value);
    std::memcpy(bytes, &stored, sizeof stored);
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
