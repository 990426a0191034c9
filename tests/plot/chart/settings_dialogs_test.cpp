#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QSpinBox>
#include <QTest>
#include <gtest/gtest.h>

#include "plot/chart/axis_settings.h"
#include "plot/chart/data_settings_dialog.h"
#include "plot/chart/image_plot_settings_dialog.h"
#include "plot/chart/plot_settings_dialog.h"
#include "plot/chart/settings_fixture.h"
#include "plot/chart/xy_chart.h"

namespace tessavo::test {
namespace {

QStringList itemsOf(const QComboBox* combo) {
    QStringList items;
    for (int n = 0; combo != nullptr && n < combo->count(); ++n) {
        items << combo->itemText(n);
    }
    return items;
}

/// Names of the controls that Tab visits, from the one that has the focus first.
QStringList tabStops(QDialog& dialog) {
    QStringList stops;
    dialog.activateWindow();
    dialog.setFocus();
    const QWidget* first = nullptr;
    for (int n = 0; n < 60; ++n) {
        QTest::keyClick(dialog.focusWidget() != nullptr ? dialog.focusWidget() : &dialog, Qt::Key_Tab);
        const QWidget* const now = dialog.focusWidget();
        if (now == nullptr || now == first) {
            break;
        }
        first = first == nullptr ? now : first;
        const QString text = now->property("text").toString();
        stops << (now->accessibleName().isEmpty() ? text : now->accessibleName());
    }
    return stops;
}

// --- axes

TEST_F(SettingsDialogs, AxisDialogHasItsTexts) {
    CAxisSettings dialog(chart_, host_);
    EXPECT_EQ(dialog.windowTitle(), "Axis Settings");
    for (const char* const text :
         {"Plotting Ranges", "X Range", "Y Range", "Number of major ticks", "Number of minor ticks",
          "Tick marks", "Tick labels", "Title font description", "Choose Font...", "<< Previous", "Next >>",
          "Axis 1 of 2", "Left Axis", "OK", "Cancel"}) {
        EXPECT_TRUE(shows(dialog, text)) << text;
    }
}

TEST_F(SettingsDialogs, AxisDialogStepsThroughTheShownAxes) {
    CAxisSettings dialog(chart_, host_);
    open(dialog);
    EXPECT_FALSE(button(dialog, "<< Previous")->isEnabled());
    click(button(dialog, "Next >>"));
    EXPECT_TRUE(shows(dialog, "Axis 2 of 2"));
    EXPECT_TRUE(shows(dialog, "Bottom Axis"));
    EXPECT_FALSE(button(dialog, "Next >>")->isEnabled());
    click(button(dialog, "<< Previous"));
    EXPECT_TRUE(shows(dialog, "Axis 1 of 2"));
}

TEST_F(SettingsDialogs, AxisDialogCountsEveryShownAxis) {
    showRightAxis();
    CAxisSettings dialog(chart_, host_);
    open(dialog);
    EXPECT_TRUE(shows(dialog, "Axis 1 of 3"));
    click(button(dialog, "Next >>"));
    click(button(dialog, "Next >>"));
    EXPECT_TRUE(shows(dialog, "Axis 3 of 3"));
    EXPECT_TRUE(shows(dialog, "Right Axis"));
}

TEST_F(SettingsDialogs, RangesApplyOnOk) {
    CAxisSettings dialog(chart_, host_);
    open(dialog);
    EXPECT_EQ(byName<QLineEdit>(dialog, "Y Range Min")->text(), "-18");
    EXPECT_EQ(byName<QLineEdit>(dialog, "X Range Max")->text(), "20000");
    type(byName<QLineEdit>(dialog, "Y Range Min"), "-30");
    type(byName<QLineEdit>(dialog, "Y Range Max"), "6,5");
    type(byName<QLineEdit>(dialog, "X Range Min"), "100");
    EXPECT_EQ(chart_.axis(AxisSide::left).range(), (AxisRange{-18, 18})) << "not before OK";
    click(button(dialog, "OK"));
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(chart_.axis(AxisSide::left).range(), (AxisRange{-30, 6.5}));
    EXPECT_EQ(chart_.axis(AxisSide::bottom).range(), (AxisRange{100, 20000}));
    EXPECT_EQ(chart_.axis(AxisSide::bottom).scale(), AxisScale::logarithmic);
}

TEST_F(SettingsDialogs, ARefusedRangeChangesNothingAndKeepsTheDialogOpen) {
    struct Case {
        const char* field;
        const char* typed;
        RangeFault fault;
    };
    for (const Case& wrong : {Case{"Y Range Max", "-18", RangeFault::maxNotAboveMin},
                              Case{"Y Range Min", "99", RangeFault::maxNotAboveMin},
                              Case{"Y Range Min", "low", RangeFault::notANumber},
                              Case{"X Range Min", "0", RangeFault::notPositive},
                              Case{"X Range Min", "-20", RangeFault::notPositive},
                              Case{"Y Range Max", "1e301", RangeFault::tooWide}}) {
        host_.messages.clear();
        CAxisSettings dialog(chart_, host_);
        open(dialog);
        byName<QSpinBox>(dialog, "Number of major ticks")->setValue(3);
        type(byName<QLineEdit>(dialog, wrong.field), wrong.typed);
        click(button(dialog, "OK"));
        EXPECT_TRUE(dialog.isVisible());
        ASSERT_EQ(host_.messages.size(), 1U) << wrong.typed;
        EXPECT_EQ(host_.messages[0], rangeFaultText(wrong.fault));
        EXPECT_EQ(chart_.axis(AxisSide::left).range(), (AxisRange{-18, 18}));
        EXPECT_EQ(chart_.axis(AxisSide::bottom).range(), (AxisRange{20, 20000}));
        EXPECT_EQ(chart_.axis(AxisSide::left).look().majorTicks, 9);
    }
}

TEST_F(SettingsDialogs, AWrongRangeAlsoHoldsTheStep) {
    CAxisSettings dialog(chart_, host_);
    open(dialog);
    type(byName<QLineEdit>(dialog, "Y Range Max"), "-40");
    click(button(dialog, "Next >>"));
    EXPECT_TRUE(shows(dialog, "Axis 1 of 2"));
    EXPECT_EQ(host_.messages.size(), 1U);
}

TEST_F(SettingsDialogs, FrequencyAxisCanBeMadeLinearAndBack) {
    CAxisSettings linear(chart_, host_);
    open(linear);
    click(button(linear, "Next >>"));
    ASSERT_TRUE(button(linear, "Logarithmic scale (Bottom Axis)")->isChecked());
    button(linear, "Logarithmic scale (Bottom Axis)")->setChecked(false);
    click(button(linear, "OK"));
    EXPECT_EQ(chart_.axis(AxisSide::bottom).scale(), AxisScale::linear);
    EXPECT_EQ(chart_.axis(AxisSide::bottom).range(), (AxisRange{20, 20000}));
    CAxisSettings back(chart_, host_);
    open(back);
    click(button(back, "Next >>"));
    button(back, "Logarithmic scale (Bottom Axis)")->setChecked(true);
    click(button(back, "OK"));
    EXPECT_EQ(chart_.axis(AxisSide::bottom).scale(), AxisScale::logarithmic);
}

TEST_F(SettingsDialogs, AnAxisWithLimitsBelowZeroStaysLinear) {
    CAxisSettings dialog(chart_, host_);
    open(dialog);
    button(dialog, "Logarithmic scale (Left Axis)")->setChecked(true);
    click(button(dialog, "OK"));
    ASSERT_EQ(host_.messages.size(), 1U);
    EXPECT_EQ(host_.messages[0], rangeFaultText(RangeFault::notPositive));
    EXPECT_EQ(chart_.axis(AxisSide::left).scale(), AxisScale::linear);
}

TEST_F(SettingsDialogs, TicksTitlesAndFontsApply) {
    CAxisSettings dialog(chart_, host_);
    open(dialog);
    byName<QSpinBox>(dialog, "Number of major ticks")->setValue(5);
    byName<QSpinBox>(dialog, "Number of minor ticks")->setValue(3);
    click(button(dialog, "Tick marks"));
    click(button(dialog, "Tick labels"));
    type(byName<QLineEdit>(dialog, "Title"), "Level");
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(17);
    host_.font = font;
    click(button(dialog, "Choose Font..."));
    EXPECT_TRUE(shows(dialog, "DejaVu Sans, 17 px"));
    click(button(dialog, "Next >>"));
    byName<QSpinBox>(dialog, "Number of major ticks")->setValue(4);
    click(button(dialog, "OK"));
    const AxisLook& left = chart_.axis(AxisSide::left).look();
    EXPECT_EQ(left.majorTicks, 5);
    EXPECT_EQ(left.minorTicks, 3);
    EXPECT_TRUE(left.tickMarks);
    EXPECT_FALSE(left.tickLabels);
    EXPECT_EQ(left.title, "Level");
    EXPECT_EQ(left.titleFont.pixelSize(), 17);
    EXPECT_EQ(chart_.axis(AxisSide::bottom).look().majorTicks, 4);
}

TEST_F(SettingsDialogs, AutoRangeTurnsTheLimitsOff) {
    addXy(chart_, {100, 1000}, {-40, 40});
    CAxisSettings dialog(chart_, host_);
    open(dialog);
    byName<QCheckBox>(dialog, "Y Range Auto range")->setChecked(true);
    EXPECT_FALSE(byName<QLineEdit>(dialog, "Y Range Min")->isEnabled());
    EXPECT_TRUE(byName<QLineEdit>(dialog, "X Range Min")->isEnabled());
    click(button(dialog, "OK"));
    EXPECT_TRUE(chart_.axis(AxisSide::left).isAutomatic());
    EXPECT_LE(chart_.axis(AxisSide::left).range().minimum, -40);
    EXPECT_FALSE(chart_.axis(AxisSide::bottom).isAutomatic());
}

TEST_F(SettingsDialogs, EscapeLeavesTheChartAsItWas) {
    CAxisSettings dialog(chart_, host_);
    open(dialog);
    type(byName<QLineEdit>(dialog, "Y Range Min"), "-30");
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_EQ(chart_.axis(AxisSide::left).range(), (AxisRange{-18, 18}));
}

TEST_F(SettingsDialogs, EnterIsOk) {
    CAxisSettings dialog(chart_, host_);
    open(dialog);
    QLineEdit* const edit = byName<QLineEdit>(dialog, "Y Range Min");
    type(edit, "-30");
    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(chart_.axis(AxisSide::left).range(), (AxisRange{-30, 18}));
}

TEST_F(SettingsDialogs, AxisDialogCanBeWalkedWithTab) {
    CAxisSettings dialog(chart_, host_);
    open(dialog);
    QStringList stops = tabStops(dialog);
    const QStringList expected{"X Range Min",
                               "X Range Max",
                               "X Range Auto range",
                               "Y Range Min",
                               "Y Range Max",
                               "Y Range Auto range",
                               "Logarithmic scale (Left Axis)",
                               "Number of major ticks",
                               "Number of minor ticks",
                               "Tick marks",
                               "Tick labels",
                               "Title",
                               "Choose Font...",
                               "Next >>",
                               "OK",
                               "Cancel"};
    // The walk is a circle; where it starts is the dialog's first control or the one behind it.
    ASSERT_EQ(stops.size(), expected.size()) << stops.join(", ").toStdString();
    while (stops.first() != expected.first()) {
        stops.append(stops.takeFirst());
    }
    EXPECT_EQ(stops, expected);
}

// --- data

TEST_F(SettingsDialogs, DataDialogHasItsTextsAndLists) {
    addXy(chart_, {1, 2}, {3, 4});
    addXy(chart_, {1, 2}, {3, 4});
    CDataSettingsDialog dialog(chart_, host_);
    EXPECT_EQ(dialog.windowTitle(), "Data Settings");
    for (const char* const text : {"Data set 1 of 2", "<< Previous", "Next >>", "Marker size", "Line size"}) {
        EXPECT_TRUE(shows(dialog, text)) << text;
    }
    for (const char* const size : {"Marker size", "Line size"}) {
        EXPECT_EQ(byName<QSpinBox>(dialog, size)->accessibleDescription(), "pixels") << size;
    }
    EXPECT_EQ(itemsOf(byName<QComboBox>(dialog, "Chart type")),
              QStringList({"XY Line", "XY Scatter", "Histogram"}));
    EXPECT_EQ(itemsOf(byName<QComboBox>(dialog, "Line style")),
              QStringList({"Solid ____________", "Dashed _ _ _ _ _ _", "Dotted . . . . . .",
                           "Dash-Dot _ . _ . _", "Dash-Dot-Dot _ . ."}));
    EXPECT_EQ(itemsOf(byName<QComboBox>(dialog, "Marker")),
              QStringList({"No marker", "Circle marker", "Square marker", "Triangle marker", "X marker",
                           "Filled marker"}));
    EXPECT_EQ(itemsOf(byName<QComboBox>(dialog, "Marker frequency")),
              QStringList({"Mark every point", "Mark every 10 points", "Mark 10 points"}));
    byName<QSpinBox>(dialog, "Number of points")->setValue(25);
    EXPECT_EQ(itemsOf(byName<QComboBox>(dialog, "Marker frequency")),
              QStringList({"Mark every point", "Mark every 25 points", "Mark 25 points"}));
}

TEST_F(SettingsDialogs, DataDialogSetsEveryAttribute) {
    const int first = addXy(chart_, {1, 2}, {3, 4});
    const int second = addXy(chart_, {1, 2}, {3, 4});
    CDataSettingsDialog dialog(chart_, host_);
    open(dialog);
    click(button(dialog, "Next >>"));
    EXPECT_TRUE(shows(dialog, "Data set 2 of 2"));
    byName<QComboBox>(dialog, "Chart type")->setCurrentText("Histogram");
    byName<QComboBox>(dialog, "Line style")->setCurrentText("Dash-Dot _ . _ . _");
    byName<QComboBox>(dialog, "Marker")->setCurrentText("Triangle marker");
    byName<QSpinBox>(dialog, "Line size")->setValue(5);
    byName<QSpinBox>(dialog, "Marker size")->setValue(11);
    byName<QSpinBox>(dialog, "Number of points")->setValue(3);
    byName<QComboBox>(dialog, "Marker frequency")->setCurrentText("Mark 3 points");
    host_.color = 0xFF00FF00;
    click(button(dialog, "Color..."));
    EXPECT_EQ(chart_.dataSet(second)->style, DataStyle{}) << "not before OK";
    click(button(dialog, "<< Previous"));
    EXPECT_TRUE(shows(dialog, "Data set 1 of 2"));
    EXPECT_EQ(byName<QComboBox>(dialog, "Chart type")->currentText(), "XY Line");
    click(button(dialog, "OK"));
    EXPECT_EQ(chart_.dataSet(first)->style, DataStyle{});
    DataStyle expected;
    expected.type = ChartType::histogram;
    expected.lineStyle = LineStyle::dashDot;
    expected.marker = MarkerShape::triangle;
    expected.lineSize = 5;
    expected.markerSize = 11;
    expected.markerFrequency = MarkerFrequency::count;
    expected.markerCount = 3;
    expected.color = 0xFF00FF00;
    EXPECT_EQ(chart_.dataSet(second)->style, expected);
}

TEST_F(SettingsDialogs, DataDialogWithoutDataHasNothingToSet) {
    CDataSettingsDialog dialog(chart_, host_);
    open(dialog);
    EXPECT_TRUE(shows(dialog, "Data set 0 of 0"));
    EXPECT_FALSE(byName<QComboBox>(dialog, "Chart type")->isEnabled());
    EXPECT_FALSE(button(dialog, "Next >>")->isEnabled());
    click(button(dialog, "OK"));
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST_F(SettingsDialogs, ADataSetThatIsGoneIsNoFault) {
    const int first = addXy(chart_, {1, 2}, {3, 4});
    const int second = addXy(chart_, {1, 2}, {3, 4});
    CDataSettingsDialog dialog(chart_, host_);
    open(dialog);
    chart_.removeDataSet(second);
    byName<QSpinBox>(dialog, "Line size")->setValue(5);
    click(button(dialog, "OK"));
    EXPECT_EQ(chart_.dataSet(first)->style.lineSize, 5);
}

// --- plots

TEST_F(SettingsDialogs, PlotDialogSetsTitleAndGrids) {
    CPlotSettingsDialog dialog(chart_, host_);
    open(dialog);
    EXPECT_EQ(dialog.windowTitle(), "XY Plot Settings");
    type(byName<QLineEdit>(dialog, "Title"), "Response");
    click(button(dialog, "Major Horizontal Grids"));
    click(button(dialog, "Minor Vertical Grids"));
    click(button(dialog, "OK"));
    EXPECT_EQ(chart_.title(), "Response");
    EXPECT_FALSE(chart_.axis(AxisSide::left).look().majorGrid);
    EXPECT_TRUE(chart_.axis(AxisSide::left).look().minorGrid);
    EXPECT_TRUE(chart_.axis(AxisSide::bottom).look().majorGrid);
    EXPECT_FALSE(chart_.axis(AxisSide::bottom).look().minorGrid);
}

TEST_F(SettingsDialogs, PlotDialogOpensTheOthers) {
    addXy(chart_, {1, 2}, {3, 4});
    CPlotSettingsDialog dialog(chart_, host_);
    open(dialog);
    click(button(dialog, "Axis Settings..."));
    auto* const axes = dialog.findChild<CAxisSettings*>();
    ASSERT_NE(axes, nullptr);
    type(byName<QLineEdit>(*axes, "Y Range Min"), "-30");
    click(button(*axes, "OK"));
    EXPECT_EQ(chart_.axis(AxisSide::left).range(), (AxisRange{-30, 18}));
    click(button(dialog, "Data Settings..."));
    auto* const data = dialog.findChild<CDataSettingsDialog*>();
    ASSERT_NE(data, nullptr);
    data->reject();
    click(button(dialog, "OK"));
    EXPECT_EQ(chart_.axis(AxisSide::left).range(), (AxisRange{-30, 18}));
}

TEST_F(SettingsDialogs, ImageDialogHasItsTextsAndTables) {
    CImageChart image;
    CImagePlotSettingsDialog dialog(image, host_);
    EXPECT_EQ(dialog.windowTitle(), "Image Plot Settings");
    for (const char* const text :
         {"Color Table", "Grids", "Major Horizontal Grids", "Major Vertical Grids", "Minor Horizontal Grids",
          "Minor Vertical Grids", "Maintain aspect ratio", "Scale to window"}) {
        EXPECT_TRUE(shows(dialog, text)) << text;
    }
    EXPECT_EQ(byName<QComboBox>(dialog, "Color Table")->count(), 33);
}

TEST_F(SettingsDialogs, ImageDialogAppliesOnOk) {
    CImageChart image;
    image.addDataSet(std::vector<double>{1, 2, 3, 4}, std::array{2, 2});
    CImagePlotSettingsDialog dialog(image, host_);
    open(dialog);
    byName<QComboBox>(dialog, "Color Table")->setCurrentIndex(13);
    click(button(dialog, "Maintain aspect ratio"));
    click(button(dialog, "Scale to window"));
    click(button(dialog, "Minor Horizontal Grids"));
    EXPECT_EQ(image.palette().identifier(), 10033) << "not before OK";
    click(button(dialog, "OK"));
    EXPECT_EQ(image.palette().identifier(), 10046);
    EXPECT_TRUE(image.maintainsAspectRatio());
    EXPECT_FALSE(image.scalesToWindow());
    EXPECT_TRUE(image.axis(AxisSide::left).look().minorGrid);
}

TEST_F(SettingsDialogs, EveryControlHasANameForScreenReaders) {
    addXy(chart_, {1, 2}, {3, 4});
    CImageChart image;
    CAxisSettings axes(chart_, host_);
    CDataSettingsDialog data(chart_, host_);
    CPlotSettingsDialog plot(chart_, host_);
    CImagePlotSettingsDialog imagePlot(image, host_);
    for (const QDialog* const dialog :
         std::initializer_list<const QDialog*>{&axes, &data, &plot, &imagePlot}) {
        for (QWidget* const widget : dialog->findChildren<QWidget*>()) {
            // Parts of a list or a spin box are named by it.
            const bool part = qobject_cast<QComboBox*>(widget->parentWidget()) != nullptr ||
                              qobject_cast<QAbstractSpinBox*>(widget->parentWidget()) != nullptr;
            if ((widget->focusPolicy() & Qt::TabFocus) == 0 || part || widget->isWindow() ||
                !dialog->isAncestorOf(widget) || widget->window() != dialog) {
                continue;
            }
            const QString text = widget->property("text").toString();
            const bool captioned = qobject_cast<QAbstractButton*>(widget) != nullptr && !text.isEmpty();
            EXPECT_TRUE(captioned || !widget->accessibleName().isEmpty())
                << widget->metaObject()->className() << " in " << dialog->windowTitle().toStdString();
        }
    }
}

}  // namespace
}  // namespace tessavo::test
