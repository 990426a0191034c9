#include "controls/text_edit_box.h"

#include "controls/control_id.h"
#include "controls/edit_frame.h"

namespace tessavo {

TextEditBox::TextEditBox(int controlId, QWidget* parent) : HoverTracked<QLineEdit>(parent) {
    setControlId(*this, controlId);
    prepareEdit(*this);
    setTextMargins(5, 0, 5, 0);
}

void TextEditBox::paintEvent(QPaintEvent* event) {
    paintEditFrame(*this, hasFocus(), isHovered(), 0);
    QLineEdit::paintEvent(event);
}

}  // namespace tessavo
