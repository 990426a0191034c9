#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "controls/theme.h"
#include "plot/chart/chart_helpers.h"
#include "plot/chart/image_chart.h"
#include "plot/chart/xy_chart.h"

namespace tessavo::test {
namespace {

constexpr QSize size(400, 300);
constexpr QRgb red = 0xFFFF0000;
constexpr QRgb green = 0xFF00FF00;

/// Chart from 0 to 10 in both directions, without grids, and one data set in red.
class ChartDrawing : public testing::TestWithParam<double> {
 protected:
    ChartDrawing() {
        for (const AxisSide side : {AxisSide::left, AxisSide::bottom}) {
            CAxis axis = chart_.axis(side);
            AxisLook look = axis.look();
            look.majorGrid = false;
            look.minorGrid = false;
            axis.setLook(look);
            axis.setRange({0, 10});
            chart_.setAxis(axis);
        }
    }

    int add(const std::vector<double>& x, const std::vector<double>& y, DataStyle style = {}) {
        const int identifier = addXy(chart_, x, y);
        style.color = red;
        chart_.setDataSetStyle(identifier, style);
        return identifier;
    }

    [[nodiscard]] ChartLayout layout() const { return chart_.layoutFor(QRectF(QPointF(0, 0), QSizeF(size))); }
    [[nodiscard]] QPointF spot(double x, double y) const { return layout().point(x / 10, y / 10); }
    [[nodiscard]] QImage image() const { return drawn(chart_, size, GetParam()); }
    /// Whether the centre of the pixel at a value is drawn in red.
    [[nodiscard]] bool isRed(const QImage& image, double x, double y) const {
        return difference(pixelAt(image, spot(x, y)), red) < 90;
    }
    [[nodiscard]] bool isEmpty(const QImage& image, double x, double y) const {
        return pixelAt(image, spot(x, y)) == chart_colors::box;
    }
    [[nodiscard]] int redPixels(const QImage& image) const {
        return countOf(image, red, QRectF(QPointF(0, 0), QSizeF(size)), 90);
    }

    CXYChart chart_;
};

TEST_P(ChartDrawing, ALineIsWhereItsPointsAre) {
    add({0, 10}, {0, 10});
    const QImage picture = image();
    for (const double at : {1.0, 2.5, 5.0, 9.0}) {
        EXPECT_TRUE(isRed(picture, at, at)) << at;
        EXPECT_TRUE(isEmpty(picture, at, 10.5 - at < at ? at - 1 : at + 0.8)) << at;
    }
}

TEST_P(ChartDrawing, LinesAndMarksOfPointsOutsideStayInTheBox) {
    DataStyle style;
    style.lineSize = 9;
    style.marker = MarkerShape::square;
    style.markerSize = 30;
    add({-5, -1, 5, 11, 15}, {-5, 10, -5, 12, 0}, style);
    const QImage picture = image();
    EXPECT_GT(redPixels(picture), 0);
    const QRectF box = layout().box;
    const QRectF whole(QPointF(0, 0), QSizeF(size));
    const QRectF left(whole.topLeft(), QPointF(box.left() - 1, whole.bottom()));
    const QRectF right(QPointF(box.right() + 1, 0), whole.bottomRight());
    const QRectF above(whole.topLeft(), QPointF(whole.right(), box.top() - 1));
    const QRectF below(QPointF(0, box.bottom() + 1), whole.bottomRight());
    for (const QRectF& outside : {left, right, above, below}) {
        EXPECT_EQ(countOf(picture, red, outside, 120), 0);
    }
}

TEST_P(ChartDrawing, LinesBreakAtValuesThatAreNotFinite) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    add({1, 3, 4, 5, 7, 8, 9}, {5, 5, std::nan(""), 5, 5, -infinity, 5});
    const QImage picture = image();
    EXPECT_TRUE(isRed(picture, 2, 5));
    EXPECT_TRUE(isEmpty(picture, 3.5, 5));
    EXPECT_TRUE(isEmpty(picture, 4.5, 5));
    EXPECT_TRUE(isRed(picture, 6, 5));
    EXPECT_TRUE(isEmpty(picture, 7.5, 5));
    EXPECT_TRUE(isRed(picture, 9, 5)) << "a point between two breaks is drawn as a dot";
}

TEST_P(ChartDrawing, LinesBreakWhereALogarithmicAxisEnds) {
    CAxis bottom = chart_.axis(AxisSide::bottom);
    bottom.setRange({1, 10});
    bottom.setScale(AxisScale::logarithmic);
    chart_.setAxis(bottom);
    add({1, 2, -3, 0, 5, 10}, {5, 5, 5, 5, 5, 5});
    const QImage picture = image();
    const auto at = [&](double x) { return layout().point(std::log10(x), 0.5); };
    EXPECT_LT(difference(pixelAt(picture, at(1.5)), red), 90);
    EXPECT_EQ(pixelAt(picture, at(3)), chart_colors::box);
    EXPECT_LT(difference(pixelAt(picture, at(7)), red), 90);
}

TEST_P(ChartDrawing, OnePointIsVisible) {
    add({5}, {5});
    const QImage picture = image();
    EXPECT_TRUE(isRed(picture, 5, 5));
    EXPECT_LT(redPixels(picture), 40 * GetParam() * GetParam());
}

TEST_P(ChartDrawing, EmptyAndUndrawableDataDrawNothing) {
    add({}, {});
    add({std::nan("")}, {5});
    add({std::numeric_limits<double>::max(), -std::numeric_limits<double>::max()}, {20, 20});
    EXPECT_EQ(redPixels(image()), 0);
}

TEST_P(ChartDrawing, HugeValuesKeepTheLineUpright) {
    add({5, 5}, {-std::numeric_limits<double>::max(), std::numeric_limits<double>::max()});
    const QImage picture = image();
    EXPECT_TRUE(isRed(picture, 5, 1));
    EXPECT_TRUE(isRed(picture, 5, 9));
    EXPECT_TRUE(isEmpty(picture, 4, 5));
}

TEST_P(ChartDrawing, LineStylesDiffer) {
    std::vector<int> inked;
    for (const LineStyle lineStyle : {LineStyle::solid, LineStyle::dashed, LineStyle::dotted,
                                      LineStyle::dashDot, LineStyle::dashDotDot}) {
        chart_.clearDataSets();
        DataStyle style;
        style.lineStyle = lineStyle;
        add({0, 10}, {5, 5}, style);
        inked.push_back(redPixels(image()));
    }
    for (std::size_t n = 1; n < inked.size(); ++n) {
        EXPECT_LT(inked[n], inked[0] * 8 / 10) << n;
        EXPECT_GT(inked[n], inked[0] / 10) << n;
        for (std::size_t m = 1; m < n; ++m) {
            EXPECT_NE(inked[n], inked[m]) << n << " and " << m;
        }
    }
}

TEST_P(ChartDrawing, LineSizeIsThickness) {
    DataStyle style;
    style.lineSize = 8;
    add({0, 10}, {5, 5}, style);
    const QImage picture = image();
    const QPointF middle = spot(5, 5);
    EXPECT_LT(difference(pixelAt(picture, middle + QPointF(0, 3)), red), 60);
    EXPECT_EQ(pixelAt(picture, middle + QPointF(0, 6)), chart_colors::box);
}

TEST_P(ChartDrawing, MarkersHaveTheirShapes) {
    const auto marked = [&](MarkerShape shape) {
        chart_.clearDataSets();
        DataStyle style;
        style.type = ChartType::xyScatter;
        style.marker = shape;
        style.markerSize = 20;
        add({5}, {5}, style);
        return image();
    };
    const QPointF middle = spot(5, 5);
    const auto inked = [&](const QImage& picture, double dx, double dy) {
        return difference(pixelAt(picture, middle + QPointF(dx, dy)), red) < 150;
    };
    const QImage circle = marked(MarkerShape::circle);
    EXPECT_TRUE(inked(circle, 10, 0));
    EXPECT_FALSE(inked(circle, 0, 0));
    EXPECT_FALSE(inked(circle, 10, 10));
    const QImage square = marked(MarkerShape::square);
    EXPECT_TRUE(inked(square, 10, 0));
    EXPECT_TRUE(inked(square, 10, 10));
    EXPECT_FALSE(inked(square, 0, 0));
    const QImage triangle = marked(MarkerShape::triangle);
    EXPECT_TRUE(inked(triangle, 0, 10));
    EXPECT_FALSE(inked(triangle, 10, 0));
    EXPECT_FALSE(inked(triangle, 0, 2));
    const QImage cross = marked(MarkerShape::x);
    EXPECT_TRUE(inked(cross, 0, 0));
    EXPECT_TRUE(inked(cross, 6, 6));
    EXPECT_FALSE(inked(cross, 8, 0));
    const QImage filled = marked(MarkerShape::filled);
    EXPECT_TRUE(inked(filled, 0, 0));
    EXPECT_TRUE(inked(filled, 7, 0));
    EXPECT_FALSE(inked(filled, 9, 9));
}

TEST_P(ChartDrawing, ScatterDrawsNoLine) {
    DataStyle style;
    style.type = ChartType::xyScatter;
    add({2, 8}, {5, 5}, style);
    const QImage picture = image();
    EXPECT_TRUE(isRed(picture, 2, 5));
    EXPECT_TRUE(isEmpty(picture, 5, 5));
}

TEST_P(ChartDrawing, HistogramBarsStandOnZero) {
    CAxis left = chart_.axis(AxisSide::left);
    left.setRange({-10, 10});
    chart_.setAxis(left);
    DataStyle style;
    style.type = ChartType::histogram;
    add({6, 2, 4}, {-5, 5, std::nan("")}, style);
    const QImage picture = image();
    const auto at = [&](double x, double y) {
        return pixelAt(picture, layout().point(x / 10, (y + 10) / 20));
    };
    EXPECT_EQ(at(2, 4), red);
    EXPECT_EQ(at(2, 1), red);
    EXPECT_EQ(at(2, 6), chart_colors::box);
    EXPECT_EQ(at(2, -1), chart_colors::box);
    EXPECT_EQ(at(6, -4), red);
    EXPECT_EQ(at(6, 1), chart_colors::box);
}

TEST_P(ChartDrawing, GridsAreDrawnWhereAsked) {
    const auto gridPixels = [&] {
        return countOf(image(), chart_colors::majorGrid, layout().box.adjusted(3, 3, -3, -3), 3);
    };
    EXPECT_EQ(gridPixels(), 0);
    CAxis left = chart_.axis(AxisSide::left);
    AxisLook look = left.look();
    look.majorGrid = true;
    left.setLook(look);
    chart_.setAxis(left);
    EXPECT_GT(gridPixels(), 100);
    const ChartLayout placed = layout();
    const QImage picture = image();
    for (const PlacedTick& tick : placed.ticksOf(AxisSide::left)) {
        if (tick.tick.grid == GridRank::major && tick.tick.value > 0.1 && tick.tick.value < 9.9) {
            // The line is as thick as a whole number of device pixels and starts at the tick.
            const QPointF on(placed.box.center().x(),
                             std::round(tick.position * GetParam()) / GetParam() + 0.25);
            EXPECT_EQ(pixelAt(picture, on), chart_colors::majorGrid) << tick.tick.value;
        }
    }
}

TEST_P(ChartDrawing, LaterDataSetsLieOnTop) {
    add({0, 10}, {5, 5});
    const int second = add({0, 10}, {5, 5});
    chart_.setDataSetColor(second, green);
    const QImage picture = image();
    EXPECT_EQ(redPixels(picture), 0);
    EXPECT_LT(difference(pixelAt(picture, spot(5, 5)), green), 90);
}

TEST_P(ChartDrawing, AnyDataAndRangeCanBeDrawn) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::vector<std::vector<double>> samples{
        {},
        {0},
        {1, 1, 1},
        {1e300, -1e300, 5},
        {1e-300, 2e-300},
        {infinity, std::nan("")},
        {-5, 0, 5, 1e12},
        {std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min()}};
    for (const auto& x : samples) {
        for (const ChartType type : {ChartType::xyLine, ChartType::xyScatter, ChartType::histogram}) {
            for (const AxisScale scale : {AxisScale::linear, AxisScale::logarithmic}) {
                CXYChart chart;
                CAxis bottom = chart.axis(AxisSide::bottom);
                ASSERT_EQ(bottom.setScale(scale), RangeFault::none);
                chart.setAxis(bottom);
                DataStyle style;
                style.type = type;
                style.lineStyle = LineStyle::dotted;
                style.fillOpacity = 0.5;
                style.marker = MarkerShape::triangle;
                const int identifier = addXy(chart, x, x);
                ASSERT_TRUE(chart.setDataSetStyle(identifier, style));
                for (const AxisSide side : {AxisSide::left, AxisSide::bottom}) {
                    const CAxis& axis = chart.axis(side);
                    ASSERT_EQ(CAxis::check(axis.range(), axis.scale()), RangeFault::none);
                }
                const QImage picture = drawn(chart, {200, 150}, GetParam());
                EXPECT_EQ(pixelAt(picture, {20, 2}), chart_colors::card);
            }
        }
    }
}

TEST_P(ChartDrawing, TinyRectanglesAreDrawn) {
    add({0, 10}, {0, 10});
    for (const QSize tiny : {QSize(1, 1), QSize(3, 200), QSize(200, 3), QSize(60, 60)}) {
        EXPECT_FALSE(drawn(chart_, tiny, GetParam()).isNull());
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, ChartDrawing, testing::Values(1.0, 1.5, 2.0));

}  // namespace
}  // namespace tessavo::test
