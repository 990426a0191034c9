#include "filtertext/cookbook.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>

#include "dsp/filter_designs.h"
#include "dsp/filter_kind.h"
#include "filtertext/filter_text.h"

namespace tessavo {
namespace {

constexpr std::array bandShapes{FilterShape::peak, FilterShape::lowShelf, FilterShape::highShelf};

Section designed(const DeviceFilter& filter) {
    if (!isBand(filter.shape)) {
        return bilinearCrossover({filter.shape == FilterShape::lowPass, filter.frequencyHz},
                                 designSamplingRateHz);
    }
    const EqBandParams band = bandOf(filter, false);
    BandRequest request;
    request.type = band.type;
    request.frequencyHz = filter.frequencyHz;
    request.gainDb = filter.gainDb;
    request.q = filter.q;
    request.linearGain = std::pow(10.0, std::abs(filter.gainDb) / 20.0);
    return bilinearBand(request, responseSamplingRateHz).value();
}

/// Largest difference of the levels of two sections, from 20 Hz to 20 kHz.
double largestDifferenceDb(const Section& one, const Section& other) {
    double largest = 0.0;
    for (double hz = 20.0; hz <= 20000.0; hz *= 1.01) {
        largest = std::max(largest, std::abs(sectionLevelDb(one, hz, responseSamplingRateHz) -
                                             sectionLevelDb(other, hz, responseSamplingRateHz)));
    }
    return largest;
}

TEST(Cookbook, EveryBandOfTheTargetRespondsAsTheCookbookFilterThatItWasConvertedFrom) {
    for (const FilterShape shape : bandShapes) {
        for (const double frequencyHz : {20.0, 63.5, 1000.0, 7777.7, 20000.0}) {
            for (const double gainDb : {-18.0, -6.3, -0.1, 0.0, 2.5, 18.0}) {
                for (const double q : {0.1, 0.5, 0.707, 3.0, 20.0}) {
                    const CookbookFilter meant{shape, frequencyHz, gainDb, q};
                    const Section wanted = cookbookSection(meant, textSamplingRateHz);
                    EXPECT_LT(largestDifferenceDb(wanted, designed(toDevice(meant, textSamplingRateHz))),
                              1e-6)
                        << shapeWord(shape) << ' ' << frequencyHz << ' ' << gainDb << ' ' << q;
                }
            }
        }
    }
}

TEST(Cookbook, ACrossoverPlaysWhereTheTextSays) {
    for (const FilterShape shape : {FilterShape::lowPass, FilterShape::highPass}) {
        for (const double frequencyHz : {30.0, 80.0, 2000.0, 15000.0}) {
            const CookbookFilter meant{shape, frequencyHz, 0.0, std::numbers::sqrt2 / 2.0};
            const DeviceFilter device = toDevice(meant, textSamplingRateHz);
            EXPECT_NEAR(device.frequencyHz, frequencyHz * 44100.0 / 49500.0, 1e-9);
            EXPECT_LT(largestDifferenceDb(cookbookSection(meant, textSamplingRateHz), designed(device)),
                      1e-6);
        }
    }
}

TEST(Cookbook, TheCookbooksPeakHasItsGainAtItsFrequencyAndHalfOfItAtTheEdgesOfItsBandwidth) {
    const double gainDb = 12.0;
    const double octaves = 1.5;
    const double q = peakQOfBandwidth(octaves, 1000.0, textSamplingRateHz);
    const Section peak = cookbookSection({FilterShape::peak, 1000.0, gainDb, q}, textSamplingRateHz);
    EXPECT_NEAR(sectionLevelDb(peak, 1000.0, textSamplingRateHz), gainDb, 1e-9);
    // The edges of the analog prototype lie an octave and a half apart; near 1 kHz the warp moves them little.
    EXPECT_NEAR(sectionLevelDb(peak, 1000.0 * std::exp2(octaves / 2.0), textSamplingRateHz), gainDb / 2.0,
                0.02);
    EXPECT_NEAR(sectionLevelDb(peak, 1000.0 * std::exp2(-octaves / 2.0), textSamplingRateHz), gainDb / 2.0,
                0.02);
}

TEST(Cookbook, AShelfHasHalfItsGainAtItsCentreAndAllOfItAtItsEnd) {
    for (const double gainDb : {-12.0, 12.0}) {
        const Section low = cookbookSection({FilterShape::lowShelf, 500.0, gainDb, 0.7}, textSamplingRateHz);
        EXPECT_NEAR(sectionLevelDb(low, 0.0, textSamplingRateHz), gainDb, 1e-9);
        EXPECT_NEAR(sectionLevelDb(low, 500.0, textSamplingRateHz), gainDb / 2.0, 1e-9);
        EXPECT_NEAR(sectionLevelDb(low, textSamplingRateHz / 2.0, textSamplingRateHz), 0.0, 1e-9);
        const Section high =
            cookbookSection({FilterShape::highShelf, 500.0, gainDb, 0.7}, textSamplingRateHz);
        EXPECT_NEAR(sectionLevelDb(high, 0.0, textSamplingRateHz), 0.0, 1e-9);
        EXPECT_NEAR(sectionLevelDb(high, 500.0, textSamplingRateHz), gainDb / 2.0, 1e-9);
        EXPECT_NEAR(sectionLevelDb(high, textSamplingRateHz / 2.0, textSamplingRateHz), gainDb, 1e-9);
    }
}

TEST(Cookbook, WhatTheTargetHoldsComesBackFromTheCookbooksForm) {
    for (const FilterShape shape : {FilterShape::peak, FilterShape::lowShelf, FilterShape::highShelf,
                                    FilterShape::lowPass, FilterShape::highPass}) {
        for (const double rate : {44100.0, 49500.0, 768000.0}) {
            for (const double gainDb : {-18.0, -0.1, 0.0, 18.0}) {
                const bool band = isBand(shape);
                const DeviceFilter device{shape, 20000.0, band ? gainDb : 0.0, band ? 0.1 : 0.0, 2};
                const CookbookFilter meant = toCookbook(device, rate);
                const DeviceFilter back = toDevice(meant, rate);
                EXPECT_EQ(back.shape, device.shape);
                EXPECT_NEAR(back.frequencyHz, device.frequencyHz, 1e-6) << rate;
                EXPECT_EQ(back.gainDb, device.gainDb);
                EXPECT_NEAR(back.q, device.q, 1e-12);
                // Whatever the target holds can be told to a program that runs at its rate.
                EXPECT_TRUE(rate < 49500.0 || isConvertible(meant, rate))
                    << shapeWord(shape) << ' ' << gainDb;
            }
        }
    }
}

TEST(Cookbook, SlopeAndQOfAShelfAreTheSameThingTwice) {
    for (const double gainDb : {-15.0, 0.0, 6.0}) {
        EXPECT_NEAR(shelfQOfSlope(1.0, gainDb).value(), std::numbers::sqrt2 / 2.0, 1e-12);
        for (const double slope : {0.1, 0.5, 0.9, 1.0, 1.05}) {
            const double q = shelfQOfSlope(slope, gainDb).value();
            EXPECT_NEAR(shelfSlopeOfQ(q, gainDb).value(), slope, 1e-9);
        }
    }
    // At 6 dB A is 1.4125: 1/Q^2 = (1.4125 + 0.7080) (1/0.5 - 1) + 2 = 4.1205.
    EXPECT_NEAR(shelfQOfSlope(slopeOfDecibels(6.0), 6.0).value(), 1.0 / std::sqrt(4.120492), 1e-5);
    // At 12 dB A + 1/A is 2.496, and no shelf is as steep as S = 100; every Q belongs to some slope.
    EXPECT_FALSE(shelfQOfSlope(100.0, 12.0).has_value());
    EXPECT_NEAR(shelfQOfSlope(shelfSlopeOfQ(100.0, 12.0).value(), 12.0).value(), 100.0, 1e-6);
}

TEST(Cookbook, ACornerLiesBeyondTheCentreOfItsShelf) {
    // 12 dB at slope 1 put corner and centre 10^(12/80) = 1.4125 apart.
    EXPECT_NEAR(shelfCentre(FilterShape::lowShelf, 100.0, 12.0, 1.0), 141.2538, 1e-3);
    EXPECT_NEAR(shelfCentre(FilterShape::lowShelf, 100.0, -12.0, 1.0), 141.2538, 1e-3);
    EXPECT_NEAR(shelfCentre(FilterShape::highShelf, 100.0, 12.0, 1.0), 70.7946, 1e-3);
    EXPECT_NEAR(shelfCentre(FilterShape::highShelf, 100.0, 12.0, 0.5), 50.1187, 1e-3);
}

TEST(Cookbook, WhatHasNoResponseIsNotConvertible) {
    const CookbookFilter good{FilterShape::peak, 1000.0, 3.0, 1.0};
    EXPECT_TRUE(isConvertible(good, textSamplingRateHz));
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double endless = std::numeric_limits<double>::infinity();
    for (const double bad : {0.0, -1.0, 24750.0, 1e9, nan, endless}) {
        CookbookFilter filter = good;
        filter.frequencyHz = bad;
        EXPECT_FALSE(isConvertible(filter, textSamplingRateHz)) << bad;
    }
    for (const double bad : {0.0, -1.0, nan, endless}) {
        CookbookFilter filter = good;
        filter.q = bad;
        EXPECT_FALSE(isConvertible(filter, textSamplingRateHz)) << bad;
    }
    for (const double bad : {nan, endless, -endless}) {
        CookbookFilter filter = good;
        filter.gainDb = bad;
        EXPECT_FALSE(isConvertible(filter, textSamplingRateHz)) << bad;
        EXPECT_FALSE(isConvertible(good, bad)) << bad;
    }
}

TEST(Cookbook, AWiderOrHigherFilterWeighsMore) {
    const auto weight = [](double gainDb, double q) {
        return filterWeight({FilterShape::peak, 1000.0, gainDb, q}, textSamplingRateHz);
    };
    EXPECT_EQ(weight(0.0, 1.0), 0.0);
    EXPECT_NEAR(weight(6.0, 1.0), weight(-6.0, 1.0), 1e-9);
    EXPECT_GT(weight(6.0, 1.0), weight(5.9, 1.0));
    EXPECT_GT(weight(6.0, 1.0), weight(6.0, 1.1));
    // A shelf over half of the ten octaves weighs about half of its gain over them.
    const double shelf = filterWeight({FilterShape::lowShelf, 632.0, 6.0, 0.707}, textSamplingRateHz);
    EXPECT_NEAR(shelf, 6.0 * std::log2(1000.0) / 2.0, 0.5);
    const double pass = filterWeight({FilterShape::highPass, 1e-3, 0.0, 0.707}, textSamplingRateHz);
    EXPECT_TRUE(std::isfinite(pass));
}

}  // namespace
}  // namespace tessavo
