#pragma once

#include <QBrush>
#include <QPainter>

#include "controls/skin.h"
#include "controls/theme.h"

namespace tessavo {

/// What a drawing of a piece works with: a painter in device pixels, the size of the piece and the scale. A
/// call of the object turns logical pixels into device pixels.
struct SkinInk {
    QPainter& painter;
    QSizeF size;   ///< of the piece, in device pixels
    double scale;  ///< device pixels to a logical one
    int hair;      ///< thickness of a hairline in device pixels

    /// Turns logical pixels into device pixels, not rounded.
    [[nodiscard]] double operator()(double logical) const { return logical * scale; }
    /// The same, rounded to at least one device pixel.
    [[nodiscard]] int whole(double logical) const { return qMax(1, qRound(logical * scale)); }

    /// Draws a rounded rectangle with a border that lies inside `rect`. Radius in logical pixels, the rest in
    /// device pixels.
    void frame(const QRectF& rect, double radius, const QBrush& fill, const QColor& border,
               double width) const;
    /// Draws a focus ring two logical pixels thick inside `rect`.
    void ring(const QRectF& rect, double radius, QRgb color = theme::focus) const;
    /// Draws an open line through points in logical pixels, counted from `origin`.
    void stroke(QPointF origin, std::initializer_list<QPointF> points, const QColor& color,
                double width) const;
};

/// A combo box of at most this width, in logical pixels, is compact.
inline constexpr int compactCombo = 81;

[[nodiscard]] QBrush verticalGradient(const QRectF& rect, QRgb top, QRgb bottom);

// One function for each family of pieces. Each draws into a transparent pixmap that has the piece's size in
// device pixels.
void drawButtonPiece(const SkinInk& ink, const SkinPiece& piece);
void drawEditPiece(const SkinInk& ink, const SkinPiece& piece);
void drawMarkPiece(const SkinInk& ink, const SkinPiece& piece);
void drawLightPiece(const SkinInk& ink, const SkinPiece& piece);
void drawSliderPiece(const SkinInk& ink, const SkinPiece& piece);

}  // namespace tessavo
