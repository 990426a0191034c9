#include "pages/form/input_advanced.h"

#include "controls/number_edit.h"
#include "pages/form/box_marks.h"

namespace tessavo {

namespace {

// Sound goes 34.3 cm in a millisecond. A typed distance is divided by 34.0, so that whole multiples of 34
// and of 34.3 both give whole tenths.
constexpr float centimetresPerMsShown = 34.3F;
constexpr float centimetresPerMsTyped = 34.0F;

}  // namespace

CInputAdvanced::CInputAdvanced(CBitmapSlider& slider, NumberEdit& valueEdit, NumberEdit& secondEdit,
                               QWidget* owner, int lower, int upper, int divisor)
    : CInputBase(slider, valueEdit, owner, lower, upper, divisor), secondEdit_(secondEdit) {}

void CInputAdvanced::showSecond(float value) {
    secondEdit_.setValueText(numberText(value, 1));
}

void CInputAdvanced::showPosition() {
    CInputBase::showPosition();
    float value = positionInUnits();
    if (value != 0) {
        value = -(value * centimetresPerMsShown);
    }
    showSecond(value);
}

void CInputAdvanced::applyText() {
    CInputBase::applyText();
    const auto steps = static_cast<float>(divisor());
    showSecond(parsedNumber(valueEdit().text()) * steps / steps * centimetresPerMsShown);
}

void CInputAdvanced::applySecondText() {
    const auto steps = static_cast<float>(divisor());
    const float centimetres = parsedNumber(secondEdit_.text());
    const float lowest = static_cast<float>(lower()) / steps * centimetresPerMsShown;
    const float highest = static_cast<float>(upper()) / steps * centimetresPerMsShown;
    if (centimetres < lowest) {
        moveToSteps(static_cast<float>(lower()));
    } else if (centimetres > highest) {
        moveToSteps(static_cast<float>(upper()));
    } else {
        moveToSteps(centimetres * steps / centimetresPerMsTyped);
    }
}

void CInputAdvanced::showValue(int steps) {
    CInputBase::showValue(steps);
    showSecond(static_cast<float>(steps) * centimetresPerMsShown);
}

void CInputAdvanced::warn() {
    CInputBase::warn();
    const auto steps = static_cast<float>(divisor());
    warnIn(secondEdit_, static_cast<float>(lower()) / steps * centimetresPerMsShown,
           static_cast<float>(upper()) / steps * centimetresPerMsShown, steps / centimetresPerMsTyped);
}

void CInputAdvanced::mark(double inForce, const QString& played) {
    CInputBase::mark(inForce, played);
    const ParsedNumber text = parseText(secondEdit_.text());
    secondEdit_.setMark(distanceMark(text.isWhole ? std::optional<double>(text.value) : std::nullopt,
                                     inForce * static_cast<double>(centimetresPerMsShown), played));
}

}  // namespace tessavo
