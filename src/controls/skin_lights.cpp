// Lamps, clip lights, icons of message boxes.
#include <QPainterPath>

#include "controls/skin_drawing.h"
#include "controls/theme.h"

namespace tessavo {
namespace {

using Kind = SkinPiece::Kind;

void disc(const SkinInk& ink, QPointF center, double radius, const QBrush& brush) {
    ink.painter.setPen(Qt::NoPen);
    ink.painter.setBrush(brush);
    ink.painter.drawEllipse(center, radius, radius);
}

/// Disc whose outline lies inside the radius.
void outlined(const SkinInk& ink, QPointF center, double radius, const QBrush& brush, const QColor& outline,
              double width) {
    ink.painter.setPen(QPen(outline, width));
    ink.painter.setBrush(brush);
    ink.painter.drawEllipse(center, radius - width / 2, radius - width / 2);
}

/// A lit ball: the light falls from the upper left.
QBrush ball(QPointF center, double radius, QRgb glint, QRgb body, QRgb rim, double bodyAt) {
    QRadialGradient gradient(center + QPointF(-0.24, -0.38) * radius, 1.65 * radius);
    gradient.setColorAt(0, QColor::fromRgb(glint));
    gradient.setColorAt(bodyAt, QColor::fromRgb(body));
    gradient.setColorAt(1, QColor::fromRgb(rim));
    return gradient;
}

void drawLamp(const SkinInk& ink, QPointF center, bool on) {
    const double radius = ink.size.width() / 2 - ink(3);
    if (!on) {
        QColor outline = QColor::fromRgb(theme::mark);
        outline.setAlphaF(0.75F);
        outlined(ink, center, radius, QColor(0x11, 0x16, 0x1B), outline, ink.hair);
        return;
    }
    QColor halo = QColor::fromRgb(theme::live);
    halo.setAlphaF(0.18F);
    disc(ink, center, radius + ink(3), halo);
    disc(ink, center, radius - ink(0.5), ball(center, radius, 0xFFC6FFE2, theme::live, 0xFF1E9A5D, 0.45));
}

void drawClipLight(const SkinInk& ink, Kind kind, QPointF center, double radius) {
    if (kind == Kind::socket) {
        outlined(ink, center, radius, QColor::fromRgb(theme::sunk), QColor::fromRgb(theme::line), ink.hair);
        return;
    }
    if (kind == Kind::notClipping) {
        outlined(ink, center, radius, QColor(0x10, 0x18, 0x1A), QColor(0x2F, 0x6B, 0x51), ink.hair);
        disc(ink, center, radius * 0.36, QColor(0x2F, 0x8F, 0x66));
        const double arc = radius * 0.66;
        ink.painter.setBrush(Qt::NoBrush);
        ink.painter.setPen(QPen(QColor(255, 255, 255, 41), ink(1.4), Qt::SolidLine, Qt::RoundCap));
        ink.painter.drawArc(QRectF(center.x() - arc, center.y() - arc, 2 * arc, 2 * arc), 82 * 16, 66 * 16);
        return;
    }
    const double reach = radius + ink(6);
    QRadialGradient halo(center, reach);
    QColor glow = QColor::fromRgb(theme::clip);
    glow.setAlphaF(0.45F);
    halo.setColorAt(0, glow);
    halo.setColorAt(radius / reach * 0.7, glow);
    glow.setAlphaF(0);
    halo.setColorAt(1, glow);
    disc(ink, center, reach, halo);
    outlined(ink, center, radius, ball(center, radius, 0xFFFFD9D6, theme::clip, 0xFFD5222E, 0.38),
             QColor(0xFF, 0x9A, 0x9A), ink.hair);
}

void drawIcon(const SkinInk& ink, Kind kind, QPointF center) {
    const bool stop = kind == Kind::stopIcon;
    disc(ink, center, ink(16), QColor::fromRgb(stop ? theme::stop : theme::selected));
    const QColor white = QColor::fromRgb(theme::white);
    if (stop) {
        ink.stroke(center, {{-5.5, -5.5}, {5.5, 5.5}}, white, 3);
        ink.stroke(center, {{5.5, -5.5}, {-5.5, 5.5}}, white, 3);
        return;
    }
    ink.stroke(center, {{0, -0.9}, {0, 6.4}}, white, 3.2);
    disc(ink, center + QPointF(0, ink(-6.8)), ink(2), white);
}

}  // namespace

void drawLightPiece(const SkinInk& ink, const SkinPiece& piece) {
    const QPointF center(ink.size.width() / 2, ink.size.height() / 2);
    switch (piece.kind) {
        case Kind::lamp:
            return drawLamp(ink, center, (piece.state & skinOn) != 0);
        case Kind::clipping:
        case Kind::notClipping:
        case Kind::socket:
            return drawClipLight(ink, piece.kind, center, ink(piece.size.width() >= 44 ? 14 : 11));
        default:
            return drawIcon(ink, piece.kind, center);
    }
}

}  // namespace tessavo
