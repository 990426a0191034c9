#include "measure/target_curves.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>

#include "measure/smoothing.h"

namespace tessavo::test {
namespace {

struct Level {
    double hertz;
    double levelDb;
};

void expectLevels(const std::string& name, const std::vector<Level>& levels) {
    const auto target = targetNamed(name);
    ASSERT_TRUE(target) << name;
    EXPECT_FALSE(target->hasPhase());
    for (const auto& [hertz, levelDb] : levels) {
        EXPECT_NEAR(levelAt(*target, hertz), levelDb, 1e-12) << name << " at " << hertz;
    }
}

TEST(TargetCurves, HaveTheirNamesInOrder) {
    std::vector<std::string> names;
    for (const NamedTarget& target : namedTargets()) {
        names.emplace_back(target.name);
        EXPECT_FALSE(target.shown.empty());
        EXPECT_TRUE(targetNamed(target.name)) << target.name;
    }
    EXPECT_EQ(names, (std::vector<std::string>{"flat", "car-strong", "car-medium", "car-soft", "room"}));
    for (const char* unknown : {"", "Flat", "flat ", "car", "house"}) {
        EXPECT_FALSE(targetNamed(unknown)) << unknown;
    }
}

TEST(TargetCurves, RiseAboveZeroFrequenciesThatEachExceedTheOneBefore) {
    for (const NamedTarget& named : namedTargets()) {
        const LevelCurve target = targetNamed(named.name).value();
        ASSERT_GE(target.frequenciesHz.size(), 2U);
        ASSERT_EQ(target.levelsDb.size(), target.frequenciesHz.size());
        EXPECT_GT(target.frequenciesHz.front(), 0.0);
        for (std::size_t i = 1; i < target.frequenciesHz.size(); ++i) {
            EXPECT_GT(target.frequenciesHz[i], target.frequenciesHz[i - 1]);
        }
    }
}

TEST(TargetCurves, HaveTheirLevels) {
    expectLevels("flat", {{1.0, 0.0}, {20.0, 0.0}, {1000.0, 0.0}, {20000.0, 0.0}, {90000.0, 0.0}});
    // Half way between two points, in the logarithm of the frequency, is half of both levels.
    expectLevels("car-strong", {{5.0, 9.0},
                                {60.0, 9.0},
                                {std::sqrt(60.0 * 160.0), 4.5},
                                {160.0, 0.0},
                                {1000.0, 0.0},
                                {3000.0, 0.0},
                                {std::sqrt(3000.0 * 20000.0), -3.0},
                                {20000.0, -6.0},
                                {24000.0, -6.0}});
    expectLevels("car-medium", {{5.0, 6.0},
                                {40.0, 6.0},
                                {100.0, 3.5},
                                {250.0, 1.0},
                                {std::sqrt(250.0 * 20000.0), -2.0},
                                {20000.0, -5.0},
                                {24000.0, -5.0}});
    expectLevels("car-soft", {{5.0, 6.0},
                              {125.0, 6.0},
                              {std::sqrt(125.0 * 200.0), 3.0},
                              {200.0, 0.0},
                              {2000.0, -4.5},
                              {20000.0, -9.0},
                              {24000.0, -9.0}});
}

TEST(TargetCurves, RoomFallsByADecibelAnOctaveEverywhere) {
    const LevelCurve room = targetNamed("room").value();
    for (double hertz = 1.0; hertz <= 48000.0; hertz *= 1.37) {
        EXPECT_NEAR(levelAt(room, 2 * hertz) - levelAt(room, hertz), -1.0, 1e-12) << hertz;
    }
    EXPECT_NEAR(levelAt(room, 1000.0), 0.0, 1e-12);
    EXPECT_NEAR(levelAt(room, 20.0), std::log2(50.0), 1e-12);
}

TEST(Anchor, IsTheMeanDifferenceOverTheRange) {
    const LevelCurve curve{{20.0, 20000.0}, {80.0, 74.0}, {}};
    const LevelCurve target{{20.0, 20000.0}, {3.0, -3.0}, {}};
    EXPECT_NEAR(anchorDb(curve, target, evenFrequencies(100.0, 5000.0)), 77.0, 1e-10);
    const LevelCurve flat = targetNamed("flat").value();
    EXPECT_NEAR(anchorDb(curve, flat, evenFrequencies(20.0, 20000.0)), 77.0, 1e-10);
    // Two thirds and nine tenths of the way down.
    EXPECT_NEAR(anchorDb(curve, flat, std::vector<double>{2000.0, 20000.0 * std::pow(10.0, -0.3)}),
                80.0 - 6.0 * (2.0 / 3 + 0.9) / 2, 1e-10);
    EXPECT_EQ(anchorDb(curve, flat, {}), 0.0);
}

}  // namespace
}  // namespace tessavo::test
