#include <QPaintEvent>
#include <cmath>

#include "controls/bitmap_slider.h"
#include "controls/skin_painter.h"

namespace tessavo {
namespace {

constexpr QRgb disabledFill = 0xFF343E49;
constexpr int channelInset = 5;
constexpr int tickGap = 6;  ///< from the centre line
constexpr int tickLength = 3;
constexpr int originTickLength = 4;

}  // namespace

int CBitmapSlider::capStart(double scale, double pixel) {
    return qRound((pixel - Skin::capLength / 2.0) * scale);
}

int CBitmapSlider::fillOrigin() const {
    if (minimum_ < 0 && maximum_ > 0) {
        return 0;
    }
    return vertical_ ? maximum_ : minimum_;
}

unsigned CBitmapSlider::capState() const {
    unsigned state = vertical_ ? 0U : skinHorizontal;
    if (!isEnabled()) {
        return state | skinDisabled;
    }
    if (dragging_) {
        state |= skinPressed;
    } else if (isHovered()) {
        state |= skinHovered;
    }
    if (bypassed_) {
        state |= skinBypassed;
    }
    if (isRingShown()) {
        state |= skinRinged;
    }
    return state;
}

void CBitmapSlider::updateBetween(double first, double second) {
    constexpr double reach = Skin::capLength / 2.0 + 6;
    const int low = static_cast<int>(std::floor(std::min(first, second) - reach));
    const int high = static_cast<int>(std::ceil(std::max(first, second) + reach));
    update(vertical_ ? QRect(0, low, width(), high - low) : QRect(low, 0, high - low, height()));
}

void CBitmapSlider::paintTicks(SkinPainter& painter) const {
    const double scale = painter.scale();
    const SliderPixels pixels(scale, false);
    const int box = painter.toDevice(vertical_ ? width() : height());
    const int nearGap = box / 2 - painter.toDevice(tickGap);
    const int farGap = box - nearGap;
    const int origin = fillOrigin();
    const bool inside = origin > minimum_ && origin < maximum_;
    const auto tick = [&](double share, bool atOrigin) {
        const int length = painter.toDevice(atOrigin ? originTickLength : tickLength);
        // Centred on the cap that stands there.
        const int at = qRound((Skin::sliderMargin + share * std::max(0.0, track().travel())) * scale) +
                       (pixels.capAlong - pixels.hair) / 2;
        const QColor color = QColor::fromRgb(!isEnabled() ? disabledFill
                                             : atOrigin   ? theme::mark
                                                          : theme::tick);
        for (const int start : {nearGap - length, farGap}) {
            painter.fillRect(
                vertical_ ? QRect(start, at, length, pixels.hair) : QRect(at, start, pixels.hair, length),
                color);
        }
    };
    if (!ticks_) {
        for (const double share : {0.0, 0.25, 0.5, 0.75, 1.0}) {
            const double there = minimum_ + share * (static_cast<double>(maximum_) - minimum_);
            tick(share, inside && std::abs(there - origin) < 0.5);
        }
        return;
    }
    const double range = std::max(1.0, static_cast<double>(maximum_) - minimum_);
    for (const int position : *ticks_) {
        tick((static_cast<double>(position) - minimum_) / range, inside && position == origin);
    }
}

void CBitmapSlider::paintEvent(QPaintEvent* /*event*/) {
    SkinPainter painter(this);
    const double scale = painter.scale();
    const int box = painter.toDevice(vertical_ ? width() : height());
    const int length = painter.toDevice(vertical_ ? height() : width());
    const bool odd = box % 2 != 0;
    const SliderPixels pixels(scale, odd);
    const unsigned orientation = vertical_ ? 0U : skinHorizontal;
    const unsigned parity = odd ? skinOddBox : 0U;
    const auto pointAt = [this](int across, int along) {
        return vertical_ ? QPoint(across, along) : QPoint(along, across);
    };

    painter.useDevicePixels();
    paintTicks(painter);

    const int channelSpan = (vertical_ ? height() : width()) - 2 * channelInset;
    if (channelSpan > 0) {
        const QSize size = vertical_ ? QSize(6, channelSpan) : QSize(channelSpan, 6);
        painter.devicePiece(pointAt((box - pixels.channel) / 2, painter.toDevice(channelInset)),
                            {SkinPiece::Kind::sliderChannel, orientation | parity, size});
    }

    // While it is dragged, the cap stands where the pointer is, also between the pixels of two positions.
    const int cap = capStart(scale, thumbPixel_);
    const int capCentre = cap + pixels.capAlong / 2;
    const int origin = fillOrigin();
    // At an end the fill begins where the groove does.
    const int reach = painter.toDevice(channelInset + 1);
    const int originAt = origin <= minimum_   ? reach
                         : origin >= maximum_ ? length - reach
                                              : capStart(scale, track().pixelOf(origin, minimum_, maximum_)) +
                                                    pixels.capAlong / 2;
    const int low = std::min(originAt, capCentre);
    const int high = std::max(originAt, capCentre);
    if (high - low > 1) {
        const QRgb color = !isEnabled() ? disabledFill : bypassed_ ? theme::off : color_;
        const QPoint corner = pointAt((box - pixels.fill) / 2, low);
        const QSize size = vertical_ ? QSize(pixels.fill, high - low) : QSize(high - low, pixels.fill);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor::fromRgb(color));
        painter.drawRoundedRect(QRect(corner, size), pixels.fill / 2.0, pixels.fill / 2.0);
    }
    painter.devicePiece(
        pointAt((box - pixels.capAcross) / 2 - pixels.capMargin, cap - pixels.capMargin),
        {SkinPiece::Kind::sliderCap, capState() | parity, QSize(30, 21), bypassed_ ? theme::off : color_});
    painter.useLogicalPixels();
    mixed_.paint(painter, rect());
}

}  // namespace tessavo
