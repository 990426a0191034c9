#include "controls/read_only_edit.h"

#include <QKeyEvent>

#include "controls/control_id.h"
#include "controls/edit_frame.h"
#include "controls/theme.h"

namespace tessavo {
namespace {

bool changesNothing(const QKeyEvent& event) {
    return event.matches(QKeySequence::Copy) || event.matches(QKeySequence::SelectAll) ||
           event.matches(QKeySequence::MoveToNextChar) || event.matches(QKeySequence::MoveToPreviousChar) ||
           event.matches(QKeySequence::SelectNextChar) || event.matches(QKeySequence::SelectPreviousChar) ||
           event.matches(QKeySequence::MoveToStartOfLine) || event.matches(QKeySequence::MoveToEndOfLine) ||
           event.matches(QKeySequence::SelectStartOfLine) || event.matches(QKeySequence::SelectEndOfLine);
}

}  // namespace

CReadOnlyEdit::CReadOnlyEdit(int controlId, QWidget* parent) : QLineEdit(parent) {
    setControlId(*this, controlId);
    prepareEdit(*this);
    QPalette colors = palette();
    colors.setColor(QPalette::Text, QColor::fromRgb(theme::text2));
    setPalette(colors);
    setReadOnly(true);
    setTextMargins(5, 0, 5, 0);
}

bool CReadOnlyEdit::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::KeyPress: {
            auto* key = static_cast<QKeyEvent*>(event);
            // Whatever could change the text ends here, even if someone lifts the read-only flag.
            const bool moves = key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab;
            if (!moves && !changesNothing(*key)) {
                event->ignore();
                return false;
            }
            break;
        }
        case QEvent::InputMethod:
        case QEvent::DragEnter:
        case QEvent::Drop:
            event->ignore();
            return false;
        default:
            break;
    }
    return QLineEdit::event(event);
}

void CReadOnlyEdit::paintEvent(QPaintEvent* event) {
    paintEditFrame(*this, hasFocus(), false, 0);
    QLineEdit::paintEvent(event);
}

}  // namespace tessavo
