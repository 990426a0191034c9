#include "compare/real_difference.h"

#include <array>
#include <cstring>
#include <memory>

#include "params/image_conversion.h"

namespace tessavo {

namespace {

template <typename Record>
const unsigned char* bytesOf(const Record& record) {
    return reinterpret_cast<const unsigned char*>(&record);
}

bool areSame(const ParameterSet& one, const ParameterSet& other, const Field& field, FieldIndex index) {
    const std::size_t offset = recordOffsetOf(field, index);
    return std::memcmp(bytesOf(one) + offset, bytesOf(other) + offset, widthOf(field.type)) == 0;
}

// The copy that the image may have of a word always says the same.
bool areSame(const ParameterImage& one, const ParameterImage& other, const Field& field, FieldIndex index) {
    const std::size_t offset = static_cast<std::size_t>(field.imageOffset) + imageStrideOf(field, index);
    return std::memcmp(bytesOf(one) + offset, bytesOf(other) + offset, widthOf(field.imageType)) == 0;
}

ParameterImage imageOf(const ParameterSet& set) {
    ParameterImage image{};
    writeImageFields(image, set);
    writeImageField(image, set, fieldOf(FieldId::inputEqOn), {});
    return image;
}

ParameterSet readBack(const ParameterSet& set, const ParameterImage& image) {
    const auto store = std::make_unique<ParameterStore>();
    store->sets[0] = set;
    readImageFields(*store, 0, image);
    return store->sets[0];
}

// The field that shares a word of the image with this one.
const Field* partnerOf(const Field& field) {
    switch (field.id) {
        case FieldId::volume:
            return &fieldOf(FieldId::groupGain);
        case FieldId::groupGain:
            return &fieldOf(FieldId::volume);
        case FieldId::delay:
            return &fieldOf(FieldId::groupDelay);
        case FieldId::groupDelay:
            return &fieldOf(FieldId::delay);
        default:
            return nullptr;
    }
}

/// Two values of a pair, in a set that has nothing else.
struct PairValues {
    const Field& field;
    const Field& partner;
    FieldIndex index;

    [[nodiscard]] ParameterSet with(double value, double partnerValue) const {
        ParameterSet set{};
        setStoredValue(set, field, index, value);
        setStoredValue(set, partner, index, partnerValue);
        return set;
    }
    [[nodiscard]] bool giveSameWords(double one, double other, double partnerValue) const {
        const ParameterImage first = imageOf(with(one, partnerValue));
        const ParameterImage second = imageOf(with(other, partnerValue));
        return std::memcmp(&first, &second, sizeof first) == 0;
    }
    [[nodiscard]] bool becomes(double one, double other) const {
        const ParameterSet before = with(one, 0);
        return storedValue(readBack(before, imageOf(before)), field, index) == other;
    }
};

}  // namespace

RealDifferences::RealDifferences(const ParameterSet& left, const ParameterSet& right)
    : left_(left),
      right_(right),
      leftImage_(imageOf(left)),
      rightImage_(imageOf(right)),
      leftBack_(readBack(left, leftImage_)),
      rightBack_(readBack(right, rightImage_)) {}

bool RealDifferences::comesBackAsOther(const Field& field, FieldIndex index) const {
    return areSame(leftBack_, right_, field, index) || areSame(left_, rightBack_, field, index);
}

bool RealDifferences::isReal(const Field& field, FieldIndex index) const {
    if (areSame(left_, right_, field, index) ||
        storedValue(left_, field, index) == storedValue(right_, field, index)) {
        return false;
    }
    if (field.rule == ImageRule::none) {
        return true;
    }
    if (const Field* partner = partnerOf(field)) {
        return isPairReal(field, *partner, index);
    }
    const bool isWritten = field.rule != ImageRule::fromImageOnly;
    return !comesBackAsOther(field, index) && !(isWritten && areSame(leftImage_, rightImage_, field, index));
}

bool RealDifferences::isPairReal(const Field& field, const Field& partner, FieldIndex index) const {
    // One of the two has the word that both make, the other one a word of its own.
    if (areSame(leftImage_, rightImage_, field, index) && areSame(leftImage_, rightImage_, partner, index)) {
        return false;
    }
    const auto pairIs = [&](const ParameterSet& one, const ParameterSet& other) {
        return areSame(one, other, field, index) && areSame(one, other, partner, index);
    };
    if (pairIs(leftBack_, right_) || pairIs(left_, rightBack_)) {
        return false;
    }
    const double left = storedValue(left_, field, index);
    const double right = storedValue(right_, field, index);
    const PairValues pair{field, partner, index};
    return !(pair.giveSameWords(left, right, storedValue(left_, partner, index)) &&
             pair.giveSameWords(left, right, storedValue(right_, partner, index))) &&
           !pair.becomes(left, right) && !pair.becomes(right, left);
}

}  // namespace tessavo
