// Buttons, edits, check and radio marks.
#include <QPainterPath>

#include "controls/skin_drawing.h"
#include "controls/theme.h"

namespace tessavo {
namespace {

struct ButtonColors {
    QRgb top;
    QRgb bottom;
    QRgb border;
    int lightPercent;  ///< white of the line below the top border
};

ButtonColors buttonColors(unsigned state) {
    const bool hovered = (state & skinHovered) != 0;
    if ((state & skinDisabled) != 0) {
        return {theme::inset, theme::inset, theme::line, 0};
    }
    if ((state & skinOn) != 0) {
        if ((state & skinPressed) != 0) {
            return {0xFF0F4E31, 0xFF0F4E31, theme::liveEdge, 0};
        }
        return hovered ? ButtonColors{0xFF1E8557, 0xFF19754A, theme::live, 12}
                       : ButtonColors{theme::liveTop, theme::liveBottom, theme::liveEdge, 12};
    }
    if ((state & skinAccented) != 0) {
        if ((state & skinPressed) != 0) {
            return {0xFF104F91, 0xFF104F91, theme::defaultEdge, 0};
        }
        return hovered ? ButtonColors{theme::defaultTop, 0xFF1B6FC6, theme::lightBlue, 12}
                       : ButtonColors{theme::defaultTop, theme::defaultBottom, theme::defaultEdge, 12};
    }
    if ((state & skinPressed) != 0) {
        return {theme::buttonPressed, theme::buttonPressed, theme::edge, 0};
    }
    return hovered ? ButtonColors{theme::buttonHoverTop, theme::buttonHoverBottom, 0xFF566473, 6}
                   : ButtonColors{theme::buttonTop, theme::buttonBottom, theme::edge, 6};
}

/// A line across the top inside the border: light on a raised body, shadow in a sunk one.
void topLine(const SkinInk& ink, const QColor& color, int offset) {
    const double inset = ink(3);
    ink.painter.fillRect(QRectF(inset, offset, ink.size.width() - 2 * inset, ink.hair), color);
}

/// A triangle in the upper right corner of `inside`, clear of the text; it follows the rounding there.
void cornerMark(const SkinInk& ink, const QRectF& inside, QRgb color) {
    const double leg = ink.whole(7);
    QPainterPath corner;
    corner.moveTo(inside.topRight());
    corner.lineTo(inside.topRight() - QPointF(leg, 0));
    corner.lineTo(inside.topRight() + QPointF(0, leg));
    corner.closeSubpath();
    QPainterPath rounded;
    rounded.addRoundedRect(inside, ink(3), ink(3));
    ink.painter.fillPath(corner.intersected(rounded), QColor::fromRgb(color));
}

/// The coloured stripe at the left of an edit, inside an edge of so many device pixels.
void drawStripe(const SkinInk& ink, const QRectF& all, int edge, QRgb color) {
    // The stripe follows the rounded corners at its left.
    QPainterPath inside;
    inside.addRoundedRect(all.adjusted(edge, edge, -edge, -edge), ink(3), ink(3));
    ink.painter.save();
    ink.painter.setClipPath(inside);
    ink.painter.fillRect(QRectF(edge, edge, ink.whole(2), ink.size.height() - 2 * edge),
                         QColor::fromRgb(color));
    ink.painter.restore();
}

/// The column with the two arrows at the right of a number box.
void drawUpDownColumn(const SkinInk& ink, unsigned state) {
    const bool disabled = (state & skinDisabled) != 0;
    const double left = ink.size.width() - ink.whole(20);
    const double middle = std::round(ink.size.height() / 2);
    const QRectF column(left, ink.hair, ink.size.width() - left - ink.hair, ink.size.height() - 2 * ink.hair);
    QPainterPath shape;
    shape.addRoundedRect(column.adjusted(-ink(4), 0, 0, 0), ink(3), ink(3));
    ink.painter.save();
    ink.painter.setClipRect(column);
    ink.painter.fillPath(shape, disabled ? QBrush(QColor::fromRgb(theme::inset))
                                         : verticalGradient(column, theme::buttonTop, theme::buttonBottom));
    if (!disabled && (state & (skinUpper | skinLower)) != 0) {
        QRectF half = column;
        if ((state & skinUpper) != 0) {
            half.setBottom(middle);
        } else {
            half.setTop(middle + ink.hair);
        }
        const bool pressed = (state & skinPressed) != 0;
        ink.painter.fillRect(half, QColor::fromRgb(pressed ? theme::buttonPressed : theme::buttonHoverTop));
    }
    const QColor line = QColor::fromRgb(disabled ? theme::line : theme::edge);
    ink.painter.fillRect(QRectF(left, column.top(), ink.hair, column.height()), line);
    ink.painter.fillRect(QRectF(left, middle, column.width(), ink.hair), line);
    ink.painter.restore();
    const QColor arrow = QColor::fromRgb(disabled ? theme::text3 : theme::text2);
    const double quarter = ink.size.height() / 4;
    ink.stroke({left + ink(6), quarter - ink(2)}, {{1, 4}, {4, 1}, {7, 4}}, arrow, 1.4);
    ink.stroke({left + ink(6), 3 * quarter - ink(3)}, {{1, 1}, {4, 4}, {7, 1}}, arrow, 1.4);
}

}  // namespace

void drawButtonPiece(const SkinInk& ink, const SkinPiece& piece) {
    const QRectF all(QPointF(), ink.size);
    const ButtonColors colors = buttonColors(piece.state);
    ink.frame(all, 4, verticalGradient(all, colors.top, colors.bottom), QColor::fromRgb(colors.border),
              ink.hair);
    if (colors.lightPercent > 0) {
        topLine(ink, QColor(255, 255, 255, 255 * colors.lightPercent / 100), ink.hair);
    } else if ((piece.state & skinPressed) != 0) {
        topLine(ink, QColor(0, 0, 0, 150), ink.hair);
        topLine(ink, QColor(0, 0, 0, 70), 2 * ink.hair);
    }
    if ((piece.state & skinRinged) != 0) {
        const int ring = ink.whole(2);
        const QColor dark(10, 13, 16, 191);
        ink.frame(all.adjusted(ring, ring, -ring, -ring), 3, Qt::NoBrush, dark, ink.hair);
        ink.ring(all, 4);
    }
    if ((piece.state & skinMarked) != 0) {
        const int edge = (piece.state & skinRinged) != 0 ? ink.whole(2) : ink.hair;
        cornerMark(ink, all.adjusted(edge, edge, -edge, -edge), theme::lightBlue);
    }
    if (piece.kind == SkinPiece::Kind::combo) {
        const bool disabled = (piece.state & skinDisabled) != 0;
        // A compact box needs its room for the text, so its chevron is smaller.
        const bool compact = piece.size.width() <= compactCombo;
        const QPointF origin(ink.size.width() - ink(compact ? 12.5 : 18), ink.size.height() / 2 - ink(3));
        const QColor color = QColor::fromRgb(disabled ? theme::text3 : theme::text2);
        if (compact) {
            ink.stroke(origin, {{1, 1.2}, {3.75, 4.3}, {6.5, 1.2}}, color, 1.6);
        } else {
            ink.stroke(origin, {{1, 1}, {4.5, 4.7}, {8, 1}}, color, 1.6);
        }
    }
}

void drawEditPiece(const SkinInk& ink, const SkinPiece& piece) {
    const QRectF all(QPointF(), ink.size);
    const bool flat = (piece.state & (skinDisabled | skinReadOnly)) != 0;
    const bool warned = (piece.state & skinWarned) != 0;
    const bool ringed = warned || (piece.state & skinRinged) != 0;
    QRgb border = flat ? theme::line : theme::edge;
    if ((piece.state & skinHovered) != 0 && !flat) {
        border = theme::mark;
    }
    ink.frame(all, 4, QColor::fromRgb(flat ? theme::inset : theme::sunk), QColor::fromRgb(border), ink.hair);
    if (!flat) {
        topLine(ink, QColor(0, 0, 0, 90), ink.hair);
    }
    const int edge = ringed ? ink.whole(2) : ink.hair;
    if (piece.color != 0) {
        drawStripe(ink, all, edge, piece.color);
    }
    if (piece.kind == SkinPiece::Kind::upDown) {
        drawUpDownColumn(ink, piece.state);
    }
    if (ringed) {
        ink.ring(all, 4, warned ? theme::clip : theme::focus);
    }
    if (warned || (piece.state & skinMarked) != 0) {
        const double column = piece.kind == SkinPiece::Kind::upDown ? ink.whole(20) - edge : 0;
        cornerMark(ink, all.adjusted(edge, edge, -edge - column, -edge),
                   warned ? theme::clip : theme::lightBlue);
    }
}

void drawMarkPiece(const SkinInk& ink, const SkinPiece& piece) {
    const bool on = (piece.state & skinOn) != 0;
    const bool disabled = (piece.state & skinDisabled) != 0;
    const bool hovered = (piece.state & skinHovered) != 0 && !disabled;
    const double inset = std::round(ink(3));
    const QRectF mark(inset, inset, ink.size.width() - 2 * inset, ink.size.height() - 2 * inset);
    const QRectF all(QPointF(), ink.size);
    QRgb fill = disabled ? theme::inset : theme::sunk;
    QRgb border = hovered ? theme::text2 : theme::mark;
    if (piece.kind == SkinPiece::Kind::radioMark) {
        if (on) {
            border = theme::lightBlue;
        }
        const double round = mark.width() / 2 / ink.scale;
        ink.frame(mark, round, QColor::fromRgb(fill), QColor::fromRgb(disabled ? theme::edge : border),
                  ink.hair);
        if (on) {
            ink.painter.setPen(Qt::NoPen);
            ink.painter.setBrush(QColor::fromRgb(disabled ? theme::text3 : theme::lightBlue));
            ink.painter.drawEllipse(mark.center(), ink(4), ink(4));
            if (hovered) {
                ink.frame(mark, round, Qt::NoBrush, QColor::fromRgb(theme::focus), ink.hair);
            }
        }
        if ((piece.state & skinRinged) != 0) {
            ink.ring(all, 11);
        }
        return;
    }
    if (on) {
        fill = disabled ? theme::line : hovered ? theme::defaultTop : theme::selected;
        border = theme::defaultEdge;
    }
    ink.frame(mark, 4, QColor::fromRgb(fill), QColor::fromRgb(disabled ? theme::edge : border), ink.hair);
    if (on) {
        ink.stroke(mark.topLeft(), {{4, 8.3}, {6.9, 11.1}, {12, 5.2}},
                   QColor::fromRgb(disabled ? theme::text3 : theme::white), 2);
    }
    if ((piece.state & skinRinged) != 0) {
        ink.ring(all, 6.5);
    }
    if ((piece.state & skinMarked) != 0) {
        // A filled mark is blue itself.
        cornerMark(ink, mark, on ? theme::white : theme::lightBlue);
    }
}

}  // namespace tessavo
