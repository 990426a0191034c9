#include "measure/predicted.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

#include "measure/smoothing.h"
#include "response/complex_response.h"

namespace tessavo::test {
namespace {

constexpr double rateHz = 49500.0;

LevelCurve flatCurve(double levelDb, bool hasPhase, double degrees = 0.0) {
    LevelCurve curve;
    curve.frequenciesHz = evenFrequencies(20.0, 20000.0);
    curve.levelsDb.assign(curve.frequenciesHz.size(), levelDb);
    if (hasPhase) {
        curve.phasesDegrees.assign(curve.frequenciesHz.size(), degrees);
    }
    return curve;
}

void expectLevel(const LevelCurve& curve, double levelDb, double within) {
    ASSERT_FALSE(curve.levelsDb.empty());
    ASSERT_EQ(curve.levelsDb.size(), curve.frequenciesHz.size());
    for (const double level : curve.levelsDb) {
        ASSERT_NEAR(level, levelDb, within);
    }
}

TEST(Predicted, OfAChannelThatPassesEverythingIsTheMeasurement) {
    const LevelCurve measurement{{15.0, 90.0, 900.0}, {70.0, 85.5, 60.0}, {-20.0, 400.0, -900.0}};
    const LevelCurve same = predicted(measurement, ChannelModel{});
    EXPECT_EQ(same.frequenciesHz, measurement.frequenciesHz);
    EXPECT_EQ(same.levelsDb, measurement.levelsDb);
    EXPECT_EQ(same.phasesDegrees, measurement.phasesDegrees);
    const LevelCurve bare{measurement.frequenciesHz, measurement.levelsDb, {}};
    EXPECT_FALSE(predicted(bare, ChannelModel{}).hasPhase());
}

TEST(Predicted, HasGainPolarityAndDelayOfTheChannel) {
    const LevelCurve measurement{{30.0, 1000.0, 15000.0}, {70.0, 80.0, 60.0}, {10.0, 20.0, 30.0}};
    const LevelCurve result = predicted(measurement, ChannelModel{-0.5, 50, {}});
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(result.levelsDb[i], measurement.levelsDb[i] - 20 * std::log10(2.0), 1e-12);
        // Half a turn for the polarity, and 50 samples, none of it less by whole turns.
        const double degrees = 180.0 - 360.0 * 50 * measurement.frequenciesHz[i] / rateHz;
        EXPECT_NEAR(result.phasesDegrees[i], measurement.phasesDegrees[i] + degrees, 1e-9);
    }
}

TEST(Predicted, HasTheChannelsSections) {
    // By hand: 1 - z^-1 is 2 sin(pi f / 49500) with a phase of 90 - 180 f / 49500 degrees.
    ChannelModel channel;
    channel.sections.push_back({1.0, -1.0, 0.0, 0.0, 0.0});
    const LevelCurve result = predicted(flatCurve(90.0, true, 5.0), channel);
    for (std::size_t i = 0; i < result.frequenciesHz.size(); ++i) {
        const double hertz = result.frequenciesHz[i];
        const double level = 90.0 + 20 * std::log10(2 * std::sin(std::numbers::pi * hertz / rateHz));
        ASSERT_NEAR(result.levelsDb[i], level, 1e-9);
        ASSERT_NEAR(std::remainder(result.phasesDegrees[i] - (95.0 - 180.0 * hertz / rateHz), 360.0), 0.0,
                    1e-9);
    }
}

TEST(Predicted, OfSilenceIsTheLowestLevelThatIsTold) {
    const LevelCurve silence = predicted(flatCurve(90.0, true, 5.0), ChannelModel{0.0, 3, {}});
    for (std::size_t i = 0; i < silence.levelsDb.size(); ++i) {
        ASSERT_EQ(silence.levelsDb[i], -300.0);
        ASSERT_TRUE(std::isfinite(silence.phasesDegrees[i]));
    }
    // 1 + z^-2 is 0 at a quarter of the rate alone.
    ChannelModel notch;
    notch.sections.push_back({1.0, 0.0, 1.0, 0.0, 0.0});
    const LevelCurve around{{1000.0, rateHz / 4, 20000.0}, {0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}};
    const LevelCurve notched = predicted(around, notch);
    EXPECT_GT(notched.levelsDb[0], -10.0);
    EXPECT_EQ(notched.levelsDb[1], -300.0);
    EXPECT_GT(notched.levelsDb[2], -10.0);
    EXPECT_TRUE(std::isfinite(notched.phasesDegrees[1]));
}

TEST(PredictedSum, OfTwoInPhaseIsSixDecibelsLouder) {
    const std::vector<LevelCurve> two(2, flatCurve(83.0, true, 123.0));
    const PredictedSum sum = predictedSum(two);
    EXPECT_TRUE(sum.isComplex);
    EXPECT_EQ(sum.curve.frequenciesHz, two[0].frequenciesHz);
    expectLevel(sum.curve, 83.0 + 20 * std::log10(2.0), 1e-12);
    for (const double degrees : sum.curve.phasesDegrees) {
        ASSERT_NEAR(degrees, 123.0, 1e-9);
    }
}

TEST(PredictedSum, OfOppositePolaritiesIsNothing) {
    // A measurement turns by many turns; rounding must not leave a sum that is merely quiet.
    LevelCurve measurement = flatCurve(95.0, true);
    for (std::size_t i = 0; i < measurement.phasesDegrees.size(); ++i) {
        measurement.phasesDegrees[i] = -7.3 * static_cast<double>(i);
    }
    const std::vector<LevelCurve> two = {predicted(measurement, ChannelModel{0.25, 17, {}}),
                                         predicted(measurement, ChannelModel{-0.25, 17, {}})};
    const PredictedSum sum = predictedSum(two);
    EXPECT_TRUE(sum.isComplex);
    ASSERT_EQ(sum.curve.phasesDegrees.size(), sum.curve.levelsDb.size());
    for (std::size_t i = 0; i < sum.curve.levelsDb.size(); ++i) {
        ASSERT_EQ(sum.curve.levelsDb[i], -300.0);
        ASSERT_TRUE(std::isfinite(sum.curve.phasesDegrees[i]));
    }
}

TEST(PredictedSum, AddsPowersWhereOneHasNoPhase) {
    const std::vector<LevelCurve> two = {flatCurve(83.0, true, 180.0), flatCurve(83.0, false)};
    const PredictedSum sum = predictedSum(two);
    EXPECT_FALSE(sum.isComplex);
    EXPECT_FALSE(sum.curve.hasPhase());
    expectLevel(sum.curve, 83.0 + 10 * std::log10(2.0), 1e-12);
    const std::vector<LevelCurve> uneven = {flatCurve(80.0, false), flatCurve(70.0, false),
                                            flatCurve(-300.0, false)};
    expectLevel(predictedSum(uneven).curve, 10 * std::log10(1e8 + 1e7), 1e-12);
    const std::vector<LevelCurve> silent(2, flatCurve(-300.0, false));
    expectLevel(predictedSum(silent).curve, -300.0 + 10 * std::log10(2.0), 1e-12);
}

TEST(PredictedSum, OfADelayedOneIsAComb) {
    // By hand: 1 + exp(-2 pi i f T) is 2 |cos(pi f T)|, with T of 48 samples.
    const LevelCurve measurement = flatCurve(80.0, true, -33.0);
    const std::vector<LevelCurve> two = {predicted(measurement, ChannelModel{}),
                                         predicted(measurement, ChannelModel{1.0, 48, {}})};
    const PredictedSum sum = predictedSum(two);
    EXPECT_TRUE(sum.isComplex);
    double lowestDb = 80.0;
    for (std::size_t i = 0; i < sum.curve.levelsDb.size(); ++i) {
        const double part =
            2 * std::fabs(std::cos(std::numbers::pi * sum.curve.frequenciesHz[i] * 48 / rateHz));
        ASSERT_NEAR(std::pow(10.0, (sum.curve.levelsDb[i] - 80.0) / 20), part, 1e-10);
        lowestDb = std::min(lowestDb, sum.curve.levelsDb[i]);
    }
    EXPECT_LT(lowestDb, 55.0);
    // Up to the first notch the phase is the middle of both.
    EXPECT_NEAR(sum.curve.phasesDegrees[96], -33.0 - 180.0 * sum.curve.frequenciesHz[96] * 48 / rateHz, 1e-9);
}

TEST(PredictedSum, HasAPhaseWithoutJumps) {
    LevelCurve measurement = flatCurve(80.0, true);
    for (std::size_t i = 0; i < measurement.phasesDegrees.size(); ++i) {
        measurement.phasesDegrees[i] = 170.0 - 25.0 * static_cast<double>(i);
    }
    const PredictedSum sum = predictedSum(std::vector<LevelCurve>(2, measurement));
    for (std::size_t i = 0; i < measurement.phasesDegrees.size(); ++i) {
        ASSERT_NEAR(sum.curve.phasesDegrees[i], measurement.phasesDegrees[i], 1e-8);
    }
}

TEST(PredictedSum, IsOverTheFrequenciesThatAllHave) {
    const LevelCurve first{{20.0, 100.0, 1000.0, 5000.0}, {60.0, 60.0, 60.0, 60.0}, {}};
    const LevelCurve second{{100.0, 2000.0}, {60.0, 60.0}, {}};
    const PredictedSum sum = predictedSum(std::vector{first, second});
    EXPECT_EQ(sum.curve.frequenciesHz, (std::vector<double>{100.0, 1000.0}));
    expectLevel(sum.curve, 60.0 + 10 * std::log10(2.0), 1e-12);
    const LevelCurve above{{6000.0, 20000.0}, {60.0, 60.0}, {}};
    EXPECT_TRUE(predictedSum(std::vector{first, above}).curve.frequenciesHz.empty());
    const LevelCurve between{{200.0, 900.0}, {60.0, 60.0}, {}};
    EXPECT_TRUE(predictedSum(std::vector{first, between}).curve.frequenciesHz.empty());
    EXPECT_TRUE(predictedSum({}).curve.frequenciesHz.empty());
    EXPECT_FALSE(predictedSum({}).isComplex);
    EXPECT_TRUE(predictedSum(std::vector{first, LevelCurve{}}).curve.frequenciesHz.empty());
}

TEST(PredictedSum, OfOneIsItself) {
    const LevelCurve one{{20.0, 100.0, 1000.0}, {60.0, -50.0, 61.5}, {10.0, 80.0, -60.0}};
    const PredictedSum sum = predictedSum(std::vector{one});
    EXPECT_TRUE(sum.isComplex);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(sum.curve.levelsDb[i], one.levelsDb[i], 1e-12);
        EXPECT_NEAR(sum.curve.phasesDegrees[i], one.phasesDegrees[i], 1e-9);
    }
}

}  // namespace
}  // namespace tessavo::test
