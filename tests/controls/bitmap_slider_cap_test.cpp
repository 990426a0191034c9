#include "controls/bitmap_slider_fixture.h"
#include "controls/pictures.h"

// Where the cap is seen while the hand is on it.

namespace tessavo {
namespace {

class SliderCap : public BitmapSliderTest {
 protected:
    /// What is seen around a pixel, as far as the cap covers it whatever lies below.
    [[nodiscard]] QImage seenAt(int pixel) const {
        const QImage picture = slider_->grab().toImage();
        return partOf(picture,
                      slider_->isVertical() ? QRect(6, pixel - 5, 16, 11) : QRect(pixel - 5, 6, 11, 16));
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
}  // namespace tessavo
