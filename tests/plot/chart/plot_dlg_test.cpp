#include "plot/chart/plot_dlg.h"

#include <QApplication>
#include <QLineEdit>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include "controls/bitmap_slider.h"
#include "controls/note_mark.h"
#include "controls/number_edit.h"
#include "controls/theme.h"
#include "plot/chart/chart_helpers.h"
#include "plot/chart/chart_view.h"

namespace tessavo::test {
namespace {

class PlotWindow : public testing::Test {
 protected:
    PlotWindow() : plot_(host_) {
        plot_.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&plot_));
    }

    void type(const char* name, const QString& text) {
        auto* const edit = byName<QLineEdit>(plot_, name);
        ASSERT_NE(edit, nullptr);
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, text);
    }
    void set() { QTest::mouseClick(button(plot_, "SET"), Qt::LeftButton); }
    static void moveMouse(CBitmapSlider& slider, double y) {
        QMouseEvent move(QEvent::MouseMove, QPointF(15, y), slider.mapToGlobal(QPointF(15, y)), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&slider, &move);
        QCoreApplication::processEvents();
    }
    [[nodiscard]] QString text(const char* name) const { return byName<QLineEdit>(plot_, name)->text(); }
    [[nodiscard]] AxisRange range() { return plot_.chart().axis(AxisSide::left).range(); }

    FakeHost host_;
    CPlotDlg plot_;
};

using PlotWindowPixels = PlotWindow;

TEST_F(PlotWindow, StandsAsLaidOut) {
    EXPECT_EQ(plot_.size(), QSize(954, 496));
    EXPECT_EQ(plot_.minimumSize(), plot_.maximumSize());
    EXPECT_EQ(plot_.windowTitle(), "Plot");
    EXPECT_EQ(plot_.findChild<CChartView*>()->geometry(), QRect(12, 12, 834, 472));
    EXPECT_EQ(byName<QLineEdit>(plot_, "Max")->geometry(), QRect(858, 32, 84, 26));
    EXPECT_EQ(byName<QLineEdit>(plot_, "Min")->geometry(), QRect(858, 384, 84, 26));
    EXPECT_EQ(button(plot_, "SET")->geometry(), QRect(858, 456, 84, 28));
    EXPECT_EQ(text("Max"), "18.0");
    EXPECT_EQ(text("Min"), "-18.0");
}

TEST_F(PlotWindow, TitleCanBeSet) {
    plot_.setWindowTitle("InputEQ Graph");
    EXPECT_EQ(plot_.windowTitle(), "InputEQ Graph");
}

TEST_F(PlotWindow, AxesAreThoseOfAFrequencyResponse) {
    const CAxis& bottom = plot_.chart().axis(AxisSide::bottom);
    EXPECT_EQ(bottom.scale(), AxisScale::logarithmic);
    EXPECT_EQ(bottom.range(), (AxisRange{20, 20000}));
    EXPECT_EQ(bottom.look().title, "Hz");
    EXPECT_EQ(range(), (AxisRange{-18, 18}));
    EXPECT_EQ(plot_.chart().axis(AxisSide::left).look().title, "dB");
}

TEST_F(PlotWindow, TheCurveKeepsItsIdentifierAndColour) {
    EXPECT_EQ(plot_.curveIdentifier(), -1);
    plot_.setCurve(flatCurve(0));
    const int identifier = plot_.curveIdentifier();
    EXPECT_GE(identifier, 0);
    for (int n = 0; n < 100; ++n) {
        plot_.chart().setDataSetColor(identifier, 0xFFFF0000);
        plot_.setCurve(flatCurve(n % 7));
    }
    EXPECT_EQ(plot_.curveIdentifier(), identifier);
    ASSERT_EQ(plot_.chart().dataSets().size(), 1U);
    EXPECT_EQ(plot_.chart().dataSet(identifier)->style.color, qRgb(0x1C, 0x86, 0xEE));
    EXPECT_EQ(plot_.chart().dataSet(identifier)->pointCount(), 1000U);
    EXPECT_EQ(plot_.chart().dataSet(identifier)->xValues()[999], 20000);
    EXPECT_EQ(plot_.chart().dataSet(identifier)->yValues()[0], 99 % 7);
}

TEST_F(PlotWindow, OtherDataSetsStayBesideTheCurve) {
    const int other = addXy(plot_.chart(), {100, 1000}, {1, 2});
    plot_.setCurve(flatCurve(3));
    plot_.setCurve(flatCurve(4));
    EXPECT_EQ(plot_.chart().dataSets().size(), 2U);
    EXPECT_EQ(plot_.chart().dataSet(other)->pointCount(), 2U);
}

TEST_F(PlotWindow, AFullChartTakesNoCurveAndARemovedCurveComesBack) {
    std::vector<int> others;
    for (int n = 0; n < 20; ++n) {
        others.push_back(addXy(plot_.chart(), {1}, {1}));
    }
    plot_.setCurve(flatCurve(3));
    EXPECT_EQ(plot_.curveIdentifier(), -1);
    EXPECT_EQ(plot_.chart().dataSets().size(), 20U);
    plot_.chart().removeDataSet(others[0]);
    plot_.setCurve(flatCurve(3));
    EXPECT_GT(plot_.curveIdentifier(), others.back());
    plot_.chart().clearDataSets();
    plot_.setCurve(flatCurve(3));
    EXPECT_EQ(plot_.chart().dataSets().size(), 1U);
}

TEST_F(PlotWindow, ClearingLeavesTheAxesAndTheIdentifier) {
    plot_.clearCurve();
    EXPECT_EQ(plot_.curveIdentifier(), -1);
    plot_.setCurve(flatCurve(5));
    const int identifier = plot_.curveIdentifier();
    plot_.clearCurve();
    EXPECT_FALSE(plot_.chart().hasData());
    EXPECT_EQ(range(), (AxisRange{-18, 18}));
    plot_.setCurve(flatCurve(5));
    EXPECT_EQ(plot_.curveIdentifier(), identifier);
}

TEST_F(PlotWindow, SetAppliesARange) {
    type("Max", "6");
    type("Min", "-60");
    EXPECT_EQ(range(), (AxisRange{-18, 18})) << "not before SET";
    set();
    EXPECT_EQ(range(), (AxisRange{-60, 6}));
    EXPECT_TRUE(host_.messages.empty());
    type("Max", "12,5");
    QTest::keyClick(byName<QLineEdit>(plot_, "Max"), Qt::Key_Return);
    EXPECT_EQ(range(), (AxisRange{-60, 12.5})) << "Enter is SET";
    EXPECT_EQ(text("Max"), "12.5");
}

TEST_F(PlotWindow, RefusedRangesAreToldAndChangeNothing) {
    struct Case {
        const char* maximum;
        const char* minimum;
        RangeFault fault;
    };
    for (const Case& wrong :
         {Case{"-20", "20", RangeFault::maxNotAboveMin}, Case{"5", "5", RangeFault::maxNotAboveMin},
          Case{"abc", "-18", RangeFault::notANumber}, Case{"18", "", RangeFault::notANumber},
          Case{"inf", "-18", RangeFault::notANumber}, Case{"nan", "nan", RangeFault::notANumber},
          Case{"1e305", "-18", RangeFault::tooWide},
          Case{"1000000000.1", "1000000000", RangeFault::tooNarrow}}) {
        host_.messages.clear();
        type("Max", wrong.maximum);
        byName<QLineEdit>(plot_, "Min")->clear();
        type("Min", wrong.minimum);
        set();
        ASSERT_EQ(host_.messages.size(), 1U) << wrong.maximum;
        EXPECT_EQ(host_.messages[0], rangeFaultText(wrong.fault)) << wrong.maximum;
        EXPECT_EQ(range(), (AxisRange{-18, 18}));
        EXPECT_EQ(text("Max"), wrong.maximum) << "what was typed can be mended";
    }
}

TEST_F(PlotWindow, SliderScrollsTheRange) {
    auto* const slider = plot_.findChild<CBitmapSlider*>();
    ASSERT_NE(slider, nullptr);
    EXPECT_EQ(slider->geometry(), QRect(885, 74, 30, 274));
    EXPECT_EQ(slider->position(), 0);
    // Up on the slider shows higher levels.
    QTest::mousePress(slider, Qt::LeftButton, {}, slider->rect().center());
    QMouseEvent up(QEvent::MouseMove, QPointF(15, 0), slider->mapToGlobal(QPointF(15, 0)), Qt::NoButton,
                   Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(slider, &up);
    QCoreApplication::processEvents();
    EXPECT_EQ(range(), (AxisRange{102, 138})) << "while it is dragged";
    QTest::mouseRelease(slider, Qt::LeftButton, {}, {15, 0});
    QCoreApplication::processEvents();
    EXPECT_EQ(range(), (AxisRange{102, 138}));
    EXPECT_EQ(text("Max"), "138.0");
    EXPECT_EQ(text("Min"), "102.0");
    slider->setFocus();
    QTest::keyClick(slider, Qt::Key_Down);
    QCoreApplication::processEvents();
    EXPECT_EQ(range(), (AxisRange{101, 137}));
    QTest::keyClick(slider, Qt::Key_End);
    QCoreApplication::processEvents();
    EXPECT_EQ(range(), (AxisRange{-138, -102}));
    EXPECT_EQ(slider->valueText(), "-120.0 dB");
    EXPECT_TRUE(host_.messages.empty());
}

TEST_F(PlotWindow, ScrollingKeepsTheSpanAndTheFractions) {
    type("Max", "6.5");
    type("Min", "-20");
    set();
    auto* const slider = plot_.findChild<CBitmapSlider*>();
    EXPECT_EQ(slider->position(), 7);
    slider->setFocus();
    for (int n = 0; n < 3; ++n) {
        QTest::keyClick(slider, Qt::Key_Up);
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(range(), (AxisRange{-17, 9.5}));
    EXPECT_EQ(slider->position(), 4);
}

TEST_F(PlotWindow, SliderFollowsRangesBeyondItsReach) {
    type("Max", "400");
    type("Min", "200");
    set();
    auto* const slider = plot_.findChild<CBitmapSlider*>();
    EXPECT_EQ(slider->position(), -300);
    slider->setFocus();
    QTest::keyClick(slider, Qt::Key_Down);
    QCoreApplication::processEvents();
    EXPECT_EQ(range(), (AxisRange{199, 399}));
}

TEST_F(PlotWindow, ADragScrollsEvenlyBeyondTheReachToo) {
    type("Max", "400");
    type("Min", "200");
    set();
    auto* const slider = plot_.findChild<CBitmapSlider*>();
    const SliderTrack track = slider->track();
    const double start = track.pixelOf(slider->position(), slider->minimum(), slider->maximum());
    const int reach = slider->maximum();
    ASSERT_EQ(reach, 300);
    const QPoint grip = QPointF(15, start).toPoint();
    QTest::mousePress(slider, Qt::LeftButton, {}, grip);
    for (int travel = 1; travel <= 20; ++travel) {
        moveMouse(*slider, grip.y() + travel);
        // Where the thumb stands on the scale that it had when it was taken.
        const int position = track.positionAt(start + travel, -reach, reach);
        EXPECT_EQ(range(), (AxisRange{-100.0 - position, 100.0 - position})) << travel;
        EXPECT_EQ(slider->maximum(), reach) << "the scale stays under the hand";
    }
    const AxisRange dragged = range();
    EXPECT_LT(dragged.maximum, 360);
    EXPECT_GT(dragged.maximum, 340);
    moveMouse(*slider, grip.y());
    EXPECT_EQ(range(), (AxisRange{200, 400})) << "back to where it began";
    moveMouse(*slider, grip.y() + 20);
    QTest::mouseRelease(slider, Qt::LeftButton, {}, grip + QPoint(0, 20));
    QCoreApplication::processEvents();
    EXPECT_EQ(range(), dragged);
    EXPECT_EQ(slider->maximum(), (dragged.minimum + dragged.maximum) / 2) << "let go, the reach follows";
}

TEST_F(PlotWindow, ARangeFarBeyondEverySliderScrollsByWhatItIsMoved) {
    for (const auto& [maximum, minimum] : {std::pair{-1e10, -3e10}, std::pair{3e10, 1e10},
                                           std::pair{1e30, -3e30}, std::pair{2147483748.0, 2147483548.0}}) {
        type("Max", QString::number(maximum, 'g', 15));
        type("Min", QString::number(minimum, 'g', 15));
        set();
        ASSERT_TRUE(host_.messages.empty()) << maximum;
        ASSERT_EQ(range(), (AxisRange{minimum, maximum}));
        auto* const slider = plot_.findChild<CBitmapSlider*>();
        const bool below = minimum < 0;
        EXPECT_EQ(slider->position(), below ? slider->maximum() : slider->minimum()) << maximum;
        slider->setFocus();
        for (int n = 1; n <= 3; ++n) {
            QTest::keyClick(slider, below ? Qt::Key_Up : Qt::Key_Down);
            QCoreApplication::processEvents();
            const double moved = below ? n : -n;
            EXPECT_EQ(range(), (AxisRange{minimum + moved, maximum + moved})) << maximum;
            EXPECT_EQ(slider->position(), below ? slider->maximum() : slider->minimum()) << maximum;
        }
    }
}

TEST_F(PlotWindow, LongLimitsAreShownShortAndKeptWhole) {
    for (const auto& [minimum, maximum] :
         {std::pair{-1.23456789012e+30, 1.23456789012e+30}, std::pair{-1.23456789012e-7, 1.23456789012e-7},
          std::pair{-123456.789012345, 987654.321098765}, std::pair{1000.00010001, 1000.00020001}}) {
        if (plot_.chart().setRange(AxisSide::left, {minimum, maximum}) != RangeFault::none) {
            ADD_FAILURE() << minimum;
            continue;
        }
        for (const char* name : {"Max", "Min"}) {
            auto* const edit = byName<NumberEdit>(plot_, name);
            EXPECT_LE(edit->neededWidth(edit->text()), edit->width()) << edit->text().toStdString();
            const double exact = *name == 'M' && name[1] == 'a' ? maximum : minimum;
            // How many digits there is room for, the font decides.
            int digits = 15;
            while (digits > 1 && edit->neededWidth(QString::number(exact, 'g', digits)) > edit->width()) {
                --digits;
            }
            EXPECT_GE(digits, 3);
            EXPECT_EQ(edit->text().toDouble(), QString::number(exact, 'g', digits).toDouble())
                << edit->text().toStdString();
        }
        set();
        EXPECT_EQ(range(), (AxisRange{minimum, maximum})) << "nobody has typed anything";
        type("Max", QString::number(maximum * 2, 'g', 17));
        set();
        EXPECT_EQ(range(), (AxisRange{minimum, maximum * 2})) << "what was typed counts as it was typed";
    }
    EXPECT_TRUE(host_.messages.empty());
}

TEST_F(PlotWindow, TabVisitsEveryControl) {
    QStringList stops;
    plot_.findChild<CChartView*>()->setFocus();
    for (int n = 0; n < 5; ++n) {
        QWidget* const now = plot_.focusWidget();
        ASSERT_NE(now, nullptr);
        stops << (now->accessibleName().isEmpty() ? now->property("text").toString() : now->accessibleName());
        QTest::keyClick(now, Qt::Key_Tab);
    }
    EXPECT_EQ(stops, QStringList({"Frequency response", "Max", "Middle of the dB range", "Min", "SET"}));
    EXPECT_EQ(plot_.focusWidget(), plot_.findChild<CChartView*>());
}

TEST_F(PlotWindow, EscapeInAnEditBringsItsValueBackFirst) {
    type("Max", "99");
    QTest::keyClick(byName<QLineEdit>(plot_, "Max"), Qt::Key_Escape);
    EXPECT_EQ(text("Max"), "18.0");
    EXPECT_TRUE(plot_.isVisible());
    QTest::keyClick(byName<QLineEdit>(plot_, "Max"), Qt::Key_Escape);
    EXPECT_FALSE(plot_.isVisible());
}

TEST_F(PlotWindow, RangesSetInTheChartShowInTheEdits) {
    ASSERT_EQ(plot_.chart().setRange(AxisSide::left, {-24, 12.5}), RangeFault::none);
    EXPECT_EQ(text("Max"), "12.5");
    EXPECT_EQ(text("Min"), "-24.0");
}

TEST_F(PlotWindow, ClosingByTheFrameIsToldOnce) {
    const QSignalSpy closed(&plot_, &CPlotDlg::closedByUser);
    plot_.close();
    EXPECT_FALSE(plot_.isVisible());
    EXPECT_EQ(closed.count(), 1);
    plot_.close();
    EXPECT_EQ(closed.count(), 1);
    plot_.show();
    QTest::keyClick(&plot_, Qt::Key_Escape);
    EXPECT_FALSE(plot_.isVisible());
    EXPECT_EQ(closed.count(), 2);
}

TEST_F(PlotWindow, HidingByTheOwnerIsNotTold) {
    const QSignalSpy closed(&plot_, &CPlotDlg::closedByUser);
    plot_.hide();
    plot_.show();
    plot_.hide();
    EXPECT_EQ(closed.count(), 0);
}

TEST_F(PlotWindow, AppearsInTheMiddleOfTheScreen) {
    plot_.hide();
    plot_.move(0, 0);
    plot_.showCentred();
    EXPECT_TRUE(plot_.isVisible());
    const QPoint away = plot_.frameGeometry().center() - plot_.screen()->availableGeometry().center();
    // On a screen smaller than the window the frame may be held at the corner.
    EXPECT_LE(std::abs(away.x()), std::max(1, plot_.width() - plot_.screen()->availableGeometry().width()));
    EXPECT_LE(std::abs(away.y()), std::max(1, plot_.height() - plot_.screen()->availableGeometry().height()));
}

TEST_F(PlotWindow, OnASmallScreenTheChartGivesWayAndEveryControlStaysInside) {
    for (const QSize room : {QSize(683, 384), QSize(800, 480), QSize(1280, 400), QSize(640, 1024)}) {
        SCOPED_TRACE(::testing::Message() << room.width() << " x " << room.height());
        plot_.fitInto(room);
        EXPECT_LE(plot_.width(), room.width() - 8);
        EXPECT_LE(plot_.height(), room.height() - 32);
        EXPECT_EQ(plot_.minimumSize(), plot_.maximumSize());
        const QList<QWidget*> parts = plot_.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
        EXPECT_EQ(parts.size(), 8);
        // The line about the curve stands at the foot of the chart, in it.
        const QWidget* note = plot_.findChild<NoteMark*>();
        EXPECT_TRUE(plot_.findChild<CChartView*>()->geometry().contains(note->geometry()));
        for (const QWidget* part : parts) {
            EXPECT_TRUE(plot_.rect().adjusted(12, 12, -12, -12).contains(part->geometry()));
            for (const QWidget* other : parts) {
                const bool apart = part != other && part != note && other != note;
                EXPECT_TRUE(!apart || !part->geometry().intersects(other->geometry()));
            }
        }
        EXPECT_GE(plot_.findChild<CBitmapSlider*>()->height(), 98);
    }
}

TEST_F(PlotWindow, ALargerScreenGivesItsOwnSizeBack) {
    const QRect slider = plot_.findChild<CBitmapSlider*>()->geometry();
    EXPECT_EQ(slider, QRect(885, 74, 30, 274));
    plot_.fitInto({683, 384});
    EXPECT_NE(plot_.findChild<CBitmapSlider*>()->geometry(), slider);
    plot_.fitInto({5000, 5000});
    EXPECT_EQ(plot_.size(), CPlotDlg::pixelSize);
    EXPECT_EQ(plot_.findChild<CBitmapSlider*>()->geometry(), slider);
}

TEST_F(PlotWindow, NoScreenIsTooSmall) {
    plot_.fitInto({1, -7});
    EXPECT_EQ(plot_.size(), CPlotDlg::leastSize);
}

TEST_F(PlotWindow, AHiddenWindowTakesCurvesToo) {
    plot_.hide();
    plot_.setCurve(flatCurve(-9));
    plot_.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(plot_.chart().dataSet(plot_.curveIdentifier())->yValues()[0], -9);
}

TEST_F(PlotWindowPixels, TheCurveIsDrawnInItsColourAndNowhereElse) {
    plot_.setCurve(flatCurve(-6));
    QCoreApplication::processEvents();
    const QImage picture = plot_.grab().toImage();
    constexpr QRgb curve = CPlotDlg::curveColor;
    // -6 dB is 2/3 of the way down the box that starts at 38 and is 396 high.
    const QRectF line(70, 38 + 396 * 2.0 / 3 - 2, 740, 4);
    EXPECT_GT(countOf(picture, curve, line, 30), 740);
    EXPECT_EQ(countOf(picture, curve, {70, 40, 740, 250}, 30), 0);
    EXPECT_EQ(countOf(picture, curve, {70, 310, 740, 120}, 30), 0);
    plot_.clearCurve();
    QCoreApplication::processEvents();
    EXPECT_EQ(countOf(plot_.grab().toImage(), curve, {12, 12, 834, 472}, 30), 0);
}

TEST_F(PlotWindowPixels, TheSpaceToZeroIsShaded) {
    const QImage before = plot_.grab().toImage();
    plot_.setCurve(flatCurve(-6));
    QCoreApplication::processEvents();
    const QImage picture = plot_.grab().toImage();
    const QPointF shaded(150.5, 255.5);
    const QPointF below(150.5, 320.5);
    const QRgb expected = qRgb(0x10 + (0x1C - 0x10) * 13 / 100, 0x14 + (0x86 - 0x14) * 13 / 100,
                               0x19 + (0xEE - 0x19) * 13 / 100);
    EXPECT_LE(difference(pixelAt(picture, shaded), expected), 3);
    EXPECT_EQ(pixelAt(picture, below), pixelAt(before, below));
}

TEST_F(PlotWindowPixels, GridsHaveTheirColours) {
    const QImage picture = plot_.grab().toImage();
    // Places between two lines of the other direction, in the first device pixel of the line.
    const double scale = picture.devicePixelRatio();
    const auto line = [scale](double y) { return QPointF(130, (std::round(y * scale) + 0.5) / scale); };
    EXPECT_EQ(pixelAt(picture, line(236)), 0xFF5B6977) << "0 dB";
    EXPECT_EQ(pixelAt(picture, line(104)), 0xFF303A45) << "12 dB";
    EXPECT_EQ(pixelAt(picture, line(71)), 0xFF1C232B) << "15 dB";
    EXPECT_EQ(pixelAt(picture, {130, 90}), 0xFF101419) << "between them";
    EXPECT_EQ(pixelAt(picture, {30, 470}), 0xFF151A20) << "card";
}

}  // namespace
}  // namespace tessavo::test
