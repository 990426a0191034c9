#include "controls/skin_radio_button.h"

#include "controls/control_id.h"
#include "controls/mark_caption.h"
#include "controls/theme.h"

namespace tessavo {

SkinRadioButton::SkinRadioButton(const QString& caption, int controlId, QWidget* parent)
    : QRadioButton(caption, parent) {
    setControlId(*this, controlId);
    setFont(theme::font(12));
    setFocusPolicy(Qt::StrongFocus);
}

int SkinRadioButton::neededWidth() const {
    return markCaptionWidth(*this);
}

QSize SkinRadioButton::sizeHint() const {
    return {neededWidth(), markBox};
}

void SkinRadioButton::paintEvent(QPaintEvent* /*event*/) {
    paintMarkCaption(*this, SkinPiece::Kind::radioMark, hovered_, ring_.isShown());
}

void SkinRadioButton::focusInEvent(QFocusEvent* event) {
    ring_.focusIn(*event);
    QRadioButton::focusInEvent(event);
    update();
}

void SkinRadioButton::focusOutEvent(QFocusEvent* event) {
    ring_.focusOut(*event);
    QRadioButton::focusOutEvent(event);
    update();
}

void SkinRadioButton::enterEvent(QEnterEvent* event) {
    hovered_ = true;
    QRadioButton::enterEvent(event);
    update();
}

void SkinRadioButton::leaveEvent(QEvent* event) {
    hovered_ = false;
    QRadioButton::leaveEvent(event);
    update();
}

}  // namespace tessavo
