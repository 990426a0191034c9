#pragma once

#include <QString>
#include <Qt>

#include "params/field_table.h"

namespace tessavo {

/// How the positions of a slider, the text beside it and the value behind it depend on each other:
/// position = ±value × stepsPerUnit.
struct ValueScale {
    int minimum = 0;       ///< lowest position
    int maximum = 0;       ///< highest position
    int stepsPerUnit = 1;  ///< positions in one unit of the value; 10 gives tenths
    bool negated = false;  ///< vertical sliders hold the negated value, so that the top is the highest
    int decimals = 0;      ///< of the text
    /// The text is a level in dB: 0.0 at the highest value, a tenth less for each step below it, "-Inf." at
    /// value 0.
    bool attenuation = false;
};

/// Scale of a field's slider: its range and decimals are those of the field table.
[[nodiscard]] ValueScale sliderScale(FieldId field, Qt::Orientation orientation);

/// Value that a position stands for; position 0 is 0, never -0.
[[nodiscard]] double valueAt(const ValueScale& scale, int position);

/// Position nearest to a value, clamped; a value that is no number counts as 0.
[[nodiscard]] int positionOf(const ValueScale& scale, double value);

/// Value at the top of a vertical slider, at the right end of a horizontal one.
[[nodiscard]] double highestValue(const ValueScale& scale);

/// The value at a position as text, with a decimal point in every locale.
[[nodiscard]] QString textAt(const ValueScale& scale, int position);

/// Ten times the number at the start of a text: an optional "-", digits, one decimal point (a comma counts
/// as one), digits. What follows is ignored; a text without a digit there gives 0.
[[nodiscard]] double readTenths(const QString& text);

/// Position that a typed text asks for: truncated towards zero and clamped. "-Inf." and "-inf." are the
/// bottom of an attenuation.
[[nodiscard]] int typedPosition(const ValueScale& scale, const QString& text);

/// False while a text is only the beginning of one that typedPosition() understands and would give the
/// loudest level for it.
[[nodiscard]] bool isWholeText(const ValueScale& scale, const QString& text);

/// A stored value in words: as textAt() gives it where a position stands for just this value, otherwise with
/// all the digits that tell it from its neighbours.
[[nodiscard]] QString exactText(const ValueScale& scale, double value);

/// `value` with this many decimals, as the C format "%.nf" writes it.
[[nodiscard]] QString numberText(double value, int decimals);

}  // namespace tessavo
