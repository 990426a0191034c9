#include "controls/skin_painter.h"

#include "controls/theme.h"

namespace tessavo {

SkinPainter::SkinPainter(QWidget* widget) : QPainter(widget) {
    const QTransform device = deviceTransform();
    toSurface_ = device.inverted() * worldTransform();
    scale_ = device.m11();
    origin_ = QPoint(qRound(device.dx()), qRound(device.dy()));
    setRenderHint(Antialiasing);
    useLogicalPixels();
}

void SkinPainter::useDevicePixels() {
    setWorldTransform(QTransform::fromTranslate(origin_.x(), origin_.y()) * toSurface_);
}

void SkinPainter::useLogicalPixels() {
    setWorldTransform(QTransform::fromScale(scale_, scale_) *
                      QTransform::fromTranslate(origin_.x(), origin_.y()) * toSurface_);
}

QRectF SkinPainter::snapped(const QRectF& logical) const {
    const QPointF topLeft(toDevice(logical.left()), toDevice(logical.top()));
    const QPointF bottomRight(toDevice(logical.right()), toDevice(logical.bottom()));
    return {topLeft / scale_, bottomRight / scale_};
}

void SkinPainter::piece(QPointF at, const SkinPiece& piece) {
    devicePiece({toDevice(at.x()), toDevice(at.y())}, piece);
}

void SkinPainter::devicePiece(QPoint at, const SkinPiece& piece) {
    const QTransform before = worldTransform();
    setWorldTransform(QTransform::fromTranslate(origin_.x() + at.x(), origin_.y() + at.y()) * toSurface_);
    drawPixmap(QPointF(), Skin::pixmap(piece, scale_));
    setWorldTransform(before);
}

void SkinPainter::roundFrame(const QRectF& rect, double radius, const QBrush& fill, const QColor& border) {
    const QRectF outline = snapped(rect);
    if (!border.isValid()) {
        setPen(Qt::NoPen);
        setBrush(fill);
        drawRoundedRect(outline, radius, radius);
        return;
    }
    const double half = hair() / 2;
    setPen(QPen(border, hair()));
    setBrush(fill);
    drawRoundedRect(outline.adjusted(half, half, -half, -half), radius - half, radius - half);
}

void SkinPainter::focusRing(const QRectF& rect, double radius) {
    const double width = qRound(2 * scale_) / scale_;
    const double half = width / 2;
    setPen(QPen(QColor::fromRgb(theme::focus), width));
    setBrush(Qt::NoBrush);
    drawRoundedRect(snapped(rect).adjusted(half, half, -half, -half), radius - half, radius - half);
}

void SkinPainter::text(const QRectF& rect, int flags, QRgb color, const QString& text) {
    setPen(QColor::fromRgb(color));
    drawText(rect, flags, text);
}

}  // namespace tessavo
