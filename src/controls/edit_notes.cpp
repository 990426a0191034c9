#include "controls/edit_notes.h"

#include <QStringList>
#include <QWidget>

#include "controls/skin.h"

namespace tessavo {

void EditNotes::setUnit(const QString& unit) {
    change(unit_, unit);
}

void EditNotes::setWarning(const QString& warning) {
    change(warning_, warning);
}

void EditNotes::setMark(const QString& mark) {
    change(mark_, mark);
}

void EditNotes::setMixed(const QString& mixed) {
    change(mixed_, mixed);
}

unsigned EditNotes::skinState() const {
    return (warning_.isEmpty() ? 0U : skinWarned) | (mark_.isEmpty() ? 0U : skinMarked);
}

void EditNotes::change(QString& note, const QString& text) {
    if (note == text) {
        return;
    }
    note = text;
    QStringList sentences{warning_, mark_, mixed_};
    sentences.removeAll(QString());
    box_.setToolTip(sentences.join(QLatin1Char('\n')));
    if (!unit_.isEmpty()) {
        sentences.prepend(unit_);
    }
    // Screen readers are told of the change by the setter.
    box_.setAccessibleDescription(
        sentences.join(QStringLiteral(". ")).replace(QLatin1Char('\n'), QLatin1String("; ")));
    box_.update();
}

}  // namespace tessavo
