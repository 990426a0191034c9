#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <array>
#include <gtest/gtest.h>
#include <limits>
#include <span>

#include "controls/bitmap_slider.h"
#include "dsp/coeff_bzt2.h"
#include "plot/chart/chart_helpers.h"
#include "plot/chart/chart_view.h"
#include "plot/chart/plot_dlg.h"

// Curves that leave the usual range, and how the plot shows them.

namespace tessavo::test {
namespace {

constexpr std::int32_t noValue = std::numeric_limits<std::int32_t>::min();

class PlotCurves : public testing::Test {
 protected:
    PlotCurves() : plot_(host_) {
        plot_.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&plot_));
    }
    [[nodiscard]] QByteArray saved() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("curve.txt"));
        EXPECT_EQ(plot_.chart().saveToFile(path, {}), 1);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
    [[nodiscard]] AxisRange range() { return plot_.chart().axis(AxisSide::left).range(); }
    /// Pixels of the curve within a share of the box's width.
    [[nodiscard]] int curvePixels(double from, double to) {
        const QWidget& view = *plot_.findChild<CChartView*>();
        const QImage picture = const_cast<QWidget&>(view).grab().toImage();
        const QRectF box = plot_.chart().layoutFor(view.rect()).box;
        const QRectF part(box.left() + from * box.width(), box.top(), (to - from) * box.width(),
                          box.height());
        return countOf(picture, CPlotDlg::curveColor, part, 40);
    }

    FakeHost host_;
    CPlotDlg plot_;
};

TEST_F(PlotCurves, ACurveWithoutAValueKeepsAndSavesItsPointsAndIsNotDrawn) {
    // Words of nothing but zeros.
    constexpr std::array<BiquadWords, 1> nothing{};
    const ResponseCurve curve = computeResponse(nothing);
    ASSERT_EQ(curve.magnitudeDb.front(), noValue);
    plot_.setCurve(curve);
    const CChartData& data = *plot_.chart().dataSet(plot_.curveIdentifier());
    ASSERT_EQ(data.pointCount(), curvePointCount);
    for (const double value : data.yValues()) {
        ASSERT_EQ(value, noValue);
    }
    const QByteArray text = saved();
    EXPECT_EQ(text.count(" -2.14748e+09\r\n"), 1000);
    EXPECT_EQ(curvePixels(0, 1), 0);
    plot_.chart().setAutoRange(true);
    EXPECT_EQ(range(), (AxisRange{-18, 18})) << "nothing to follow";
    EXPECT_FALSE(plot_.chart().readoutAt(plot_.chart().layoutFor({0, 0, 834, 472}), {400, 200}));
}

TEST_F(PlotCurves, PointsWithoutAValueLeaveTheOthersTheirRange) {
    ResponseCurve curve = flatCurve(-7);
    curve.magnitudeDb.at(500) = noValue;
    curve.magnitudeDb.at(501) = std::numeric_limits<std::int32_t>::max();
    curve.magnitudeDb.at(502) = -40;
    plot_.setCurve(curve);
    plot_.chart().setAutoRange(true);
    EXPECT_GE(range().minimum, -60);
    EXPECT_LE(range().minimum, -40);
    EXPECT_LE(range().maximum, 6);
    EXPECT_GT(curvePixels(0, 0.5), 100);
    EXPECT_TRUE(saved().contains("\r\n10020 -2.14748e+09\r\n10040 2.14748e+09\r\n10060 -40\r\n"));
    // The next curve counts by the same rule.
    plot_.setCurve(computeResponse(std::array<BiquadWords, 1>{}));
    EXPECT_EQ(curvePixels(0, 1), 0);
}

TEST_F(PlotCurves, AValueNextToTheEndsIsOne) {
    ResponseCurve curve = flatCurve(noValue + 1);
    plot_.setCurve(curve);
    plot_.chart().setAutoRange(true);
    EXPECT_LT(range().minimum, -2e9);
}

TEST_F(PlotCurves, TheSliderAloneShowsTheSlopeOfACrossoverUpTo16KilohertzDownTo20Hz) {
    auto* const slider = byName<CBitmapSlider>(plot_, "Middle of the dB range");
    coeffBZT2 generator;
    for (const int cornerHz : {80, 1000, 3000, 8000, 16000}) {
        SCOPED_TRACE(cornerHz);
        BiquadWords highPass;
        ASSERT_TRUE(generator.computeCrossover(cornerHz << 16, 0, highPass));
        const ResponseCurve curve = computeResponse(std::span(&highPass, 1));
        const int deepest = curve.magnitudeDb.front();
        ASSERT_LT(deepest, -20);
        plot_.setCurve(curve);
        slider->setFocus();
        QTest::keyClick(slider, Qt::Key_Home);
        QCoreApplication::processEvents();
        for (int middle = -slider->position(); middle > deepest; --middle) {
            QTest::keyClick(slider, Qt::Key_Down);
            QCoreApplication::processEvents();
        }
        EXPECT_LE(range().minimum, deepest);
        EXPECT_GT(curvePixels(0, 0.02), 5) << "at " << deepest << " dB";
    }
}

}  // namespace
}  // namespace tessavo::test
