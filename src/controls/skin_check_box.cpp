#include "controls/skin_check_box.h"

namespace tessavo {

void SkinCheckBox::paintEvent(QPaintEvent* /*event*/) {
    // The outline goes below the mark, whose ring takes its place.
    mixedMark().paintOverControl();
    paintCaptioned(SkinPiece::Kind::checkMark, markState());
}

}  // namespace tessavo
