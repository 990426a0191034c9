#pragma once

#include <QPainter>
#include <QWidget>

#include "controls/skin.h"

namespace tessavo {

/// Painter of a control: its origin sits on a whole device pixel at every scale, so edges stay crisp where an
/// odd logical place falls between two pixels.
class SkinPainter : public QPainter {
 public:
    explicit SkinPainter(QWidget* widget);

    /// Device pixels to a logical one, of the surface really painted on.
    [[nodiscard]] double scale() const { return scale_; }
    /// Thickness of a hairline in logical pixels.
    [[nodiscard]] double hair() const { return Skin::hairline(scale_) / scale_; }
    [[nodiscard]] int toDevice(double logical) const { return qRound(logical * scale_); }
    /// Moves a place onto whole device pixels.
    [[nodiscard]] QRectF snapped(const QRectF& logical) const;

    /// Draws a piece with its upper left corner at a logical place.
    void piece(QPointF at, const SkinPiece& piece);
    /// The same at a place in device pixels from the control's origin.
    void devicePiece(QPoint at, const SkinPiece& piece);

    /// Switches to device pixels from the control's origin, and back.
    void useDevicePixels();
    void useLogicalPixels();

    /// Rounded rectangle with a hairline border inside; no border for an invalid colour.
    void roundFrame(const QRectF& rect, double radius, const QBrush& fill, const QColor& border = {});
    /// A focus ring of two pixels inside `rect`.
    void focusRing(const QRectF& rect, double radius);
    void text(const QRectF& rect, int flags, QRgb color, const QString& text);

 private:
    QTransform toSurface_;  ///< device pixels to the painter's world
    QPoint origin_;
    double scale_ = 1;
};

}  // namespace tessavo
