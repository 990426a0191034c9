#include <QScrollBar>
#include <QTabBar>
#include <QTest>

#include "app/narrow_view.h"
#include "support/frame_fixture.h"
#include "support/synthetic_events.h"

// The frame on screens that are too small for it.

namespace tessavo::test {
namespace {

class SmallScreen : public FrameTest {
 protected:
    void fit(int width, int height) {
        frame->fitInto({width, height});
        ASSERT_TRUE(letLoopRun());
    }
    QScrollBar* across() {
        auto* narrow = frame->findChild<NarrowView*>();
        return narrow != nullptr ? narrow->horizontalScrollBar() : nullptr;
    }
    /// The bar at the right edge of a narrow frame.
    QScrollBar* down() {
        auto* narrow = frame->findChild<NarrowView*>();
        return narrow != nullptr ? narrow->findChild<QScrollBar*>(QString(), Qt::FindDirectChildrenOnly)
                                 : nullptr;
    }
    QRect placeOf(const QWidget& widget) { return {widget.mapTo(frame.get(), QPoint()), widget.size()}; }
    bool wholeInSight(const QWidget& widget) {
        return widget.visibleRegion().boundingRect() == widget.rect();
    }
};

TEST_F(SmallScreen, ItsWidthIsThatOfTheScreenAndNeverMoreThanItsOwn) {
    EXPECT_EQ(CMainFrame::widthFor(100000), 1024);
    EXPECT_EQ(CMainFrame::widthFor(1024), 1024);
    EXPECT_EQ(CMainFrame::widthFor(1023), 1015);
    EXPECT_EQ(CMainFrame::widthFor(960), 952);
    EXPECT_EQ(CMainFrame::widthFor(0), 480);
    EXPECT_EQ(CMainFrame::widthFor(-7), 480);
}

TEST_F(SmallScreen, AScreenThatIsWideEnoughNeedsNothingAcross) {
    fit(1024, 600);
    EXPECT_EQ(frame->size(), QSize(1024, 568));
    EXPECT_EQ(across(), nullptr);
    EXPECT_EQ(view().parentWidget(), frame.get());
}

TEST_F(SmallScreen, OnANarrowOneHeaderTabsAndPageScrollAcrossAsOne) {
    fit(800, 600);
    EXPECT_EQ(frame->size(), QSize(792, 568));
    EXPECT_EQ(frame->minimumSize(), frame->maximumSize());
    ASSERT_NE(across(), nullptr);
    EXPECT_TRUE(across()->isVisible());
    EXPECT_EQ(placeOf(tabs()), QRect(20, 78, 776, 34));
    EXPECT_EQ(placeOf(frame->statusLine()), QRect(0, 540, 792, 28));
    EXPECT_TRUE(wholeInSight(setSelector()));
    EXPECT_FALSE(wholeInSight(flag(8)));

    across()->setValue(across()->maximum());
    EXPECT_TRUE(wholeInSight(flag(8)));
    // The view's right edge now stands at the bar that scrolls down.
    const int shift = 1024 - (792 - 8);
    EXPECT_EQ(placeOf(tabs()), QRect(20 - shift, 78, 776, 34));
    // What the target does stays in sight.
    EXPECT_EQ(placeOf(frame->statusLine()), QRect(0, 540, 792, 28));
    EXPECT_EQ(placeOf(*view().pages()[0]).topLeft(), QPoint(20 - shift, 112));
}

TEST_F(SmallScreen, OnANarrowOneThePageAloneScrollsDown) {
    fit(800, 600);
    ASSERT_NE(down(), nullptr);
    EXPECT_TRUE(down()->isVisible());
    EXPECT_EQ(placeOf(*down()), QRect(784, 112, 8, 540 - across()->height() - 112));
    const QWidget& page = *view().pages()[0];
    EXPECT_GT(down()->maximum(), 0);
    down()->setValue(down()->maximum());
    EXPECT_EQ(placeOf(page).bottom(), 540 - across()->height() - 1);
    EXPECT_EQ(placeOf(tabs()), QRect(20, 78, 776, 34));
    // Another page starts at its top.
    clickTab(1);
    EXPECT_EQ(down()->value(), 0);
    EXPECT_EQ(placeOf(*view().pages()[1]).top(), 112);
}

TEST_F(SmallScreen, TheKeyboardBringsControlsIntoSight) {
    fit(800, 600);
    setSelector().setFocus();
    int seen = 0;
    for (int i = 0; i < 30 && !flag(8).hasFocus(); ++i) {
        QTest::keyClick(frame->focusWidget(), Qt::Key_Tab);
        ASSERT_NE(frame->focusWidget(), nullptr);
        EXPECT_TRUE(wholeInSight(*frame->focusWidget())) << frame->focusWidget()->objectName().toStdString();
        ++seen;
    }
    EXPECT_TRUE(flag(8).hasFocus());
    EXPECT_GE(seen, 12);
    EXPECT_GT(across()->value(), 0);
}

TEST_F(SmallScreen, TheArrowKeysBringTheirTabIntoSight) {
    fit(600, 600);
    tabs().setFocus();
    for (int index = 1; index < 6; ++index) {
        QTest::keyClick(&tabs(), Qt::Key_Right);
        ASSERT_EQ(tabs().currentIndex(), index);
        const QRect tab = tabs().tabRect(index) & tabs().rect();
        EXPECT_EQ(tabs().visibleRegion().boundingRect() & tab, tab) << index;
    }
    EXPECT_GT(across()->value(), 0);
}

TEST_F(SmallScreen, TheMouseMovesNothingUnderItself) {
    fit(600, 600);
    across()->setValue(200);
    // A part of the set name is out of sight.
    QTest::mouseClick(&setName(), Qt::LeftButton, {}, QPoint(150, 14));
    EXPECT_TRUE(setName().hasFocus());
    EXPECT_EQ(across()->value(), 200);
}

TEST_F(SmallScreen, TheStatusBarKeepsTheKeyStatesWhileThereIsRoomForTheTarget) {
    // Where something is drawn in a third of the bar's height, counted from its right edge.
    const auto drawn = [this](int fromRight, int width) {
        const QImage bar = frame->statusLine().grab().toImage();
        const QColor ground = bar.pixelColor(bar.width() - 3, 3);
        for (int x = bar.width() - fromRight; x < bar.width() - fromRight + width; ++x) {
            for (int y = 8; y < 20; ++y) {
                if (bar.pixelColor(x, y) != ground) {
                    return true;
                }
            }
        }
        return false;
    };
    for (const int width : {1024, 800, 700}) {
        fit(width, 600);
        EXPECT_TRUE(drawn(194 + 10, 11)) << width << ": the line before the first key";
        for (const int key : {194, 136, 78}) {
            EXPECT_TRUE(drawn(key - 2, 56)) << width;
        }
        EXPECT_FALSE(drawn(19, 19)) << width;
    }
    fit(500, 600);
    EXPECT_FALSE(drawn(190, 190));
}

TEST_F(SmallScreen, ABiggerScreenGivesEverythingItsPlaceBack) {
    fit(700, 400);
    across()->setValue(across()->maximum());
    down()->setValue(down()->maximum());
    fit(1920, 1080);
    EXPECT_EQ(frame->size(), QSize(1024, 736));
    EXPECT_FALSE(across()->isVisible());
    EXPECT_FALSE(down()->isVisible());
    EXPECT_EQ(placeOf(tabs()), QRect(20, 78, 776, 34));
    EXPECT_EQ(placeOf(*view().pages()[0]), QRect(20, 112, 984, 596));
    EXPECT_EQ(placeOf(frame->statusLine()), QRect(0, 708, 1024, 28));
    // And a low one scrolls with the page's own bar again.
    fit(1024, 500);
    const auto* area = view().findChild<QScrollArea*>();
    ASSERT_NE(area, nullptr);
    EXPECT_TRUE(area->verticalScrollBar()->isVisible());
    EXPECT_FALSE(down()->isVisible());
}

TEST_F(SmallScreen, ItsBackgroundStillMovesTheWindow) {
    fit(800, 600);
    frame->move(40, 30);
    QWindow* window = frame->windowHandle();
    const QPoint from(360, 31);
    const QPoint grabbed = frame->mapToGlobal(from);
    QTest::mousePress(window, Qt::LeftButton, {}, from);
    QTest::mouseMove(window, window->mapFromGlobal(grabbed + QPoint(30, 20)));
    QTest::mouseRelease(window, Qt::LeftButton, {}, window->mapFromGlobal(grabbed + QPoint(30, 20)));
    EXPECT_EQ(frame->pos(), QPoint(70, 50));
}

}  // namespace
}  // namespace tessavo::test
