#pragma once

#include <memory>

#include "params/field_table.h"
#include "params/records.h"

namespace tessavo {

/// Tells differences of two sets that the target's number formats must make apart from real ones.
///
/// A difference is not real where both values become the same words of the image, or where one value is what the other
/// becomes on its way into an image and back into a set: volumes have steps of 0.5 dB there, delays are samples that
/// leave at one rate and come back at another, gains of the input side are whole, group terms are tenths.
///
/// Volume and group gain share a word, and so do delay and group delay. Such a value is judged by the word of the pair,
/// and else by itself: as if the other one of the pair were the same on both sides, or 0.
///
/// A field that the image does not carry, names, versions and spare bytes differ really.
class RealDifferences {
 public:
    /// \param left, right outlive this object
    RealDifferences(const ParameterSet& left, const ParameterSet& right);
    ~RealDifferences();
    RealDifferences(const RealDifferences&) = delete;
    RealDifferences& operator=(const RealDifferences&) = delete;

    /// Whether an element differs, and really. `index` lies within the field.
    [[nodiscard]] bool isReal(const Field& field, FieldIndex index) const;

 private:
    struct Sides;
    std::unique_ptr<const Sides> sides_;
};

}  // namespace tessavo
