#include <QFontMetricsF>
#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>

#include "plot/chart/chart_helpers.h"
#include "plot/chart/image_chart.h"
#include "plot/chart/xy_chart.h"

// Axes and what stands at their ends.

namespace tessavo::test {
namespace {

constexpr QSize size(834, 472);
constexpr QRgb red = 0xFFFF0000;

void changeLook(CChart& chart, AxisSide side, const std::function<void(AxisLook&)>& change) {
    CAxis axis = chart.axis(side);
    AxisLook look = axis.look();
    change(look);
    axis.setLook(look);
    chart.setAxis(axis);
}

void setScale(CChart& chart, AxisSide side, AxisScale scale) {
    CAxis axis = chart.axis(side);
    ASSERT_EQ(axis.setScale(scale), RangeFault::none);
    chart.setAxis(axis);
}

ChartLayout layoutOf(const CChart& chart) {
    return chart.layoutFor(QRectF(QPointF(0, 0), QSizeF(size)));
}

// ---- axes across

TEST(MirrorAxes, FollowAlsoWhenAutomaticRangeIsSwitchedOff) {
    CXYChart chart;
    setUpResponseAxes(chart);
    addXy(chart, {20, 20000}, {-3, 3});
    chart.setAutoRange(true);
    chart.setAutoRange(false);
    EXPECT_FALSE(chart.isAutoRange());
    ASSERT_EQ(chart.setRange(AxisSide::left, {-60, 10}), RangeFault::none);
    ASSERT_EQ(chart.setRange(AxisSide::bottom, {50, 5000}), RangeFault::none);
    EXPECT_EQ(chart.axis(AxisSide::right).range(), (AxisRange{-60, 10}));
    EXPECT_EQ(chart.axis(AxisSide::top).range(), (AxisRange{50, 5000}));
    EXPECT_EQ(chart.axis(AxisSide::top).scale(), AxisScale::logarithmic);
    setScale(chart, AxisSide::bottom, AxisScale::linear);
    EXPECT_EQ(chart.axis(AxisSide::top).scale(), AxisScale::linear);
}

TEST(MirrorAxes, TheLeftOneFollowsWhereAllDataStandOnTheRight) {
    CXYChart chart;
    const int identifier = addXy(chart, {0, 10}, {0, 100});
    ASSERT_TRUE(chart.setDataSetAxes(identifier, AxisSide::top, AxisSide::right));
    chart.setAutoRange(false);
    EXPECT_FALSE(chart.isAutoRange());
    ASSERT_EQ(chart.setRange(AxisSide::right, {20, 30}), RangeFault::none);
    ASSERT_EQ(chart.setRange(AxisSide::top, {2, 3}), RangeFault::none);
    EXPECT_EQ(chart.axis(AxisSide::left).range(), (AxisRange{20, 30}));
    EXPECT_EQ(chart.axis(AxisSide::bottom).range(), (AxisRange{2, 3}));
    chart.setAutoRange(true);
    EXPECT_TRUE(chart.isAutoRange());
    EXPECT_EQ(chart.axis(AxisSide::left).range(), (AxisRange{0, 100}));
}

TEST(MirrorAxes, AnAxisWithDataOfItsOwnStaysWhenAutomaticRangeIsSwitchedOff) {
    CXYChart chart;
    addXy(chart, {0, 10}, {0, 10});
    const int other = addXy(chart, {0, 10}, {0, 1000});
    ASSERT_TRUE(chart.setDataSetAxes(other, AxisSide::bottom, AxisSide::right));
    chart.setAutoRange(false);
    ASSERT_EQ(chart.setRange(AxisSide::left, {-1, 1}), RangeFault::none);
    EXPECT_EQ(chart.axis(AxisSide::right).range(), (AxisRange{0, 1000}));
}

// ---- logarithmic axes

TEST(LogarithmicAxes, EveryNumberOfMajorTicksOfTheMenuGivesOtherLabels) {
    CXYChart chart;
    setUpResponseAxes(chart);
    std::size_t before = 0;
    for (const int count : {3, 5, 7, 9, 10, 13}) {
        changeLook(chart, AxisSide::bottom, [count](AxisLook& look) { look.majorTicks = count; });
        const ChartLayout layout = layoutOf(chart);
        const auto labelled = static_cast<std::size_t>(std::ranges::count_if(
            layout.ticksOf(AxisSide::bottom), [](const PlacedTick& tick) { return !tick.label.isEmpty(); }));
        EXPECT_GT(labelled, before) << count;
        EXPECT_LE(labelled, static_cast<std::size_t>(count));
        before = labelled;
    }
}

class LogarithmicImage : public testing::Test {
 protected:
    LogarithmicImage() {
        // Four rows from below, eight columns; all values differ.
        std::vector<double> values;
        for (int n = 0; n < 32; ++n) {
            values.push_back(n);
        }
        chart_.addDataSet(values, std::array{4, 8});
    }
    [[nodiscard]] QRgb colorOf(int column, int row) const {
        return chart_.palette().colorOf(row * 8 + column, 0, 31);
    }
    /// Looks into the middle of every cell.
    void expectAllCells(double scale) {
        const QImage picture = drawn(chart_, size, scale);
        const ChartLayout layout = layoutOf(chart_);
        const CAxis& x = chart_.axis(AxisSide::bottom);
        const CAxis& y = chart_.axis(AxisSide::left);
        for (int row = 0; row < 4; ++row) {
            for (int column = 0; column < 8; ++column) {
                const QPointF spot = layout.point(x.fraction(column == 0 ? 0.75 : column + 0.5),
                                                  y.fraction(row == 0 ? 0.75 : row + 0.5));
                EXPECT_EQ(pixelAt(picture, spot), colorOf(column, row)) << column << ", " << row;
                const auto readout = chart_.readoutAt(layout, spot);
                ASSERT_TRUE(readout) << column << ", " << row;
                EXPECT_EQ(readout->text,
                          QStringLiteral("%1, %2   %3").arg(column).arg(row).arg(row * 8 + column));
            }
        }
    }
    CImageChart chart_;
};

TEST_F(LogarithmicImage, EveryCellIsSeenInItsPlace) {
    for (const double scale : {1.0, 1.5, 2.0}) {
        setScale(chart_, AxisSide::bottom, AxisScale::logarithmic);
        EXPECT_EQ(chart_.axis(AxisSide::bottom).range(), (AxisRange{0.5, 8}));
        expectAllCells(scale);
        setScale(chart_, AxisSide::left, AxisScale::logarithmic);
        EXPECT_EQ(chart_.axis(AxisSide::left).range(), (AxisRange{0.5, 4}));
        expectAllCells(scale);
        setScale(chart_, AxisSide::bottom, AxisScale::linear);
        expectAllCells(scale);
        setScale(chart_, AxisSide::left, AxisScale::linear);
        expectAllCells(scale);
    }
}

TEST_F(LogarithmicImage, NothingIsPaintedBesideTheImage) {
    setScale(chart_, AxisSide::bottom, AxisScale::logarithmic);
    ASSERT_EQ(chart_.setRange(AxisSide::bottom, {0.01, 1000}), RangeFault::none);
    const QImage picture = drawn(chart_, size);
    const ChartLayout layout = layoutOf(chart_);
    const CAxis& x = chart_.axis(AxisSide::bottom);
    EXPECT_EQ(pixelAt(picture, layout.point(x.fraction(20), 0.4)), chart_colors::box);
    EXPECT_EQ(pixelAt(picture, layout.point(x.fraction(7.5), 0.4)), colorOf(7, 1));
    EXPECT_EQ(pixelAt(picture, layout.point(x.fraction(0.05), 0.4)), colorOf(0, 1));
}

// ---- shape of an image

TEST_F(LogarithmicImage, AspectRatioHoldsWithUnequalRanges) {
    chart_.setMaintainsAspectRatio(true);
    const QRectF whole = boxInside(QRectF(QPointF(0, 0), QSizeF(size)), chart_.axes(), {}, {});
    for (const auto& [x, y] :
         {std::pair(AxisRange{0, 8}, AxisRange{0, 4}), std::pair(AxisRange{2, 4}, AxisRange{0, 4}),
          std::pair(AxisRange{-8, 8}, AxisRange{1, 2}), std::pair(AxisRange{0, 1}, AxisRange{0, 40})}) {
        ASSERT_EQ(chart_.setRange(AxisSide::bottom, x), RangeFault::none);
        ASSERT_EQ(chart_.setRange(AxisSide::left, y), RangeFault::none);
        const QRectF box = layoutOf(chart_).box;
        const double across = box.width() / (x.maximum - x.minimum);
        EXPECT_NEAR(across, box.height() / (y.maximum - y.minimum), 1e-6 * across);
        EXPECT_GT(std::max(box.width() / whole.width(), box.height() / whole.height()), 0.9)
            << "fills the window";
    }
}

TEST_F(LogarithmicImage, WithoutScalingACellIsOnePixelWithUnequalRanges) {
    chart_.setScalesToWindow(false);
    ASSERT_EQ(chart_.setRange(AxisSide::bottom, {2, 100}), RangeFault::none);
    ASSERT_EQ(chart_.setRange(AxisSide::left, {-30, 40}), RangeFault::none);
    EXPECT_EQ(layoutOf(chart_).box.size(), QSizeF(98, 70));
    chart_.setMaintainsAspectRatio(true);
    EXPECT_EQ(layoutOf(chart_).box.size(), QSizeF(98, 70));
    // More than there is room for: it shrinks, and in the same way along both axes.
    ASSERT_EQ(chart_.setRange(AxisSide::bottom, {0, 7000}), RangeFault::none);
    const QRectF box = layoutOf(chart_).box;
    EXPECT_NEAR(box.width() / 7000, box.height() / 70, 1e-6);
}

// ---- what stands at the ends

class Edges : public testing::Test {
 protected:
    int add(const std::vector<double>& x, const std::vector<double>& y, DataStyle style) {
        style.color = red;
        const int identifier = addXy(chart_, x, y);
        chart_.setDataSetStyle(identifier, style);
        return identifier;
    }
    CXYChart chart_;
};

TEST_F(Edges, OuterBarsAreDrawnWhole) {
    DataStyle bars;
    bars.type = ChartType::histogram;
    add({1, 2, 3, 4, 5}, {10, 10, 10, 10, 10}, bars);
    for (const AxisScale scale : {AxisScale::linear, AxisScale::logarithmic}) {
        setScale(chart_, AxisSide::bottom, scale);
        const QImage picture = drawn(chart_, size);
        const ChartLayout layout = layoutOf(chart_);
        const CAxis& x = chart_.axis(AxisSide::bottom);
        const double middleY = 0.5 * chart_.axis(AxisSide::left).fraction(10);
        const auto placeOf = [&](double value) { return layout.point(x.fraction(value), middleY); };
        /// How far a bar reaches from its middle in a direction.
        const auto reach = [&](double value, double direction) {
            double length = 0;
            while (countOf(picture, red,
                           QRectF(placeOf(value) + QPointF(length * direction, 0), QSizeF(1, 1)), 60) > 0) {
                ++length;
            }
            return length;
        };
        // Outwards as far as inwards, half the way to the neighbour.
        const double left = (placeOf(2).x() - placeOf(1).x()) / 2;
        const double right = (placeOf(5).x() - placeOf(4).x()) / 2;
        EXPECT_GT(right, 10);
        EXPECT_NEAR(reach(1, -1), left, 2);
        EXPECT_NEAR(reach(5, 1), right, 2);
        EXPECT_GT(x.fraction(1), 0);
        EXPECT_LT(x.fraction(5), 1);
    }
}

TEST_F(Edges, MarksOnTheEdgeAreDrawnWhole) {
    DataStyle marks;
    marks.type = ChartType::xyScatter;
    marks.marker = MarkerShape::filled;
    marks.markerSize = 20;
    add({0, 5, 10}, {0, 5, 10}, marks);
    ASSERT_EQ(chart_.setRange(AxisSide::bottom, {0, 10}), RangeFault::none);
    ASSERT_EQ(chart_.setRange(AxisSide::left, {0, 10}), RangeFault::none);
    for (const double scale : {1.0, 2.0}) {
        const QImage picture = drawn(chart_, size, scale);
        const ChartLayout layout = layoutOf(chart_);
        const auto areaAt = [&](double share) {
            const QPointF centre = layout.point(share, share);
            return countOf(picture, red, QRectF(centre - QPointF(12, 12), QSizeF(24, 24)), 60);
        };
        const int whole = areaAt(0.5);
        ASSERT_GT(whole, 200);
        EXPECT_NEAR(areaAt(0), whole, whole / 20);
        EXPECT_NEAR(areaAt(1), whole, whole / 20);
    }
}

TEST_F(Edges, PointsBesideTheBoxHaveNoMark) {
    DataStyle marks;
    marks.marker = MarkerShape::filled;
    marks.type = ChartType::xyScatter;
    marks.markerSize = 20;
    add({-0.1, 10.1, 5, 5}, {5, 5, -0.1, 10.1}, marks);
    ASSERT_EQ(chart_.setRange(AxisSide::bottom, {0, 10}), RangeFault::none);
    ASSERT_EQ(chart_.setRange(AxisSide::left, {0, 10}), RangeFault::none);
    EXPECT_EQ(countOf(drawn(chart_, size), red, QRectF(QPointF(0, 0), QSizeF(size)), 60), 0);
}

// ---- labels

TEST(LargeLabels, NeverOverlap) {
    for (const int pixels : {9, 11, 15, 18, 24, 40}) {
        for (const QSizeF room : {QSizeF(size), QSizeF(340, 240), QSizeF(160, 120)}) {
            CXYChart chart;
            setUpResponseAxes(chart);
            for (const AxisSide side : allAxisSides) {
                changeLook(chart, side, [pixels](AxisLook& look) {
                    look.majorTicks = 9;
                    look.labelFont.setPixelSize(pixels);
                    look.tickMarks = true;
                });
            }
            const ChartLayout layout = chart.layoutFor(QRectF(QPointF(0, 0), room));
            std::vector<QRectF> boxes;
            for (const AxisSide side : allAxisSides) {
                for (const PlacedTick& placed : layout.ticksOf(side)) {
                    if (placed.label.isEmpty()) {
                        continue;
                    }
                    for (const QRectF& other : boxes) {
                        EXPECT_FALSE(other.intersects(placed.labelBox))
                            << pixels << " px in " << room.width() << ": " << placed.label.toStdString();
                    }
                    boxes.push_back(placed.labelBox);
                }
            }
            if (room == QSizeF(size)) {
                EXPECT_GT(boxes.size(), 12U) << pixels;
            }
        }
    }
}

TEST(LargeLabels, KeepClearOfTheTitles) {
    CXYChart plain;
    setUpResponseAxes(plain);
    CXYChart chart;
    setUpResponseAxes(chart);
    changeLook(chart, AxisSide::left, [](AxisLook& look) { look.labelFont.setPixelSize(40); });
    const QFontMetricsF title(chart.axis(AxisSide::left).look().titleFont);
    const ChartLayout layout = layoutOf(chart);
    double highest = size.height();
    for (const PlacedTick& placed : layout.ticksOf(AxisSide::left)) {
        highest = placed.label.isEmpty() ? highest : std::min(highest, placed.labelBox.top());
    }
    // Above the topmost label there is the title's row.
    EXPECT_GE(highest, title.height());
    const QImage picture = drawn(chart, size);
    EXPECT_EQ(layoutOf(plain).box, QRectF(54, 26, 758, 396)) << "usual labels change nothing";
}

// ---- units

TEST(Units, TheReadoutsUnitBelongsToTheAxis) {
    CXYChart chart;
    setUpResponseAxes(chart);
    addXy(chart, {100, 1000}, {-3, 6});
    for (const AxisSide side : {AxisSide::left, AxisSide::bottom}) {
        changeLook(chart, side, [](AxisLook& look) { look.title = QStringLiteral("A title"); });
    }
    const ChartLayout layout = layoutOf(chart);
    const double x = chart.axis(AxisSide::bottom).fraction(1000);
    const auto readout = chart.readoutAt(layout, layout.point(x, 0.5));
    ASSERT_TRUE(readout);
    EXPECT_EQ(readout->text, "1000 Hz   +6 dB");
    CAxis left = chart.axis(AxisSide::left);
    left.setUnit({});
    chart.setAxis(left);
    EXPECT_EQ(chart.readoutAt(layout, layout.point(x, 0.5))->text, "1000 Hz   +6");
}

}  // namespace
}  // namespace tessavo::test
