#include "controls/skin_radio_button.h"

namespace tessavo {

void SkinRadioButton::paintEvent(QPaintEvent* /*event*/) {
    paintCaptioned(SkinPiece::Kind::radioMark);
}

}  // namespace tessavo
