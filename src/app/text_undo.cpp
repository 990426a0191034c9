#include "app/text_undo.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextDocument>
#include <QTextEdit>

#include "app/text_box.h"
#include "controls/number_edit.h"
#include "controls/spin_edit.h"

namespace tessavo {

namespace {

QLineEdit* lineOf(QWidget* box) {
    if (auto* spin = qobject_cast<SpinEdit*>(box)) {
        return spin->findChild<QLineEdit*>();
    }
    return qobject_cast<QLineEdit*>(box);
}

QTextDocument* documentOf(QWidget* box) {
    if (auto* edit = qobject_cast<QTextEdit*>(box)) {
        return edit->document();
    }
    auto* plain = qobject_cast<QPlainTextEdit*>(box);
    return plain == nullptr ? nullptr : plain->document();
}

/// Whether undoing would go back behind the text that was applied last.
bool isApplied(const QWidget* box) {
    if (const auto* number = qobject_cast<const NumberEdit*>(box)) {
        return !number->isEdited();
    }
    const auto* spin = qobject_cast<const SpinEdit*>(box);
    return spin != nullptr && !spin->isEdited();
}

bool hasTyping(QWidget* box, UndoDirection direction) {
    const bool undoes = direction == UndoDirection::undo;
    if (const QLineEdit* line = lineOf(box)) {
        return undoes ? line->isUndoAvailable() && !isApplied(box) : line->isRedoAvailable();
    }
    if (const QTextDocument* document = documentOf(box)) {
        return undoes ? document->isUndoAvailable() : document->isRedoAvailable();
    }
    return false;
}

void undoIn(QWidget* box) {
    if (auto* number = qobject_cast<NumberEdit*>(box)) {
        number->undoTyping();
    } else if (auto* spin = qobject_cast<SpinEdit*>(box)) {
        spin->undoTyping();
    } else if (QLineEdit* line = lineOf(box)) {
        line->undo();
    } else if (QTextDocument* document = documentOf(box)) {
        document->undo();
    }
}

void redoIn(QWidget* box) {
    if (auto* spin = qobject_cast<SpinEdit*>(box)) {
        spin->redoTyping();
    } else if (QLineEdit* line = lineOf(box)) {
        line->redo();
    } else if (QTextDocument* document = documentOf(box)) {
        document->redo();
    }
}

bool actIn(QWidget* box, UndoDirection direction) {
    if (!hasTyping(box, direction)) {
        return false;
    }
    if (direction == UndoDirection::undo) {
        undoIn(box);
    } else {
        redoIn(box);
    }
    return true;
}

}  // namespace

bool isUndoKey(const QKeyEvent& event, UndoDirection& direction) {
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const bool isZ = event.key() == Qt::Key_Z;
    if (isZ && modifiers == Qt::ControlModifier) {
        direction = UndoDirection::undo;
        return true;
    }
    direction = UndoDirection::redo;
    return (isZ && modifiers == (Qt::ControlModifier | Qt::ShiftModifier)) ||
           (event.key() == Qt::Key_Y && modifiers == Qt::ControlModifier);
}

TextUndo::TextUndo() {
    qApp->installEventFilter(this);
}

TextUndo::~TextUndo() = default;

bool TextUndo::isDue(UndoDirection direction) {
    return hasTyping(QApplication::focusWidget(), direction);
}

bool TextUndo::act(UndoDirection direction) {
    return actIn(QApplication::focusWidget(), direction);
}

bool TextUndo::eventFilter(QObject* watched, QEvent* event) {
    const bool asks = event->type() == QEvent::ShortcutOverride;
    if ((!asks && event->type() != QEvent::KeyPress) || !watched->isWidgetType()) {
        return false;
    }
    auto* box = static_cast<QWidget*>(watched);
    UndoDirection direction{};
    if (!isUndoKey(*static_cast<QKeyEvent*>(event), direction) || !isTextBox(*box)) {
        return false;
    }
    const bool isOwn = hasTyping(box, direction);
    if (!asks) {
        actIn(box, direction);
    }
    // What the box does not need is left to the menu's keys.
    event->setAccepted(isOwn || !asks);
    return true;
}

}  // namespace tessavo
