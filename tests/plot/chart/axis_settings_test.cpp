#include "plot/chart/axis_settings.h"

#include <QCheckBox>
#include <QSpinBox>
#include <array>

#include "plot/chart/data_settings_dialog.h"
#include "plot/chart/settings_fixture.h"

namespace tessavo::test {
namespace {

using AxisSettings = SettingsDialogs;

TEST_F(AxisSettings, AnAxisWithoutTicksIsFoundAgain) {
    showRightAxis();
    for (int axis = 0; axis < 3; ++axis) {
        const auto ticksOf = [&](int count) {
            CAxisSettings dialog(chart_, host_);
            open(dialog);
            for (int n = 0; n < axis; ++n) {
                click(button(dialog, "Next >>"));
            }
            EXPECT_TRUE(shows(dialog, QStringLiteral("Axis %1 of 3").arg(axis + 1)));
            byName<QSpinBox>(dialog, "Number of major ticks")->setValue(count);
            click(button(dialog, "OK"));
        };
        const AxisSide side =
            std::array{AxisSide::left, AxisSide::bottom, AxisSide::right}.at(static_cast<std::size_t>(axis));
        ticksOf(0);
        EXPECT_FALSE(chart_.axis(side).isShown());
        ticksOf(4);
        EXPECT_TRUE(chart_.axis(side).isShown());
        ticksOf(0);
    }
}

TEST_F(AxisSettings, AnAxisAcrossShowsAndEditsTheRangeThatItFollows) {
    showRightAxis();
    CAxisSettings dialog(chart_, host_);
    open(dialog);
    click(button(dialog, "Next >>"));
    click(button(dialog, "Next >>"));
    EXPECT_TRUE(shows(dialog, "Right Axis"));
    EXPECT_TRUE(shows(dialog, "Logarithmic scale (Left Axis)"));
    EXPECT_FALSE(byName<QCheckBox>(dialog, "Y Range Auto range")->isChecked());
    type(byName<QLineEdit>(dialog, "Y Range Min"), "-60");
    click(button(dialog, "OK"));
    EXPECT_EQ(chart_.axis(AxisSide::left).range(), (AxisRange{-60, 18}));
    EXPECT_EQ(chart_.axis(AxisSide::right).range(), (AxisRange{-60, 18}));
}

TEST_F(AxisSettings, LogarithmicScaleNamesItsAxis) {
    CAxisSettings dialog(chart_, host_);
    open(dialog);
    EXPECT_TRUE(shows(dialog, "Logarithmic scale (Left Axis)"));
    click(button(dialog, "Next >>"));
    EXPECT_TRUE(shows(dialog, "Logarithmic scale (Bottom Axis)"));
    EXPECT_FALSE(shows(dialog, "Logarithmic scale (Left Axis)"));
}

TEST_F(AxisSettings, TheColourSwatchHasANameAndTellsItsColour) {
    const int identifier = addXy(chart_, {1, 2}, {3, 4});
    chart_.setDataSetColor(identifier, 0xFF1C86EE);
    host_.color = 0xFF102030;
    CDataSettingsDialog dialog(chart_, host_);
    open(dialog);
    const auto* const swatch = byName<QLabel>(dialog, "Color");
    ASSERT_NE(swatch, nullptr);
    EXPECT_EQ(swatch->accessibleDescription(), "#1c86ee");
    click(button(dialog, "Color..."));
    EXPECT_EQ(swatch->accessibleDescription(), "#102030");
}

}  // namespace
}  // namespace tessavo::test
