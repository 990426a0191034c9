#include "controls/skin_check_box.h"

#include "controls/control_id.h"
#include "controls/mark_caption.h"
#include "controls/theme.h"

namespace tessavo {

SkinCheckBox::SkinCheckBox(const QString& caption, int controlId, QWidget* parent)
    : QCheckBox(caption, parent) {
    setControlId(*this, controlId);
    setFont(theme::font(12));
    setFocusPolicy(Qt::StrongFocus);
}

int SkinCheckBox::neededWidth() const {
    return markCaptionWidth(*this);
}

QSize SkinCheckBox::sizeHint() const {
    return {neededWidth(), markBox};
}

void SkinCheckBox::paintEvent(QPaintEvent* /*event*/) {
    // Below the mark, whose ring takes its place.
    mixed_.paintOverControl();
    paintMarkCaption(*this, SkinPiece::Kind::checkMark, hovered_, ring_.isShown(), mark_.skinState());
}

void SkinCheckBox::focusInEvent(QFocusEvent* event) {
    ring_.focusIn(*event);
    QCheckBox::focusInEvent(event);
    update();
}

void SkinCheckBox::focusOutEvent(QFocusEvent* event) {
    ring_.focusOut(*event);
    QCheckBox::focusOutEvent(event);
    update();
}

void SkinCheckBox::enterEvent(QEnterEvent* event) {
    hovered_ = true;
    QCheckBox::enterEvent(event);
    update();
}

void SkinCheckBox::leaveEvent(QEvent* event) {
    hovered_ = false;
    QCheckBox::leaveEvent(event);
    update();
}

}  // namespace tessavo
