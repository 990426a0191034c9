#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "plot/chart/chart_helpers.h"
#include "plot/chart/chart_view.h"
#include "plot/chart/image_chart.h"
#include "plot/chart/image_plot_settings_dialog.h"
#include "plot/chart/plot_settings_dialog.h"
#include "plot/chart/xy_chart.h"

namespace tessavo::test {
namespace {

QStringList entries(const QMenu& menu) {
    QStringList texts;
    for (const QAction* const action : menu.actions()) {
        if (!action->isSeparator()) {
            texts << action->text();
        }
    }
    return texts;
}

QAction* entry(const QMenu& menu, const QString& text) {
    for (QAction* const action : menu.actions()) {
        if (action->text() == text) {
            return action;
        }
    }
    ADD_FAILURE() << "no entry " << text.toStdString();
    return nullptr;
}

class ChartMenu : public testing::Test {
 protected:
    ChartMenu() : view_(chart_, host_) {
        view_.resize(600, 400);
        view_.show();
        QCoreApplication::processEvents();
    }

    /// Opens the menu as the right button does.
    QMenu& menu(QWidget& view) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, {50, 50}, view.mapToGlobal(QPoint(50, 50)));
        QCoreApplication::sendEvent(&view, &event);
        auto* const opened = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        EXPECT_NE(opened, nullptr);
        return *opened;
    }
    QMenu& menu() { return menu(view_); }

    /// Chooses an entry of "Left Axis" and so on, and closes the menu.
    void choose(const QString& axis, const QString& what, const QString& value) {
        QMenu& opened = menu();
        QMenu* const axisMenu = entry(opened, axis)->menu();
        entry(*entry(*axisMenu, what)->menu(), value)->trigger();
        opened.close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    FakeHost host_;
    CXYChart chart_;
    CChartView view_;
};

TEST_F(ChartMenu, HasItsEntriesInOrder) {
    QMenu& opened = menu();
    EXPECT_EQ(entries(opened),
              QStringList({"Settings...", "Auto range", "Left Axis", "Bottom Axis", "Right Axis", "Top Axis",
                           "Copy as picture", "Save as PNG...", "Save data..."}));
    for (const char* const axis : {"Left Axis", "Bottom Axis", "Right Axis", "Top Axis"}) {
        ASSERT_NE(entry(opened, axis)->menu(), nullptr);
        EXPECT_EQ(entries(*entry(opened, axis)->menu()),
                  QStringList({"Major ticks", "Minor ticks", "Title size", "Label size"}));
    }
    opened.close();
}

TEST_F(ChartMenu, CopyAsPictureCopiesThePicture) {
    QGuiApplication::clipboard()->clear();
    QMenu& opened = menu();
    QAction* const copy = entry(opened, "Copy as picture");
    QTest::mouseClick(&opened, Qt::LeftButton, {}, opened.actionGeometry(copy).center());
    EXPECT_FALSE(opened.isVisible());
    EXPECT_EQ(QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32),
              view_.picture().convertToFormat(QImage::Format_RGB32));
}

TEST_F(ChartMenu, TicksAndSizesAreChosenPerAxis) {
    choose("Left Axis", "Major ticks", "5");
    choose("Left Axis", "Minor ticks", "4");
    choose("Bottom Axis", "Title size", "18");
    choose("Bottom Axis", "Label size", "9");
    EXPECT_EQ(chart_.axis(AxisSide::left).look().majorTicks, 5);
    EXPECT_EQ(chart_.axis(AxisSide::left).look().minorTicks, 4);
    EXPECT_EQ(chart_.axis(AxisSide::bottom).look().titleFont.pixelSize(), 18);
    EXPECT_EQ(chart_.axis(AxisSide::bottom).look().labelFont.pixelSize(), 9);
    EXPECT_EQ(chart_.axis(AxisSide::bottom).look().majorTicks, 9) << "the other axis is as it was";
}

TEST_F(ChartMenu, AxesAppearAndGo) {
    choose("Right Axis", "Major ticks", "7");
    EXPECT_TRUE(chart_.axis(AxisSide::right).isShown());
    choose("Right Axis", "Major ticks", "None");
    EXPECT_FALSE(chart_.axis(AxisSide::right).isShown());
}

TEST_F(ChartMenu, ThePresentChoiceIsChecked) {
    QMenu& opened = menu();
    const QMenu& major = *entry(*entry(opened, "Left Axis")->menu(), "Major ticks")->menu();
    QStringList checked;
    for (const QAction* const action : major.actions()) {
        if (action->isChecked()) {
            checked << action->text();
        }
    }
    EXPECT_EQ(checked, QStringList("9"));
    opened.close();
}

TEST_F(ChartMenu, AutoRangeFollowsTheDataAndCanBeLeft) {
    setUpResponseAxes(chart_);
    addXy(chart_, {100, 1000}, {-30, 40});
    EXPECT_EQ(chart_.axis(AxisSide::left).range(), (AxisRange{-18, 18}));
    QMenu& opened = menu();
    EXPECT_FALSE(entry(opened, "Auto range")->isChecked());
    entry(opened, "Auto range")->trigger();
    opened.close();
    EXPECT_TRUE(chart_.isAutoRange());
    EXPECT_LE(chart_.axis(AxisSide::left).range().minimum, -30);
    EXPECT_GE(chart_.axis(AxisSide::left).range().maximum, 40);
    EXPECT_EQ(chart_.axis(AxisSide::bottom).range(), (AxisRange{100, 1000}));
    QMenu& again = menu();
    EXPECT_TRUE(entry(again, "Auto range")->isChecked());
    entry(again, "Auto range")->trigger();
    again.close();
    const AxisRange kept = chart_.axis(AxisSide::left).range();
    addXy(chart_, {100, 1000}, {-300, 400});
    EXPECT_EQ(chart_.axis(AxisSide::left).range(), kept);
}

TEST_F(ChartMenu, SavingDataNeedsData) {
    QMenu& empty = menu();
    EXPECT_FALSE(entry(empty, "Save data...")->isEnabled());
    empty.close();
    addXy(chart_, {1}, {2});
    QMenu& filled = menu();
    EXPECT_TRUE(entry(filled, "Save data...")->isEnabled());
    entry(filled, "Save data...")->trigger();
    entry(filled, "Save as PNG...")->trigger();
    filled.close();
    EXPECT_EQ(host_.filters.size(), 2U);
}

TEST_F(ChartMenu, SettingsOpenTheDialogOfTheChart) {
    QMenu& opened = menu();
    entry(opened, "Settings...")->trigger();
    opened.close();
    auto* const xy = view_.findChild<CPlotSettingsDialog*>();
    ASSERT_NE(xy, nullptr);
    EXPECT_TRUE(xy->isVisible());
    EXPECT_EQ(xy->windowTitle(), "XY Plot Settings");
    xy->reject();

    CImageChart image;
    CChartView imageView(image, host_);
    imageView.show();
    QMenu& imageMenu = menu(imageView);
    entry(imageMenu, "Settings...")->trigger();
    imageMenu.close();
    auto* const settings = imageView.findChild<CImagePlotSettingsDialog*>();
    ASSERT_NE(settings, nullptr);
    EXPECT_EQ(settings->windowTitle(), "Image Plot Settings");
    settings->reject();
}

TEST_F(ChartMenu, ShiftF10OpensItWithinTheChart) {
    view_.setFocus();
    QTest::keyClick(&view_, Qt::Key_F10, Qt::ShiftModifier);
    auto* const opened = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(opened, nullptr);
    EXPECT_EQ(entries(*opened).first(), "Settings...");
    EXPECT_TRUE(QRect(view_.mapToGlobal(QPoint()), view_.size()).contains(opened->pos()));
    opened->close();
    QTest::keyClick(&view_, Qt::Key_F10);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr) << "without Shift it is another key";
}

}  // namespace
}  // namespace tessavo::test
