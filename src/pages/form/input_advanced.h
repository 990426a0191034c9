#pragma once

#include "pages/form/input_base.h"

namespace tessavo {

/// A binder with a second box, for the distance in centimetres that sound goes in the slider's time in
/// milliseconds.
class CInputAdvanced : public CInputBase {
 public:
    CInputAdvanced(CBitmapSlider& slider, NumberEdit& valueEdit, NumberEdit& secondEdit, QWidget* owner,
                   int lower, int upper, int divisor);

    /// Writes both boxes.
    void showPosition() override;
    /// The second box shows the distance of the value as it was typed, not of the slider's step.
    void applyText() override;
    /// Moves the slider to the typed distance, truncated towards zero and clamped; writes neither box.
    void applySecondText() override;
    /// The second box takes `steps` as if they were units; only the first divides them.
    void showValue(int steps) override;
    void warn() override;
    void mark(double inForce, const QString& played) override;

    [[nodiscard]] NumberEdit& secondEdit() const { return secondEdit_; }

 private:
    void showSecond(float value);

    NumberEdit& secondEdit_;
};

}  // namespace tessavo
