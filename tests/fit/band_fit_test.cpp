#include "fit/band_fit.h"

#include <cstring>
#include <gtest/gtest.h>
#include <random>

#include "fit/fighting_bands.h"
#include "fitted_channel.h"

namespace tessavo {
namespace {

using test::highestOf;
using test::plainChannel;
using test::rmsOf;
using test::withBands;

const LevelCurve flat{{20.0, 20000.0}, {0.0, 0.0}, {}};

/// A curve that goes up and down as in a car.
LevelCurve wanderingCurve(std::mt19937& random, double stepDb) {
    std::uniform_real_distribution<double> step(-stepDb, stepDb);
    LevelCurve curve;
    double level = 80.0;
    for (const double hz : evenFrequencies(20.0, 20000.0)) {
        level += step(random) - 0.02 * (level - 80.0);
        curve.frequenciesHz.push_back(hz);
        curve.levelsDb.push_back(level);
    }
    return curve;
}

FitLimits anyLimits(std::mt19937& random) {
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    FitLimits limits;
    limits.fromHz = 20.0 * std::pow(200.0, unit(random));
    limits.toHz = std::min(20000.0, limits.fromHz * (2.0 + 100.0 * unit(random)));
    limits.mostBoostDb = std::floor(130.0 * unit(random)) / 10.0;
    limits.mostCutDb = std::floor(180.0 * unit(random)) / 10.0;
    limits.highestQ = 0.5 + std::floor(100.0 * unit(random)) / 10.0;
    for (bool& band : limits.bands) {
        band = unit(random) < 0.6;
    }
    return limits;
}

void expectInsideLimits(const BandFit& fit, const FitLimits& limits, const ChannelImageBlock& channel) {
    std::size_t on = 0;
    double lastHz = 0;
    for (std::size_t i = 0; i < bandCount; ++i) {
        const EqBandParams& band = fit.bands.at(i);
        if (band.off != 0) {
            EqBandParams before = channel.bands.at(i);
            before.off = 1;
            EXPECT_EQ(std::memcmp(&band, &before, sizeof band), 0) << i;
            continue;
        }
        ++on;
        EXPECT_TRUE(limits.bands.at(i)) << i;
        EXPECT_GE(band.frequencyHz, lastHz);
        lastHz = band.frequencyHz;
        EXPECT_GE(band.frequencyHz, 20);
        EXPECT_LE(band.frequencyHz, 20000);
        EXPECT_LE(band.gainDb, static_cast<float>(limits.mostBoostDb) + 1e-5F);
        EXPECT_GE(band.gainDb, -static_cast<float>(limits.mostCutDb) - 1e-5F);
        EXPECT_LE(band.q, static_cast<float>(limits.highestQ) + 1e-5F);
        EXPECT_GE(band.q, 0.1F);
        for (const float value : {band.gainDb, band.q}) {
            EXPECT_EQ(value, static_cast<float>(std::round(static_cast<double>(value) * 10.0) / 10.0)) << i;
        }
    }
    EXPECT_LE(on, static_cast<std::size_t>(std::ranges::count(limits.bands, true)));
}

class BandFitByMethod : public ::testing::TestWithParam<std::size_t> {
 protected:
    IcoefficientGenerator& method() { return *methods_.at(GetParam()); }

 private:
    FilterMethods methods_ = makeFilterMethods();
};

TEST_P(BandFitByMethod, NeverRaisesTheDeviationNorLeavesItsLimits) {
    std::mt19937 random(static_cast<std::mt19937::result_type>(GetParam() + 1));
    for (int trial = 0; trial < 100; ++trial) {
        SCOPED_TRACE(trial);
        const LevelCurve measurement = wanderingCurve(random, 1.2);
        const LevelCurve target = wanderingCurve(random, 0.1);
        const FitLimits limits = anyLimits(random);
        const ChannelImageBlock channel = plainChannel();
        const BandFit fit = fitBands(channel, measurement, target, limits, method());
        expectInsideLimits(fit, limits, channel);
        const ChannelImageBlock after = withBands(channel, fit.bands, method());
        EXPECT_NEAR(fit.rmsBeforeDb, rmsOf(channel, measurement, target, limits), 0.02);
        EXPECT_NEAR(fit.rmsAfterDb, rmsOf(after, measurement, target, limits), 0.02);
        EXPECT_LE(fit.rmsAfterDb, fit.rmsBeforeDb);
        const double highest = highestOf(after);
        EXPECT_LE(highest, limits.mostBoostDb + 1e-5);
        EXPECT_NEAR(fit.peakBoostDb, std::max(0.0, highest), 0.005);
    }
}

TEST_P(BandFitByMethod, FindsTheSameEachTime) {
    std::mt19937 random(7);
    const LevelCurve measurement = wanderingCurve(random, 1.2);
    const BandFit first = fitBands(plainChannel(), measurement, flat, {}, method());
    const BandFit second = fitBands(plainChannel(), measurement, flat, {}, method());
    EXPECT_EQ(std::memcmp(first.bands.data(), second.bands.data(), sizeof first.bands), 0);
    EXPECT_EQ(first.rmsAfterDb, second.rmsAfterDb);
    EXPECT_LT(first.rmsAfterDb, first.rmsBeforeDb);
}

INSTANTIATE_TEST_SUITE_P(Methods, BandFitByMethod,
                         ::testing::Range(std::size_t{0}, filterMethodNames.size()));

class BandFitting : public ::testing::Test {
 protected:
    FilterMethods methods = makeFilterMethods();
    IcoefficientGenerator& bilinear = *methods.front();
};

TEST_F(BandFitting, TakesAwayWhatBandsHadDone) {
    // Three bands of a loudspeaker upside down: the same bands the other way round undo them.
    const std::vector<EqBandParams> done{{.type = 2, .frequencyHz = 120, .gainDb = 6.0F, .q = 2.0F},
                                         {.type = 2, .frequencyHz = 900, .gainDb = -7.0F, .q = 1.5F},
                                         {.type = 0, .frequencyHz = 6000, .gainDb = 5.0F, .q = 0.7F}};
    const std::vector<double> frequencies = evenFrequencies(20.0, 20000.0);
    const LevelCurve measurement{
        frequencies, test::playedLevels(withBands(plainChannel(), done, bilinear), frequencies), {}};
    FitLimits limits;
    limits.smoothing = {};
    const BandFit fit = fitBands(plainChannel(), measurement, flat, limits, bilinear);
    EXPECT_GT(fit.rmsBeforeDb, 2.0);
    EXPECT_LT(fit.rmsAfterDb, 0.05);
}

TEST_F(BandFitting, ABandThatIsNotNeededStaysOff) {
    const LevelCurve measurement{{20.0, 20000.0}, {75.0, 75.0}, {}};
    const BandFit fit = fitBands(plainChannel(), measurement, flat, {}, bilinear);
    EXPECT_TRUE(std::ranges::all_of(fit.bands, [](const EqBandParams& band) { return band.off == 1; }));
    EXPECT_EQ(fit.rmsBeforeDb, fit.rmsAfterDb);
    EXPECT_NEAR(fit.levelDb, 75.0, 1e-9);
    EXPECT_EQ(fit.peakBoostDb, 0.0);
}

TEST_F(BandFitting, TheLevelIsFree) {
    std::mt19937 random(3);
    const LevelCurve measurement = wanderingCurve(random, 1.2);
    LevelCurve louder = measurement;
    for (double& level : louder.levelsDb) {
        level += 16.0;
    }
    const BandFit fit = fitBands(plainChannel(), measurement, flat, {}, bilinear);
    const BandFit louderFit = fitBands(plainChannel(), louder, flat, {}, bilinear);
    EXPECT_NEAR(louderFit.levelDb - fit.levelDb, 16.0, 0.5);
    EXPECT_NEAR(louderFit.rmsAfterDb, fit.rmsAfterDb, 0.05);
}

TEST_F(BandFitting, BoostsNoNarrowNull) {
    // A tenth of an octave wide and 20 dB deep, in an even curve.
    LevelCurve measurement{evenFrequencies(20.0, 20000.0), {}, {}};
    for (const double hz : measurement.frequenciesHz) {
        measurement.levelsDb.push_back(std::abs(std::log2(hz / 1000.0)) < 0.05 ? 60.0 : 80.0);
    }
    for (const int parts : {0, 24, 6}) {
        FitLimits limits;
        limits.smoothing = {parts};
        const BandFit fit = fitBands(plainChannel(), measurement, flat, limits, bilinear);
        EXPECT_LT(highestOf(withBands(plainChannel(), fit.bands, bilinear)), 0.3) << parts;
    }
    // A dip of half an octave is filled.
    for (std::size_t i = 0; i < measurement.frequenciesHz.size(); ++i) {
        measurement.levelsDb[i] =
            std::abs(std::log2(measurement.frequenciesHz[i] / 1000.0)) < 0.25 ? 70.0 : 80.0;
    }
    const BandFit fit = fitBands(plainChannel(), measurement, flat, {}, bilinear);
    EXPECT_GT(highestOf(withBands(plainChannel(), fit.bands, bilinear)), 3.0);
    EXPECT_LT(fit.rmsAfterDb, 0.6 * fit.rmsBeforeDb);
}

TEST_F(BandFitting, HasNoBandsThatFightWhereItNeedsNone) {
    std::mt19937 random(11);
    for (int trial = 0; trial < 10; ++trial) {
        const LevelCurve measurement = wanderingCurve(random, 0.4);
        const BandFit fit = fitBands(plainChannel(), measurement, flat, {}, bilinear);
        std::vector<EqBandParams> on;
        std::ranges::copy_if(fit.bands, std::back_inserter(on),
                             [](const EqBandParams& band) { return band.off == 0; });
        EXPECT_FALSE(fightingBands(on)) << trial;
    }
}

TEST_F(BandFitting, CountsTheCrossoversOfTheChannel) {
    ChannelImageBlock channel = plainChannel();
    channel.crossovers[0] = {.enabled = 1, .kind = 0, .frequencyHz = 500, .order = 2};
    (void)computeCrossoverWords(bilinear, channel.crossovers[0], channel.crossoverWords[0]);
    const LevelCurve measurement{{20.0, 20000.0}, {80.0, 80.0}, {}};
    FitLimits limits;
    limits.fromHz = 500.0;
    const BandFit fit = fitBands(channel, measurement, flat, limits, bilinear);
    EXPECT_NEAR(fit.rmsBeforeDb, rmsOf(channel, measurement, flat, limits), 0.01);
    EXPECT_GT(fit.rmsBeforeDb, 0.3);
    EXPECT_LT(fit.rmsAfterDb, 0.1);
}

TEST_F(BandFitting, WithoutBandsToUseNothingIsDone) {
    std::mt19937 random(5);
    FitLimits limits;
    limits.bands.fill(false);
    const BandFit fit = fitBands(plainChannel(), wanderingCurve(random, 1.2), flat, limits, bilinear);
    EXPECT_TRUE(std::ranges::all_of(fit.bands, [](const EqBandParams& band) { return band.off == 1; }));
    EXPECT_EQ(fit.rmsBeforeDb, fit.rmsAfterDb);
}

TEST(FitRange, IsThePassBandHeldToTheMeasurement) {
    const LevelCurve wide{{10.0, 24000.0}, {80.0, 80.0}, {}};
    const LevelCurve narrow{{100.0, 3000.0}, {80.0, 80.0}, {}};
    ChannelImageBlock channel = plainChannel();
    EXPECT_EQ(defaultFitRange(channel, wide)->fromHz, 20.0);
    EXPECT_EQ(defaultFitRange(channel, wide)->toHz, 20000.0);
    EXPECT_EQ(defaultFitRange(channel, narrow)->fromHz, 100.0);
    EXPECT_EQ(defaultFitRange(channel, narrow)->toHz, 3000.0);
    channel.crossovers[0] = {.enabled = 1, .kind = 0, .frequencyHz = 250, .order = 4};
    channel.crossovers[1] = {.enabled = 1, .kind = 1, .frequencyHz = 2500, .order = 2};
    EXPECT_EQ(defaultFitRange(channel, narrow)->fromHz, 250.0);
    EXPECT_EQ(defaultFitRange(channel, narrow)->toHz, 2500.0);
    channel.crossovers[1].enabled = 0;
    EXPECT_EQ(defaultFitRange(channel, narrow)->toHz, 3000.0);
    channel.crossovers[0].frequencyHz = 4000;
    EXPECT_FALSE(defaultFitRange(channel, narrow));
}

}  // namespace
}  // namespace tessavo
