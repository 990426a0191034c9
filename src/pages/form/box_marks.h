#pragma once

#include <QString>
#include <optional>

#include "pages/form/value_scale.h"
#include "params/tuning_state.h"

namespace tessavo {

/// A value with its unit, with as many decimals as tell it from its neighbours: "0.7 dB", "0.7071 dB".
[[nodiscard]] QString exactUnitText(const ValueScale& scale, double value);

/// Whether two numbers read alike, whatever a single makes of their tenths.
[[nodiscard]] bool isSameNumber(double one, double other);

/// What plays where that is not the value of the record: "Plays 3.0 dB"; otherwise empty. Read from the
/// image, which is what the target gets.
[[nodiscard]] QString playedNote(const TuningState& tuning, FieldId field, FieldIndex index);

/// What the image holds of an element that it carries as a number, in the field's unit; nothing for a field
/// that it does not carry so.
[[nodiscard]] std::optional<double> imageNumber(const TuningState& tuning, FieldId field, FieldIndex index);

/// The mark of a box: "In force: 3.2 dB. Plays 3.0 dB", each part where it differs.
///
/// \param boxNumber what the text says; nothing for a text that is no number
/// \param played of playedNote()
[[nodiscard]] QString markText(std::optional<double> boxNumber, double inForce, const QString& inForceText,
                               const QString& played);

/// The same for the box of a distance, whose text has one decimal.
[[nodiscard]] QString distanceMark(std::optional<double> boxNumberCm, double inForceCm,
                                   const QString& played);

}  // namespace tessavo
