#include "plot/chart/tick_marks.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <set>

#include "plot/chart/axis.h"
#include "plot/chart/chart_helpers.h"

namespace tessavo::test {
namespace {

using testing::ElementsAre;

std::vector<double> labelled(const TickSet& set) {
    std::vector<double> values;
    for (const Tick& tick : set.ticks) {
        if (tick.labelled) {
            values.push_back(tick.value);
        }
    }
    return values;
}

std::vector<double> minor(const TickSet& set) {
    std::vector<double> values;
    for (const Tick& tick : set.ticks) {
        if (!tick.labelled) {
            values.push_back(tick.value);
        }
    }
    return values;
}

std::vector<std::string> labels(const TickSet& set, LabelForm form) {
    std::vector<std::string> texts;
    for (const double value : labelled(set)) {
        texts.push_back(tickLabel(value, set.resolution, form).toStdString());
    }
    return texts;
}

TEST(TickMarks, DecibelsStepBySixWithThreesBetween) {
    const TickSet set = linearTicks({-18, 18}, 9, 1, TickSteps::decibel);
    EXPECT_THAT(labelled(set), ElementsAre(-18, -12, -6, 0, 6, 12, 18));
    EXPECT_THAT(minor(set), ElementsAre(-15, -9, -3, 3, 9, 15));
    EXPECT_THAT(labels(set, LabelForm::withSign), ElementsAre("-18", "-12", "-6", "0", "+6", "+12", "+18"));
    const auto zero = std::ranges::find(set.ticks, 0.0, &Tick::value);
    ASSERT_NE(zero, set.ticks.end());
    EXPECT_EQ(zero->grid, GridRank::zero);
    EXPECT_EQ(std::ranges::count(set.ticks, GridRank::zero, &Tick::grid), 1);
}

TEST(TickMarks, FrequenciesStandAtOneTwoFive) {
    const TickSet set = logarithmicTicks({20, 20000}, 10, 1);
    EXPECT_THAT(labelled(set), ElementsAre(20, 50, 100, 200, 500, 1000, 2000, 5000, 10000, 20000));
    EXPECT_THAT(labels(set, LabelForm::kilo),
                ElementsAre("20", "50", "100", "200", "500", "1k", "2k", "5k", "10k", "20k"));
    EXPECT_THAT(minor(set), testing::SizeIs(18));
    for (const Tick& tick : set.ticks) {
        const bool decade = tick.value == 100 || tick.value == 1000 || tick.value == 10000;
        EXPECT_EQ(tick.grid, decade ? GridRank::major : GridRank::minor) << tick.value;
    }
}

TEST(TickMarks, LinearFrequenciesAreRound) {
    const TickSet set = linearTicks({20, 20000}, 10, 1, TickSteps::decimal);
    EXPECT_THAT(labelled(set), ElementsAre(2000, 4000, 6000, 8000, 10000, 12000, 14000, 16000, 18000, 20000));
    EXPECT_THAT(labels(linearTicks({0, 20000}, 5, 0, TickSteps::decimal), LabelForm::kilo),
                ElementsAre("0", "5k", "10k", "15k", "20k"));
}

TEST(TickMarks, WholeDecadesAreLabelledWhenThereAreMany) {
    EXPECT_THAT(labelled(logarithmicTicks({1e-3, 1e3}, 7, 1)),
                ElementsAre(1e-3, 1e-2, 0.1, 1, 10, 100, 1000));
    EXPECT_THAT(labelled(logarithmicTicks({1e-12, 1e12}, 8, 1)), ElementsAre(1e-10, 1e-5, 1, 1e5, 1e10));
}

TEST(TickMarks, APartOfADecadeGetsLinearTicks) {
    EXPECT_THAT(labelled(logarithmicTicks({900, 1100}, 5, 0)), ElementsAre(900, 950, 1000, 1050, 1100));
    EXPECT_THAT(labelled(logarithmicTicks({31, 38}, 8, 0)), ElementsAre(31, 32, 33, 34, 35, 36, 37, 38));
}

TEST(TickMarks, NoMajorTicksMeansNone) {
    EXPECT_TRUE(linearTicks({0, 1}, 0, 5, TickSteps::decimal).ticks.empty());
    EXPECT_TRUE(logarithmicTicks({1, 10}, 0, 5).ticks.empty());
    EXPECT_TRUE(linearTicks({0, 1}, -3, 5, TickSteps::decibel).ticks.empty());
}

TEST(TickMarks, MinorTicksDivideEvenly) {
    EXPECT_THAT(minor(linearTicks({0, 2}, 3, 4, TickSteps::decimal)),
                testing::SizeIs(8));  // fifths of 1
    EXPECT_THAT(minor(linearTicks({0, 10}, 3, 1, TickSteps::decimal)), testing::IsEmpty());
    EXPECT_THAT(minor(linearTicks({0, 10}, 3, 4, TickSteps::decimal)), ElementsAre(1, 2, 3, 4, 6, 7, 8, 9));
    EXPECT_TRUE(minor(linearTicks({0, 10}, 3, 0, TickSteps::decimal)).empty());
}

TEST(TickMarks, RangesGrowToRoundNumbers) {
    EXPECT_EQ(roundOutwards({-17, 13}, 9, TickSteps::decibel), (AxisRange{-18, 18}));
    EXPECT_EQ(roundOutwards({0.13, 0.97}, 9, TickSteps::decimal), (AxisRange{0.1, 1}));
    EXPECT_EQ(roundOutwards({-6, 6}, 9, TickSteps::decibel), (AxisRange{-6, 6}));
    EXPECT_EQ(roundOutwardsLogarithmic({20, 20000}), (AxisRange{20, 20000}));
    EXPECT_EQ(roundOutwardsLogarithmic({21, 19000}), (AxisRange{20, 20000}));
    EXPECT_EQ(roundOutwardsLogarithmic({0.06, 700}), (AxisRange{0.05, 1000}));
}

bool isRound(double step) {
    // 1, 2, 3, 5, 6, 12 or 24 times a power of ten.
    const double exponent = std::floor(std::log10(step) + 1e-9);
    const double mantissa = step / std::pow(10.0, exponent);
    return std::ranges::any_of(std::array{1.0, 1.2, 2.0, 2.4, 3.0, 5.0, 6.0},
                               [mantissa](double round) { return std::abs(mantissa - round) < 1e-6; });
}

class RandomRanges : public testing::TestWithParam<unsigned> {
 protected:
    /// A range that an axis accepts, of any size and anywhere.
    AxisRange next(AxisScale scale) {
        for (;;) {
            const double size = std::pow(10.0, std::uniform_real_distribution(-12.0, 12.0)(random_));
            const double offset = std::uniform_real_distribution(-1.0, 1.0)(random_) *
                                  std::pow(10.0, std::uniform_real_distribution(-12.0, 12.0)(random_));
            AxisRange range{offset, offset + size};
            if (scale == AxisScale::logarithmic) {
                range = {std::abs(offset), std::abs(offset) + size};
            }
            if (CAxis::check(range, scale) == RangeFault::none) {
                return range;
            }
        }
    }

    std::mt19937 random_{GetParam()};
};

TEST_P(RandomRanges, LinearTicksAreRoundInsideAndFewEnough) {
    for (int n = 0; n < 2000; ++n) {
        const AxisRange range = next(AxisScale::linear);
        const int most = 2 + static_cast<int>(random_() % 20);
        const TickSteps steps = n % 2 == 0 ? TickSteps::decimal : TickSteps::decibel;
        const TickSet set = linearTicks(range, most, n % 10, steps);
        const std::vector<double> values = labelled(set);
        const double span = range.maximum - range.minimum;
        SCOPED_TRACE(testing::Message() << range.minimum << " .. " << range.maximum << ", most " << most);
        ASSERT_LE(values.size(), static_cast<std::size_t>(most));
        // Steps of 24 to 50 or 2 to 5 halve at most; one tick may fall away at each end.
        ASSERT_GE(values.size(), static_cast<std::size_t>(std::max(0, most / 3 - 1)));
        ASSERT_TRUE(isRound(set.resolution)) << set.resolution;
        ASSERT_TRUE(std::ranges::is_sorted(set.ticks, std::ranges::less_equal{}, &Tick::value));
        for (const Tick& tick : set.ticks) {
            ASSERT_GE(tick.value, range.minimum - 1e-6 * span);
            ASSERT_LE(tick.value, range.maximum + 1e-6 * span);
        }
        for (const double value : values) {
            const double multiple = value / set.resolution;
            ASSERT_NEAR(multiple, std::round(multiple), 1e-5) << value;
        }
        std::set<QString> texts;
        for (const double value : values) {
            ASSERT_TRUE(texts.insert(tickLabel(value, set.resolution, LabelForm::plain)).second) << value;
        }
    }
}

TEST_P(RandomRanges, LogarithmicTicksAreInsideAndFewEnough) {
    for (int n = 0; n < 300; ++n) {
        const AxisRange range = next(AxisScale::logarithmic);
        const int most = 2 + static_cast<int>(random_() % 20);
        const TickSet set = logarithmicTicks(range, most, n % 2);
        SCOPED_TRACE(testing::Message() << range.minimum << " .. " << range.maximum << ", most " << most);
        ASSERT_LE(labelled(set).size(), static_cast<std::size_t>(most));
        const double span = range.maximum - range.minimum;
        for (const Tick& tick : set.ticks) {
            ASSERT_GE(tick.value, range.minimum - 1e-6 * span);
            ASSERT_LE(tick.value, range.maximum + 1e-6 * span);
        }
        ASSERT_TRUE(std::ranges::is_sorted(set.ticks, std::ranges::less_equal{}, &Tick::value));
    }
}

TEST_P(RandomRanges, GrownRangesHoldTheOldOnes) {
    for (int n = 0; n < 2000; ++n) {
        const AxisRange range = next(AxisScale::linear);
        const double slack = 1e-6 * (range.maximum - range.minimum);
        const AxisRange grown = roundOutwards(range, 9, n % 2 == 0 ? TickSteps::decimal : TickSteps::decibel);
        ASSERT_LE(grown.minimum, range.minimum + slack);
        ASSERT_GE(grown.maximum, range.maximum - slack);
        ASSERT_LE(grown.maximum - grown.minimum, 3.5 * (range.maximum - range.minimum));

        const AxisRange positive = next(AxisScale::logarithmic);
        const AxisRange more = roundOutwardsLogarithmic(positive);
        ASSERT_LE(more.minimum, positive.minimum * (1 + 1e-6));
        ASSERT_GE(more.maximum, positive.maximum * (1 - 1e-6));
        ASSERT_GE(more.minimum, positive.minimum / 2.6);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomRanges, testing::Values(1U, 2U, 3U));

}  // namespace
}  // namespace tessavo::test
