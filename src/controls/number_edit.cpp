#include "controls/number_edit.h"

#include <QKeyEvent>
#include <QPointer>
#include <QScopedValueRollback>

#include "controls/control_id.h"
#include "controls/edit_frame.h"

namespace tessavo {
namespace {

constexpr int narrow = 50;

}  // namespace

NumberEdit::NumberEdit(int controlId, QWidget* parent) : HoverTracked<QLineEdit>(parent) {
    setControlId(*this, controlId);
    prepareEdit(*this);
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    // Sent also for a text that is typed or pasted over an equal one.
    connect(this, &QLineEdit::textChanged, this, [this] { edited_ = edited_ || !showing_; });
}

void NumberEdit::setValueText(const QString& text) {
    applied_ = text;
    edited_ = false;
    notes_.setWarning({});
    if (text != this->text()) {
        const QScopedValueRollback showing(showing_, true);
        setText(text);
    }
}

void NumberEdit::setColor(QRgb color) {
    color_ = color;
    update();
}

void NumberEdit::setBypassed(bool bypassed) {
    if (bypassed_ != bypassed) {
        bypassed_ = bypassed;
        update();
    }
}

int NumberEdit::neededWidth(const QString& value) const {
    return editNeededWidth(*this, value);
}

void NumberEdit::apply(void (NumberEdit::*signal)()) {
    if (applying_) {
        return;
    }
    const QPointer<NumberEdit> alive(this);
    applying_ = true;
    Q_EMIT(this->*signal)();
    if (alive) {
        applying_ = false;
        applied_ = text();
        edited_ = false;
        notes_.setWarning({});
    }
}

void NumberEdit::revert() {
    setValueText(applied_);
    selectAll();
    Q_EMIT cancelled();
}

void NumberEdit::undoTyping() {
    undo();
    if (text() == applied_) {
        setValueText(applied_);
        Q_EMIT cancelled();
    }
}

void NumberEdit::keyPressEvent(QKeyEvent* event) {
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter: {
            const QPointer<NumberEdit> alive(this);
            apply(&NumberEdit::entered);
            if (alive) {
                selectAll();
            }
            return;
        }
        case Qt::Key_Escape:
            if (!edited_ && text() == applied_) {
                break;
            }
            revert();
            return;
        case Qt::Key_Up:
        case Qt::Key_Down:
            if (modifiers == Qt::NoModifier || modifiers == Qt::ShiftModifier) {
                Q_EMIT stepRequested(event->key() == Qt::Key_Up ? 1 : -1, modifiers == Qt::ShiftModifier);
                return;
            }
            break;
        default:
            break;
    }
    if (event->key() == Qt::Key_Escape) {
        event->ignore();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void NumberEdit::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    focused_ = true;
    if (event->reason() != Qt::PopupFocusReason) {
        edited_ = false;
    }
    // A person who clicks into a number usually means to replace it, so it is selected. When the click also
    // brings the window to the front, the focus comes after the press.
    selectsOnRelease_ = event->reason() == Qt::MouseFocusReason ||
                        (selectsOnRelease_ && event->reason() == Qt::ActiveWindowFocusReason);
    update();
}

void NumberEdit::mousePressEvent(QMouseEvent* event) {
    selectsOnRelease_ = selectsOnRelease_ || !focused_;
    QLineEdit::mousePressEvent(event);
}

void NumberEdit::mouseReleaseEvent(QMouseEvent* event) {
    QLineEdit::mouseReleaseEvent(event);
    if (selectsOnRelease_ && event->button() == Qt::LeftButton && !hasSelectedText()) {
        selectAll();
    }
    selectsOnRelease_ = false;
}

void NumberEdit::mouseDoubleClickEvent(QMouseEvent* event) {
    QLineEdit::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton) {
        // The base would select only the digits on one side of the decimal point.
        selectAll();
    }
}

void NumberEdit::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    focused_ = false;
    update();
    if (event->reason() != Qt::PopupFocusReason) {
        apply(&NumberEdit::left);
    }
}

void NumberEdit::resizeEvent(QResizeEvent* event) {
    // Narrow boxes must hold numbers of the same length, so they have smaller margins.
    setTextMargins(width() <= narrow ? QMargins(2, 0, 2, 0) : QMargins(5, 0, 5, 0));
    QLineEdit::resizeEvent(event);
}

void NumberEdit::paintEvent(QPaintEvent* event) {
    const bool pale = bypassed_ || !isEnabled();
    paintEditFrame(*this, focused_, isHovered(), color_ != 0 && pale ? theme::off : color_,
                   notes_.skinState());
    QLineEdit::paintEvent(event);
    mixed_.paintOverControl();
}

}  // namespace tessavo
