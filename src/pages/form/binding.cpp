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

QString sentences(const QStringList& phrases) {
    return phrases.join(QStringLiteral(". "));
}

}  // namespace

QString Binding::played(const TuningState& tuning, FieldId field, FieldIndex index) const {
    return playedNote(tuning, field, index);
}

NumberBinding::NumberBinding(NumberEdit& edit, const ValueScale& scale, Write write, Typing typing)
    : Binding(std::move(write)), edit_(edit), scale_(scale), typing_(typing) {
    edit_.setUnit(scale.unit);
    connect(&edit_, &NumberEdit::entered, this, &NumberBinding::applyText);
    connect(&edit_, &NumberEdit::left, this, &NumberBinding::leave);
    connect(&edit_, &NumberEdit::cancelled, this, &NumberBinding::takeBack);
    connect(&edit_, &QLineEdit::textChanged, this, &NumberBinding::followText);
    connect(&edit_, &NumberEdit::stepRequested, this, &NumberBinding::step);
}

template <typename Action>
void NumberBinding::whileBusy(Action action) {
    const QScopedValueRollback busy(busy_, true);
    action();
}

void NumberBinding::show(double value) {
    whileBusy([&] {
        held_ = value;
        follows_ = false;
        moveTo(positionOf(scale_, value));
    });
}

void NumberBinding::write(double value, bool final) {
    held_ = value;
    follows_ = false;
    write_(value, final);
}

int NumberBinding::typed() const {
    return typedPosition(scale_, edit_.text(), position());
}

void NumberBinding::mark(double inForce, const QString& played) {
    edit_.setMark(markText(numberIn(scale_, edit_.text()), inForce, exactUnitText(scale_, inForce), played));
}

void NumberBinding::setBypassed(bool bypassed) {
    edit_.setBypassed(bypassed);
}

bool NumberBinding::shows(double value) const {
    return typed() == positionOf(scale_, value);
}

QString NumberBinding::words(double value) const {
    return exactText(scale_, value);
}

void NumberBinding::setMixed(const QString& note) {
    edit_.setMixed(note);
}

void NumberBinding::moveTo(int position) {
    setPosition(position);
    showText(position);
}

void NumberBinding::showText(int position) {
    edit_.setValueText(textAt(scale_, position));
}

void NumberBinding::applyText() {
    whileBusy([this] {
        const int position = typed();
        // A level that stays is not written: what the controls cannot show would be lost.
        const bool stays = scale_.attenuation && !readTyped(scale_, edit_.text()).isThere;
        setPosition(position);
        if (typing_ != Typing::kept) {
            showText(position);
        }
        if (!stays || follows_) {
            write(valueAt(scale_, position), true);
        }
    });
}

void NumberBinding::followText() {
    if (busy_ || !edit_.isEdited()) {
        return;
    }
    edit_.setWarning(typedWarning(scale_, edit_.text(), position()));
    const bool stays = scale_.attenuation && !readTyped(scale_, edit_.text()).isThere;
    if (typing_ != Typing::followed || stays) {
        return;
    }
    whileBusy([this] {
        const int position = typed();
        setPosition(position);
        follows_ = true;
        write_(valueAt(scale_, position), false);
    });
}

void NumberBinding::takeBack() {
    if (follows_) {
        whileBusy([this] {
            moveTo(positionOf(scale_, held_));
            write(held_, true);
        });
    }
}

void NumberBinding::leave() {
    // A box that was only passed through has nothing to say: the value behind it may be finer than its text.
    if (edit_.isEdited()) {
        applyText();
    }
}

void NumberBinding::step(int steps, bool coarse) {
    whileBusy([&] {
        int next = edit_.isEdited() ? typed() : position();
        if (coarse && scale_.unit == QLatin1String("Hz")) {
            next = positionOf(scale_, valueAt(scale_, next) * std::exp2(steps / 3.0));
        } else {
            next += (coarse ? 10 : 1) * (scale_.negated ? -steps : steps);
            next = std::clamp(next, scale_.minimum, scale_.maximum);
        }
        moveTo(next);
        write(valueAt(scale_, next), true);
    });
}

SliderBinding::SliderBinding(CBitmapSlider& slider, NumberEdit& edit, const ValueScale& scale, Write write)
    : NumberBinding(edit, scale, std::move(write), Typing::kept), slider_(slider) {
    slider_.setRange(scale.minimum, scale.maximum);
    const double direction = scale.negated ? -1.0 : 1.0;
    if (scale.attenuation) {
        slider_.setValueScale(direction / 10, -highestValue(scale) / 10);
    } else {
        slider_.setValueScale(direction / scale.stepsPerUnit);
    }
    slider_.setFormatter([scale](int position) { return unitTextAt(scale, position); });
}

void SliderBinding::setBypassed(bool bypassed) {
    NumberBinding::setBypassed(bypassed);
    slider_.setBypassed(bypassed);
}

bool SliderBinding::shows(double value) const {
    return position() == positionOf(scale(), value);
}

void SliderBinding::setMixed(const QString& note) {
    NumberBinding::setMixed(note);
    slider_.setMixed(note);
}

double SliderBinding::value() const {
    return valueAt(scale(), position());
}

int SliderBinding::position() const {
    return slider_.position();
}

void SliderBinding::setPosition(int position) {
    slider_.setPosition(position);
}

void SliderBinding::moved(int position, bool final) {
    if (isBusy() && !final) {
        return;
    }
    whileBusy([&] {
        const int clamped = std::clamp(position, scale().minimum, scale().maximum);
        showText(clamped);
        write(valueAt(scale(), clamped), final);
    });
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
    setPosition(position);
    NumberBinding::showText(position);
    write(valueAt(scale(), position), true);
}

void DelayBinding::showText(int position) {
    NumberBinding::showText(position);
    distance_.setValueText(numberText(valueAt(scale(), position) * centimetresPerMsShown, 1));
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
    QStringList phrases;
    if (inForce != 0 && inForce != 1) {
        phrases << QStringLiteral("In force: ") + codeText(inForce);
    }
    if ((plays != 0) != (inForce != 0)) {
        phrases << QStringLiteral("Plays as if ") + words(plays);
    } else if (plays != inForce) {
        phrases << QStringLiteral("Plays ") + codeText(plays);
    }
    return sentences(phrases);
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
    const auto found = std::find(codes_.begin(), codes_.end(), truncateTo<int>(value));
    return found == codes_.end() ? -1 : static_cast<int>(found - codes_.begin());
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
    QStringList phrases;
    if (indexOf(inForce) < 0) {
        phrases << QStringLiteral("In force: ") + codeText(inForce);
    }
    if (plays != inForce) {
        phrases << QStringLiteral("Plays ") + (indexOf(plays) < 0 ? codeText(plays) : words(plays));
    }
    return sentences(phrases);
}

int ComboBinding::code() const {
    const int index = list_.currentIndex();
    return index < 0 ? -1 : codes_[static_cast<std::size_t>(index)];
}

}  // namespace tessavo
