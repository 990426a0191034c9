#include "controls/text_edit_box.h"

#include "controls/control_id.h"
#include "controls/edit_frame.h"

namespace tessavo {

TextEditBox::TextEditBox(int controlId, QWidget* parent) : QLineEdit(parent) {
    setControlId(*this, controlId);
    prepareEdit(*this);
    setTextMargins(5, 0, 5, 0);
}

void TextEditBox::paintEvent(QPaintEvent* event) {
    paintEditFrame(*this, hasFocus(), hovered_, 0);
    QLineEdit::paintEvent(event);
}

void TextEditBox::enterEvent(QEnterEvent* event) {
    hovered_ = true;
    QLineEdit::enterEvent(event);
    update();
}

void TextEditBox::leaveEvent(QEvent* event) {
    hovered_ = false;
    QLineEdit::leaveEvent(event);
    update();
}

}  // namespace tessavo
