#include <gtest/gtest.h>

#include "controls/theme.h"
#include "plot/chart/chart_helpers.h"
#include "plot/chart/xy_chart.h"

namespace tessavo::test {
namespace {

void showEveryAxis(CChart& chart, int majorTicks) {
    for (const AxisSide side : allAxisSides) {
        CAxis axis = chart.axis(side);
        AxisLook look = axis.look();
        look.majorTicks = majorTicks;
        look.title = QStringLiteral("Title");
        axis.setLook(look);
        chart.setAxis(axis);
    }
}

void expectNoOverlaps(const ChartLayout& layout) {
    std::vector<QRectF> boxes;
    for (const AxisSide side : allAxisSides) {
        const std::size_t first = boxes.size();
        for (const PlacedTick& placed : layout.ticksOf(side)) {
            if (placed.label.isEmpty()) {
                continue;
            }
            for (std::size_t n = first; n < boxes.size(); ++n) {
                ASSERT_FALSE(boxes[n].intersects(placed.labelBox))
                    << placed.label.toStdString() << " at " << layout.outer.width() << " x "
                    << layout.outer.height();
            }
            boxes.push_back(placed.labelBox);
        }
    }
}

TEST(ChartLayout, PlotWindowHasItsBox) {
    CXYChart chart;
    setUpResponseAxes(chart);
    const ChartLayout layout = chart.layoutFor({0, 0, 834, 472});
    EXPECT_EQ(layout.box, QRectF(54, 26, 758, 396));
}

TEST(ChartLayout, TicksStandAtTheirValues) {
    CXYChart chart;
    setUpResponseAxes(chart);
    const ChartLayout layout = chart.layoutFor({0, 0, 834, 472});
    QStringList left;
    for (const PlacedTick& placed : layout.ticksOf(AxisSide::left)) {
        if (!placed.label.isEmpty()) {
            left << placed.label;
            EXPECT_NEAR(placed.position, 26 + 396 * (18 - placed.tick.value) / 36, 1e-9);
        }
    }
    EXPECT_EQ(left, QStringList({"-18", "-12", "-6", "0", "+6", "+12", "+18"}));
    QStringList bottom;
    for (const PlacedTick& placed : layout.ticksOf(AxisSide::bottom)) {
        if (!placed.label.isEmpty()) {
            bottom << placed.label;
            EXPECT_NEAR(placed.position, 54 + 758 * std::log10(placed.tick.value / 20) / 3, 1e-9);
        }
    }
    EXPECT_EQ(bottom, QStringList({"20", "50", "100", "200", "500", "1k", "2k", "5k", "10k", "20k"}));
}

TEST(ChartLayout, LabelsNeverTouchAtAnySize) {
    for (const int width : {40, 150, 400, 834}) {
        for (const int height : {40, 150, 472}) {
            for (const int fontSize : {9, 18, 40}) {
                CXYChart chart;
                setUpResponseAxes(chart);
                showEveryAxis(chart, 40);
                for (const AxisSide side : allAxisSides) {
                    CAxis axis = chart.axis(side);
                    AxisLook look = axis.look();
                    look.labelFont.setPixelSize(fontSize);
                    axis.setLook(look);
                    chart.setAxis(axis);
                }
                const ChartLayout layout = chart.layoutFor(QRectF(0, 0, width, height));
                EXPECT_GT(layout.box.width(), 0);
                EXPECT_GT(layout.box.height(), 0);
                expectNoOverlaps(layout);
            }
        }
    }
}

TEST(ChartLayout, LongLabelsGetTheRoomTheyNeed) {
    CXYChart chart;
    addXy(chart, {0, 1}, {-123456789.25, -123456789.5});
    const ChartLayout layout = chart.layoutFor({0, 0, 600, 400});
    ASSERT_FALSE(layout.ticksOf(AxisSide::left).empty());
    for (const PlacedTick& placed : layout.ticksOf(AxisSide::left)) {
        if (!placed.label.isEmpty()) {
            EXPECT_GE(placed.labelBox.left(), 0);
            EXPECT_LE(placed.labelBox.right(), layout.box.left());
        }
    }
}

TEST(ChartLayout, LabelsStayInsideTheChart) {
    CXYChart chart;
    setUpResponseAxes(chart);
    showEveryAxis(chart, 10);
    const QRectF outer(0, 0, 700, 400);
    const ChartLayout layout = chart.layoutFor(outer);
    for (const AxisSide side : allAxisSides) {
        ASSERT_FALSE(layout.ticksOf(side).empty());
        for (const PlacedTick& placed : layout.ticksOf(side)) {
            if (!placed.label.isEmpty()) {
                EXPECT_TRUE(outer.contains(placed.labelBox)) << placed.label.toStdString();
                EXPECT_FALSE(placed.labelBox.intersects(layout.box)) << placed.label.toStdString();
            }
        }
    }
}

TEST(ChartLayout, HiddenAxesHaveNoTicks) {
    CXYChart chart;
    setUpResponseAxes(chart);
    const ChartLayout layout = chart.layoutFor({0, 0, 834, 472});
    EXPECT_TRUE(layout.ticksOf(AxisSide::right).empty());
    EXPECT_TRUE(layout.ticksOf(AxisSide::top).empty());
}

TEST(ChartLayout, TitlesTakeRoomFromTheBox) {
    CXYChart chart;
    setUpResponseAxes(chart);
    const QRectF plain = chart.layoutFor({0, 0, 834, 472}).box;
    chart.setTitle(QStringLiteral("Title"), theme::font(20));
    EXPECT_GT(chart.layoutFor({0, 0, 834, 472}).box.top(), plain.top() + 15);
}

}  // namespace
}  // namespace tessavo::test
