#include "pages/input/binding.h"

#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <algorithm>
#include <cmath>

#include "controls/bitmap_slider.h"
#include "controls/number_edit.h"
#include "controls/skin_check_box.h"
#include "controls/skin_combo_box.h"
#include "controls/spin_edit.h"
#include "dsp/saturate.h"

namespace tessavo {

namespace {

// Sound goes 34.3 cm in a millisecond. A typed distance is divided by 34.0, so that whole multiples of 34
// and of 34.3 both give whole tenths.
constexpr double centimetresPerMsShown = 34.3;
constexpr double centimetresPerMsTyped = 34.0;

}  // namespace

SliderBinding::SliderBinding(CBitmapSlider& slider, NumberEdit& edit, const ValueScale& scale,
                             const QString& unit, Write write)
    : Binding(std::move(write)),
      slider_(slider),
      edit_(edit),
      scale_(scale),
      thirdOctaves_(unit == QLatin1String("Hz")) {
    slider_.setRange(scale.minimum, scale.maximum);
    const double direction = scale.negated ? -1.0 : 1.0;
    if (scale.attenuation) {
        slider_.setValueScale(direction / 10, -highestValue(scale) / 10);
    } else {
        slider_.setValueScale(direction / scale.stepsPerUnit);
    }
    const QString shown = scale.attenuation ? QStringLiteral("dB") : unit;
    edit_.setUnit(shown);
    slider_.setFormatter([scale, shown](int position) {
        const QString number = textAt(scale, position);
        return shown.isEmpty() ? number : number + QLatin1Char(' ') + shown;
    });
    connect(&edit_, &NumberEdit::entered, this, &SliderBinding::applyText);
    connect(&edit_, &NumberEdit::left, this, &SliderBinding::leave);
    connect(&edit_, &QLineEdit::textChanged, this, &SliderBinding::followText);
    connect(&edit_, &NumberEdit::stepRequested, this, &SliderBinding::step);
}

void SliderBinding::show(double value) {
    const QScopedValueRollback busy(busy_, true);
    moveTo(positionOf(scale_, value));
}

void SliderBinding::setBypassed(bool bypassed) {
    slider_.setBypassed(bypassed);
    edit_.setBypassed(bypassed);
}

bool SliderBinding::shows(double value) const {
    return slider_.position() == positionOf(scale_, value);
}

QString SliderBinding::words(double value) const {
    return exactText(scale_, value);
}

void SliderBinding::setMixed(const QString& note) {
    slider_.setMixed(note);
    edit_.setMixed(note);
}

double SliderBinding::value() const {
    return valueAt(scale_, slider_.position());
}

void SliderBinding::moveTo(int position) {
    slider_.setPosition(position);
    showText(position);
}

void SliderBinding::showText(int position) {
    edit_.setValueText(textAt(scale_, position));
}

void SliderBinding::moved(int position, bool final) {
    if (busy_ && !final) {
        return;
    }
    const QScopedValueRollback busy(busy_, true);
    const int clamped = std::clamp(position, scale_.minimum, scale_.maximum);
    showText(clamped);
    write_(valueAt(scale_, clamped), final);
}

void SliderBinding::applyText() {
    const QScopedValueRollback busy(busy_, true);
    const int position = typedPosition(scale_, edit_.text());
    slider_.setPosition(position);
    if (typing_ != Typing::kept) {
        showText(position);
    }
    write_(valueAt(scale_, position), true);
}

void SliderBinding::followText() {
    if (busy_ || typing_ != Typing::followed || !isWholeText(scale_, edit_.text())) {
        return;
    }
    const QScopedValueRollback busy(busy_, true);
    const int position = typedPosition(scale_, edit_.text());
    slider_.setPosition(position);
    // With its old text again, as Escape gives it, the box has nothing to say when it is left.
    write_(valueAt(scale_, position), !edit_.isEdited());
}

void SliderBinding::leave() {
    // A box that was only passed through has nothing to say: the value behind it may be finer than its text.
    if (edit_.isEdited()) {
        applyText();
    }
}

void SliderBinding::step(int steps, bool coarse) {
    const QScopedValueRollback busy(busy_, true);
    int position = edit_.isEdited() ? typedPosition(scale_, edit_.text()) : slider_.position();
    if (coarse && thirdOctaves_) {
        position = positionOf(scale_, valueAt(scale_, position) * std::exp2(steps / 3.0));
    } else {
        position += (coarse ? 10 : 1) * (scale_.negated ? -steps : steps);
        position = std::clamp(position, scale_.minimum, scale_.maximum);
    }
    moveTo(position);
    write_(valueAt(scale_, position), true);
}

DelayBinding::DelayBinding(CBitmapSlider& slider, NumberEdit& edit, NumberEdit& distance,
                           const ValueScale& scale, const QString& unit, Write write)
    : SliderBinding(slider, edit, scale, unit, std::move(write)), distance_(distance) {
    distance_.setUnit(QStringLiteral("cm"));
    connect(&distance_, &NumberEdit::entered, this, &DelayBinding::applyDistance);
    connect(&distance_, &NumberEdit::left, this, [this] {
        if (distance_.isEdited()) {
            applyDistance();
        }
    });
}

void DelayBinding::setBypassed(bool bypassed) {
    SliderBinding::setBypassed(bypassed);
    distance_.setBypassed(bypassed);
}

void DelayBinding::setMixed(const QString& note) {
    SliderBinding::setMixed(note);
    distance_.setMixed(note);
}

void DelayBinding::applyText() {
    const int position = typedPosition(scale(), edit().text());
    moveTo(position);
    write_(valueAt(scale(), position), true);
}

void DelayBinding::applyDistance() {
    const ValueScale& limits = scale();
    const int tenths = truncateTo<int>(readTenths(distance_.text()) / centimetresPerMsTyped);
    const int position = std::clamp(limits.negated ? -tenths : tenths, limits.minimum, limits.maximum);
    slider().setPosition(position);
    SliderBinding::showText(position);
    write_(valueAt(limits, position), true);
}

void DelayBinding::showText(int position) {
    SliderBinding::showText(position);
    distance_.setValueText(numberText(valueAt(scale(), position) * centimetresPerMsShown, 1));
}

NumberBinding::NumberBinding(NumberEdit& edit, const ValueScale& scale, Write write)
    : Binding(std::move(write)), edit_(edit), scale_(scale) {
    connect(&edit_, &NumberEdit::entered, this, [this] { take(typedPosition(scale_, edit_.text())); });
    connect(&edit_, &NumberEdit::left, this, [this] {
        if (edit_.isEdited()) {
            take(typedPosition(scale_, edit_.text()));
        }
    });
    connect(&edit_, &QLineEdit::textChanged, this, &NumberBinding::followText);
    connect(&edit_, &NumberEdit::stepRequested, this, [this](int steps, bool coarse) {
        const int position = typedPosition(scale_, edit_.text()) + (coarse ? 10 : 1) * steps;
        take(std::clamp(position, scale_.minimum, scale_.maximum));
    });
}

void NumberBinding::show(double value) {
    const QScopedValueRollback busy(busy_, true);
    edit_.setValueText(textAt(scale_, positionOf(scale_, value)));
}

void NumberBinding::setBypassed(bool bypassed) {
    edit_.setBypassed(bypassed);
}

bool NumberBinding::shows(double value) const {
    return typedPosition(scale_, edit_.text()) == positionOf(scale_, value);
}

QString NumberBinding::words(double value) const {
    return exactText(scale_, value);
}

void NumberBinding::setMixed(const QString& note) {
    edit_.setMixed(note);
}

void NumberBinding::followText() {
    if (!busy_ && typing_ == Typing::followed) {
        write_(valueAt(scale_, typedPosition(scale_, edit_.text())), !edit_.isEdited());
    }
}

void NumberBinding::take(int position) {
    const QScopedValueRollback busy(busy_, true);
    edit_.setValueText(textAt(scale_, position));
    write_(valueAt(scale_, position), true);
}

SpinBinding::SpinBinding(SpinEdit& spin, const ValueScale& scale, Write write)
    : Binding(std::move(write)), spin_(spin), scale_(scale) {
    spin_.setRange(scale.minimum, scale.maximum);
    connect(&spin_, &QSpinBox::valueChanged, this,
            [this](int position) { write_(valueAt(scale_, position), true); });
}

void SpinBinding::show(double value) {
    const QSignalBlocker quiet(spin_);
    spin_.setValue(positionOf(scale_, value));
}

CheckBinding::CheckBinding(SkinCheckBox& box, bool inverted, Write write)
    : Binding(std::move(write)), box_(box), inverted_(inverted) {
    connect(&box_, &QAbstractButton::clicked, this,
            [this](bool checked) { write_(checked != inverted_ ? 1 : 0, true); });
}

void CheckBinding::show(double value) {
    box_.setChecked((value != 0) != inverted_);
}

bool CheckBinding::shows(double value) const {
    return box_.isChecked() == ((value != 0) != inverted_);
}

QString CheckBinding::words(double value) const {
    return (value != 0) != inverted_ ? QStringLiteral("checked") : QStringLiteral("not checked");
}

void CheckBinding::setMixed(const QString& note) {
    box_.setMixed(note);
}

ComboBinding::ComboBinding(SkinComboBox& list, std::vector<int> codes, Write write)
    : Binding(std::move(write)), list_(list), codes_(std::move(codes)) {
    connect(&list_, &QComboBox::activated, this, [this](int) {
        if (code() >= 0) {
            write_(code(), true);
        }
    });
}

void ComboBinding::show(double value) {
    list_.setCurrentIndex(indexOf(value));
}

int ComboBinding::indexOf(double value) const {
    const auto place = std::find(codes_.begin(), codes_.end(), truncateTo<int>(value));
    return place == codes_.end() ? -1 : static_cast<int>(place - codes_.begin());
}

bool ComboBinding::shows(double value) const {
    return list_.currentIndex() == indexOf(value);
}

QString ComboBinding::words(double value) const {
    const int index = indexOf(value);
    return index < 0 ? QString::number(truncateTo<int>(value)) : list_.itemText(index);
}

void ComboBinding::setMixed(const QString& note) {
    list_.setMixed(note);
}

int ComboBinding::code() const {
    const int index = list_.currentIndex();
    return index < 0 ? -1 : codes_[static_cast<std::size_t>(index)];
}

}  // namespace tessavo
