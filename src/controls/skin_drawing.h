#pragma once

#include <QBrush>
#include <QPainter>

#include "controls/skin.h"
#include "controls/theme.h"

namespace tessavo {

/// Pen box of the piece drawings: a painter in device pixels and the scale.
struct SkinInk {
    QPainter& painter;
    QSizeF size;  ///< of the piece, in device pixels
    double scale;
    int hair;

    /// Logical pixels to device pixels, not rounded.
    [[nodiscard]] double operator()(double logical) const { return logical * scale; }
    [[nodiscard]] int whole(double logical) const { return qMax(1, qRound(logical * scale)); }

    /// Rounded rectangle with a border that lies inside `rect`; radius in logical pixels.
    void frame(const QRectF& rect, double radius, const QBrush& fill, const QColor& border,
               double width) const;
    /// Focus ring of two logical pixels inside `rect`.
    void ring(const QRectF& rect, double radius, QRgb color = theme::focus) const;
    /// Open line through points that are given in logical pixels from `origin`.
    void stroke(QPointF origin, std::initializer_list<QPointF> points, const QColor& color,
                double width) const;
};

/// A combo box of at most this width is compact.
inline constexpr int compactCombo = 81;

[[nodiscard]] QBrush verticalGradient(const QRectF& rect, QRgb top, QRgb bottom);

// One function for each family; each draws into a transparent pixmap of the piece's device size.
void drawButtonPiece(const SkinInk& ink, const SkinPiece& piece);
void drawEditPiece(const SkinInk& ink, const SkinPiece& piece);
void drawMarkPiece(const SkinInk& ink, const SkinPiece& piece);
void drawLightPiece(const SkinInk& ink, const SkinPiece& piece);
void drawSliderPiece(const SkinInk& ink, const SkinPiece& piece);

}  // namespace tessavo
