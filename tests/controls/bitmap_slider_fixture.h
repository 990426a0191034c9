#pragma once

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include "controls/bitmap_slider.h"
#include "controls/slider_host.h"
#include "support/synthetic_events.h"

namespace tessavo::test {

/// Number of the slider of these tests.
inline constexpr int sliderId = 1112;

inline Received moved(int position) {
    return {10449, sliderId, position};
}
inline Received released(int position) {
    return {10450, sliderId, position};
}

/// A vertical slider of 182 pixels, -180 to 180: 163 pixels of travel, centres from 9.5 to 172.5.
class BitmapSliderTest : public testing::Test {
 protected:
    BitmapSliderTest()
        : slider_(new CBitmapSlider(Qt::Vertical, sliderId, &host_)), other_(new QLineEdit(&host_)) {
        slider_->setGeometry(20, 20, 28, 182);
        other_->setGeometry(200, 20, 100, 24);
        slider_->setRange(-180, 180);
        host_.showActive();
        other_->setFocus();
    }

    [[nodiscard]] QPoint at(int pixel) const {
        return slider_->isVertical() ? QPoint(14, pixel) : QPoint(pixel, 14);
    }
    void press(int pixel) { QTest::mousePress(slider_, Qt::LeftButton, {}, at(pixel)); }
    void move(int pixel) {
        const QPointF point(at(pixel));
        QMouseEvent event(QEvent::MouseMove, point, slider_->mapToGlobal(point), Qt::NoButton, Qt::LeftButton,
                          {});
        QApplication::sendEvent(slider_, &event);
    }
    void release(int pixel) { QTest::mouseRelease(slider_, Qt::LeftButton, {}, at(pixel)); }
    void wheel(int turn, Qt::KeyboardModifiers modifiers = {}) {
        QWheelEvent event(QPointF(14, 90), slider_->mapToGlobal(QPointF(14, 90)), {}, {0, turn}, Qt::NoButton,
                          modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(slider_, &event);
    }
    void key(QEvent::Type type, int code, bool repeated, Qt::KeyboardModifiers modifiers = {}) {
        QKeyEvent event(type, code, modifiers, QString(), repeated);
        QApplication::sendEvent(slider_, &event);
    }
    [[nodiscard]] int positionAt(double pixel) const {
        return slider_->track().positionAt(pixel, slider_->minimum(), slider_->maximum());
    }

    SliderHost host_;
    CBitmapSlider* slider_;
    QLineEdit* other_;
};

}  // namespace tessavo::test
