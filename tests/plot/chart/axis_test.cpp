#include "plot/chart/axis.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "plot/chart/chart_helpers.h"

namespace tessavo::test {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nothing = std::numeric_limits<double>::quiet_NaN();

TEST(Axis, RefusesRangesThatCannotBeShown) {
    CAxis axis(AxisSide::left);
    ASSERT_EQ(axis.setRange({-18, 18}), RangeFault::none);
    const CAxis before = axis;
    EXPECT_EQ(axis.setRange({18, -18}), RangeFault::maxNotAboveMin);
    EXPECT_EQ(axis.setRange({5, 5}), RangeFault::maxNotAboveMin);
    EXPECT_EQ(axis.setRange({nothing, 5}), RangeFault::notANumber);
    EXPECT_EQ(axis.setRange({0, infinity}), RangeFault::notANumber);
    EXPECT_EQ(axis.setRange({-1e301, 5}), RangeFault::tooWide);
    EXPECT_EQ(axis.setRange({1e9, 1e9 + 1e-6}), RangeFault::tooNarrow);
    EXPECT_EQ(axis.setRange({0, 1e-300}), RangeFault::tooNarrow);
    EXPECT_EQ(axis, before);
}

TEST(Axis, EveryFaultIsExplained) {
    EXPECT_EQ(rangeFaultText(RangeFault::maxNotAboveMin), "Max must be greater than Min.");
    EXPECT_TRUE(rangeFaultText(RangeFault::none).isEmpty());
    for (const RangeFault fault :
         {RangeFault::notANumber, RangeFault::notPositive, RangeFault::tooNarrow, RangeFault::tooWide}) {
        EXPECT_FALSE(rangeFaultText(fault).isEmpty());
    }
}

TEST(Axis, LogarithmicScaleNeedsLimitsAboveZero) {
    CAxis axis(AxisSide::bottom);
    ASSERT_EQ(axis.setRange({0, 100}), RangeFault::none);
    EXPECT_EQ(axis.setScale(AxisScale::logarithmic), RangeFault::notPositive);
    EXPECT_EQ(axis.scale(), AxisScale::linear);
    ASSERT_EQ(axis.setRange({1, 100}), RangeFault::none);
    ASSERT_EQ(axis.setScale(AxisScale::logarithmic), RangeFault::none);
    EXPECT_EQ(axis.setRange({-1, 100}), RangeFault::notPositive);
    EXPECT_EQ(axis.setRange({0, 100}), RangeFault::notPositive);
    EXPECT_EQ(axis.range(), (AxisRange{1, 100}));
}

TEST(Axis, FractionsRunFromMinimumToMaximum) {
    CAxis linear(AxisSide::left);
    linear.setRange({-18, 18});
    EXPECT_DOUBLE_EQ(linear.fraction(-18), 0);
    EXPECT_DOUBLE_EQ(linear.fraction(0), 0.5);
    EXPECT_DOUBLE_EQ(linear.fraction(18), 1);
    EXPECT_DOUBLE_EQ(linear.valueAt(0.5), 0);

    CAxis logarithmic(AxisSide::bottom);
    logarithmic.setRange({20, 20000});
    logarithmic.setScale(AxisScale::logarithmic);
    EXPECT_DOUBLE_EQ(logarithmic.fraction(20), 0);
    EXPECT_NEAR(logarithmic.fraction(200), 1.0 / 3, 1e-12);
    EXPECT_DOUBLE_EQ(logarithmic.fraction(20000), 1);
    EXPECT_NEAR(logarithmic.valueAt(2.0 / 3), 2000, 1e-6);
}

TEST(Axis, ValuesWithoutAPlaceHaveNoFraction) {
    CAxis axis(AxisSide::bottom);
    axis.setRange({1, 10});
    EXPECT_TRUE(std::isnan(axis.fraction(nothing)));
    EXPECT_TRUE(std::isnan(axis.fraction(infinity)));
    EXPECT_TRUE(std::isnan(axis.fraction(-infinity)));
    axis.setScale(AxisScale::logarithmic);
    EXPECT_TRUE(std::isnan(axis.fraction(0)));
    EXPECT_TRUE(std::isnan(axis.fraction(-5)));
    EXPECT_TRUE(std::isfinite(axis.fraction(std::numeric_limits<double>::denorm_min())));
}

TEST(Axis, HugeValuesAndRangesStayFinite) {
    CAxis axis(AxisSide::left);
    ASSERT_EQ(axis.setRange({-1e300, 1e300}), RangeFault::none);
    EXPECT_DOUBLE_EQ(axis.fraction(0), 0.5);
    EXPECT_TRUE(std::isfinite(axis.fraction(std::numeric_limits<double>::max())));
    ASSERT_EQ(axis.setRange({0, 1e-280}), RangeFault::none);
    EXPECT_TRUE(std::isfinite(axis.fraction(std::numeric_limits<double>::max())));
    EXPECT_FALSE(axis.ticks(9).ticks.empty());
}

TEST(Axis, FollowsDataOnlyWhenAutomatic) {
    CAxis axis(AxisSide::left);
    AxisLook look = axis.look();
    look.majorTicks = 9;
    axis.setLook(look);
    EXPECT_TRUE(axis.fit(AxisRange{-17, 13}));
    EXPECT_LE(axis.range().minimum, -17);
    EXPECT_GE(axis.range().maximum, 13);
    EXPECT_FALSE(axis.fit(AxisRange{-17, 13})) << "nothing changed";
    EXPECT_FALSE(axis.fit(std::nullopt));
    ASSERT_EQ(axis.setRange({0, 1}), RangeFault::none);
    EXPECT_FALSE(axis.isAutomatic());
    EXPECT_FALSE(axis.fit(AxisRange{-17, 13}));
    EXPECT_EQ(axis.range(), (AxisRange{0, 1}));
}

TEST(Axis, EqualValuesGetARangeAroundThem) {
    for (const double value : {0.0, 5.0, -3.0, 1e12, -1e299, 1e-290, 1e300}) {
        for (const TickSteps steps : {TickSteps::decimal, TickSteps::decibel}) {
            CAxis axis(AxisSide::left);
            AxisLook look = axis.look();
            look.majorTicks = 9;
            look.steps = steps;
            axis.setLook(look);
            axis.setRange({7, 8});
            axis.setAutomatic(true);
            ASSERT_TRUE(axis.fit(AxisRange{value, value})) << value;
            EXPECT_EQ(CAxis::check(axis.range(), AxisScale::linear), RangeFault::none) << value;
            if (std::abs(value) < 1e299) {
                EXPECT_LT(axis.range().minimum, value) << value;
                EXPECT_GT(axis.range().maximum, value) << value;
            }
        }
    }
}

TEST(Axis, LogarithmicFitsStayAboveZero) {
    for (const AxisRange extent :
         {AxisRange{1e-308, 1e-308}, AxisRange{1e-200, 1e200}, AxisRange{5, 5}, AxisRange{20, 20000}}) {
        CAxis axis(AxisSide::bottom);
        ASSERT_EQ(axis.setScale(AxisScale::logarithmic), RangeFault::none);
        axis.fit(extent);
        EXPECT_EQ(CAxis::check(axis.range(), AxisScale::logarithmic), RangeFault::none);
        EXPECT_GT(axis.range().minimum, 0);
    }
}

TEST(Axis, TickCountsAreClamped) {
    CAxis axis(AxisSide::left);
    AxisLook look;
    look.majorTicks = 1000;
    look.minorTicks = -2;
    axis.setLook(look);
    EXPECT_EQ(axis.look().majorTicks, AxisLook::mostMajorTicks);
    EXPECT_EQ(axis.look().minorTicks, 0);
}

TEST(Axis, HasTheNamesOfTheMenu) {
    EXPECT_EQ(CAxis(AxisSide::left).name(), "Left Axis");
    EXPECT_EQ(CAxis(AxisSide::bottom).name(), "Bottom Axis");
    EXPECT_EQ(CAxis(AxisSide::right).name(), "Right Axis");
    EXPECT_EQ(CAxis(AxisSide::top).name(), "Top Axis");
}

}  // namespace
}  // namespace tessavo::test
