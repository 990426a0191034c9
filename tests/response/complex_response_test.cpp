#include "response/complex_response.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "dsp/filter_kind.h"
#include "response/long_channel.h"

// Golden numbers here are derived by hand; the derivation stands beside each.

namespace tessavo::test {
namespace {

constexpr double pi = std::numbers::pi;

FrequencyGrid gridOf(const std::vector<double>& hertz) {
    return *FrequencyGrid::of(hertz);
}

class ChannelResponse : public testing::Test {
 protected:
    ComplexResponse played(const std::vector<double>& hertz) {
        computeWords(block_, *methods_[0]);
        return ComplexResponse::ofChannel(playedModel(block_), gridOf(hertz));
    }
    ComplexResponse ideal(const std::vector<double>& hertz) {
        return ComplexResponse::ofChannel(idealModel(block_, *methods_[0]), gridOf(hertz));
    }

    FilterMethods methods_ = makeFilterMethods();
    ChannelImageBlock block_ = plainBlock();
};

TEST_F(ChannelResponse, OfNothingInCircuitIsExactlyOne) {
    const ComplexResponse response = played({0.0, 1e-300, 20.0, 1000.0, 24750.0, 49500.0, 1e9});
    for (std::size_t i = 0; i < response.size(); ++i) {
        EXPECT_EQ(response.at(i), 1.0);
        EXPECT_EQ(response.levelDb(i), 0.0);
        EXPECT_EQ(response.phaseDegrees(i), 0.0);
        EXPECT_EQ(response.unwrappedPhaseDegrees(i), 0.0);
        EXPECT_EQ(response.groupDelayMs(i), 0.0);
        EXPECT_EQ(response.growthPerHz(i), 0.0);
        EXPECT_FALSE(std::signbit(response.phaseDegrees(i)));
        EXPECT_FALSE(std::signbit(response.levelDb(i)));
        EXPECT_FALSE(std::signbit(response.groupDelayMs(i)));
    }
}

TEST_F(ChannelResponse, OfNoFrequenciesIsEmpty) {
    EXPECT_EQ(played({}).size(), 0U);
}

TEST_F(ChannelResponse, OfAGainWordOfZeroIsSilence) {
    block_.gainWord = 0;
    for (const int invert : {0, 1}) {
        block_.invertPhase = static_cast<std::uint8_t>(invert);
        block_.delaySamples = 7;
        const ComplexResponse response = played({0.0, 1000.0});
        for (std::size_t i = 0; i < response.size(); ++i) {
            EXPECT_EQ(response.levelDb(i), -std::numeric_limits<double>::infinity());
            EXPECT_TRUE(std::isnan(response.phaseDegrees(i)));
            EXPECT_TRUE(std::isnan(response.unwrappedPhaseDegrees(i)));
            EXPECT_TRUE(std::isnan(response.groupDelayMs(i)));
        }
    }
}

TEST_F(ChannelResponse, OfAGainWordIsItsLevel) {
    // 20 log10(0x07F17AF4 / 2^24) and 20 log10(0x00804DCE / 2^24), worked out with 30 digits.
    block_.gainWord = 0x07F17AF4;
    EXPECT_NEAR(played({1000.0}).levelDb(0), 18.000000020290924457, 1e-13);
    block_.gainWord = 0x00804DCE;
    EXPECT_NEAR(played({1000.0}).levelDb(0), -6.000000490675784574, 1e-13);
    block_.gainWord = 1;
    EXPECT_NEAR(played({1000.0}).levelDb(0), -144.494397918710973703, 1e-12);
}

TEST_F(ChannelResponse, OfAnInvertedPolarityTurnsByHalf) {
    block_.invertPhase = 1;
    const ComplexResponse response = played({0.0, 20.0, 24750.0, 30000.0});
    for (std::size_t i = 0; i < response.size(); ++i) {
        EXPECT_EQ(response.at(i), -1.0);
        EXPECT_EQ(response.levelDb(i), 0.0);
        EXPECT_EQ(response.phaseDegrees(i), 180.0);
        EXPECT_EQ(response.unwrappedPhaseDegrees(i), 180.0);
        EXPECT_EQ(response.groupDelayMs(i), 0.0);
    }
}

TEST_F(ChannelResponse, OfADelayIsItsPhase) {
    // n samples turn by 360 n f / 49500 degrees: 0.72 degrees a Hz for 99.
    block_.delaySamples = 99;
    const ComplexResponse response = played({0.0, 125.0, 250.0, 500.0, 1000.0, 10000.0, 24750.0});
    const std::array wrapped{0.0, -90.0, 180.0, 0.0, 0.0, 0.0, 180.0};
    const std::array unwrapped{0.0, -90.0, -180.0, -360.0, -720.0, -7200.0, -17820.0};
    for (std::size_t i = 0; i < response.size(); ++i) {
        EXPECT_EQ(response.levelDb(i), 0.0) << i;
        EXPECT_NEAR(response.phaseDegrees(i), wrapped.at(i), 1e-12) << i;
        EXPECT_NEAR(response.unwrappedPhaseDegrees(i), unwrapped.at(i), 1e-9) << i;
        EXPECT_EQ(response.groupDelayMs(i), 2.0) << i;
    }
}

TEST_F(ChannelResponse, OfTheLongestDelayKeepsItsDigits) {
    // 2^32 - 1 samples at 24750 Hz are as many half turns, an odd number; at 12375 Hz 3 quarters are left over.
    block_.delaySamples = 4294967295U;
    const ComplexResponse response = played({24750.0, 12375.0});
    EXPECT_EQ(response.at(0), -1.0);
    EXPECT_EQ(response.at(1), std::complex<double>(0.0, 1.0));
    EXPECT_EQ(response.groupDelayMs(0), 4294967295.0 / 49.5);
}

TEST_F(ChannelResponse, OfAVeryLongDelayIsAsExactAtAnyFrequency) {
    // 1.2e8 turns: what is left of them to 1e-8 degrees, as extended precision has it.
    LongChannel expected;
    expected.delaySamples = 500000000.0L;
    block_.delaySamples = 500000000;
    for (const double hertz : {12345.678, 7.654321, 24749.99}) {
        const auto degrees =
            static_cast<double>(std::arg(expected.at(hertz)) * 180.0L / std::numbers::pi_v<long double>);
        EXPECT_NEAR(played({hertz}).phaseDegrees(0), degrees, 1e-8) << hertz;
    }
}

TEST_F(ChannelResponse, PhaseIsHalfATurnAndNeverMinusThat) {
    // A peak leads a little below its frequency: inverted, that is a hair beyond half a turn, too little for a double.
    block_.invertPhase = 1;
    block_.bands[0] = {.type = 2, .frequencyHz = 1000, .gainDb = 6, .q = 1, .off = 0};
    const ComplexResponse response = ideal({1e-13, 0.01});
    EXPECT_LT(response.at(0).imag(), 0.0);
    EXPECT_EQ(response.phaseDegrees(0), 180.0);
    EXPECT_EQ(response.unwrappedPhaseDegrees(0), 180.0);
    EXPECT_LT(response.phaseDegrees(1), -179.0);
    EXPECT_NEAR(response.unwrappedPhaseDegrees(1), 180.0, 0.01);
}

TEST_F(ChannelResponse, OfAPeakHasItsGainAtItsFrequency) {
    // Where tan(w/2) = K the bilinear peak is V, a single: without phase, and the slope of the level is 0. Its group
    // delay there: d arg(1 - W^2 + i W V/Q) / dW at W = tan(w/2) / K = 1 is 2 Q / V for the numerator and 2 Q for the
    // denominator, and dW/dw is (1 + K^2) / (2 K). The coefficients are doubles: that is worth some 1e-8 degrees at 20 Hz.
    for (const float gainDb : {-18.0F, -3.0F, 0.0F, 6.0F, 18.0F}) {
        for (const float q : {0.1F, 1.0F, 20.0F}) {
            for (const int hertz : {20, 1000, 20000}) {
                block_.bands[0] = {.type = 2,
                                   .frequencyHz = static_cast<std::uint16_t>(hertz),
                                   .gainDb = gainDb,
                                   .q = q,
                                   .off = 0};
                const ComplexResponse response = ideal({static_cast<double>(hertz)});
                const double v =
                    static_cast<double>(static_cast<float>(std::pow(10.0, std::abs(gainDb) / 20.0)));
                EXPECT_NEAR(response.levelDb(0), std::copysign(20 * std::log10(v), gainDb), 1e-9);
                EXPECT_NEAR(response.phaseDegrees(0), 0.0, 1e-7);
                EXPECT_NEAR(response.growthPerHz(0), 0.0, 1e-8);
                const double k = std::tan(pi * hertz / 49500);
                const double samples = std::copysign(2 * q * (1 - 1 / v), gainDb) * (1 + k * k) / (2 * k);
                EXPECT_NEAR(response.groupDelayMs(0), samples / 49.5,
                            1e-9 * std::max(1.0, std::abs(samples)));
            }
        }
    }
}

TEST_F(ChannelResponse, OfShelvesHasTheirGainAtTheirEnd) {
    // A low shelf is V at 0 Hz and 1 at half the rate, a high shelf the other way round.
    const double v = static_cast<double>(static_cast<float>(std::pow(10.0, 12 / 20.0)));
    const double vDb = 20 * std::log10(v);
    block_.bands[0] = {.type = 1, .frequencyHz = 100, .gainDb = 12, .q = 0.7F, .off = 0};
    EXPECT_NEAR(ideal({0.0}).levelDb(0), vDb, 1e-9);
    EXPECT_NEAR(ideal({24750.0}).levelDb(0), 0.0, 1e-12);
    block_.bands[0] = {.type = 0, .frequencyHz = 5000, .gainDb = -12, .q = 0.7F, .off = 0};
    EXPECT_NEAR(ideal({0.0}).levelDb(0), 0.0, 1e-12);
    EXPECT_NEAR(ideal({24750.0}).levelDb(0), -vDb, 1e-12);
}

class Crossovers : public ChannelResponse {
 protected:
    // Warped for 44100 Hz, played at 49500 Hz: the corner lies where both tangents are equal.
    static constexpr double cornerHz = 1000.0 * 49500.0 / 44100.0;
    const double k_ = std::tan(pi * 1000.0 / 44100.0);

    void set(CrossoverKind kind, std::uint8_t order) {
        block_.crossovers[0] = {
            .enabled = 1, .kind = static_cast<std::uint8_t>(kind), .frequencyHz = 1000, .order = order};
    }
};

TEST_F(Crossovers, HaveHalfTheirPowerAndAQuarterTurnAtTheCorner) {
    // Butterworth, 2nd order: |H|^2 = 1/2, phase -90 degrees for a low-pass and +90 for a high-pass, group delay
    // sqrt(2) d(tan(w/2)/K)/dw = sqrt(2) (1 + K^2) / (2 K) samples for both. 4th order: all of it twice.
    const double samples = std::numbers::sqrt2 * (1 + k_ * k_) / (2 * k_);
    for (const std::uint8_t order : {std::uint8_t{2}, std::uint8_t{4}}) {
        const double sections = order == 4 ? 2.0 : 1.0;
        for (const CrossoverKind kind : {CrossoverKind::lowPass, CrossoverKind::highPass}) {
            set(kind, order);
            const ComplexResponse response = ideal({cornerHz});
            EXPECT_NEAR(response.levelDb(0), -sections * 10 * std::log10(2.0), 1e-11);
            const double quarter = kind == CrossoverKind::lowPass ? -90.0 : 90.0;
            EXPECT_NEAR(response.unwrappedPhaseDegrees(0), sections * quarter, 1e-9);
            EXPECT_NEAR(response.groupDelayMs(0), sections * samples / 49.5, 1e-10);
        }
    }
}

TEST_F(Crossovers, OfFourthOrderAreTheSectionTwice) {
    const std::vector<double> hertz = FrequencyGrid::logarithmic(20.0, 20000.0, 200).frequenciesHz();
    for (const CrossoverKind kind : {CrossoverKind::lowPass, CrossoverKind::highPass}) {
        set(kind, 2);
        const ComplexResponse once = played(hertz);
        set(kind, 4);
        const ComplexResponse twice = played(hertz);
        for (std::size_t i = 0; i < hertz.size(); ++i) {
            ASSERT_NEAR(twice.levelDb(i), 2 * once.levelDb(i), 1e-10);
            ASSERT_NEAR(twice.unwrappedPhaseDegrees(i), 2 * once.unwrappedPhaseDegrees(i), 1e-9);
            ASSERT_NEAR(twice.groupDelayMs(i), 2 * once.groupDelayMs(i), 1e-12);
        }
    }
}

TEST_F(Crossovers, OfAnyOtherOrderAreTheSectionOnce) {
    set(CrossoverKind::lowPass, 2);
    const double once = played({3000.0}).levelDb(0);
    for (const int order : {0, 1, 3, 5, 255}) {
        block_.crossovers[0].order = static_cast<std::uint8_t>(order);
        EXPECT_EQ(played({3000.0}).levelDb(0), once) << order;
    }
}

TEST_F(Crossovers, AreExactlyNothingWhereTheirZerosLie) {
    // b1 is -2 b0 to the last bit in the design; of the words, in those of the matched method.
    set(CrossoverKind::highPass, 4);
    computeWords(block_, *methods_[1]);
    EXPECT_EQ(ComplexResponse::ofChannel(playedModel(block_), gridOf({0.0})).at(0), 0.0);
    const ComplexResponse high = ideal({0.0, 49500.0, 99000.0, 1.0});
    for (const std::size_t i : {0U, 1U, 2U}) {
        EXPECT_EQ(high.levelDb(i), -std::numeric_limits<double>::infinity()) << i;
        EXPECT_TRUE(std::isnan(high.phaseDegrees(i)));
        EXPECT_TRUE(std::isnan(high.groupDelayMs(i)));
    }
    EXPECT_TRUE(std::isfinite(high.levelDb(3)));
    set(CrossoverKind::lowPass, 2);
    EXPECT_EQ(ideal({24750.0}).levelDb(0), -std::numeric_limits<double>::infinity());
}

TEST_F(Crossovers, KeepTheirDigitsCloseToTheirZeros) {
    // By hand: with W = tan(w/2) / K a high-pass is W^2 / sqrt(1 + W^4), a low-pass 1 / sqrt(1 + W^4). At 0.001 Hz the
    // plain formula has lost all but a few digits.
    const auto level = [&](double hertz, bool high) {
        const long double distance = high ? hertz : 24750.0 - hertz;
        const long double tangent = std::tan(std::numbers::pi_v<long double> * distance / 49500.0L);
        const long double w = high ? tangent / k_ : 1.0L / (tangent * k_);
        return static_cast<double>((high ? 40 * std::log10(w) : 0.0L) - 10 * std::log10(1 + w * w * w * w));
    };
    for (const double hertz : {1e-30, 1e-3, 0.1, 24749.0, 24749.999, 24749.99999999}) {
        set(CrossoverKind::highPass, 2);
        EXPECT_NEAR(ideal({hertz}).levelDb(0), level(hertz, true), 1e-9) << hertz;
        set(CrossoverKind::lowPass, 2);
        EXPECT_NEAR(ideal({hertz}).levelDb(0), level(hertz, false), 1e-9) << hertz;
    }
}

TEST_F(ChannelResponse, RepeatsEvery49500HzAndIsMirroredBetween) {
    std::mt19937 random(3);
    for (int round = 0; round < 30; ++round) {
        block_ = randomBlock(random, *methods_[0]);
        const ComplexResponse response =
            played({1000.0, 50500.0, 48500.0, 49500.0 * 1024 + 1000, 24750.0, 74250.0});
        EXPECT_EQ(response.at(1), response.at(0));
        EXPECT_EQ(response.at(2), std::conj(response.at(0)));
        EXPECT_EQ(response.at(3), response.at(0));
        EXPECT_EQ(response.levelDb(5), response.levelDb(4));
        EXPECT_EQ(response.groupDelayMs(2), response.groupDelayMs(0));
        EXPECT_EQ(response.growthPerHz(2), -response.growthPerHz(0));
    }
}

TEST_F(ChannelResponse, IsRealAtBothEnds) {
    std::mt19937 random(4);
    for (int round = 0; round < 60; ++round) {
        block_ = randomBlock(random, *methods_.at(static_cast<std::size_t>(round) % 3));
        const ComplexResponse response =
            ComplexResponse::ofChannel(playedModel(block_), gridOf({0.0, 24750.0}));
        for (const std::size_t i : {0U, 1U}) {
            EXPECT_EQ(response.at(i).imag(), 0.0);
            if (response.at(i) != 0.0) {
                EXPECT_TRUE(response.phaseDegrees(i) == 0.0 || response.phaseDegrees(i) == 180.0);
                // A level is even about both ends.
                EXPECT_EQ(response.growthPerHz(i), 0.0);
            }
        }
    }
}

TEST_F(ChannelResponse, UnwrapsAlikeOnACoarseAndOnADenseGrid) {
    std::mt19937 random(6);
    const std::vector<double> dense = FrequencyGrid::logarithmic(0.01, 24749.0, 60000).frequenciesHz();
    std::vector<double> coarse;
    for (std::size_t i = 0; i < dense.size(); i += 2999) {
        coarse.push_back(dense[i]);
    }
    for (int round = 0; round < 60; ++round) {
        IcoefficientGenerator& method = *methods_.at(static_cast<std::size_t>(round) % 3);
        const ChannelModel model = playedModel(randomBlock(random, method));
        const ComplexResponse all = ComplexResponse::ofChannel(model, gridOf(dense));
        for (std::size_t i = 1; i < dense.size(); ++i) {
            ASSERT_LT(std::abs(all.unwrappedPhaseDegrees(i) - all.unwrappedPhaseDegrees(i - 1)), 90.0)
                << round << " at " << dense[i];
        }
        const ComplexResponse few = ComplexResponse::ofChannel(model, gridOf(coarse));
        for (std::size_t i = 0; i < coarse.size(); ++i) {
            ASSERT_EQ(few.unwrappedPhaseDegrees(i), all.unwrappedPhaseDegrees(i * 2999));
        }
    }
}

TEST_F(ChannelResponse, UnwrapsFromAHalfTurnForEverySectionOfAHighPass) {
    block_.crossovers[0] = {.enabled = 1, .kind = 0, .frequencyHz = 1000, .order = 4};
    EXPECT_NEAR(played({0.01}).unwrappedPhaseDegrees(0), 360.0, 0.01);
    block_.invertPhase = 1;
    EXPECT_NEAR(played({0.01}).unwrappedPhaseDegrees(0), 540.0, 0.01);
    EXPECT_NEAR(played({0.01}).phaseDegrees(0), 180.0, 0.01);
}

TEST_F(ChannelResponse, IsNotDefinedOnAPole) {
    // A double pole at 0 Hz, and beside it one band that has both a pole and a zero there.
    for (const double b1 : {0.0, -2.0}) {
        ChannelModel model;
        model.sections.push_back({.b0 = 1, .b1 = b1, .b2 = b1 / -2, .a1 = -2, .a2 = 1});
        const ComplexResponse response = ComplexResponse::ofChannel(model, gridOf({0.0, 1000.0}));
        EXPECT_TRUE(std::isnan(response.levelDb(0)));
        EXPECT_TRUE(std::isnan(response.phaseDegrees(0)));
        EXPECT_TRUE(std::isnan(response.unwrappedPhaseDegrees(0)));
        EXPECT_TRUE(std::isfinite(response.levelDb(1)));
    }
}

TEST_F(ChannelResponse, TellsTheRoundingOfItsCoefficients) {
    // At 20 Hz with a high Q a word's last bit is heard most: b0 to b2 step by 2^-28.
    block_.bands[0] = {.type = 2, .frequencyHz = 20, .gainDb = 6, .q = 20, .off = 0};
    const std::vector<double> hertz{20.0, 100.0, 10000.0};
    const ComplexResponse words = played(hertz);
    const ComplexResponse exact = ideal(hertz);
    const std::vector<double> errors = roundingErrorDb(words, exact);
    ASSERT_EQ(errors.size(), hertz.size());
    const LongChannel longWords = LongChannel::played(block_);
    const Section s = designedBand(*methods_[0], block_.bands[0]);
    LongChannel longExact;
    longExact.sections.push_back({s.b0, s.b1, s.b2, s.a1, s.a2});
    for (std::size_t i = 0; i < hertz.size(); ++i) {
        const double expected =
            decibels(std::abs(longWords.at(hertz[i]))) - decibels(std::abs(longExact.at(hertz[i])));
        EXPECT_NEAR(errors[i], expected, 1e-9) << hertz[i];
    }
    EXPECT_GT(std::abs(errors[0]), 1e-4);
    EXPECT_LT(std::abs(errors[2]), 1e-6);
    block_.gainWord = 0;
    EXPECT_TRUE(std::isnan(roundingErrorDb(played({20.0}), ideal({20.0}))[0]));
}

}  // namespace
}  // namespace tessavo::test
