#include "controls/control_note.h"

#include <QWidget>

#include "controls/skin.h"

namespace tessavo {
namespace {

/// `whole` with one of its parts replaced; a new one stands behind the others.
QString withReplaced(QString whole, const QString& old, const QString& replacement,
                     const QString& separator) {
    if (const qsizetype index = old.isEmpty() ? -1 : whole.lastIndexOf(old); index >= 0) {
        whole.remove(index, old.size());
        const qsizetype before = index - separator.size();
        if (before >= 0 && QStringView(whole).mid(before).startsWith(separator)) {
            whole.remove(before, separator.size());
        } else if (QStringView(whole).mid(index).startsWith(separator)) {
            whole.remove(index, separator.size());
        }
    }
    return whole.isEmpty() || replacement.isEmpty() ? whole + replacement : whole + separator + replacement;
}

/// The lines of a note in one sentence.
QString spoken(const QString& note) {
    return QString(note).replace(QLatin1Char('\n'), QLatin1String("; "));
}

}  // namespace

void replaceNote(QWidget& control, const QString& old, const QString& note) {
    control.setToolTip(withReplaced(control.toolTip(), old, note, QStringLiteral("\n")));
    // Screen readers are told of the change by the setter.
    control.setAccessibleDescription(
        withReplaced(control.accessibleDescription(), spoken(old), spoken(note), QStringLiteral(". ")));
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
