#include "fit/narrow_nulls.h"

#include <cmath>
#include <gtest/gtest.h>

#include "fit/fighting_bands.h"
#include "measure/smoothing.h"

namespace tessavo {
namespace {

/// 80 dB with a dip of some width and depth at 1 kHz.
LevelCurve withDip(double octaves, double depthDb) {
    LevelCurve curve{evenFrequencies(20.0, 20000.0), {}, {}};
    for (const double hz : curve.frequenciesHz) {
        curve.levelsDb.push_back(std::abs(std::log2(hz / 1000.0)) < octaves / 2.0 ? 80.0 - depthDb : 80.0);
    }
    return curve;
}

TEST(NarrowNulls, AreNarrowerThanASixthOfAnOctaveAndDeeperThan6Db) {
    EXPECT_EQ(narrowNulls(withDip(0.1, 20.0)).size(), 1U);
    EXPECT_TRUE(narrowNulls(withDip(0.1, 5.0)).empty());
    EXPECT_TRUE(narrowNulls(withDip(0.3, 20.0)).empty());
    EXPECT_TRUE(narrowNulls(withDip(0.1, -20.0)).empty());
    EXPECT_TRUE(narrowNulls(withDip(0.1, 0.0)).empty());
}

TEST(NarrowNulls, TellWhereTheyAre) {
    const auto nulls = narrowNulls(withDip(0.1, 20.0));
    ASSERT_EQ(nulls.size(), 1U);
    EXPECT_LT(nulls[0].fromHz, 1000.0 * std::exp2(-0.05));
    EXPECT_GT(nulls[0].toHz, 1000.0 * std::exp2(0.05));
    EXPECT_GT(nulls[0].fromHz, 1000.0 * std::exp2(-0.1));
    EXPECT_LT(nulls[0].toHz, 1000.0 * std::exp2(0.1));
    EXPECT_GT(nulls[0].depthDb, 15.0);
}

TEST(NarrowNulls, AreBridgedAndNothingElse) {
    const LevelCurve curve = withDip(0.1, 20.0);
    const auto nulls = narrowNulls(curve);
    const LevelCurve even = bridged(curve, nulls);
    for (const double level : even.levelsDb) {
        EXPECT_NEAR(level, 80.0, 0.5);
    }
    EXPECT_EQ(even.frequenciesHz.front(), curve.frequenciesHz.front());
    EXPECT_EQ(even.frequenciesHz.back(), curve.frequenciesHz.back());
    const LevelCurve wide = withDip(0.3, 20.0);
    EXPECT_EQ(bridged(wide, narrowNulls(wide)).levelsDb, wide.levelsDb);
}

EqBandParams bandAt(std::uint16_t hz, float gainDb) {
    return {.type = 2, .frequencyHz = hz, .gainDb = gainDb, .q = 3.0F};
}

TEST(FightingBands, HaveOppositeSignsOver6DbWithinHalfAnOctave) {
    using Bands = std::vector<EqBandParams>;
    EXPECT_TRUE(fightingBands(Bands{bandAt(1000, 6.1F), bandAt(1400, -6.1F)}));
    EXPECT_TRUE(fightingBands(Bands{bandAt(1400, -9.0F), bandAt(200, 1.0F), bandAt(1000, 9.0F)}));
    EXPECT_FALSE(fightingBands(Bands{bandAt(1000, 6.0F), bandAt(1400, -9.0F)}));
    EXPECT_FALSE(fightingBands(Bands{bandAt(1000, 9.0F), bandAt(1400, -6.0F)}));
    EXPECT_FALSE(fightingBands(Bands{bandAt(1000, 9.0F), bandAt(1500, -9.0F)}));
    EXPECT_FALSE(fightingBands(Bands{bandAt(1000, 9.0F), bandAt(1400, 9.0F)}));
    EXPECT_FALSE(fightingBands(Bands{}));
}

}  // namespace
}  // namespace tessavo
