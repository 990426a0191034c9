#include <QSignalSpy>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <set>

#include "plot/chart/chart_helpers.h"
#include "plot/chart/data_painting.h"
#include "plot/chart/xy_chart.h"

namespace tessavo::test {
namespace {

TEST(ChartDataSets, TwentyFitAndTheNextFails) {
    CXYChart chart;
    std::set<int> identifiers;
    for (int n = 0; n < 20; ++n) {
        const int identifier = addXy(chart, {1, 2}, {3, 4});
        EXPECT_GE(identifier, 0);
        identifiers.insert(identifier);
    }
    EXPECT_EQ(identifiers.size(), 20U);
    EXPECT_EQ(addXy(chart, {1, 2}, {3, 4}), -1);
    EXPECT_EQ(chart.dataSets().size(), 20U);
    ASSERT_TRUE(chart.removeDataSet(*identifiers.begin()));
    EXPECT_GT(addXy(chart, {1, 2}, {3, 4}), *identifiers.rbegin());
    EXPECT_EQ(addXy(chart, {1, 2}, {3, 4}), -1);
}

TEST(ChartDataSets, IdentifiersRunOnAfterClearing) {
    CXYChart chart;
    const int first = addXy(chart, {1}, {1});
    const int second = addXy(chart, {1}, {1});
    EXPECT_EQ(second, first + 1);
    chart.clearDataSets();
    EXPECT_TRUE(chart.dataSets().empty());
    EXPECT_EQ(addXy(chart, {1}, {1}), second + 1);
    EXPECT_EQ(chart.dataSet(first), nullptr);
}

TEST(ChartDataSets, DimensionsMustFitTheValues) {
    CXYChart chart;
    const std::vector<double> six{1, 2, 3, 4, 5, 6};
    EXPECT_EQ(chart.addDataSet(six, std::array{2, 2}), -1);
    EXPECT_EQ(chart.addDataSet(six, std::array{-2, -3}), -1);
    EXPECT_EQ(chart.addDataSet(six, std::span<const int>()), -1);
    EXPECT_EQ(chart.addDataSet(six, std::array{0, 3}), -1);
    EXPECT_EQ(chart.addDataSet({}, std::array{2, 3}), -1);
    // The product wraps around 64 bits to 6 * 2^64.
    EXPECT_EQ(chart.addDataSet(six, std::array{1 << 30, 1 << 30, 1 << 4, 6}), -1);
    EXPECT_TRUE(chart.dataSets().empty());
    EXPECT_NE(chart.addDataSet(six, std::array{6}), -1);
    EXPECT_NE(chart.addDataSet(six, std::array{2, 3}), -1);
    EXPECT_NE(chart.addDataSet(six, std::array{3, 2, 1}), -1);
    EXPECT_NE(chart.addDataSet({}, std::array{2, 0}), -1);
    EXPECT_NE(chart.addDataSet({}, std::array{0, 5}), -1);
}

TEST(ChartDataSets, XyDataHasXValuesFirst) {
    CXYChart chart;
    const int identifier = addXy(chart, {1, 2, 3}, {10, 20, 30});
    const CChartData& data = *chart.dataSet(identifier);
    EXPECT_TRUE(data.isXy());
    EXPECT_EQ(data.pointCount(), 3U);
    EXPECT_EQ(data.xValues()[2], 3);
    EXPECT_EQ(data.yValues()[2], 30);
}

TEST(ChartDataSets, ReplacingKeepsIdentifierPlaceAndStyle) {
    CXYChart chart;
    const int first = addXy(chart, {1, 2}, {3, 4});
    const int second = addXy(chart, {1, 2}, {3, 4});
    ASSERT_TRUE(chart.setDataSetColor(first, 0xFF123456));
    const std::vector<double> values{5, 6};
    ASSERT_TRUE(chart.replaceDataSet(first, values, std::array{2, 1}));
    EXPECT_EQ(chart.dataSets()[0].identifier, first);
    EXPECT_EQ(chart.dataSets()[1].identifier, second);
    EXPECT_EQ(chart.dataSet(first)->style.color, 0xFF123456);
    EXPECT_EQ(chart.dataSet(first)->pointCount(), 1U);
}

TEST(ChartDataSets, BadReplacementsLeaveTheChartAsItWas) {
    CXYChart chart;
    const int identifier = addXy(chart, {1, 2}, {3, 4});
    const QSignalSpy changed(&chart, &CChart::dataChanged);
    const std::vector<double> values{5, 6};
    EXPECT_FALSE(chart.replaceDataSet(identifier, values, std::array{2, 2}));
    EXPECT_FALSE(chart.replaceDataSet(identifier + 1, values, std::array{2, 1}));
    EXPECT_FALSE(chart.removeDataSet(77));
    EXPECT_FALSE(chart.setDataSetColor(77, 0));
    EXPECT_FALSE(chart.setDataSetStyle(77, {}));
    EXPECT_FALSE(chart.setDataSetAxes(identifier, AxisSide::left, AxisSide::bottom));
    EXPECT_EQ(changed.count(), 0);
    EXPECT_EQ(chart.dataSet(identifier)->pointCount(), 2U);
}

TEST(ChartDataSets, StylesAreClamped) {
    CXYChart chart;
    const int identifier = addXy(chart, {1, 2}, {3, 4});
    DataStyle style;
    style.lineSize = 0;
    style.markerSize = 1000;
    style.markerCount = -1;
    style.fillOpacity = std::numeric_limits<double>::quiet_NaN();
    style.color = 0x00112233;
    ASSERT_TRUE(chart.setDataSetStyle(identifier, style));
    const DataStyle& kept = chart.dataSet(identifier)->style;
    EXPECT_EQ(kept.lineSize, 1);
    EXPECT_EQ(kept.markerSize, 40);
    EXPECT_EQ(kept.markerCount, 1);
    EXPECT_EQ(kept.fillOpacity, 0);
    EXPECT_EQ(kept.color, 0xFF112233);
}

TEST(ChartDataSets, AutomaticAxesFollowTheData) {
    CXYChart chart;
    addXy(chart, {0, 10}, {-4, 7});
    EXPECT_EQ(chart.axis(AxisSide::bottom).range(), (AxisRange{0, 10}));
    EXPECT_LE(chart.axis(AxisSide::left).range().minimum, -4);
    EXPECT_GE(chart.axis(AxisSide::left).range().maximum, 7);
    const int wide = addXy(chart, {-50, 1000}, {0, 0});
    EXPECT_LE(chart.axis(AxisSide::bottom).range().minimum, -50);
    EXPECT_GE(chart.axis(AxisSide::bottom).range().maximum, 1000);
    chart.removeDataSet(wide);
    EXPECT_EQ(chart.axis(AxisSide::bottom).range(), (AxisRange{0, 10}));
}

TEST(ChartDataSets, ValuesThatAreNotFiniteDoNotStretchTheAxes) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    CXYChart chart;
    addXy(chart, {0, 5, 10}, {std::nan(""), 0.0, infinity});
    addXy(chart, {0, -infinity}, {10, 10});
    EXPECT_EQ(chart.axis(AxisSide::bottom).range(), (AxisRange{0, 10}));
    EXPECT_EQ(chart.axis(AxisSide::left).range(), (AxisRange{0, 10}));
}

TEST(ChartDataSets, RightAxisMirrorsTheLeftUntilItHasData) {
    CXYChart chart;
    addXy(chart, {0, 10}, {0, 10});
    EXPECT_EQ(chart.axis(AxisSide::right).range(), (AxisRange{0, 10}));
    const int other = addXy(chart, {0, 10}, {0, 1000});
    ASSERT_TRUE(chart.setDataSetAxes(other, AxisSide::bottom, AxisSide::right));
    EXPECT_EQ(chart.axis(AxisSide::right).range(), (AxisRange{0, 1000}));
    EXPECT_EQ(chart.axis(AxisSide::left).range(), (AxisRange{0, 10}));
}

TEST(ChartDataSets, FixedRangesAreRefusedWhole) {
    CXYChart chart;
    setUpResponseAxes(chart);
    const QSignalSpy changed(&chart, &CChart::layoutChanged);
    EXPECT_EQ(chart.setRange(AxisSide::left, {6, 6}), RangeFault::maxNotAboveMin);
    EXPECT_EQ(chart.setRange(AxisSide::bottom, {0, 20000}), RangeFault::notPositive);
    EXPECT_EQ(chart.axis(AxisSide::left).range(), (AxisRange{-18, 18}));
    EXPECT_EQ(chart.axis(AxisSide::bottom).range(), (AxisRange{20, 20000}));
    EXPECT_EQ(changed.count(), 0);
    EXPECT_EQ(chart.setRange(AxisSide::left, {-30, 6}), RangeFault::none);
    EXPECT_EQ(changed.count(), 1);
}

TEST(ChartDataSets, MarkersStandWhereAsked) {
    EXPECT_EQ(markedPoints(4, MarkerFrequency::everyPoint, 9), (std::vector<std::size_t>{0, 1, 2, 3}));
    EXPECT_EQ(markedPoints(10, MarkerFrequency::everyNth, 4), (std::vector<std::size_t>{0, 4, 8}));
    EXPECT_EQ(markedPoints(11, MarkerFrequency::count, 3), (std::vector<std::size_t>{0, 5, 10}));
    EXPECT_EQ(markedPoints(11, MarkerFrequency::count, 1), (std::vector<std::size_t>{0}));
    EXPECT_EQ(markedPoints(3, MarkerFrequency::count, 100), (std::vector<std::size_t>{0, 1, 2}));
    EXPECT_TRUE(markedPoints(0, MarkerFrequency::count, 5).empty());
}

}  // namespace
}  // namespace tessavo::test
