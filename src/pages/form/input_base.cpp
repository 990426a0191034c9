#include "pages/form/input_base.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/number_text.h"
#include "base/saturate.h"
#include "controls/bitmap_slider.h"
#include "controls/number_edit.h"
#include "pages/form/box_marks.h"
#include "pages/form/value_scale.h"

namespace tessavo {

namespace {

constexpr int textDecimals = 1;

}  // namespace

ParsedNumber parseText(const QString& text) {
    const NumberStart typed = numberAtStart(text.trimmed().toStdString());
    if (std::isnan(typed.value)) {
        return {};
    }
    constexpr double largest = std::numeric_limits<float>::max();
    return {static_cast<float>(std::clamp(typed.value, -largest, largest)), typed.isThere, typed.isWhole};
}

float parsedNumber(const QString& text) {
    return parseText(text).value;
}

CInputBase::CInputBase(CBitmapSlider& slider, NumberEdit& valueEdit, QWidget* owner, int lower, int upper,
                       int divisor)
    : slider_(slider),
      valueEdit_(valueEdit),
      owner_(owner),
      divisor_(divisor),
      lower_(lower * divisor),
      upper_(upper * divisor) {
    slider_.setRange(-upper_, -lower_);
}

float CInputBase::positionInUnits() const {
    return static_cast<float>(slider_.position()) / static_cast<float>(divisor_);
}

void CInputBase::moveToSteps(float steps) {
    const int position = truncateTo<int>(-steps);
    slider_.setPosition(std::clamp(position, slider_.minimum(), slider_.maximum()));
    slider_.update();
}

void CInputBase::showPosition() {
    float value = positionInUnits();
    if (value != 0) {
        value = -value;
    }
    valueEdit_.setValueText(numberText(value, textDecimals));
}

void CInputBase::applyText() {
    const auto lowest = static_cast<float>(lower_);
    const auto highest = static_cast<float>(upper_);
    float steps = parsedNumber(valueEdit_.text()) * static_cast<float>(divisor_);
    if (steps < lowest) {
        steps = lowest;
        CInputBase::showValue(lower_);
    } else if (steps > highest) {
        steps = highest;
        CInputBase::showValue(upper_);
    }
    moveToSteps(steps);
}

void CInputBase::showValue(int steps) {
    const float value = static_cast<float>(steps) / static_cast<float>(divisor_);
    valueEdit_.setValueText(numberText(value, textDecimals));
}

void CInputBase::warnIn(NumberEdit& edit, float lowest, float highest, float stepsPerUnit) const {
    if (!edit.isEdited()) {
        return;
    }
    const ParsedNumber typed = parseText(edit.text());
    const bool isClamped = typed.value < lowest || typed.value > highest;
    const float units = std::clamp(typed.value, lowest, highest);
    const int position =
        std::clamp(truncateTo<int>(-units * stepsPerUnit), slider_.minimum(), slider_.maximum());
    const QString value =
        numberText(position == 0 ? 0.0 : -static_cast<double>(position) / divisor_, textDecimals);
    edit.setWarning(typedWarning({typed.isThere, typed.isWhole, isClamped, position},
                                 value + QLatin1Char(' ') + valueEdit_.unit()));
}

void CInputBase::warn() {
    const auto steps = static_cast<float>(divisor_);
    warnIn(valueEdit_, static_cast<float>(lower_) / steps, static_cast<float>(upper_) / steps, steps);
}

void CInputBase::mark(double inForce, const QString& played) {
    const ParsedNumber text = parseText(valueEdit_.text());
    ValueScale scale;
    scale.decimals = textDecimals;
    scale.unit = valueEdit_.unit();
    valueEdit_.setMark(markText(text.isWhole ? std::optional<double>(text.value) : std::nullopt, inForce,
                                exactUnitText(scale, inForce), played));
}

}  // namespace tessavo
