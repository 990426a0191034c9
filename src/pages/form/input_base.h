#pragma once

#include <QString>

class QWidget;

namespace tessavo {

class CBitmapSlider;
class NumberEdit;

/// Keeps a vertical slider and the edit box of its value in step, within fixed limits.
///
/// The slider holds the negated value: position = −(value × divisor), so that its top is the highest value.
/// The binder owns none of its controls and posts no events; whoever hears of a move or of a typed text calls
/// the operation that fits. Calculations are in single precision, texts have one decimal.
class CInputBase {
 public:
    /// Sets the slider's range to the limits.
    ///
    /// \param owner what the controls stand on; only remembered
    /// \param lower, upper in the unit of the value; lower ≤ upper
    /// \param divisor slider steps to a unit, above 0; 10 gives tenths
    CInputBase(CBitmapSlider& slider, NumberEdit& valueEdit, QWidget* owner, int lower, int upper,
               int divisor);
    CInputBase(const CInputBase&) = delete;
    CInputBase& operator=(const CInputBase&) = delete;

    /// Writes the slider's value into the box; position 0 gives 0.0, never -0.0.
    virtual void showPosition();
    /// Moves the slider to the typed value, truncated towards zero to its steps. A value beyond a limit
    /// counts as the limit and is rewritten; any other text stays as it was typed.
    virtual void applyText();
    /// For a binder with a second box; does nothing here.
    virtual void applySecondText() {}
    /// Writes a number of steps into the box as a value. The sign is kept, unlike that of a slider's
    /// position.
    virtual void showValue(int steps);

    /// Warns in the boxes of a text under way that counts as something else.
    virtual void warn();
    /// Marks a box whose text is not what is in force, or not what plays.
    ///
    /// \param inForce in units
    /// \param played what plays in its place, as a sentence; empty where it plays
    virtual void mark(double inForce, const QString& played);

    virtual ~CInputBase() = default;

    [[nodiscard]] CBitmapSlider& slider() const { return slider_; }
    [[nodiscard]] NumberEdit& valueEdit() const { return valueEdit_; }
    [[nodiscard]] QWidget* owner() const { return owner_; }
    [[nodiscard]] int divisor() const { return divisor_; }
    /// Limits in steps.
    [[nodiscard]] int lower() const { return lower_; }
    [[nodiscard]] int upper() const { return upper_; }

 protected:
    /// Moves the slider to a number of steps, truncated and clamped to its range, and repaints it.
    void moveToSteps(float steps);
    /// The slider's position in units.
    [[nodiscard]] float positionInUnits() const;
    /// Warns in one box.
    ///
    /// \param lowest, highest in units of that box
    /// \param stepsPerUnit of the slider
    void warnIn(NumberEdit& edit, float lowest, float highest, float stepsPerUnit) const;

 private:
    CBitmapSlider& slider_;
    NumberEdit& valueEdit_;
    QWidget* owner_;
    int divisor_;
    int lower_;
    int upper_;
};

/// What parsedNumber() finds.
struct ParsedNumber {
    float value = 0;
    bool isThere = false;  ///< the text begins with a number
    bool isWhole = false;  ///< and, but for blanks around it, is nothing else
};
[[nodiscard]] ParsedNumber parseText(const QString& text);

/// Number at the start of a text, as the standard conversion reads it (blanks, sign, digits, decimal point,
/// exponent) in every locale; a comma counts as a decimal point. 0 for a text that begins with no number.
[[nodiscard]] float parsedNumber(const QString& text);

}  // namespace tessavo
