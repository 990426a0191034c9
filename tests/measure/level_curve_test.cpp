#include "measure/level_curve.h"

#include <chrono>
#include <cmath>
#include <cstddef>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

namespace tessavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

LevelCurve curveWithPhase() {
    return {{100.0, 1000.0, 4000.0}, {0.0, -6.0, 12.0}, {0.0, 90.0, -270.0}};
}

TEST(LevelCurve, LevelsAreStraightLinesOverTheLogarithmOfTheFrequency) {
    const LevelCurve curve = curveWithPhase();
    EXPECT_NEAR(levelAt(curve, std::sqrt(100.0 * 1000.0)), -3.0, 1e-12);
    EXPECT_NEAR(levelAt(curve, 2000.0), 3.0, 1e-12);
    EXPECT_NEAR(levelAt(curve, 1000.0 * std::pow(4.0, 0.75)), 7.5, 1e-12);
    EXPECT_GT(std::abs(levelAt(curve, 550.0) - -3.0), 1.0) << "it is no line over the frequency itself";
}

TEST(LevelCurve, APointIsToldToTheLastBit) {
    const LevelCurve curve = {{20.1, 33.3, 77.7}, {0.1, 0.2, 0.3}, {}};
    for (std::size_t index = 0; index < curve.frequenciesHz.size(); ++index) {
        EXPECT_EQ(levelAt(curve, curve.frequenciesHz[index]), curve.levelsDb[index]);
    }
}

TEST(LevelCurve, BeyondItsEndsItStaysWhatItIsThere) {
    const LevelCurve curve = curveWithPhase();
    for (const double frequencyHz : {1e-300, 0.001, 99.999999}) {
        EXPECT_EQ(levelAt(curve, frequencyHz), 0.0) << frequencyHz;
    }
    for (const double frequencyHz : {4000.0001, 1e6, 1e300}) {
        EXPECT_EQ(levelAt(curve, frequencyHz), 12.0) << frequencyHz;
    }
}

TEST(LevelCurve, OnePointIsALevelEverywhere) {
    const LevelCurve curve = {{1000.0}, {-3.5}, {}};
    for (const double frequencyHz : {1.0, 1000.0, 40000.0}) {
        EXPECT_EQ(levelAt(curve, frequencyHz), -3.5);
    }
}

TEST(LevelCurve, NeighbouringNumbersHaveALevelToo) {
    const double above = std::nextafter(1000.0, 2000.0);
    const LevelCurve curve = {{1000.0, above, std::nextafter(above, 2000.0)}, {1.0, 2.0, 3.0}, {}};
    EXPECT_EQ(levelAt(curve, above), 2.0);
    EXPECT_EQ(levelAt(curve, 1000.0), 1.0);
}

TEST(LevelCurve, AtOtherFrequenciesLevelAndPhaseAreThoseBetweenThePoints) {
    const std::vector<double> frequencies = {50.0, 100.0, 400.0, 2000.0, 4000.0, 9000.0};
    const LevelCurve result = resampled(curveWithPhase(), frequencies);
    EXPECT_EQ(result.frequenciesHz, frequencies);
    ASSERT_EQ(result.levelsDb.size(), frequencies.size());
    for (std::size_t index = 0; index < frequencies.size(); ++index) {
        EXPECT_EQ(result.levelsDb[index], levelAt(curveWithPhase(), frequencies[index])) << index;
    }
    ASSERT_EQ(result.phasesDegrees.size(), frequencies.size());
    EXPECT_EQ(result.phasesDegrees[0], 0.0);
    EXPECT_EQ(result.phasesDegrees[1], 0.0);
    EXPECT_NEAR(result.phasesDegrees[2], 90.0 * std::log10(4.0), 1e-12);
    EXPECT_NEAR(result.phasesDegrees[3], -90.0, 1e-12);
    EXPECT_EQ(result.phasesDegrees[4], -270.0);
    EXPECT_EQ(result.phasesDegrees[5], -270.0);
}

TEST(LevelCurve, WithoutAPhaseThereIsNoneAtOtherFrequencies) {
    const std::vector<double> frequencies = {10.0, 20.0};
    const LevelCurve result = resampled({{10.0, 40.0}, {0.0, 2.0}, {}}, frequencies);
    EXPECT_FALSE(result.hasPhase());
    EXPECT_THAT(result.levelsDb, ElementsAre(0.0, testing::DoubleNear(1.0, 1e-12)));
    EXPECT_THAT(resampled(curveWithPhase(), {}).frequenciesHz, IsEmpty());
}

TEST(LevelCurve, ManyLevelsOfALongCurveTakeNoTimeOverTheirCount) {
    // A search along the curve would look at 20 thousand million points here.
    constexpr std::size_t count = 200000;
    LevelCurve curve;
    for (std::size_t index = 1; index <= count; ++index) {
        curve.frequenciesHz.push_back(static_cast<double>(index));
        curve.levelsDb.push_back(static_cast<double>(index % 100));
    }
    const auto begin = std::chrono::steady_clock::now();
    double sum = 0.0;
    for (const double frequencyHz : curve.frequenciesHz) {
        sum += levelAt(curve, frequencyHz);
    }
    EXPECT_EQ(sum, static_cast<double>(count) * 49.5);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));
}

TEST(LevelCurve, PhasesDifferByHalfATurnAtMost) {
    const std::vector<double> wrapped = {170.0, -170.0, -10.0, 150.0, -50.0, 350.0, 0.0, 720.0, -721.0};
    const std::vector<double> unwrapped = unwrappedDegrees(wrapped);
    EXPECT_THAT(unwrapped, ElementsAre(170.0, 190.0, 350.0, 510.0, 670.0, 710.0, 720.0, 720.0, 719.0));
    for (std::size_t index = 0; index < wrapped.size(); ++index) {
        EXPECT_EQ(std::remainder(unwrapped[index] - wrapped[index], 360.0), 0.0) << index;
    }
    EXPECT_THAT(unwrappedDegrees(std::vector<double>{0.0, 180.0, 0.0, -180.0}),
                ElementsAre(0.0, 180.0, 0.0, -180.0));
    EXPECT_THAT(unwrappedDegrees(std::vector<double>{-500.0, -140.0}), ElementsAre(-500.0, -500.0))
        << "the first phase stays";
    EXPECT_THAT(unwrappedDegrees({}), IsEmpty());
}

TEST(LevelCurve, TheRootOfTheMeanSquareIsThatAboutTheMean) {
    double meanDb = -1.0;
    const std::vector<double> differences = {1.0, 3.0, 5.0, 7.0};
    EXPECT_NEAR(rmsAboutMean(differences, meanDb), std::sqrt(5.0), 1e-12);
    EXPECT_NEAR(meanDb, 4.0, 1e-12);

    const std::vector<double> farAway = {1e9 + 1.0, 1e9 - 1.0};
    EXPECT_NEAR(rmsAboutMean(farAway, meanDb), 1.0, 1e-6) << "a large mean swallows nothing";
    EXPECT_NEAR(meanDb, 1e9, 1e-6);

    EXPECT_EQ(rmsAboutMean(std::vector<double>{-2.5}, meanDb), 0.0);
    EXPECT_EQ(meanDb, -2.5);
    EXPECT_EQ(rmsAboutMean({}, meanDb), 0.0);
    EXPECT_EQ(meanDb, 0.0);
}

}  // namespace
}  // namespace tessavo
