#include "controls/bitmap_slider.h"

#include <QApplication>
#include <QLineEdit>
#include <QWheelEvent>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <random>

#include "controls/control_id.h"
#include "controls/skin_group_box.h"
#include "controls/slider_host.h"
#include "controls/synthetic_events.h"

namespace tessavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int id = 1112;

Received moved(int position) {
    return {10449, id, position};
}
Received released(int position) {
    return {10450, id, position};
}

/// A vertical slider of 182 pixels, -180 to 180: 163 pixels of travel, centres from 9.5 to 172.5.
class BitmapSliderTest : public testing::Test {
 protected:
    BitmapSliderTest() : slider_(new CBitmapSlider(Qt::Vertical, id, &host_)), other_(new QLineEdit(&host_)) {
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
        const QPointF place(at(pixel));
        QMouseEvent event(QEvent::MouseMove, place, slider_->mapToGlobal(place), Qt::NoButton, Qt::LeftButton,
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

TEST_F(BitmapSliderTest, CarriesItsNumber) {
    EXPECT_EQ(controlId(*slider_), id);
    EXPECT_EQ(host_.findChild<CBitmapSlider*>(QStringLiteral("id1112")), slider_);
    EXPECT_EQ(controlId(host_), -1);
}

TEST_F(BitmapSliderTest, MarginsAndThumbAreThoseOfTheBitmaps) {
    const SliderTrack track = slider_->track();
    EXPECT_DOUBLE_EQ(track.extent, 182);
    EXPECT_DOUBLE_EQ(track.nearMargin, 3);
    EXPECT_DOUBLE_EQ(track.farMargin, 3);
    EXPECT_DOUBLE_EQ(track.thumb, 13);
}

// ---- programmatic changes

TEST_F(BitmapSliderTest, ProgrammaticChangesPostNothing) {
    slider_->setPosition(50);
    slider_->setRange(-10, 10);
    slider_->setPosition(-10);
    slider_->setBypassed(true);
    slider_->setColor(theme::quality);
    slider_->setEnabled(false);
    slider_->setEnabled(true);
    slider_->hide();
    slider_->show();
    slider_->setFocus();
    other_->setFocus();
    EXPECT_THAT(host_.take(), IsEmpty());
}

TEST_F(BitmapSliderTest, PositionsAreClampedIntoTheRange) {
    slider_->setPosition(1000);
    EXPECT_EQ(slider_->position(), 180);
    slider_->setPosition(-1000);
    EXPECT_EQ(slider_->position(), -180);
    slider_->setRange(5, 10);
    EXPECT_EQ(slider_->position(), 5);
}

TEST_F(BitmapSliderTest, TheMinimumIsNeverAboveTheMaximum) {
    slider_->setRange(10, -10);
    EXPECT_EQ(slider_->minimum(), 10);
    EXPECT_EQ(slider_->maximum(), 10);
    EXPECT_EQ(slider_->position(), 10);
}

// ---- mouse

TEST_F(BitmapSliderTest, AClickFarFromTheThumbMovesItThereAtOnce) {
    slider_->setPosition(180);
    press(40);
    const int expected = positionAt(40);
    EXPECT_EQ(slider_->position(), expected);
    EXPECT_TRUE(slider_->isDragging());
    EXPECT_THAT(host_.take(), ElementsAre(moved(expected)));
    release(40);
    EXPECT_FALSE(slider_->isDragging());
    EXPECT_THAT(host_.take(), ElementsAre(released(expected)));
}

TEST_F(BitmapSliderTest, AClickTakesTheFocus) {
    EXPECT_FALSE(slider_->hasFocus());
    press(90);
    EXPECT_TRUE(slider_->hasFocus());
}

TEST_F(BitmapSliderTest, AClickOnTheThumbDoesNotMoveIt) {
    slider_->setPosition(0);  // centre at 91
    for (const int pixel : {85, 88, 91, 94, 97}) {
        press(pixel);
        EXPECT_EQ(slider_->position(), 0);
        EXPECT_THAT(host_.take(), IsEmpty()) << pixel;
        release(pixel);
        EXPECT_THAT(host_.take(), ElementsAre(released(0))) << pixel;
    }
}

TEST_F(BitmapSliderTest, AClickJustBesideTheThumbMovesIt) {
    slider_->setPosition(0);
    press(98);
    EXPECT_EQ(slider_->position(), positionAt(98));
    EXPECT_THAT(host_.take(), ElementsAre(moved(positionAt(98))));
}

TEST_F(BitmapSliderTest, AThumbHeldOffItsCentreKeepsItsDistanceToTheMouse) {
    slider_->setPosition(0);
    press(95);
    move(115);
    EXPECT_EQ(slider_->position(), positionAt(111));
    move(85);
    EXPECT_EQ(slider_->position(), positionAt(81));
    EXPECT_THAT(host_.take(), ElementsAre(moved(positionAt(111)), moved(positionAt(81))));
    release(85);
    EXPECT_THAT(host_.take(), ElementsAre(released(positionAt(81))));
}

TEST_F(BitmapSliderTest, EveryPixelOfADragReportsThePositionOfTheRule) {
    slider_->setPosition(-180);
    press(100);
    host_.take();
    for (int pixel = 171; pixel >= 10; --pixel) {
        move(pixel);
        ASSERT_THAT(host_.take(), ElementsAre(moved(positionAt(pixel)))) << pixel;
    }
}

TEST_F(BitmapSliderTest, DraggingBeyondTheEndsReportsTheEndsAndNothingOutside) {
    press(100);
    host_.take();
    for (const int pixel : {172, 173, 182, 500, 100000}) {
        move(pixel);
    }
    EXPECT_THAT(host_.take(), ElementsAre(moved(positionAt(172)), moved(180)));
    for (const int pixel : {9, 0, -1, -100000}) {
        move(pixel);
    }
    EXPECT_THAT(host_.take(), ElementsAre(moved(-180)));
    release(-5);
    EXPECT_THAT(host_.take(), ElementsAre(released(-180)));
}

TEST_F(BitmapSliderTest, AMoveToTheSamePixelPostsNothing) {
    press(60);
    host_.take();
    move(60);
    move(60);
    EXPECT_THAT(host_.take(), IsEmpty());
}

TEST_F(BitmapSliderTest, DraggingBackToTheStartGivesBackTheStart) {
    for (int position = -180; position <= 180; ++position) {
        slider_->setPosition(position);
        const int centre = qRound(slider_->track().pixelOf(position, -180, 180));
        press(centre);
        move(centre + 30 > 180 ? centre - 30 : centre + 30);
        move(centre);
        release(centre);
        ASSERT_EQ(slider_->position(), position);
    }
}

TEST_F(BitmapSliderTest, MovesWithoutAPressDoNothing) {
    move(40);
    release(40);
    EXPECT_EQ(slider_->position(), 0);
    EXPECT_THAT(host_.take(), IsEmpty());
}

TEST_F(BitmapSliderTest, OtherButtonsDoNothing) {
    QTest::mouseClick(slider_, Qt::RightButton, {}, at(30));
    QTest::mouseClick(slider_, Qt::MiddleButton, {}, at(30));
    EXPECT_THAT(host_.take(), IsEmpty());
    press(30);
    host_.take();
    QTest::mouseRelease(slider_, Qt::RightButton, {}, at(30));
    EXPECT_TRUE(slider_->isDragging());
    EXPECT_THAT(host_.take(), IsEmpty());
}

TEST_F(BitmapSliderTest, ADisabledSliderStaysStill) {
    slider_->setEnabled(false);
    QTest::mouseClick(slider_, Qt::LeftButton, {}, at(30));
    EXPECT_EQ(slider_->position(), 0);
    EXPECT_FALSE(slider_->isDragging());
    EXPECT_THAT(host_.take(), IsEmpty());
}

TEST_F(BitmapSliderTest, ABypassedSliderStaysUsable) {
    slider_->setBypassed(true);
    press(40);
    EXPECT_THAT(host_.take(), ElementsAre(moved(positionAt(40))));
}

TEST_F(BitmapSliderTest, ADoubleClickIsTwoClicks) {
    slider_->setPosition(180);
    press(40);
    release(40);
    QTest::mouseDClick(slider_, Qt::LeftButton, {}, at(40));
    release(40);
    const int expected = positionAt(40);
    EXPECT_THAT(host_.take(), ElementsAre(moved(expected), released(expected), released(expected)));
}

TEST_F(BitmapSliderTest, AHorizontalSliderFollowsTheSameRuleAcross) {
    CBitmapSlider horizontal(Qt::Horizontal, id, &host_);
    horizontal.setGeometry(20, 220, 266, 28);
    horizontal.setRange(20, 20000);
    horizontal.show();
    slider_ = &horizontal;
    for (int pixel = 30; pixel < 230; ++pixel) {
        horizontal.setPosition(pixel < 130 ? 20000 : 20);
        press(pixel);
        release(pixel);
        ASSERT_EQ(horizontal.position(),
                  static_cast<int>((pixel - 6.5 - 3) / (266 - 3 - 3 - 13) * (20000 - 20) + 20));
    }
    press(265);
    EXPECT_EQ(horizontal.position(), 20000);
    release(265);
    press(0);
    EXPECT_EQ(horizontal.position(), 20);
    release(0);
}

TEST_F(BitmapSliderTest, AProgramMayPutTheThumbBackDuringADrag) {
    press(120);
    host_.take();
    slider_->setPosition(0);
    EXPECT_THAT(host_.take(), IsEmpty());
    release(120);
    EXPECT_THAT(host_.take(), ElementsAre(released(0)));
    EXPECT_EQ(slider_->position(), 0);
}

TEST_F(BitmapSliderTest, ARangeOfOneValueReportsThatValue) {
    slider_->setRange(7, 7);
    press(40);
    release(40);
    EXPECT_EQ(slider_->position(), 7);
    EXPECT_THAT(host_.take(), ElementsAre(moved(7), released(7)));
}

TEST_F(BitmapSliderTest, ASliderSmallerThanItsThumbOnlyReportsTheRelease) {
    slider_->resize(28, 12);
    slider_->setPosition(-180);
    press(2);
    move(11);
    release(11);
    EXPECT_THAT(host_.take(), ElementsAre(released(-180)));
}

// ---- what ends a drag

TEST_F(BitmapSliderTest, LosingTheFocusEndsADragOnce) {
    press(40);
    const int expected = positionAt(40);
    host_.take();
    other_->setFocus();
    EXPECT_FALSE(slider_->isDragging());
    EXPECT_THAT(host_.take(), ElementsAre(released(expected)));
    move(120);
    release(120);
    EXPECT_THAT(host_.take(), IsEmpty());
    EXPECT_EQ(slider_->position(), expected);
}

TEST_F(BitmapSliderTest, HidingEndsADragOnce) {
    press(40);
    host_.take();
    slider_->hide();
    EXPECT_THAT(host_.take(), ElementsAre(released(positionAt(40))));
}

TEST_F(BitmapSliderTest, HidingThePageEndsADragOnce) {
    press(40);
    host_.take();
    host_.hide();
    EXPECT_THAT(host_.take(), ElementsAre(released(positionAt(40))));
}

TEST_F(BitmapSliderTest, DisablingEndsADragOnce) {
    press(40);
    host_.take();
    slider_->setEnabled(false);
    EXPECT_THAT(host_.take(), ElementsAre(released(positionAt(40))));
    slider_->setEnabled(true);
    move(120);
    EXPECT_THAT(host_.take(), IsEmpty());
}

TEST_F(BitmapSliderTest, DisablingThePageEndsADragOnce) {
    press(40);
    host_.take();
    host_.setEnabled(false);
    EXPECT_THAT(host_.take(), ElementsAre(released(positionAt(40))));
}

TEST(BitmapSlider, PostsNothingToAPageThatIsGone) {
    int delivered = 0;
    struct Counter : QObject {
        int* count = nullptr;
        bool eventFilter(QObject* watched, QEvent* event) override {
            *count += SliderEvent::isSliderEvent(*event) ? 1 : 0;
            return QObject::eventFilter(watched, event);
        }
    } counter;
    counter.count = &delivered;
    qApp->installEventFilter(&counter);
    {
        auto host = std::make_unique<SliderHost>();
        auto* slider = new CBitmapSlider(Qt::Vertical, id, host.get());
        slider->setGeometry(0, 0, 28, 182);
        host->showActive();
        QTest::mousePress(slider, Qt::LeftButton, {}, QPoint(14, 40));
        // One event waits, and the drag is not over.
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(delivered, 0);
}

TEST(BitmapSlider, NeedsNoParent) {
    CBitmapSlider slider(Qt::Vertical, id);
    slider.resize(28, 182);
    sendPress(slider, QPointF(14, 150));
    EXPECT_GT(slider.position(), 0);
    slider.setEnabled(false);
    EXPECT_FALSE(slider.isDragging());
}

TEST(BitmapSlider, AGroupBoxPassesItsSlidersEventsOn) {
    SliderHost host;
    auto* card = new SkinGroupBox(QStringLiteral("Output Gain"), 5, &host);
    auto* inset = new SkinGroupBox(QStringLiteral("Channel 1"), 6, card, SkinGroupBox::Kind::inset);
    auto* slider = new CBitmapSlider(Qt::Vertical, id, inset);
    slider->resize(28, 182);
    sendPress(*slider, QPointF(14, 150));
    QCoreApplication::sendPostedEvents(inset);
    EXPECT_THAT(host.take(), ElementsAre(moved(slider->position())));
}

// ---- keys

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
    CBitmapSlider horizontal(Qt::Horizontal, id, &host_);
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
    slider_->setSteps(2, 20, 60);
    QTest::keyClick(slider_, Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(slider_->position(), 42);
    QTest::keyClick(slider_, Qt::Key_Down);
    EXPECT_EQ(slider_->position(), 44);
    QTest::keyClick(slider_, Qt::Key_PageUp);
    EXPECT_EQ(slider_->position(), 24);
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
    slider_->setSteps(std::numeric_limits<int>::max(), std::numeric_limits<int>::max(),
                      std::numeric_limits<int>::max());
    slider_->setPosition(std::numeric_limits<int>::max() - 1);
    QTest::keyClick(slider_, Qt::Key_Down);
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
    slider_->setSteps(1, 10, 50);
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
}  // namespace tessavo
