// Channel and cap of the slider.
#include <QPainterPath>

#include "controls/skin_drawing.h"
#include "controls/theme.h"

namespace tessavo {
namespace {

struct CapColors {
    QRgb top;
    QRgb bottom;
    QRgb border;
    QRgb groove;
};

CapColors capColors(unsigned state) {
    constexpr QRgb border = 0xFF0A0D10;
    constexpr QRgb groove = 0xFF1A2027;
    if ((state & skinDisabled) != 0) {
        return {0xFF38424D, 0xFF323B45, 0xFF20272F, 0xFF252D36};
    }
    if ((state & skinPressed) != 0) {
        return {0xFFE9EEF4, 0xFFB2BDC9, border, groove};
    }
    if ((state & skinHovered) != 0) {
        return {0xFFCBD4DD, 0xFF909CA9, border, groove};
    }
    if ((state & skinBypassed) != 0) {
        return {0xFF6F7B88, 0xFF515C68, border, groove};
    }
    return {0xFFAEB9C4, 0xFF76828F, border, groove};
}

/// Both are drawn standing upright and turned for a horizontal slider.
QRectF turned(const QRectF& rect, bool horizontal) {
    return horizontal ? QRectF(rect.y(), rect.x(), rect.height(), rect.width()) : rect;
}

void drawCap(const SkinInk& ink, const SkinPiece& piece) {
    const bool horizontal = (piece.state & skinHorizontal) != 0;
    const bool disabled = (piece.state & skinDisabled) != 0;
    const SliderPixels pixels(ink.scale, (piece.state & skinOddBox) != 0);
    const CapColors colors = capColors(piece.state);
    const QRectF upright(pixels.capMargin, pixels.capMargin, pixels.capAcross, pixels.capAlong);
    const QRectF cap = turned(upright, horizontal);
    QPainter& painter = ink.painter;

    if ((piece.state & skinPressed) != 0) {
        QColor halo = QColor::fromRgb(piece.color);
        halo.setAlphaF(0.38F);
        const double reach = ink.whole(3);
        painter.setPen(Qt::NoPen);
        painter.setBrush(halo);
        painter.drawRoundedRect(cap.adjusted(-reach, -reach, reach, reach), ink(6), ink(6));
    }
    if (!disabled) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0, 0, 0, 97));
        painter.drawRoundedRect(cap.translated(0, ink(1.5)), ink(3), ink(3));
    }
    if ((piece.state & skinRinged) != 0) {
        const double reach = ink.whole(3);
        ink.ring(cap.adjusted(-reach, -reach, reach, reach), 6);
    }
    QLinearGradient body(cap.topLeft(), horizontal ? cap.topRight() : cap.bottomLeft());
    body.setColorAt(0, QColor::fromRgb(colors.top));
    body.setColorAt(1, QColor::fromRgb(colors.bottom));
    ink.frame(cap, 3, body, QColor::fromRgb(colors.border), ink.hair);

    // Lines across the cap, centred along it.
    const auto across = [&](double side, double start, double thickness, const QColor& color) {
        const QRectF line(upright.x() + ink.whole(side), upright.y() + start,
                          upright.width() - 2 * ink.whole(side), thickness);
        painter.fillRect(turned(line, horizontal), color);
    };
    if (!disabled) {
        across(2, ink.hair, ink.hair, QColor(255, 255, 255, 89));
    }
    const auto centred = [&pixels](int thickness) {
        const int fitting = (thickness + pixels.capAlong) % 2 == 0 ? thickness : thickness - 1;
        return std::pair{(pixels.capAlong - fitting) / 2, fitting};
    };
    const auto [grooveStart, groove] = centred(qMax(ink.whole(3), ink.hair + 2));
    across(3, grooveStart, groove, QColor::fromRgb(colors.groove));
    if (!disabled) {
        const auto [indexStart, index] = centred(ink.hair + (ink.hair + pixels.capAlong) % 2);
        across(4, indexStart, index, QColor::fromRgb(theme::white));
    }
}

void drawChannel(const SkinInk& ink) {
    ink.frame(QRectF(QPointF(), ink.size), 3, QColor::fromRgb(theme::sunk), QColor::fromRgb(theme::line),
              ink.hair);
}

}  // namespace

void drawSliderPiece(const SkinInk& ink, const SkinPiece& piece) {
    if (piece.kind == SkinPiece::Kind::sliderCap) {
        drawCap(ink, piece);
    } else {
        drawChannel(ink);
    }
}

}  // namespace tessavo
