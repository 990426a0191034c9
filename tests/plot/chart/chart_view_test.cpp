#include "plot/chart/chart_view.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

#include "controls/theme.h"
#include "plot/chart/chart_helpers.h"
#include "plot/chart/xy_chart.h"

namespace tessavo::test {
namespace {

/// Counts the paints of a widget.
class PaintCounter : public QObject {
 public:
    explicit PaintCounter(QWidget& widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int paints = 0;
};

class ChartView : public testing::Test {
 protected:
    ChartView() : view_(chart_, host_) {
        setUpResponseAxes(chart_);
        view_.resize(834, 472);
        view_.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&view_));
        QCoreApplication::processEvents();
    }

    void addCurve(double magnitudeDb) {
        const double scale = 20;
        std::vector<double> x;
        for (int n = 1; n <= 1000; ++n) {
            x.push_back(scale * n);
        }
        curve_ = addXy(chart_, x, std::vector<double>(1000, magnitudeDb));
    }

    void moveTo(QPointF spot) {
        QMouseEvent event(QEvent::MouseMove, spot, view_.mapToGlobal(spot), Qt::NoButton, Qt::NoButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(&view_, &event);
        QCoreApplication::processEvents();
    }

    [[nodiscard]] QPointF placeOf(double frequencyHz, double magnitudeDb) const {
        return chart_.layoutFor(view_.rect())
            .point(chart_.axis(AxisSide::bottom).fraction(frequencyHz),
                   chart_.axis(AxisSide::left).fraction(magnitudeDb));
    }

    FakeHost host_;
    CXYChart chart_;
    CChartView view_;
    int curve_ = -1;
};

TEST_F(ChartView, PaintsWhatTheChartDraws) {
    addCurve(-6);
    QCoreApplication::processEvents();
    const QImage shown = view_.grab().toImage();
    EXPECT_EQ(shown.size(), (QSizeF(834, 472) * view_.devicePixelRatioF()).toSize());
    EXPECT_EQ(shown.convertToFormat(QImage::Format_RGB32),
              view_.picture().convertToFormat(QImage::Format_RGB32));
}

TEST_F(ChartView, ManyNewCurvesArePaintedOnceAndTheLastWins) {
    addCurve(0);
    QCoreApplication::processEvents();
    PaintCounter counter(view_);
    std::vector<double> values(chart_.dataSet(curve_)->values().begin(),
                               chart_.dataSet(curve_)->values().end());
    for (int n = 1; n <= 1000; ++n) {
        std::fill(values.begin() + 1000, values.end(), n % 25 - 12);
        ASSERT_TRUE(chart_.replaceDataSet(curve_, values, std::array{2, 1000}));
    }
    EXPECT_EQ(counter.paints, 0);
    for (int n = 0; n < 5; ++n) {
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(counter.paints, 1);
    // 1000 % 25 - 12
    const QImage shown = view_.grab().toImage();
    const QRectF around(placeOf(1000, -12) - QPointF(5, 3), QSizeF(10, 6));
    EXPECT_GT(countOf(shown, theme::level, around, 40), 8);
    EXPECT_EQ(countOf(shown, theme::level, around.translated(0, -132), 40), 0);
}

TEST_F(ChartView, ReadoutShowsTheCurveUnderThePointer) {
    addCurve(-6);
    QCoreApplication::processEvents();
    EXPECT_EQ(view_.readoutText(), "");
    moveTo(placeOf(1000, 10));
    EXPECT_EQ(view_.readoutText(), "1000 Hz   -6 dB");
    EXPECT_EQ(view_.accessibleDescription(), "1000 Hz   -6 dB");
    moveTo(placeOf(20, 0) + QPointF(0.1, 0));
    EXPECT_EQ(view_.readoutText(), "20 Hz   -6 dB");
    moveTo(placeOf(20000, 0) - QPointF(0.04, 0));
    EXPECT_EQ(view_.readoutText(), "20000 Hz   -6 dB");
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&view_, &leave);
    EXPECT_EQ(view_.readoutText(), "");
    EXPECT_EQ(view_.accessibleDescription(), "");
}

TEST_F(ChartView, ReadoutFollowsANewCurve) {
    addCurve(-6);
    moveTo(placeOf(1000, 10));
    const QImage before = view_.grab().toImage();
    std::vector<double> values(chart_.dataSet(curve_)->values().begin(),
                               chart_.dataSet(curve_)->values().end());
    std::fill(values.begin() + 1000, values.end(), 9);
    chart_.replaceDataSet(curve_, values, std::array{2, 1000});
    QCoreApplication::processEvents();
    EXPECT_EQ(view_.readoutText(), "1000 Hz   +9 dB");
    EXPECT_EQ(view_.accessibleDescription(), "1000 Hz   +9 dB");
    EXPECT_NE(view_.grab().toImage(), before);
}

TEST_F(ChartView, OutsideTheAxesOrWithoutACurveThereIsNoReadout) {
    moveTo(placeOf(1000, 0));
    EXPECT_EQ(view_.readoutText(), "");
    addCurve(3);
    moveTo({5, 5});
    EXPECT_EQ(view_.readoutText(), "");
    moveTo(placeOf(1000, 0));
    EXPECT_EQ(view_.readoutText(), "1000 Hz   +3 dB");
}

TEST_F(ChartView, ReadoutIsDrawnAndGoesAwayWithoutATrace) {
    addCurve(-6);
    QCoreApplication::processEvents();
    const QImage before = view_.grab().toImage();
    moveTo(placeOf(1000, 10));
    const QImage with = view_.grab().toImage();
    EXPECT_NE(with, before);
    EXPECT_EQ(view_.picture().convertToFormat(QImage::Format_RGB32),
              before.convertToFormat(QImage::Format_RGB32))
        << "pictures are taken without the readout";
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&view_, &leave);
    EXPECT_EQ(view_.grab().toImage(), before);
}

TEST_F(ChartView, ArrowKeysMoveTheReadout) {
    addCurve(-6);
    view_.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&view_, Qt::Key_Home);
    EXPECT_EQ(view_.readoutText(), "20 Hz   -6 dB");
    QTest::keyClick(&view_, Qt::Key_End);
    EXPECT_EQ(view_.readoutText(), "20000 Hz   -6 dB");
    QTest::keyClick(&view_, Qt::Key_Right);
    EXPECT_EQ(view_.readoutText(), "20000 Hz   -6 dB");
    QTest::keyClick(&view_, Qt::Key_Left, Qt::ControlModifier);
    const QString further = view_.readoutText();
    EXPECT_NE(further, "20000 Hz   -6 dB");
    QTest::keyClick(&view_, Qt::Key_Left);
    EXPECT_NE(view_.readoutText(), further);
}

TEST_F(ChartView, FocusShowsOnlyAfterTheKeyboard) {
    const auto ring = [this] { return countOf(view_.grab().toImage(), theme::focus, view_.rect(), 4); };
    QFocusEvent byMouse(QEvent::FocusIn, Qt::MouseFocusReason);
    QCoreApplication::sendEvent(&view_, &byMouse);
    EXPECT_EQ(ring(), 0);
    QFocusEvent byTab(QEvent::FocusIn, Qt::TabFocusReason);
    QCoreApplication::sendEvent(&view_, &byTab);
    EXPECT_GT(ring(), 2000);
    QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
    QCoreApplication::sendEvent(&view_, &out);
    EXPECT_EQ(ring(), 0);
}

TEST_F(ChartView, CopyPutsThePictureOnTheClipboard) {
    addCurve(-6);
    QGuiApplication::clipboard()->clear();
    view_.copyPicture();
    const QImage copied = QGuiApplication::clipboard()->image();
    EXPECT_EQ(copied.convertToFormat(QImage::Format_RGB32),
              view_.picture().convertToFormat(QImage::Format_RGB32));
}

TEST_F(ChartView, PngHoldsThePicture) {
    addCurve(-6);
    const QTemporaryDir folder;
    host_.path = folder.filePath("curve.png");
    view_.savePicture();
    EXPECT_TRUE(host_.messages.empty());
    EXPECT_EQ(QImage(*host_.path).convertToFormat(QImage::Format_RGB32),
              view_.picture().convertToFormat(QImage::Format_RGB32));
    ASSERT_EQ(host_.filters.size(), 1U);
    EXPECT_TRUE(host_.filters[0].contains("*.png"));
}

TEST_F(ChartView, APictureThatCannotBeSavedIsTold) {
    const QTemporaryDir folder;
    host_.path = folder.filePath("missing/curve.png");
    view_.savePicture();
    ASSERT_EQ(host_.messages.size(), 1U);
    EXPECT_TRUE(host_.messages[0].startsWith("The picture cannot be saved"));
}

TEST_F(ChartView, CancelledSavesDoNothing) {
    addCurve(-6);
    host_.path = std::nullopt;
    view_.savePicture();
    view_.saveData();
    EXPECT_EQ(host_.filters.size(), 2U);
    EXPECT_TRUE(host_.messages.empty());
}

TEST_F(ChartView, DataIsSavedOrItsFailureTold) {
    const QTemporaryDir folder;
    host_.path = folder.filePath("data.txt");
    view_.saveData();
    ASSERT_EQ(host_.messages.size(), 1U);
    EXPECT_EQ(host_.messages[0], "There is no data to save.");
    addCurve(-6);
    view_.saveData();
    EXPECT_EQ(host_.messages.size(), 1U);
    QFile file(*host_.path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().startsWith("20 -6\r\n40 -6\r\n"));
    host_.path = folder.filePath("missing/data.txt");
    view_.saveData();
    ASSERT_EQ(host_.messages.size(), 2U);
    EXPECT_EQ(host_.messages[1], "The data cannot be saved.");
}

TEST_F(ChartView, ResizingDrawsAgain) {
    addCurve(-6);
    view_.resize(500, 300);
    QCoreApplication::processEvents();
    EXPECT_EQ(view_.grab().toImage().convertToFormat(QImage::Format_RGB32),
              view_.picture().convertToFormat(QImage::Format_RGB32));
}

}  // namespace
}  // namespace tessavo::test
