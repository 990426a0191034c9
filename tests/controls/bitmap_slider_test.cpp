#include <gmock/gmock.h>
#include <memory>

#include "controls/bitmap_slider_fixture.h"
#include "controls/control_id.h"
#include "controls/skin_group_box.h"

// A slider under programs and under the mouse.

namespace tessavo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(BitmapSliderTest, CarriesItsNumber) {
    EXPECT_EQ(controlId(*slider_), sliderId);
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
    CBitmapSlider horizontal(Qt::Horizontal, sliderId, &host_);
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
        auto* slider = new CBitmapSlider(Qt::Vertical, sliderId, host.get());
        slider->setGeometry(0, 0, 28, 182);
        host->showActive();
        QTest::mousePress(slider, Qt::LeftButton, {}, QPoint(14, 40));
        // One event waits, and the drag is not over.
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(delivered, 0);
}

TEST(BitmapSlider, NeedsNoParent) {
    CBitmapSlider slider(Qt::Vertical, sliderId);
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
    auto* slider = new CBitmapSlider(Qt::Vertical, sliderId, inset);
    slider->resize(28, 182);
    sendPress(*slider, QPointF(14, 150));
    QCoreApplication::sendPostedEvents(inset);
    EXPECT_THAT(host.take(), ElementsAre(moved(slider->position())));
}

}  // namespace
}  // namespace tessavo::test
