#include "measure/smoothing.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <random>
#include <string>
#include <utility>

namespace tessavo::test {
namespace {

long double powerAt(const LevelCurve& curve, double octave) {
    return std::pow(10.0L, static_cast<long double>(levelAt(curve, std::exp2(octave))) / 10.0L);
}

// The mean of the power over a window, by Simpson's rule for pieces of the straight lines of at most a third of a decibel.
double windowLevel(const LevelCurve& curve, double centreHz, double octaves) {
    const double first = std::log2(centreHz) - octaves / 2;
    const double last = std::log2(centreHz) + octaves / 2;
    std::vector<double> borders = {first, last};
    for (const double hertz : curve.frequenciesHz) {
        if (std::log2(hertz) > first && std::log2(hertz) < last) {
            borders.push_back(std::log2(hertz));
        }
    }
    std::sort(borders.begin(), borders.end());
    long double sum = 0.0L;
    for (std::size_t i = 1; i < borders.size(); ++i) {
        const double riseDb =
            levelAt(curve, std::exp2(borders[i])) - levelAt(curve, std::exp2(borders[i - 1]));
        const int pieces = 1 + static_cast<int>(3 * std::fabs(riseDb));
        const double step = (borders[i] - borders[i - 1]) / pieces;
        for (int piece = 0; piece < pieces; ++piece) {
            const double from = borders[i - 1] + piece * step;
            sum += static_cast<long double>(step) / 6 *
                   (powerAt(curve, from) + 4 * powerAt(curve, from + step / 2) + powerAt(curve, from + step));
        }
    }
    return static_cast<double>(10.0L * std::log10(sum / static_cast<long double>(octaves)));
}

LevelCurve toneAt(double hertz, double widthRatio, double levelDb) {
    return {
        {20.0, hertz / widthRatio, hertz, hertz * widthRatio, 20000.0}, {0.0, 0.0, levelDb, 0.0, 0.0}, {}};
}

TEST(SmoothingText, IsReadAndWritten) {
    EXPECT_EQ(smoothingOf("none"), Smoothing{0});
    for (int parts = 1; parts <= 48; ++parts) {
        const std::string text = "1/" + std::to_string(parts);
        EXPECT_EQ(smoothingOf(text), Smoothing{parts});
        EXPECT_EQ(textOf(Smoothing{parts}), text);
    }
    EXPECT_EQ(textOf(Smoothing{}), "none");
    for (const char* wrong : {"", "1/", "1/0", "1/49", "1/96", "1/-3", "1/3 ", " 1/3", "2/3", "1/3.0", "1",
                              "None", "1/4294967299", "0", "1/x"}) {
        EXPECT_FALSE(smoothingOf(wrong)) << wrong;
    }
}

TEST(EvenFrequencies, LieInEqualRatiosNoFurtherApartThanTold) {
    for (const auto& [lowestHz, highestHz] :
         {std::pair(20.0, 20000.0), std::pair(1.5, 1.6), std::pair(2.0, 48000.0), std::pair(100.0, 100.1),
          std::pair(1e-300, 1e300)}) {
        const std::vector<double> hertz = evenFrequencies(lowestHz, highestHz);
        ASSERT_GE(hertz.size(), 2U);
        EXPECT_EQ(hertz.front(), lowestHz);
        EXPECT_EQ(hertz.back(), highestHz);
        const double ratio = hertz[1] / hertz[0];
        EXPECT_LE(ratio, std::exp2(1.0 / pointsPerOctave) * (1 + 1e-9));
        for (std::size_t i = 1; i < hertz.size(); ++i) {
            ASSERT_GT(hertz[i], hertz[i - 1]);
            ASSERT_NEAR(hertz[i] / hertz[i - 1] / ratio, 1.0, 1e-11);
        }
    }
    const double next = std::nextafter(1000.0, 2000.0);
    EXPECT_EQ(evenFrequencies(1000.0, next), (std::vector<double>{1000.0, next}));
    EXPECT_EQ(evenFrequencies(1000.0, 2000.0).size(), 97U);
}

TEST(Smoothed, OfNoneIsTheCurveItself) {
    const LevelCurve curve{{20.0, 300.0, 7000.0}, {1.0, -2.0, 3.0}, {10.0, 20.0, -30.0}};
    const LevelCurve same = smoothed(curve, Smoothing{});
    EXPECT_EQ(same.frequenciesHz, curve.frequenciesHz);
    EXPECT_EQ(same.levelsDb, curve.levelsDb);
    EXPECT_EQ(same.phasesDegrees, curve.phasesDegrees);
    const LevelCurve point{{1000.0}, {-3.0}, {}};
    EXPECT_EQ(smoothed(point, Smoothing{3}).levelsDb, point.levelsDb);
}

TEST(Smoothed, IsEvenAndKeepsAConstantLevelAndThePhase) {
    const LevelCurve curve{{20.0, 300.0, 7000.0}, {87.25, 87.25, 87.25}, {10.0, 700.0, -30.0}};
    for (const int parts : {1, 3, 48}) {
        const LevelCurve result = smoothed(curve, Smoothing{parts});
        EXPECT_EQ(result.frequenciesHz, evenFrequencies(20.0, 7000.0));
        const LevelCurve expected = resampled(curve, result.frequenciesHz);
        ASSERT_EQ(result.levelsDb.size(), result.frequenciesHz.size());
        EXPECT_EQ(result.phasesDegrees, expected.phasesDegrees);
        for (const double level : result.levelsDb) {
            ASSERT_NEAR(level, 87.25, 1e-10);
        }
    }
}

TEST(Smoothed, KeepsItsDigitsWhereALevelHardlyChanges) {
    for (const double riseDb : {1e-14, 1e-12, 1e-10, -1e-8}) {
        const LevelCurve curve{{20.0, 20000.0}, {0.0, riseDb}, {}};
        for (const double level : smoothed(curve, Smoothing{3}).levelsDb) {
            ASSERT_NEAR(level, 0.0, 1.1 * std::fabs(riseDb) + 1e-13) << riseDb;
        }
    }
}

TEST(Smoothed, OfASlopeIsRaisedByItsMeanPower) {
    // By hand: the mean of 10^(s x / 10) for x from -w/2 to w/2 octaves is sinh(a) / a with a = ln(10) / 10 * s * w / 2.
    for (const double slopeDb : {-24.0, -3.0, 0.001, 12.0}) {
        const LevelCurve curve{{10.0, 10240.0}, {50.0, 50.0 + 10 * slopeDb}, {}};
        for (const int parts : {1, 2, 6, 24}) {
            const double a = std::numbers::ln10 / 10 * slopeDb / parts / 2;
            const double raisedDb = 10 * std::log10(std::sinh(a) / a);
            const LevelCurve result = smoothed(curve, Smoothing{parts});
            for (std::size_t i = 0; i < result.levelsDb.size(); ++i) {
                const double hertz = result.frequenciesHz[i];
                if (hertz > 20.0 && hertz < 5120.0) {
                    ASSERT_NEAR(result.levelsDb[i], levelAt(curve, hertz) + raisedDb, 1e-9) << slopeDb;
                }
            }
        }
    }
}

TEST(Smoothed, SpreadsANarrowToneOverItsWindow) {
    // Far above everything else, a peak of few hundredths of an octave is a plateau as wide as the window.
    const LevelCurve curve = toneAt(1000.0, 1.001, 60.0);
    const LevelCurve result = smoothed(curve, Smoothing{3});
    const double plateauDb = windowLevel(curve, 1000.0, 1.0 / 3);
    int inside = 0;
    for (std::size_t i = 0; i < result.levelsDb.size(); ++i) {
        const double away = std::fabs(std::log2(result.frequenciesHz[i] / 1000.0));
        if (away < 1.0 / 6 - 0.002) {
            ++inside;
            ASSERT_NEAR(result.levelsDb[i], plateauDb, 1e-6);
        } else if (away > 1.0 / 6 + 0.002) {
            ASSERT_NEAR(result.levelsDb[i], 0.0, 1e-9);
        }
    }
    EXPECT_GE(inside, 31);
}

TEST(Smoothed, KeepsTheDigitsOfAQuietPartBesideALoudOne) {
    // A sum of everything up to a point would lose a quiet part behind a part that is louder by 140 dB.
    LevelCurve curve;
    std::mt19937 random(7);
    std::uniform_real_distribution<double> ripple(-3.0, 3.0);
    for (int i = 0; i <= 1000; ++i) {
        curve.frequenciesHz.push_back(20.0 * std::pow(1000.0, i / 1000.0));
        const double stepDb = i < 400 ? 140.0 : i < 700 ? 0.0 : 100.0;
        curve.levelsDb.push_back(stepDb + ripple(random));
    }
    for (const int parts : {1, 3, 6, 48}) {
        const LevelCurve result = smoothed(curve, Smoothing{parts});
        for (std::size_t i = 0; i < result.levelsDb.size(); i += 37) {
            const double expected = windowLevel(curve, result.frequenciesHz[i], 1.0 / parts);
            ASSERT_NEAR(result.levelsDb[i], expected, 1e-6) << parts << " at " << result.frequenciesHz[i];
        }
    }
}

TEST(Smoothed, FollowsSparsePointsAndTheEndsOfACurve) {
    const LevelCurve curve{
        {100.0, 101.0, 250.0, 900.0, 901.0, 4000.0}, {-20.0, 10.0, 0.0, -60.0, 30.0, 5.0}, {}};
    for (const int parts : {1, 2, 12, 48}) {
        const LevelCurve result = smoothed(curve, Smoothing{parts});
        for (std::size_t i = 0; i < result.levelsDb.size(); i += 9) {
            ASSERT_NEAR(result.levelsDb[i], windowLevel(curve, result.frequenciesHz[i], 1.0 / parts), 1e-6)
                << parts << " at " << result.frequenciesHz[i];
        }
        ASSERT_NEAR(result.levelsDb.back(), windowLevel(curve, 4000.0, 1.0 / parts), 1e-6);
    }
}

TEST(Smoothed, HasALevelWhereNoPowerIsLeft) {
    const LevelCurve curve{{20.0, 100.0, 101.0, 20000.0}, {0.0, 0.0, -9000.0, -9000.0}, {}};
    for (const double level : smoothed(curve, Smoothing{6}).levelsDb) {
        ASSERT_TRUE(std::isfinite(level));
        ASSERT_GE(level, -9000.0 - 1e-9);
    }
}

TEST(Smoothed, TakesAMomentForManyPoints) {
    LevelCurve curve;
    for (int i = 1; i <= 60000; ++i) {
        curve.frequenciesHz.push_back(i * 0.4);
        curve.levelsDb.push_back(80.0 + 20.0 * std::sin(i * 0.01) + (i % 7));
    }
    double fewestMs = 1e9;
    for (int run = 0; run < 5; ++run) {
        const auto before = std::chrono::steady_clock::now();
        const LevelCurve result = smoothed(curve, Smoothing{1});
        const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - before;
        fewestMs = std::min(fewestMs, took.count());
        ASSERT_GT(result.levelsDb.size(), 1000U);
    }
    RecordProperty("fewest_ms", std::to_string(fewestMs));
    // Looking at every point in every window would take hundreds of times as long as this.
    EXPECT_LT(fewestMs, 200.0);
}

TEST(PowerMean, IsTheMeanOfThePowersOverWhatAllHave) {
    const std::vector<LevelCurve> curves = {{{20.0, 10000.0}, {60.0, 60.0}, {0.0, 90.0}},
                                            {{50.0, 20000.0}, {70.0, 70.0}, {}},
                                            {{10.0, 30000.0}, {50.0, 50.0}, {}}};
    const auto mean = powerMean(curves);
    ASSERT_TRUE(mean);
    EXPECT_EQ(mean->frequenciesHz, evenFrequencies(50.0, 10000.0));
    EXPECT_FALSE(mean->hasPhase());
    ASSERT_EQ(mean->levelsDb.size(), mean->frequenciesHz.size());
    for (const double level : mean->levelsDb) {
        ASSERT_NEAR(level, 10 * std::log10((1e6 + 1e7 + 1e5) / 3), 1e-12);
    }
}

TEST(PowerMean, FollowsEveryCurveBetweenItsPoints) {
    const std::vector<LevelCurve> curves = {{{20.0, 200.0, 2000.0}, {0.0, 20.0, -20.0}, {}},
                                            {{20.0, 2000.0}, {-400.0, -4000.0}, {}}};
    const auto mean = powerMean(curves);
    ASSERT_TRUE(mean);
    for (std::size_t i = 0; i < mean->levelsDb.size(); ++i) {
        const double alone = levelAt(curves[0], mean->frequenciesHz[i]);
        ASSERT_NEAR(mean->levelsDb[i], alone - 10 * std::log10(2.0), 1e-12);
    }
}

TEST(PowerMean, OfOneIsItselfAndOfStrangersNothing) {
    const LevelCurve low{{20.0, 100.0}, {1.0, 2.0}, {3.0, 4.0}};
    const auto same = powerMean(std::vector{low});
    ASSERT_TRUE(same);
    EXPECT_EQ(same->frequenciesHz, low.frequenciesHz);
    EXPECT_EQ(same->levelsDb, low.levelsDb);
    EXPECT_EQ(same->phasesDegrees, low.phasesDegrees);
    EXPECT_FALSE(powerMean({}));
    EXPECT_FALSE(powerMean(std::vector<LevelCurve>{low, {{200.0, 400.0}, {0.0, 0.0}, {}}}));
    EXPECT_FALSE(powerMean(std::vector<LevelCurve>{low, {{100.0, 400.0}, {0.0, 0.0}, {}}}));
}

TEST(Calibrated, TakesOffWhatTheMicrophoneAdds) {
    const LevelCurve measurement{
        {10.0, 100.0, 1000.0, 40000.0}, {1.0, 2.0, 3.0, 4.0}, {10.0, 20.0, 30.0, 40.0}};
    const LevelCurve microphone{{20.0, 500.0, 2000.0}, {-6.0, 0.0, 2.0}, {}};
    const LevelCurve result = calibrated(measurement, microphone);
    EXPECT_EQ(result.frequenciesHz, measurement.frequenciesHz);
    EXPECT_EQ(result.phasesDegrees, measurement.phasesDegrees);
    EXPECT_DOUBLE_EQ(result.levelsDb[0], 7.0);
    EXPECT_DOUBLE_EQ(result.levelsDb[1], 2.0 + 6.0 * std::log(5.0) / std::log(25.0));
    EXPECT_DOUBLE_EQ(result.levelsDb[2], 2.0);
    EXPECT_DOUBLE_EQ(result.levelsDb[3], 2.0);
}

TEST(Calibrated, TakesOffPhasesWhereBothHaveThem) {
    const LevelCurve measurement{{20.0, 500.0}, {0.0, 0.0}, {350.0, 720.0}};
    const LevelCurve microphone{{20.0, 500.0}, {0.0, 0.0}, {40.0, -10.0}};
    EXPECT_EQ(calibrated(measurement, microphone).phasesDegrees, (std::vector<double>{310.0, 730.0}));
    const LevelCurve bare{{20.0, 500.0}, {0.0, 0.0}, {}};
    EXPECT_FALSE(calibrated(bare, microphone).hasPhase());
}

}  // namespace
}  // namespace tessavo::test
