#include "plot/chart/image_chart.h"

#include <QSignalSpy>
#include <cmath>
#include <gtest/gtest.h>

#include "plot/chart/chart_helpers.h"

namespace tessavo::test {
namespace {

constexpr QSize size(400, 300);

class ImageChart : public testing::Test {
 protected:
    ImageChart() {
        // Two rows from below, three columns.
        identifier_ = chart_.addDataSet(std::vector<double>{0, 1, 2, 3, 4, std::nan("")}, std::array{2, 3});
    }
    [[nodiscard]] ChartLayout layout() const { return chart_.layoutFor(QRectF(QPointF(0, 0), QSizeF(size))); }
    /// Colour of the middle of a cell.
    [[nodiscard]] QRgb cell(int column, int row) const {
        return pixelAt(drawn(chart_, size), layout().point((column + 0.5) / 3, (row + 0.5) / 2));
    }

    CImageChart chart_;
    int identifier_ = -1;
};

TEST_F(ImageChart, CellsHaveTheColoursOfTheirValues) {
    const CImagePalette& palette = chart_.palette();
    EXPECT_EQ(cell(0, 0), palette.color(0));
    EXPECT_EQ(cell(1, 0), palette.color(64));
    EXPECT_EQ(cell(2, 0), palette.color(128));
    EXPECT_EQ(cell(0, 1), palette.color(191));
    EXPECT_EQ(cell(1, 1), palette.color(255));
    EXPECT_EQ(cell(2, 1), chart_colors::box) << "a value that is not finite stays empty";
}

TEST_F(ImageChart, PalettesAreChosenByIdentifier) {
    ASSERT_TRUE(chart_.setPalette(10046));
    EXPECT_EQ(cell(1, 1), CImagePalette::load(10046)->color(255));
    EXPECT_FALSE(chart_.setPalette(10066));
    EXPECT_EQ(chart_.palette().identifier(), 10046);
}

TEST_F(ImageChart, NewValuesAreShown) {
    ASSERT_TRUE(chart_.replaceDataSet(identifier_, std::vector<double>{5, 0, 0, 0, 0, 0}, std::array{2, 3}));
    EXPECT_EQ(cell(0, 0), chart_.palette().color(255));
    EXPECT_EQ(cell(2, 1), chart_.palette().color(0));
}

TEST_F(ImageChart, AxesCountCells) {
    EXPECT_EQ(chart_.axis(AxisSide::bottom).range(), (AxisRange{0, 3}));
    EXPECT_EQ(chart_.axis(AxisSide::left).range(), (AxisRange{0, 2}));
}

TEST_F(ImageChart, AspectRatioKeepsCellsSquare) {
    const QRectF whole = layout().box;
    chart_.setMaintainsAspectRatio(true);
    const QRectF box = layout().box;
    EXPECT_NEAR(box.width() / 3, box.height() / 2, 1e-6);
    EXPECT_TRUE(whole.adjusted(-1e-6, -1e-6, 1e-6, 1e-6).contains(box));
    chart_.setMaintainsAspectRatio(false);
    chart_.setScalesToWindow(false);
    EXPECT_EQ(layout().box.size(), QSizeF(3, 2));
    chart_.setScalesToWindow(true);
    EXPECT_EQ(layout().box, whole);
}

TEST_F(ImageChart, ReadoutNamesTheCell) {
    const auto readout = chart_.readoutAt(layout(), layout().point(0.5, 0.75));
    ASSERT_TRUE(readout);
    EXPECT_EQ(readout->text, "1, 1   4");
    EXPECT_FALSE(chart_.readoutAt(layout(), {1, 1}));
}

TEST_F(ImageChart, WithoutAnImageThereIsNothingToShow) {
    CImageChart empty;
    EXPECT_FALSE(empty.readoutAt(empty.layoutFor({0, 0, 400, 300}), {200, 150}));
    const QImage before = drawn(empty, size);
    empty.addDataSet(std::vector<double>{1, 2, 3}, std::array{3});
    EXPECT_EQ(drawn(empty, size), before);
    chart_.clearDataSets();
    EXPECT_FALSE(drawn(chart_, size).isNull());
}

TEST_F(ImageChart, OneValueTakesTheMiddleOfTheTable) {
    ASSERT_TRUE(chart_.replaceDataSet(identifier_, std::vector<double>(6, 7.0), std::array{2, 3}));
    EXPECT_EQ(cell(0, 0), chart_.palette().color(128));
}

}  // namespace
}  // namespace tessavo::test
