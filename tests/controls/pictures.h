#pragma once

#include <QImage>

namespace tessavo::test {

/// A rectangle of logical pixels in those of a picture, whatever the scale of the screen.
inline QRect devicePlace(const QImage& picture, const QRect& logical) {
    const double scale = picture.devicePixelRatio();
    return {qRound(logical.x() * scale), qRound(logical.y() * scale), qRound(logical.width() * scale),
            qRound(logical.height() * scale)};
}

/// Colour in the middle of a logical pixel.
inline QRgb pixelAt(const QImage& picture, int x, int y) {
    return picture.pixel(devicePlace(picture, {x, y, 1, 1}).center());
}

inline QImage partOf(const QImage& picture, const QRect& logical) {
    return picture.copy(devicePlace(picture, logical));
}

}  // namespace tessavo::test
