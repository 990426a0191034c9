#include "controls/control_note.h"

#include <QWidget>

#include "controls/skin.h"

namespace tessavo {
namespace {

/// `whole` with one of its parts replaced; a new one stands behind the others.
QString withPart(QString whole, const QString& old, const QString& part, const QString& separator) {
    if (const qsizetype place = old.isEmpty() ? -1 : whole.lastIndexOf(old); place >= 0) {
        whole.remove(place, old.size());
        const qsizetype before = place - separator.size();
        if (before >= 0 && QStringView(whole).mid(before).startsWith(separator)) {
            whole.remove(before, separator.size());
        } else if (QStringView(whole).mid(place).startsWith(separator)) {
            whole.remove(place, separator.size());
        }
    }
    return whole.isEmpty() || part.isEmpty() ? whole + part : whole + separator + part;
}

/// The lines of a note in one sentence.
QString spoken(const QString& note) {
    return QString(note).replace(QLatin1Char('\n'), QLatin1String("; "));
}

}  // namespace

void replaceNote(QWidget& control, const QString& old, const QString& note) {
    control.setToolTip(withPart(control.toolTip(), old, note, QStringLiteral("\n")));
    // Screen readers are told of the change by the setter.
    control.setAccessibleDescription(
        withPart(control.accessibleDescription(), spoken(old), spoken(note), QStringLiteral(". ")));
}

void CornerNote::setNote(const QString& note) {
    if (note != note_) {
        replaceNote(control_, note_, note);
        note_ = note;
        control_.update();
    }
}

unsigned CornerNote::skinState() const {
    return note_.isEmpty() ? 0U : skinMarked;
}

}  // namespace tessavo
