#include <cmath>
#include <complex>
#include <gtest/gtest.h>
#include <numbers>
#include <random>

#include "dsp/golden_words.h"

namespace tessavo::test {
namespace {

constexpr std::uint8_t highShelf = 0;
constexpr std::uint8_t lowShelf = 1;
constexpr std::uint8_t peak = 2;

std::complex<double> numeratorOf(const BiquadWords& section, double angle) {
    const std::complex<double> z = std::polar(1.0, -angle);
    return (static_cast<double>(section.b0) + static_cast<double>(section.b1) * z +
            static_cast<double>(section.b2) * z * z) *
           std::ldexp(1.0, -28);
}

std::complex<double> denominatorOf(const BiquadWords& section, double angle) {
    const std::complex<double> z = std::polar(1.0, -angle);
    return 1.0 + (static_cast<double>(section.a1) * z + static_cast<double>(section.a2) * z * z) *
                     std::ldexp(1.0, -30);
}

double decibels(const BiquadWords& section, double angle) {
    return 20 * std::log10(std::abs(numeratorOf(section, angle)) / std::abs(denominatorOf(section, angle)));
}

double angleAt(double frequencyHz, double samplingRateHz) {
    return 2 * std::numbers::pi * frequencyHz / samplingRateHz;
}

constexpr std::array<std::uint16_t, 9> frequencies{60, 100, 250, 1000, 2500, 6000, 12000, 16000, 20000};
constexpr std::array<float, 5> qualities{0.3F, 0.5F, 0.7F, 1.0F, 5.0F};

class BandResponse : public ::testing::TestWithParam<Generator> {
 protected:
    [[nodiscard]] double rate() const { return GetParam() == Generator::bzt ? 49500.0 : 44100.0; }
    BiquadWords band(std::uint8_t type, std::uint16_t frequencyHz, float gainDb, float q) {
        const Computed result = computeBand(*generator_, type, frequencyHz, gainDb, q);
        EXPECT_TRUE(result.converted) << int{type} << " " << frequencyHz << " " << gainDb << " " << q;
        return result.section;
    }
    std::unique_ptr<IcoefficientGenerator> generator_ = makeGenerator(GetParam());
};

INSTANTIATE_TEST_SUITE_P(, BandResponse, ::testing::ValuesIn(allGenerators));

TEST_P(BandResponse, NoGainMakesEveryTypeFlat) {
    for (const std::uint8_t type : Codes{highShelf, lowShelf, peak}) {
        for (const std::uint16_t frequencyHz : frequencies) {
            for (const float q : qualities) {
                for (const float gainDb : {0.0F, -0.0F}) {
                    const BiquadWords section = band(type, frequencyHz, gainDb, q);
                    EXPECT_EQ(section.b0, 268435456);
                    EXPECT_EQ(section.b1, section.a1 / 4);
                    EXPECT_EQ(section.b2, section.a2 / 4);
                }
            }
        }
    }
}

TEST_P(BandResponse, CutIsTheInverseOfBoost) {
    for (const std::uint8_t type : Codes{highShelf, lowShelf, peak}) {
        for (const std::uint16_t frequencyHz : frequencies) {
            for (const float q : qualities) {
                const BiquadWords boost = band(type, frequencyHz, 11.0F, q);
                const BiquadWords cut = band(type, frequencyHz, -11.0F, q);
                if (GetParam() == Generator::mixed) {
                    continue;  // the mean of two inverses is not the inverse of the mean
                }
                for (const double at : {1000.0, 3000.0, 8000.0, 15000.0, 21000.0}) {
                    const double angle = angleAt(at, rate());
                    EXPECT_NEAR(decibels(boost, angle) + decibels(cut, angle), 0.0, 1e-4)
                        << int{type} << " " << frequencyHz << " Q " << q << " at " << at;
                }
            }
        }
    }
}

TEST_P(BandResponse, BoostAndCutPullTheCentreOfAPeakApart) {
    for (const std::uint16_t frequencyHz : frequencies) {
        const double angle = angleAt(frequencyHz, rate());
        const double boost = decibels(band(peak, frequencyHz, 9.0F, 2.0F), angle);
        const double cut = decibels(band(peak, frequencyHz, -9.0F, 2.0F), angle);
        EXPECT_GT(boost, 4.0) << frequencyHz;
        EXPECT_LT(cut, -4.0) << frequencyHz;
    }
}

template <typename Generator>
class ResponseOf : public ::testing::Test {
 protected:
    BiquadWords band(std::uint8_t type, std::uint16_t frequencyHz, float gainDb, float q) {
        const Computed result = computeBand(generator_, type, frequencyHz, gainDb, q);
        EXPECT_TRUE(result.converted);
        return result.section;
    }
    Generator generator_;
};

using BilinearResponse = ResponseOf<coeffBZT2>;
using MatchedResponse = ResponseOf<coeffMZT>;

TEST_F(BilinearResponse, APeakHasItsGainAtTheCentreAndNoneAtTheEnds) {
    for (const float gainDb : {18.0F, 6.0F, -6.0F, -18.0F}) {
        for (const std::uint16_t frequencyHz : frequencies) {
            for (const float q : qualities) {
                const BiquadWords section = band(peak, frequencyHz, gainDb, q);
                EXPECT_NEAR(decibels(section, angleAt(frequencyHz, 49500)), static_cast<double>(gainDb),
                            0.01);
                EXPECT_NEAR(decibels(section, 0.0), 0.0, 0.02);
                EXPECT_NEAR(decibels(section, std::numbers::pi), 0.0, 0.001);
            }
        }
    }
}

TEST_F(BilinearResponse, ALowShelfHasItsGainAtZeroAndNoneAtHalfTheRate) {
    for (const float gainDb : {18.0F, 6.0F, -6.0F, -18.0F}) {
        for (const std::uint16_t frequencyHz : Frequencies{100, 1000, 8000}) {
            const BiquadWords section = band(lowShelf, frequencyHz, gainDb, 0.7F);
            EXPECT_NEAR(decibels(section, 0.0), static_cast<double>(gainDb), 0.02);
            EXPECT_NEAR(decibels(section, std::numbers::pi), 0.0, 0.001);
        }
    }
}

TEST_F(BilinearResponse, AHighShelfHasNoGainAtZeroAndItsGainAtHalfTheRate) {
    for (const float gainDb : {12.0F, 6.0F, -6.0F, -12.0F}) {
        for (const std::uint16_t frequencyHz : Frequencies{100, 1000, 8000}) {
            const BiquadWords section = band(highShelf, frequencyHz, gainDb, 0.7F);
            EXPECT_NEAR(decibels(section, 0.0), 0.0, 0.02);
            EXPECT_NEAR(decibels(section, std::numbers::pi), static_cast<double>(gainDb), 0.001);
        }
    }
}

TEST_F(BilinearResponse, AShelfHasTheGainOfItsPrototypeAtTheCorner) {
    // |H(corner)|^2 = V + Q^2 (V - 1)^2 for both shelves.
    for (const std::uint8_t type : Codes{lowShelf, highShelf}) {
        for (const float gainDb : {12.0F, 6.0F, 3.0F}) {
            const double v = std::pow(10.0, static_cast<double>(gainDb) / 20);
            for (const float q : qualities) {
                const double power = v + std::pow(static_cast<double>(q) * (v - 1), 2);
                const BiquadWords boost = band(type, 2000, gainDb, q);
                const BiquadWords cut = band(type, 2000, -gainDb, q);
                EXPECT_NEAR(decibels(boost, angleAt(2000, 49500)), 10 * std::log10(power), 0.01);
                EXPECT_NEAR(decibels(cut, angleAt(2000, 49500)), -10 * std::log10(power), 0.01);
            }
        }
    }
}

TEST_F(BilinearResponse, CrossoversAreThreeDecibelsDownAtTheCornerAndFlatInTheirBand) {
    for (const std::uint16_t frequencyHz : frequencies) {
        const BiquadWords lowPass = computeCrossover(generator_, 1, frequencyHz).section;
        const BiquadWords highPass = computeCrossover(generator_, 0, frequencyHz).section;
        const double corner = angleAt(frequencyHz, 44100);
        EXPECT_NEAR(decibels(lowPass, corner), -3.0103, 0.02) << frequencyHz;
        EXPECT_NEAR(decibels(highPass, corner), -3.0103, 0.02) << frequencyHz;
        EXPECT_NEAR(decibels(lowPass, 0.0), 0.0, 0.02) << frequencyHz;
        EXPECT_NEAR(decibels(highPass, std::numbers::pi), 0.0, 0.001) << frequencyHz;
        EXPECT_LT(std::abs(numeratorOf(lowPass, std::numbers::pi)), 1e-7);
        EXPECT_LT(std::abs(numeratorOf(highPass, 0.0)), 1e-7);
    }
}

TEST_F(MatchedResponse, AHighPassAlwaysHasTheSameNumerator) {
    for (const std::uint16_t frequencyHz : Frequencies{0, 1, 20, 1000, 20000, 22050, 24750, 32767, 65535}) {
        const BiquadWords section = computeCrossover(generator_, 0, frequencyHz).section;
        EXPECT_EQ(section.b0, 1 << 28);
        EXPECT_EQ(section.b1, -(1 << 29));
        EXPECT_EQ(section.b2, 1 << 28);
    }
}

TEST_F(MatchedResponse, ALowPassAlwaysStartsWithOneAndHasItsZerosJustInsideMinusOne) {
    // 2 e^(-T) and e^(-2T) with T = 1/44100, in units of 2^-28, by mpmath.
    for (const std::uint16_t frequencyHz : Frequencies{0, 1, 20, 1000, 20000, 22050, 24750, 32767, 65535}) {
        const BiquadWords section = computeCrossover(generator_, 1, frequencyHz).section;
        EXPECT_EQ(section.b0, 1 << 28);
        EXPECT_NEAR(section.b1, 536858738, 1);
        EXPECT_NEAR(section.b2, 268423282, 1);
    }
}

TEST_F(MatchedResponse, EveryBandStartsWithOne) {
    for (const std::uint8_t type : Codes{highShelf, lowShelf, peak}) {
        for (const float gainDb : {15.0F, -15.0F}) {
            for (const std::uint16_t frequencyHz : frequencies) {
                EXPECT_EQ(band(type, frequencyHz, gainDb, 0.8F).b0, 1 << 28);
            }
        }
    }
}

TEST_F(MatchedResponse, CutExchangesNumeratorAndDenominatorToTheLastBit) {
    for (const std::uint8_t type : Codes{highShelf, lowShelf, peak}) {
        for (const float gainDb : {0.1F, 6.0F, 15.0F}) {
            for (const std::uint16_t frequencyHz : frequencies) {
                for (const float q : qualities) {
                    const BiquadWords boost = band(type, frequencyHz, gainDb, q);
                    const BiquadWords cut = band(type, frequencyHz, -gainDb, q);
                    EXPECT_EQ(cut.b1, boost.a1 / 4);
                    EXPECT_EQ(cut.b2, boost.a2 / 4);
                    EXPECT_EQ(boost.b1, cut.a1 / 4);
                    EXPECT_EQ(boost.b2, cut.a2 / 4);
                }
            }
        }
    }
}

TEST_F(MatchedResponse, AComplexPairTakesTheRadiusAndARealPairItsSquare) {
    const double omegaT = 2 * std::numbers::pi * 1000 / 44100;
    const double fromRealPair = std::ldexp(band(peak, 1000, 0.0F, 0.5F).a2, -30);
    EXPECT_NEAR(fromRealPair, std::exp(-2 * omegaT), 1e-8);
    const auto q = 0.51F;
    const double fromComplexPair = std::ldexp(band(peak, 1000, 0.0F, q).a2, -30);
    EXPECT_NEAR(fromComplexPair, std::exp(-omegaT / (2 * static_cast<double>(q))), 1e-8);
}

TEST_F(MatchedResponse, NumeratorAndDenominatorChooseTheirBranchOnTheirOwn) {
    // +12 dB: the peak's numerator has Q/V = 0.25 (real pair), its denominator Q = 1 (complex pair).
    const double omegaT = 2 * std::numbers::pi * 2000 / 44100;
    const auto v = static_cast<double>(static_cast<float>(std::pow(10.0, 12.0 / 20)));
    const BiquadWords section = band(peak, 2000, 12.0F, 1.0F);
    EXPECT_NEAR(std::ldexp(section.b2, -28), std::exp(-v * omegaT), 1e-8);
    EXPECT_NEAR(std::ldexp(section.a2, -30), std::exp(-omegaT / 2), 1e-8);
}

TEST_F(MatchedResponse, ARealPairSumsItsTwoPoles) {
    const double omega = 2 * std::numbers::pi * 1000;
    const double t = 1.0 / 44100;
    const double sigma = -omega / (2 * 0.25);
    const double root = std::sqrt(sigma * sigma - omega * omega);
    const BiquadWords section = band(peak, 1000, 0.0F, 0.25F);
    EXPECT_NEAR(std::ldexp(section.a1, -30), -(std::exp((sigma + root) * t) + std::exp((sigma - root) * t)),
                1e-8);
    EXPECT_NEAR(std::ldexp(section.a2, -30), std::exp(2 * sigma * t), 1e-8);
}

TEST_F(MatchedResponse, AHighShelfLiesLowerByItsWholeGain) {
    // Low corner and real pairs on both sides, where matched and bilinear shapes agree closely.
    coeffBZT2 bilinear;
    for (const float gainDb : {6.0F, 10.0F}) {
        const BiquadWords matched = band(highShelf, 100, gainDb, 0.3F);
        const BiquadWords reference = computeBand(bilinear, highShelf, 100, gainDb, 0.3F).section;
        const double lower = decibels(matched, 0.0) - decibels(reference, 0.0);
        EXPECT_NEAR(lower, -static_cast<double>(gainDb), 0.3);
    }
}

}  // namespace
}  // namespace tessavo::test
