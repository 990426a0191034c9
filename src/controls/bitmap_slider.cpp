#include "controls/bitmap_slider.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <cmath>

#include "controls/accessible.h"
#include "controls/control_id.h"
#include "controls/skin.h"
#include "controls/slider_event.h"

namespace tessavo {
namespace {

constexpr int wheelNotch = 120;
constexpr int pageStep = 10;
constexpr int defaultWheelRestMs = 250;
// Mouse places are multiples of a fraction of a pixel; less than this is rounding.
constexpr double samePixel = 1.0 / 256;

}  // namespace

CBitmapSlider::CBitmapSlider(Qt::Orientation orientation, int controlId, QWidget* parent)
    : FocusTracked<HoverTracked<QWidget>>(parent), vertical_(orientation == Qt::Vertical) {
    installAccessibility();
    setControlId(*this, controlId);
    setFocusPolicy(Qt::StrongFocus);
    wheelRest_.setSingleShot(true);
    wheelRest_.setInterval(defaultWheelRestMs);
    connect(&wheelRest_, &QTimer::timeout, this, &CBitmapSlider::finishSteps);
    thumbPixel_ = track().pixelOf(position_, minimum_, maximum_);
}

SliderTrack CBitmapSlider::track() const {
    const double extent = vertical_ ? height() : width();
    return {extent, Skin::sliderMargin, Skin::sliderMargin, Skin::capLength};
}

void CBitmapSlider::setRange(int minimum, int maximum) {
    maximum = std::max(minimum, maximum);
    if (minimum == minimum_ && maximum == maximum_) {
        return;
    }
    minimum_ = minimum;
    maximum_ = maximum;
    position_ = std::clamp(position_, minimum_, maximum_);
    thumbPixel_ = track().pixelOf(position_, minimum_, maximum_);
    update();
}

void CBitmapSlider::setPosition(int position) {
    movePosition(std::clamp(position, minimum_, maximum_));
}

void CBitmapSlider::movePosition(int position) {
    if (position == position_) {
        return;
    }
    position_ = position;
    moveThumb(track().pixelOf(position_, minimum_, maximum_));
    announceValue(*this, valueOf(position_));
}

void CBitmapSlider::moveThumb(double pixel) {
    updateBetween(thumbPixel_, pixel);
    thumbPixel_ = pixel;
}

void CBitmapSlider::setColor(QRgb color) {
    color_ = color;
    update();
}

void CBitmapSlider::setBypassed(bool bypassed) {
    if (bypassed_ != bypassed) {
        bypassed_ = bypassed;
        update();
    }
}

void CBitmapSlider::setTicks(std::vector<int> positions) {
    ticks_ = std::move(positions);
    update();
}

void CBitmapSlider::setWheelRest(int milliseconds) {
    wheelRest_.setInterval(milliseconds);
}

void CBitmapSlider::setFormatter(Formatter formatter) {
    formatter_ = std::move(formatter);
}

void CBitmapSlider::setValueScale(double perStep, double offset) {
    perStep_ = perStep;
    offset_ = offset;
}

QString CBitmapSlider::valueText() const {
    return formatter_ ? formatter_(position_) : QString::number(valueOf(position_));
}

void CBitmapSlider::setValueByUser(double value) {
    if (isEnabled() && std::isfinite(value) && perStep_ != 0) {
        finishAll();
        stepTo(wholeWithin(std::round((value - offset_) / perStep_), minimum_, maximum_));
        finishSteps();
    }
}

void CBitmapSlider::stepValueByUser(int steps) {
    if (isEnabled()) {
        finishAll();
        stepTo(position_ + std::int64_t{perStep_ < 0 ? -steps : steps});
        finishSteps();
    }
}

QSize CBitmapSlider::sizeHint() const {
    return vertical_ ? QSize(28, 182) : QSize(182, 28);
}

void CBitmapSlider::post(QEvent::Type type) {
    if (parentWidget() != nullptr) {
        QCoreApplication::postEvent(parentWidget(),
                                    new SliderEvent(type, tessavo::controlId(*this), position_));
    }
}

// ---- mouse

void CBitmapSlider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || dragging_) {
        event->ignore();
        return;
    }
    finishAll();
    setFocus(Qt::MouseFocusReason);
    dragging_ = true;
    const double click = along(event->position());
    const bool onThumb = std::abs(click - thumbPixel_) <= track().thumb / 2;
    dragOffset_ = onThumb ? click - thumbPixel_ : 0;
    dragStartPixel_ = thumbPixel_;
    dragStartPosition_ = position_;
    update();
    dragTo(click - dragOffset_);
}

void CBitmapSlider::mouseMoveEvent(QMouseEvent* event) {
    if (dragging_) {
        dragTo(along(event->position()) - dragOffset_);
    } else {
        event->ignore();
    }
}

void CBitmapSlider::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && dragging_) {
        finishAll();
    } else {
        event->ignore();
    }
}

void CBitmapSlider::dragTo(double pixel) {
    const double target = track().clampPixel(pixel);
    if (std::abs(target - thumbPixel_) < samePixel) {
        return;
    }
    // Dragging back to the start gives back the position of the start, which truncation could miss by one.
    const bool atStart = std::abs(target - dragStartPixel_) < samePixel;
    movePosition(atStart ? std::clamp(dragStartPosition_, minimum_, maximum_)
                         : track().positionAt(target, minimum_, maximum_));
    moveThumb(target);
    post(SliderEvent::moved);
}

// ---- keys and wheel

int CBitmapSlider::coarseStep() const {
    const std::int64_t range = std::int64_t{maximum_} - minimum_;
    return static_cast<int>(std::max<std::int64_t>(1, range / 20));
}

std::optional<std::int64_t> CBitmapSlider::keyTarget(const QKeyEvent& event) const {
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const bool coarse = modifiers == Qt::ControlModifier;
    if (modifiers != Qt::NoModifier && !coarse) {
        return std::nullopt;
    }
    // Up and right lead to the top and right end.
    const std::int64_t upwards = vertical_ ? -1 : 1;
    const auto moved = [this](std::int64_t steps) { return position_ + steps; };
    switch (event.key()) {
        case Qt::Key_Up:
        case Qt::Key_Right:
            return moved(upwards * (coarse ? coarseStep() : 1));
        case Qt::Key_Down:
        case Qt::Key_Left:
            return moved(-upwards * (coarse ? coarseStep() : 1));
        default:
            break;
    }
    if (coarse) {
        return std::nullopt;
    }
    switch (event.key()) {
        case Qt::Key_PageUp:
            return moved(std::int64_t{upwards} * pageStep);
        case Qt::Key_PageDown:
            return moved(-std::int64_t{upwards} * pageStep);
        case Qt::Key_Home:
            return minimum_;
        case Qt::Key_End:
            return maximum_;
        default:
            return std::nullopt;
    }
}

void CBitmapSlider::keyPressEvent(QKeyEvent* event) {
    const std::optional<std::int64_t> target = keyTarget(*event);
    if (!target) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (dragging_) {
        return;
    }
    if (!heldKeys_.contains(event->key())) {
        heldKeys_.append(event->key());
    }
    stepTo(*target);
}

void CBitmapSlider::keyReleaseEvent(QKeyEvent* event) {
    const auto held = heldKeys_.indexOf(event->key());
    if (held < 0) {
        QWidget::keyReleaseEvent(event);
        return;
    }
    if (event->isAutoRepeat()) {
        return;
    }
    heldKeys_.remove(held);
    if (!wheelRest_.isActive()) {
        finishSteps();
    }
}

void CBitmapSlider::wheelEvent(QWheelEvent* event) {
    // Without focus the page scrolls instead.
    if (!hasFocus() || dragging_) {
        event->ignore();
        return;
    }
    const QPoint delta = event->angleDelta();
    const int turn = delta.y() != 0 ? delta.y() : delta.x();
    if ((turn < 0) != (wheelTravel_ < 0)) {
        wheelTravel_ = 0;
    }
    wheelTravel_ += turn;
    const int notches = wheelTravel_ / wheelNotch;
    wheelTravel_ -= notches * wheelNotch;
    const int step = (event->modifiers() & Qt::ControlModifier) != 0 ? coarseStep() : 1;
    stepTo(position_ + std::int64_t{vertical_ ? -notches : notches} * step);
    if (stepped_) {
        wheelRest_.start();
    }
}

void CBitmapSlider::stepTo(std::int64_t position) {
    const int target =
        static_cast<int>(std::clamp<std::int64_t>(position, std::int64_t{minimum_}, std::int64_t{maximum_}));
    if (target == position_) {
        return;
    }
    movePosition(target);
    stepped_ = true;
    post(SliderEvent::moved);
}

void CBitmapSlider::finishSteps() {
    wheelRest_.stop();
    if (stepped_ && heldKeys_.isEmpty()) {
        stepped_ = false;
        post(SliderEvent::released);
    }
}

void CBitmapSlider::finishAll() {
    heldKeys_.clear();
    wheelTravel_ = 0;
    finishSteps();
    if (dragging_) {
        dragging_ = false;
        thumbPixel_ = track().pixelOf(position_, minimum_, maximum_);
        update();
        post(SliderEvent::released);
    }
}

// ---- what ends a gesture

void CBitmapSlider::focusOutEvent(QFocusEvent* event) {
    FocusTracked<HoverTracked<QWidget>>::focusOutEvent(event);
    finishAll();
}

void CBitmapSlider::hideEvent(QHideEvent* event) {
    finishAll();
    QWidget::hideEvent(event);
}

void CBitmapSlider::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange) {
        if (!isEnabled()) {
            finishAll();
        }
        update();
    }
    QWidget::changeEvent(event);
}

void CBitmapSlider::resizeEvent(QResizeEvent* /*event*/) {
    thumbPixel_ = track().pixelOf(position_, minimum_, maximum_);
}

}  // namespace tessavo
