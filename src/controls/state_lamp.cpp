#include "controls/state_lamp.h"

#include "controls/accessible.h"
#include "controls/control_id.h"
#include "controls/skin_painter.h"

namespace tessavo {

StateLamp::StateLamp(int diameter, int controlId, QWidget* parent) : QWidget(parent) {
    installAccessibility();
    setControlId(*this, controlId);
    setFixedSize(diameter + glow, diameter + glow);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleDescription(QStringLiteral("off"));
}

void StateLamp::setLit(bool lit) {
    if (lit_ == lit) {
        return;
    }
    lit_ = lit;
    setAccessibleDescription(lit ? QStringLiteral("on") : QStringLiteral("off"));
    announceText(*this);
    update();
}

void StateLamp::paintEvent(QPaintEvent* /*event*/) {
    SkinPainter(this).piece({}, {SkinPiece::Kind::lamp, lit_ ? skinOn : 0U, size()});
}

}  // namespace tessavo
