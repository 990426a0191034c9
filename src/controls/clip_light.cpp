#include "controls/clip_light.h"

#include "controls/accessible.h"
#include "controls/control_id.h"
#include "controls/skin_painter.h"

namespace tessavo {
namespace {

constexpr int largeDiameter = 28;
constexpr int largeSide = 44;
constexpr int smallSide = 34;

SkinPiece::Kind pieceOf(ClipLight::Picture picture) {
    switch (picture) {
        case ClipLight::Picture::clipping:
            return SkinPiece::Kind::clipping;
        case ClipLight::Picture::notClipping:
            return SkinPiece::Kind::notClipping;
        default:
            return SkinPiece::Kind::socket;
    }
}

}  // namespace

ClipLight::ClipLight(Picture picture, int diameter, int controlId, QWidget* parent)
    : QWidget(parent), picture_(picture) {
    installAccessibility();
    setControlId(*this, controlId);
    const int side = diameter >= largeDiameter ? largeSide : smallSide;
    setFixedSize(side, side);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    if (picture != Picture::socket) {
        setAccessibleName(picture == Picture::clipping ? QStringLiteral("clipping")
                                                       : QStringLiteral("not clipping"));
    }
}

void ClipLight::paintEvent(QPaintEvent* /*event*/) {
    SkinPainter(this).piece({}, {pieceOf(picture_), 0, size()});
}

}  // namespace tessavo
