#include "controls/bitmap_slider_fixture.h"

// Where the cap is seen while the hand is on it.

namespace tessavo::test {
namespace {

class SliderCap : public BitmapSliderTest {
 protected:
    /// What is seen around a pixel, as far as the cap covers it whatever lies below.
    [[nodiscard]] QImage seenAt(int pixel) const {
        const QImage picture = slider_->grab().toImage();
        const double scale = picture.devicePixelRatio();
        // The cap's edge on the nearest pixel of the screen, and what lies well inside of it.
        const int start = qRound((pixel - 6.5) * scale) + qRound(2 * scale);
        const int length = qRound(8 * scale);
        const int across = qRound(6 * scale);
        const int breadth = qRound(16 * scale);
        return slider_->isVertical() ? picture.copy(across, start, breadth, length)
                                     : picture.copy(start, across, length, breadth);
    }
    void lie() {
        delete slider_;
        slider_ = new CBitmapSlider(Qt::Horizontal, sliderId, &host_);
        slider_->setGeometry(20, 20, 182, 28);
        slider_->show();
    }
    /// Drags over the whole way and looks at every pixel, `grip` pixels off the cap's centre.
    void expectCapUnderTheHand(int grip) {
        constexpr int middle = 91;
        press(middle + grip);
        move(40 + grip);
        const QImage cap = seenAt(40);
        for (int pixel = 12; pixel <= 170; ++pixel) {
            move(pixel + grip);
            ASSERT_EQ(seenAt(pixel), cap) << "at pixel " << pixel << ", gripped at " << grip;
        }
        release(170 + grip);
    }
};

TEST_F(SliderCap, StandsUnderTheHandToThePixel) {
    // Eleven positions: 16 pixels lie between two of them.
    slider_->setRange(0, 10);
    for (const int grip : {0, 4, -4}) {
        slider_->setPosition(5);
        expectCapUnderTheHand(grip);
    }
}

TEST_F(SliderCap, StandsUnderTheHandOnALevelSliderToo) {
    lie();
    slider_->setRange(0, 10);
    for (const int grip : {0, 4, -4}) {
        slider_->setPosition(5);
        expectCapUnderTheHand(grip);
    }
}

TEST_F(SliderCap, MovesWithTheHandBetweenTwoPositions) {
    slider_->setRange(0, 1);
    slider_->setPosition(0);
    press(9);
    const QImage before = slider_->grab().toImage();
    move(60);
    EXPECT_EQ(slider_->position(), 0);
    EXPECT_NE(slider_->grab().toImage(), before);
}

TEST_F(SliderCap, GoesToItsPositionWhenLetGo) {
    slider_->setRange(0, 10);
    slider_->setPosition(3);
    const QImage there = slider_->grab().toImage();
    press(100);
    move(64);
    ASSERT_EQ(slider_->position(), 3);
    release(64);
    // The mouse is not over it in the first picture either, and a click shows no ring.
    EXPECT_EQ(slider_->grab().toImage(), there);
}

}  // namespace
}  // namespace tessavo::test
