#pragma once

#include <QPainter>
#include <QWidget>

#include "controls/skin.h"

namespace tessavo {

/// Painter of a control. Its origin is moved onto a whole device pixel: at a scale of 1.5, say, a control at
/// an odd logical position begins between two device pixels, and all its edges would be blurred.
class SkinPainter : public QPainter {
 public:
    explicit SkinPainter(QWidget* widget);

    /// Device pixels to a logical one, of the surface that is painted on. It need not be the screen: a
    /// control can be painted into a picture.
    [[nodiscard]] double scale() const { return scale_; }
    /// Thickness of a hairline in logical pixels.
    [[nodiscard]] double hair() const { return Skin::hairline(scale_) / scale_; }
    /// Logical pixels in device pixels, rounded.
    [[nodiscard]] int toDevice(double logical) const { return qRound(logical * scale_); }
    /// The rectangle with its edges moved onto whole device pixels.
    [[nodiscard]] QRectF snapped(const QRectF& logical) const;

    /// Draws a piece with its upper left corner at a point in logical pixels.
    void piece(QPointF at, const SkinPiece& piece);
    /// Draws a piece with its upper left corner at a point in device pixels, counted from the control's
    /// origin.
    void devicePiece(QPoint at, const SkinPiece& piece);

    /// What follows is drawn in device pixels, counted from the control's origin.
    void useDevicePixels();
    /// What follows is drawn in logical pixels again.
    void useLogicalPixels();

    /// Draws a rounded rectangle with a hairline border inside; without a valid colour it has no border.
    void roundFrame(const QRectF& rect, double radius, const QBrush& fill, const QColor& border = {});
    /// Draws a focus ring two pixels thick inside `rect`.
    void focusRing(const QRectF& rect, double radius);
    /// Draws a text in the painter's font.
    /// \param rect room for the text
    /// \param flags how it is aligned: Qt::AlignmentFlag and Qt::TextFlag
    /// \param color of the text
    /// \param text the text
    void text(const QRectF& rect, int flags, QRgb color, const QString& text);

 private:
    QTransform toSurface_;  ///< device pixels to the painter's world
    QPoint origin_;
    double scale_ = 1;
};

}  // namespace tessavo
