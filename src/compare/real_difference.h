#pragma once

#include "params/field_table.h"
#include "params/parameter_image.h"
#include "params/records.h"

namespace tessavo {

/// Tells differences of two sets that the target's number formats must make apart from real ones.
///
/// A difference is not real where both values become the same words of the image, or where one value is what the other
/// becomes on its way into an image and back into a set: volumes have steps of 0.5 dB there, delays are samples that
/// leave at one rate and come back at another, gains of the input side are whole, group terms are tenths. Nor is it
/// where both are the same number, as 0 and −0.
///
/// Volume and group gain share a word, and so do delay and group delay. Both of such a pair are judged together, and
/// then each by itself: as if the other one were the same on both sides, or 0.
///
/// A field that the image does not carry differs really.
class RealDifferences {
 public:
    /// \param left, right outlive this object
    RealDifferences(const ParameterSet& left, const ParameterSet& right);

    /// Whether an element differs, and really. `index` lies within the field.
    [[nodiscard]] bool isReal(const Field& field, FieldIndex index) const;

 private:
    [[nodiscard]] bool comesBackAsOther(const Field& field, FieldIndex index) const;
    [[nodiscard]] bool isPairReal(const Field& field, const Field& partner, FieldIndex index) const;

    const ParameterSet& left_;
    const ParameterSet& right_;
    ParameterImage leftImage_;
    ParameterImage rightImage_;
    ParameterSet leftBack_;  ///< what the left set becomes in the target and back
    ParameterSet rightBack_;
};

}  // namespace tessavo
