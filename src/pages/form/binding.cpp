#include "pages/form/binding.h"

#include <QScopedValueRollback>
#include <QStringList>
#include <algorithm>
#include <cmath>

#include "base/saturate.h"
#include "controls/bitmap_slider.h"
#include "controls/number_edit.h"
#include "controls/skin_check_box.h"
#include "controls/skin_combo_box.h"
#include "controls/spin_edit.h"
#include "pages/form/box_marks.h"

namespace tessavo {

namespace {

// Sound goes 34.3 cm in a millisecond. A typed distance is divided by 34.0, so that whole multiples of 34
// and of 34.3 both give whole tenths.
constexpr double centimetresPerMsShown = 34.3;
constexpr double centimetresPerMsTyped = 34.0;

QString codeText(double code) {
    return QStringLiteral("code ") + QString::number(code, 'f', 0);
}

QString sentences(const QStringList& parts) {
    return parts.join(QStringLiteral(". "));
}

}  // namespace

QString Binding::played(const TuningState& tuning, FieldId field, FieldIndex index) const {
    return playedNote(tuning, field, index);
}

SliderBinding::SliderBinding(CBitmapSlider& slider, NumberEdit& edit, const ValueScale& scale, Write write)
    : Binding(std::move(write)),
      slider_(slider),
      edit_(edit),
      scale_(scale),
      thirdOctaves_(scale.unit == QLatin1String("Hz")) {
    slider_.setRange(scale.minimum, scale.maximum);
    const double direction = scale.negated ? -1.0 : 1.0;
    if (scale.attenuation) {
        slider_.setValueScale(direction / 10, -highestValue(scale) / 10);
    } else {
        slider_.setValueScale(direction / scale.stepsPerUnit);
    }
    edit_.setUnit(scale.unit);
    slider_.setFormatter([scale](int position) { return unitTextAt(scale, position); });
    connect(&edit_, &NumberEdit::entered, this, &SliderBinding::applyText);
    connect(&edit_, &NumberEdit::left, this, &SliderBinding::leave);
    connect(&edit_, &NumberEdit::cancelled, this, &SliderBinding::takeBack);
    connect(&edit_, &QLineEdit::textChanged, this, &SliderBinding::followText);
    connect(&edit_, &NumberEdit::stepRequested, this, &SliderBinding::step);
}

void SliderBinding::show(double value) {
    const QScopedValueRollback busy(busy_, true);
    held_ = value;
    follows_ = false;
    moveTo(positionOf(scale_, value));
}

void SliderBinding::write(double value, bool final) {
    held_ = value;
    follows_ = false;
    write_(value, final);
}

int SliderBinding::typed() const {
    return typedPosition(scale_, edit_.text(), slider_.position());
}

void SliderBinding::mark(double inForce, const QString& played) {
    edit_.setMark(markText(numberIn(scale_, edit_.text()), inForce, exactUnitText(scale_, inForce), played));
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
    write(valueAt(scale_, clamped), final);
}

void SliderBinding::applyText() {
    const QScopedValueRollback busy(busy_, true);
    const int position = typed();
    // A level that stays is not written: what the controls cannot show would be lost.
    const bool stays = scale_.attenuation && !readTyped(scale_, edit_.text()).isThere;
    slider_.setPosition(position);
    if (typing_ != Typing::kept) {
        showText(position);
    }
    if (!stays || follows_) {
        write(valueAt(scale_, position), true);
    }
}

void SliderBinding::followText() {
    if (busy_ || !edit_.isEdited()) {
        return;
    }
    edit_.setWarning(typedWarning(scale_, edit_.text(), slider_.position()));
    const bool stays = scale_.attenuation && !readTyped(scale_, edit_.text()).isThere;
    if (typing_ != Typing::followed || stays) {
        return;
    }
    const QScopedValueRollback busy(busy_, true);
    const int position = typed();
    slider_.setPosition(position);
    follows_ = true;
    write_(valueAt(scale_, position), false);
}

void SliderBinding::takeBack() {
    if (!follows_) {
        return;
    }
    const QScopedValueRollback busy(busy_, true);
    moveTo(positionOf(scale_, held_));
    write(held_, true);
}

void SliderBinding::leave() {
    // A box that was only passed through has nothing to say: the value behind it may be finer than its text.
    if (edit_.isEdited()) {
        applyText();
    }
}

void SliderBinding::step(int steps, bool coarse) {
    const QScopedValueRollback busy(busy_, true);
    int position = edit_.isEdited() ? typed() : slider_.position();
    if (coarse && thirdOctaves_) {
        position = positionOf(scale_, valueAt(scale_, position) * std::exp2(steps / 3.0));
    } else {
        position += (coarse ? 10 : 1) * (scale_.negated ? -steps : steps);
        position = std::clamp(position, scale_.minimum, scale_.maximum);
    }
    moveTo(position);
    write(valueAt(scale_, position), true);
}

DelayBinding::DelayBinding(CBitmapSlider& slider, NumberEdit& edit, NumberEdit& distance,
                           const ValueScale& scale, Write write)
    : SliderBinding(slider, edit, scale, std::move(write)), distance_(distance) {
    distance_.setUnit(QStringLiteral("cm"));
    connect(&distance_, &NumberEdit::entered, this, &DelayBinding::applyDistance);
    connect(&distance_, &NumberEdit::left, this, [this] {
        if (distance_.isEdited()) {
            applyDistance();
        }
    });
    connect(&distance_, &QLineEdit::textChanged, this, [this] {
        if (distance_.isEdited()) {
            const TypedNumber typed = typedDistance();
            distance_.setWarning(typedWarning(typed, unitTextAt(this->scale(), typed.position)));
        }
    });
}

TypedNumber DelayBinding::typedDistance() const {
    const ValueScale& limits = scale();
    TypedNumber typed = readTyped(limits, distance_.text());
    const int tenths = truncateTo<int>(readTenths(distance_.text()) / centimetresPerMsTyped);
    const int asked = limits.negated ? -tenths : tenths;
    typed.position = std::clamp(asked, limits.minimum, limits.maximum);
    typed.isClamped = typed.position != asked;
    return typed;
}

void DelayBinding::mark(double inForce, const QString& played) {
    SliderBinding::mark(inForce, played);
    distance_.setMark(
        distanceMark(numberIn(scale(), distance_.text()), inForce * centimetresPerMsShown, played));
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
    const int position = typed();
    moveTo(position);
    write(valueAt(scale(), position), true);
}

void DelayBinding::applyDistance() {
    const int position = typedDistance().position;
    slider().setPosition(position);
    SliderBinding::showText(position);
    write(valueAt(scale(), position), true);
}

void DelayBinding::showText(int position) {
    SliderBinding::showText(position);
    distance_.setValueText(numberText(valueAt(scale(), position) * centimetresPerMsShown, 1));
}

NumberBinding::NumberBinding(NumberEdit& edit, const ValueScale& scale, Write write)
    : Binding(std::move(write)), edit_(edit), scale_(scale) {
    edit_.setUnit(scale.unit);
    const auto typed = [this] { return typedPosition(scale_, edit_.text(), position_); };
    connect(&edit_, &NumberEdit::entered, this, [this, typed] { take(typed()); });
    connect(&edit_, &NumberEdit::left, this, [this, typed] {
        if (edit_.isEdited()) {
            take(typed());
        }
    });
    connect(&edit_, &NumberEdit::cancelled, this, &NumberBinding::takeBack);
    connect(&edit_, &QLineEdit::textChanged, this, &NumberBinding::followText);
    connect(&edit_, &NumberEdit::stepRequested, this, [this, typed](int steps, bool coarse) {
        take(std::clamp(typed() + (coarse ? 10 : 1) * steps, scale_.minimum, scale_.maximum));
    });
}

void NumberBinding::show(double value) {
    const QScopedValueRollback busy(busy_, true);
    held_ = value;
    follows_ = false;
    position_ = positionOf(scale_, value);
    edit_.setValueText(textAt(scale_, position_));
}

void NumberBinding::setBypassed(bool bypassed) {
    edit_.setBypassed(bypassed);
}

bool NumberBinding::shows(double value) const {
    return typedPosition(scale_, edit_.text(), position_) == positionOf(scale_, value);
}

QString NumberBinding::words(double value) const {
    return exactText(scale_, value);
}

void NumberBinding::setMixed(const QString& note) {
    edit_.setMixed(note);
}

void NumberBinding::mark(double inForce, const QString& played) {
    edit_.setMark(markText(numberIn(scale_, edit_.text()), inForce, exactUnitText(scale_, inForce), played));
}

void NumberBinding::followText() {
    if (busy_ || !edit_.isEdited()) {
        return;
    }
    edit_.setWarning(typedWarning(scale_, edit_.text(), position_));
    if (typing_ == Typing::followed) {
        follows_ = true;
        write_(valueAt(scale_, typedPosition(scale_, edit_.text(), position_)), false);
    }
}

void NumberBinding::takeBack() {
    if (follows_) {
        const double before = held_;
        show(before);
        write_(before, true);
    }
}

void NumberBinding::take(int position) {
    show(valueAt(scale_, position));
    write_(held_, true);
}

SpinBinding::SpinBinding(SpinEdit& spin, const ValueScale& scale, Write write)
    : Binding(std::move(write)), spin_(spin), scale_(scale) {
    spin_.setRange(scale.minimum, scale.maximum);
    connect(&spin_, &QSpinBox::valueChanged, this,
            [this](int position) { write_(valueAt(scale_, position), true); });
    connect(&spin_, &SpinEdit::retyped, this,
            [this](int position) { write_(valueAt(scale_, position), true); });
}

void SpinBinding::show(double value) {
    spin_.showValue(positionOf(scale_, value));
}

void SpinBinding::mark(double inForce, const QString& played) {
    spin_.setMark(markText(valueAt(scale_, spin_.value()), inForce, exactUnitText(scale_, inForce), played));
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

void CheckBinding::mark(double /*inForce*/, const QString& played) {
    box_.setMark(played);
}

QString CheckBinding::played(const TuningState& tuning, FieldId field, FieldIndex index) const {
    const double inForce = shownValue(tuning.currentParameterSet(), fieldOf(field), index);
    const double plays = imageNumber(tuning, field, index).value_or(inForce);
    QStringList parts;
    if (inForce != 0 && inForce != 1) {
        parts << QStringLiteral("In force: ") + codeText(inForce);
    }
    if ((plays != 0) != (inForce != 0)) {
        parts << QStringLiteral("Plays as if ") + words(plays);
    } else if (plays != inForce) {
        parts << QStringLiteral("Plays ") + codeText(plays);
    }
    return sentences(parts);
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

void ComboBinding::mark(double /*inForce*/, const QString& played) {
    list_.setMark(played);
}

QString ComboBinding::played(const TuningState& tuning, FieldId field, FieldIndex index) const {
    const double inForce = shownValue(tuning.currentParameterSet(), fieldOf(field), index);
    const double plays = imageNumber(tuning, field, index).value_or(inForce);
    QStringList parts;
    if (indexOf(inForce) < 0) {
        parts << QStringLiteral("In force: ") + codeText(inForce);
    }
    if (plays != inForce) {
        parts << QStringLiteral("Plays ") + (indexOf(plays) < 0 ? codeText(plays) : words(plays));
    }
    return sentences(parts);
}

int ComboBinding::code() const {
    const int index = list_.currentIndex();
    return index < 0 ? -1 : codes_[static_cast<std::size_t>(index)];
}

}  // namespace tessavo
