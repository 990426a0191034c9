#include "pages/form/parameter_page.h"

namespace tessavo {

ParameterPage::ParameterPage(TuningState& tuning, QWidget* parent)
    : CTabDialog(parent), tuning_(tuning), form_(*this, [this](BoundField bound) { return writer(bound); }) {}

ParameterPage::~ParameterPage() = default;

void ParameterPage::refresh() {
    for (const Form::Bound& bound : form_.bindings()) {
        bound.binding->show(shown(bound.to));
    }
    updateLook();
    updateMarks();
}

void ParameterPage::updateMarks() {
    for (const Form::Bound& bound : form_.bindings()) {
        const FieldIndex index = markedElement(bound.to);
        const Field& field = fieldOf(bound.to.field);
        bound.binding->mark(shownValue(tuning_.currentParameterSet(), field, index), playedText(bound));
    }
}

QString ParameterPage::playedText(const Form::Bound& bound) const {
    const FieldIndex index = markedElement(bound.to);
    QString played = bound.binding->played(tuning_, bound.to.field, index);
    bool same = true;
    QStringList each;
    for (const Holder& holder : markedHolders()) {
        const QString text = bound.binding->played(tuning_, bound.to.field, {holder.element, index.inner});
        same = same && text == played;
        if (!text.isEmpty()) {
            each << holder.name + QStringLiteral(": ") + text;
        }
    }
    return same ? played : each.join(QLatin1Char('\n'));
}

std::vector<ParameterPage::Holder> ParameterPage::markedHolders() const {
    return {};
}

FieldIndex ParameterPage::elementOf(BoundField bound) const {
    return {bound.element, 0};
}

void ParameterPage::write(BoundField bound, double value, bool final) {
    tuning_.edit(bound.field, elementOf(bound), storedFromShown(fieldOf(bound.field), value), final);
}

double ParameterPage::shown(BoundField bound) const {
    return shownValue(tuning_.currentParameterSet(), fieldOf(bound.field), elementOf(bound));
}

QString ParameterPage::mixedNote(const Form::Bound& bound, const std::vector<Holder>& holders) const {
    const Field& field = fieldOf(bound.to.field);
    const QString unit = QString::fromUtf8(field.unit.data(), static_cast<qsizetype>(field.unit.size()));
    bool differ = false;
    bool isShown = true;
    QString first;
    QString lines;
    for (const Holder& holder : holders) {
        const FieldIndex element{holder.element, elementOf(bound.to).inner};
        const double value = shownValue(tuning_.currentParameterSet(), field, element);
        const QString words = bound.binding->words(value);
        if (lines.isEmpty()) {
            first = words;
        }
        differ = differ || words != first;
        isShown = isShown && bound.binding->shows(value);
        lines += QStringLiteral("\n%1: %2").arg(holder.name, words);
        if (!unit.isEmpty()) {
            lines += QLatin1Char(' ') + unit;
        }
    }
    if (differ) {
        return QStringLiteral("Mixed: the ticked channels differ") + lines;
    }
    return isShown ? QString() : QStringLiteral("Mixed: not the value of the ticked channels") + lines;
}

void ParameterPage::markMixed(const std::vector<Holder>& holders) {
    for (const Form::Bound& bound : form_.bindings()) {
        bound.binding->setMixed(mixedNote(bound, holders));
    }
}

Binding::Write ParameterPage::writer(BoundField bound) {
    return [this, bound](double value, bool final) {
        write(bound, value, final);
        updateLook();
        updateMarks();
    };
}

void ParameterPage::showEvent(QShowEvent* event) {
    CTabDialog::showEvent(event);
    updateMarks();
}

bool ParameterPage::event(QEvent* event) {
    return form_.takeSliderEvent(*event) || CTabDialog::event(event);
}

}  // namespace tessavo
