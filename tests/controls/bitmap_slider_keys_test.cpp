#include <gmock/gmock.h>
#include <random>

#include "controls/bitmap_slider_fixture.h"

// A slider under keys, wheel and a user who does anything at any time.

namespace tessavo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class BitmapSliderKeys : public BitmapSliderTest {
 protected:
    BitmapSliderKeys() {
        slider_->setFocus();
        slider_->setPosition(0);
    }
};

TEST_F(BitmapSliderKeys, UpLeadsToTheTopOfAVerticalSliderWhateverTheSign) {
    QTest::keyClick(slider_, Qt::Key_Up);
    EXPECT_THAT(host_.take(), ElementsAre(moved(-1), released(-1)));
    QTest::keyClick(slider_, Qt::Key_Down);
    EXPECT_THAT(host_.take(), ElementsAre(moved(0), released(0)));
    slider_->setRange(20, 100);
    slider_->setPosition(50);
    QTest::keyClick(slider_, Qt::Key_Up);
    EXPECT_EQ(slider_->position(), 49);
    QTest::keyClick(slider_, Qt::Key_Right);
    EXPECT_EQ(slider_->position(), 48);
    QTest::keyClick(slider_, Qt::Key_Left);
    EXPECT_EQ(slider_->position(), 49);
}

TEST_F(BitmapSliderKeys, RightLeadsToTheRightOfAHorizontalSlider) {
    CBitmapSlider horizontal(Qt::Horizontal, sliderId, &host_);
    horizontal.setRange(-180, 180);
    horizontal.setGeometry(20, 220, 182, 28);
    horizontal.show();
    horizontal.setFocus();
    QTest::keyClick(&horizontal, Qt::Key_Right);
    QTest::keyClick(&horizontal, Qt::Key_Up);
    EXPECT_EQ(horizontal.position(), 2);
    QTest::keyClick(&horizontal, Qt::Key_Left);
    QTest::keyClick(&horizontal, Qt::Key_Down);
    QTest::keyClick(&horizontal, Qt::Key_PageDown);
    EXPECT_EQ(horizontal.position(), -10);
    QTest::keyClick(&horizontal, Qt::Key_Home);
    EXPECT_EQ(horizontal.position(), -180);
    QTest::keyClick(&horizontal, Qt::Key_End);
    EXPECT_EQ(horizontal.position(), 180);
}

TEST_F(BitmapSliderKeys, PageKeysStepTen) {
    QTest::keyClick(slider_, Qt::Key_PageUp);
    EXPECT_THAT(host_.take(), ElementsAre(moved(-10), released(-10)));
    QTest::keyClick(slider_, Qt::Key_PageDown);
    EXPECT_THAT(host_.take(), ElementsAre(moved(0), released(0)));
}

TEST_F(BitmapSliderKeys, HomeAndEndAreTheEnds) {
    QTest::keyClick(slider_, Qt::Key_Home);
    EXPECT_THAT(host_.take(), ElementsAre(moved(-180), released(-180)));
    QTest::keyClick(slider_, Qt::Key_End);
    EXPECT_THAT(host_.take(), ElementsAre(moved(180), released(180)));
}

TEST_F(BitmapSliderKeys, CtrlMakesAnArrowCoarse) {
    QTest::keyClick(slider_, Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(slider_->position(), -18);  // a twentieth of the range
    slider_->setRange(-600, 600);
    QTest::keyClick(slider_, Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(slider_->position(), 42);
    QTest::keyClick(slider_, Qt::Key_Down);
    EXPECT_EQ(slider_->position(), 43);
    QTest::keyClick(slider_, Qt::Key_PageUp);
    EXPECT_EQ(slider_->position(), 33);
}

TEST_F(BitmapSliderKeys, KeypadArrowsAreArrows) {
    QTest::keyClick(slider_, Qt::Key_Up, Qt::KeypadModifier);
    EXPECT_EQ(slider_->position(), -1);
}

TEST_F(BitmapSliderKeys, OtherKeysAndModifiersAreLeftToThePage) {
    for (const auto modifier : {Qt::ShiftModifier, Qt::AltModifier, Qt::MetaModifier}) {
        QTest::keyClick(slider_, Qt::Key_Up, modifier);
    }
    QTest::keyClick(slider_, Qt::Key_PageUp, Qt::ControlModifier);
    QTest::keyClick(slider_, Qt::Key_A);
    QTest::keyClick(slider_, Qt::Key_Escape);
    EXPECT_EQ(slider_->position(), 0);
    EXPECT_THAT(host_.take(), IsEmpty());
    QKeyEvent letter(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"));
    QApplication::sendEvent(slider_, &letter);
    EXPECT_FALSE(letter.isAccepted());
}

TEST_F(BitmapSliderKeys, StepsStopAtTheEndsAndThenPostNothing) {
    slider_->setPosition(-175);
    QTest::keyClick(slider_, Qt::Key_PageUp);
    EXPECT_THAT(host_.take(), ElementsAre(moved(-180), released(-180)));
    QTest::keyClick(slider_, Qt::Key_PageUp);
    QTest::keyClick(slider_, Qt::Key_Home);
    EXPECT_THAT(host_.take(), IsEmpty());
}

TEST_F(BitmapSliderKeys, StepsNeverOverflow) {
    slider_->setRange(std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    slider_->setPosition(std::numeric_limits<int>::max() - 1);
    QTest::keyClick(slider_, Qt::Key_PageDown);
    EXPECT_EQ(slider_->position(), std::numeric_limits<int>::max());
    slider_->setPosition(std::numeric_limits<int>::max() - 1);
    QTest::keyClick(slider_, Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(slider_->position(), std::numeric_limits<int>::max());
    QTest::keyClick(slider_, Qt::Key_Home);
    QTest::keyClick(slider_, Qt::Key_PageUp);
    QTest::keyClick(slider_, Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(slider_->position(), std::numeric_limits<int>::min());
}

TEST_F(BitmapSliderKeys, AHeldKeyIsReleasedOnceAtItsEnd) {
    key(QEvent::KeyPress, Qt::Key_Down, false);
    for (int i = 0; i < 3; ++i) {
        key(QEvent::KeyRelease, Qt::Key_Down, true);
        key(QEvent::KeyPress, Qt::Key_Down, true);
    }
    EXPECT_THAT(host_.take(), ElementsAre(moved(1), moved(2), moved(3), moved(4)));
    key(QEvent::KeyRelease, Qt::Key_Down, false);
    EXPECT_THAT(host_.take(), ElementsAre(released(4)));
    key(QEvent::KeyRelease, Qt::Key_Down, false);
    EXPECT_THAT(host_.take(), IsEmpty());
}

TEST_F(BitmapSliderKeys, OverlappingKeysAreReleasedOnceAtTheLast) {
    key(QEvent::KeyPress, Qt::Key_Down, false);
    key(QEvent::KeyPress, Qt::Key_PageDown, false);
    key(QEvent::KeyRelease, Qt::Key_Down, false);
    EXPECT_THAT(host_.take(), ElementsAre(moved(1), moved(11)));
    key(QEvent::KeyRelease, Qt::Key_PageDown, false);
    EXPECT_THAT(host_.take(), ElementsAre(released(11)));
}

TEST_F(BitmapSliderKeys, LosingTheFocusEndsAKeyOnce) {
    key(QEvent::KeyPress, Qt::Key_Down, false);
    host_.take();
    other_->setFocus();
    EXPECT_THAT(host_.take(), ElementsAre(released(1)));
    slider_->setFocus();
    key(QEvent::KeyRelease, Qt::Key_Down, false);
    EXPECT_THAT(host_.take(), IsEmpty());
}

TEST_F(BitmapSliderKeys, HidingEndsAKeyOnce) {
    key(QEvent::KeyPress, Qt::Key_Down, false);
    host_.take();
    slider_->hide();
    EXPECT_THAT(host_.take(), ElementsAre(released(1)));
}

TEST_F(BitmapSliderKeys, DisablingEndsAKeyOnce) {
    key(QEvent::KeyPress, Qt::Key_Down, false);
    host_.take();
    slider_->setEnabled(false);
    EXPECT_THAT(host_.take(), ElementsAre(released(1)));
}

TEST_F(BitmapSliderKeys, KeysDoNothingDuringADrag) {
    press(40);
    const int expected = positionAt(40);
    key(QEvent::KeyPress, Qt::Key_Home, false);
    key(QEvent::KeyRelease, Qt::Key_Home, false);
    wheel(120);
    EXPECT_EQ(slider_->position(), expected);
    release(40);
    EXPECT_THAT(host_.take(), ElementsAre(moved(expected), released(expected)));
}

TEST_F(BitmapSliderKeys, AClickDuringAHeldKeyEndsTheKeyFirst) {
    key(QEvent::KeyPress, Qt::Key_Down, false);
    press(40);
    const int expected = positionAt(40);
    key(QEvent::KeyRelease, Qt::Key_Down, false);
    release(40);
    EXPECT_THAT(host_.take(), ElementsAre(moved(1), released(1), moved(expected), released(expected)));
}

// ---- wheel

TEST_F(BitmapSliderKeys, TheWheelStepsAndIsReleasedWhenItRests) {
    slider_->setWheelRest(1);
    wheel(120);
    wheel(120);
    EXPECT_THAT(host_.take(), ElementsAre(moved(-1), moved(-2)));
    ASSERT_TRUE(
        QTest::qWaitFor([this] { return QCoreApplication::processEvents(), !host_.take().empty(); }, 2000));
    wheel(-240);
    EXPECT_EQ(slider_->position(), 0);
}

TEST_F(BitmapSliderKeys, RestingIsReportedOnce) {
    slider_->setWheelRest(1);
    wheel(-360);
    std::vector<Received> events;
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            const std::vector<Received> more = host_.take();
            events.insert(events.end(), more.begin(), more.end());
            return events.size() >= 2;
        },
        2000));
    EXPECT_THAT(events, ElementsAre(moved(3), released(3)));
    ASSERT_TRUE(letLoopRun());
    EXPECT_THAT(host_.take(), IsEmpty());
}

TEST_F(BitmapSliderKeys, AFineWheelStepsWhenItHasTurnedANotch) {
    for (int i = 0; i < 3; ++i) {
        wheel(30);
    }
    EXPECT_EQ(slider_->position(), 0);
    wheel(30);
    EXPECT_EQ(slider_->position(), -1);
    wheel(90);
    wheel(-90);  // turning back starts anew
    EXPECT_EQ(slider_->position(), -1);
    wheel(-30);
    EXPECT_EQ(slider_->position(), 0);
}

TEST_F(BitmapSliderKeys, CtrlMakesTheWheelCoarse) {
    slider_->setRange(-500, 500);
    wheel(-120, Qt::ControlModifier);
    EXPECT_EQ(slider_->position(), 50);
}

TEST_F(BitmapSliderKeys, WithoutFocusTheWheelIsLeftToThePage) {
    other_->setFocus();
    QWheelEvent event(QPointF(14, 90), slider_->mapToGlobal(QPointF(14, 90)), {}, {0, 120}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(slider_, &event);
    EXPECT_FALSE(event.isAccepted());
    EXPECT_EQ(slider_->position(), 0);
    EXPECT_THAT(host_.take(), IsEmpty());
}

TEST_F(BitmapSliderKeys, LosingTheFocusEndsAWheelOnce) {
    slider_->setWheelRest(1);
    wheel(-120);
    other_->setFocus();
    EXPECT_THAT(host_.take(), ElementsAre(moved(1), released(1)));
    ASSERT_TRUE(letLoopRun());
    EXPECT_THAT(host_.take(), IsEmpty());
}

TEST_F(BitmapSliderKeys, AKeyHeldWhileTheWheelTurnsIsReleasedOnceAtTheEndOfBoth) {
    slider_->setWheelRest(1);
    key(QEvent::KeyPress, Qt::Key_Down, false);
    wheel(-120);
    ASSERT_TRUE(letLoopRun());
    EXPECT_THAT(host_.take(), ElementsAre(moved(1), moved(2)));
    key(QEvent::KeyRelease, Qt::Key_Down, false);
    EXPECT_THAT(host_.take(), ElementsAre(released(2)));
}

// ---- a random user

TEST_F(BitmapSliderKeys, WhateverIsDoneEveryMoveIsFollowedByARelease) {
    std::mt19937 random(11);
    const auto pick = [&random](int count) {
        return static_cast<int>(random() % static_cast<unsigned>(count));
    };
    const int keys[]{Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End};
    for (int round = 0; round < 3000; ++round) {
        switch (pick(9)) {
            case 0:
                press(pick(182));
                break;
            case 1:
            case 2:
                move(pick(400) - 100);
                break;
            case 3:
                release(pick(182));
                break;
            case 4:
                key(QEvent::KeyPress, keys[pick(6)], pick(2) == 0);
                break;
            case 5:
                key(QEvent::KeyRelease, keys[pick(6)], pick(4) == 0);
                break;
            case 6:
                wheel(pick(2) == 0 ? 120 : -120);
                break;
            case 7:
                slider_->setPosition(pick(600) - 300);
                break;
            default:
                pick(10) == 0 ? other_->setFocus() : slider_->setFocus();
        }
        ASSERT_GE(slider_->position(), -180);
        ASSERT_LE(slider_->position(), 180);
    }
    other_->setFocus();
    const std::vector<Received> events = host_.take();
    ASSERT_FALSE(events.empty());
    EXPECT_EQ(events.back().type, 10450);
    for (const Received& event : events) {
        ASSERT_GE(event.position, -180);
        ASSERT_LE(event.position, 180);
    }
}

}  // namespace
}  // namespace tessavo::test
