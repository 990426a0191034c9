#include "response/frequency_grid.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace tessavo::test {
namespace {

TEST(FrequencyGridOf, RefusesWhatIsNoFrequency) {
    for (const double wrong :
         {-1.0, -1e-300, std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_FALSE(FrequencyGrid::of(std::array{wrong})) << wrong;
        EXPECT_FALSE(FrequencyGrid::of(std::array{1.0, wrong, 2.0})) << wrong;
    }
}

TEST(FrequencyGridOf, TakesNoneAndAnyOrder) {
    EXPECT_EQ(FrequencyGrid::of({})->size(), 0U);
    const std::array<double, 5> hertz{1000.0, 20.0, 20.0, 0.0, 1e300};
    const auto grid = FrequencyGrid::of(hertz);
    ASSERT_TRUE(grid);
    EXPECT_EQ(grid->frequenciesHz(), std::vector<double>(hertz.begin(), hertz.end()));
}

TEST(LogarithmicGrid, HasEqualRatiosAndItsEndsExactly) {
    for (const std::size_t count : {2U, 39U, 40U, 41U, 1000U}) {
        const FrequencyGrid grid = FrequencyGrid::logarithmic(20.0, 20000.0, count);
        const auto& hertz = grid.frequenciesHz();
        ASSERT_EQ(hertz.size(), count);
        EXPECT_EQ(grid.blocks().size(), (count + 39) / 40);
        EXPECT_EQ(hertz.front(), 20.0);
        EXPECT_EQ(hertz.back(), 20000.0);
        const double ratio = std::pow(1000.0, 1.0 / static_cast<double>(count - 1));
        for (std::size_t i = 1; i < count; ++i) {
            ASSERT_NEAR(hertz[i] / hertz[i - 1], ratio, 1e-12 * ratio) << i;
        }
    }
}

TEST(LogarithmicGrid, EndsExactlyWhateverItsEndsAre) {
    for (int i = 1; i < 200; ++i) {
        const double lowest = 0.1 * i;
        const double highest = 20000.0 / (1.0 + 0.01 * i);
        const FrequencyGrid grid = FrequencyGrid::logarithmic(lowest, highest, 7);
        ASSERT_EQ(grid.frequenciesHz().front(), lowest);
        ASSERT_EQ(grid.frequenciesHz().back(), highest);
    }
}

TEST(CirclePlaces, AreExactAtQuartersAndCloseBetween) {
    const auto expectAt = [](double turns, double cosine, double sine) {
        const CirclePoint point = circlePoint(turns);
        EXPECT_EQ(point.cosine, cosine) << turns;
        EXPECT_EQ(point.sine, sine) << turns;
    };
    expectAt(0.0, 1.0, 0.0);
    expectAt(0.25, 0.0, 1.0);
    expectAt(-0.25, 0.0, -1.0);
    expectAt(0.5, -1.0, 0.0);
    expectAt(-0.5, -1.0, 0.0);
    constexpr int steps = 1000;
    for (int i = -steps; i <= steps; ++i) {
        const double turns = 0.5 * i / steps;
        const CirclePoint point = circlePoint(turns);
        const long double angle = 6.283185307179586476925286766559L * static_cast<long double>(turns);
        ASSERT_NEAR(point.cosine, static_cast<double>(std::cos(angle)), 2e-16) << turns;
        ASSERT_NEAR(point.sine, static_cast<double>(std::sin(angle)), 2e-16) << turns;
    }
}

}  // namespace
}  // namespace tessavo::test
