#pragma once

#include <QString>
#include <Qt>
#include <optional>

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
    QString unit;  ///< of the text; empty for a plain number
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

/// The text at a position with its unit.
[[nodiscard]] QString unitTextAt(const ValueScale& scale, int position);

/// Ten times the number at the start of a text: an optional "-", digits, one decimal point (a comma counts
/// as one), digits. What follows is ignored; a text without a digit there gives 0.
[[nodiscard]] double readTenths(const QString& text);

/// What a typed text counts as.
struct TypedNumber {
    bool isThere = false;    ///< the text begins with a number, or says silence
    bool isWhole = false;    ///< and with its unit, where it may have one, is nothing else
    bool isClamped = false;  ///< the number lies beyond the range
    int position = 0;        ///< truncated towards zero and clamped; without a number that of 0
};

/// Reads a text as readTenths() does. A frequency may be followed by its unit, and "k" stands for a thousand,
/// in place of the decimal point as well: "3.2k", "3k2", "3,2 kHz" and "3200 Hz" are the same. "-Inf." and
/// "-inf." are the bottom of an attenuation.
[[nodiscard]] TypedNumber readTyped(const ValueScale& scale, const QString& text);

/// Position that a typed text asks for. One without a number leaves an attenuation at `current`: its 0 would
/// be the loudest.
[[nodiscard]] int typedPosition(const ValueScale& scale, const QString& text, int current);

/// The value that a text says, neither truncated nor clamped; nothing unless all of the text is a number.
[[nodiscard]] std::optional<double> numberIn(const ValueScale& scale, const QString& text);

/// What to warn of while a text stands in a box: empty for a number within the range.
[[nodiscard]] QString typedWarning(const ValueScale& scale, const QString& text, int current);
/// The same for a page with a reader of its own.
///
/// \param countsAs number and unit
[[nodiscard]] QString typedWarning(const TypedNumber& typed, const QString& countsAs);

/// A stored value in words: as textAt() gives it where a position stands for just this value, otherwise with
/// all the digits that tell it from its neighbours.
[[nodiscard]] QString exactText(const ValueScale& scale, double value);

/// `value` with this many decimals, as the C format "%.nf" writes it.
[[nodiscard]] QString numberText(double value, int decimals);

}  // namespace tessavo
