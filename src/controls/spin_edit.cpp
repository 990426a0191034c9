#include "controls/spin_edit.h"

#include <QLineEdit>
#include <QMouseEvent>
#include <QWheelEvent>

#include "controls/control_id.h"
#include "controls/edit_frame.h"
#include "controls/skin_painter.h"
#include "controls/theme.h"

namespace tessavo {
namespace {

constexpr int columnWidth = 20;

}  // namespace

SpinEdit::SpinEdit(int controlId, QWidget* parent) : QSpinBox(parent) {
    setControlId(*this, controlId);
    setLocale(QLocale::c());
    setFont(theme::font(12));
    setFrame(false);
    setButtonSymbols(QAbstractSpinBox::NoButtons);
    setAlignment(Qt::AlignCenter);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    prepareEdit(*lineEdit());
    connect(&repeat_, &QTimer::timeout, this, [this] {
        repeat_.setInterval(repeatIntervalMs_);
        stepBy(pressed_);
    });
}

void SpinEdit::setRepeat(int delayMs, int intervalMs) {
    repeatDelayMs_ = delayMs;
    repeatIntervalMs_ = intervalMs;
}

QRect SpinEdit::buttonRect(bool upper) const {
    const int middle = height() / 2;
    const int left = width() - columnWidth;
    return upper ? QRect(left, 0, columnWidth, middle) : QRect(left, middle, columnWidth, height() - middle);
}

void SpinEdit::placeField() {
    lineEdit()->setGeometry(1, 1, width() - columnWidth - 1, height() - 2);
}

void SpinEdit::hoverAt(const QPoint& place) {
    const int half = buttonRect(true).contains(place) ? 1 : buttonRect(false).contains(place) ? -1 : 0;
    if (half != hoveredHalf_) {
        hoveredHalf_ = half;
        update();
    }
}

void SpinEdit::letGo() {
    repeat_.stop();
    if (pressed_ != 0) {
        pressed_ = 0;
        update();
    }
}

void SpinEdit::paintEvent(QPaintEvent* /*event*/) {
    SkinPainter painter(this);
    unsigned state = 0;
    state |= isEnabled() ? 0U : skinDisabled;
    state |= hasFocus() ? skinRinged : 0U;
    state |= hovered_ ? skinHovered : 0U;
    state |= pressed_ != 0 ? skinPressed : 0U;
    const int half = pressed_ != 0 ? pressed_ : hoveredHalf_;
    state |= half > 0 ? skinUpper : half < 0 ? skinLower : 0U;
    painter.piece({}, {SkinPiece::Kind::upDown, state, size()});
}

void SpinEdit::mousePressEvent(QMouseEvent* event) {
    const QPoint place = event->position().toPoint();
    hoverAt(place);
    if (event->button() != Qt::LeftButton || hoveredHalf_ == 0) {
        QSpinBox::mousePressEvent(event);
        return;
    }
    setFocus(Qt::MouseFocusReason);
    pressed_ = hoveredHalf_;
    update();
    repeat_.start(repeatDelayMs_);
    stepBy(pressed_);
}

void SpinEdit::mouseMoveEvent(QMouseEvent* event) {
    hoverAt(event->position().toPoint());
    if (pressed_ != 0 && hoveredHalf_ != pressed_) {
        letGo();
    }
}

void SpinEdit::mouseReleaseEvent(QMouseEvent* /*event*/) {
    letGo();
}

void SpinEdit::wheelEvent(QWheelEvent* event) {
    if (hasFocus()) {
        QSpinBox::wheelEvent(event);
    } else {
        event->ignore();
    }
}

void SpinEdit::resizeEvent(QResizeEvent* event) {
    QSpinBox::resizeEvent(event);
    placeField();
}

void SpinEdit::showEvent(QShowEvent* event) {
    QSpinBox::showEvent(event);
    placeField();
}

void SpinEdit::focusInEvent(QFocusEvent* event) {
    QSpinBox::focusInEvent(event);
    update();
}

void SpinEdit::focusOutEvent(QFocusEvent* event) {
    letGo();
    QSpinBox::focusOutEvent(event);
    update();
}

void SpinEdit::enterEvent(QEnterEvent* event) {
    hovered_ = true;
    QSpinBox::enterEvent(event);
    update();
}

void SpinEdit::leaveEvent(QEvent* event) {
    hovered_ = false;
    hoveredHalf_ = 0;
    QSpinBox::leaveEvent(event);
    update();
}

void SpinEdit::hideEvent(QHideEvent* event) {
    letGo();
    QSpinBox::hideEvent(event);
}

void SpinEdit::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange && !isEnabled()) {
        letGo();
    }
    QSpinBox::changeEvent(event);
    if (event->type() == QEvent::StyleChange) {
        placeField();
    }
}

}  // namespace tessavo
