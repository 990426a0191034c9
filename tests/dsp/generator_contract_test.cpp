#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <numbers>
#include <random>
#include <string>
#include <type_traits>

#include "dsp/band_types.h"
#include "dsp/filter_kind.h"
#include "dsp/golden_words.h"

namespace tessavo::test {
namespace {

static_assert(std::is_abstract_v<IcoefficientGenerator> &&
              std::has_virtual_destructor_v<IcoefficientGenerator>);
static_assert(std::is_base_of_v<IcoefficientGenerator, coeffBZT2> &&
              std::is_base_of_v<IcoefficientGenerator, coeffMZT> &&
              std::is_base_of_v<IcoefficientGenerator, coeffBZTMZT>);
static_assert(!std::is_base_of_v<coeffBZT2, coeffBZTMZT> && !std::is_base_of_v<coeffMZT, coeffBZTMZT>);
static_assert(static_cast<int>(BandType::highShelf) == 0 && static_cast<int>(BandType::lowShelf) == 1 &&
              static_cast<int>(BandType::peak) == 2);
static_assert(static_cast<int>(CrossoverKind::highPass) == 0 &&
              static_cast<int>(CrossoverKind::lowPass) == 1);

class GeneratorContract : public ::testing::TestWithParam<Generator> {
 protected:
    BiquadWords band(std::int32_t kindWord, float gainDb, float q, std::int32_t spare = 0) {
        BiquadWords out{untouched, untouched, untouched, untouched, untouched};
        generator_->computeBand(kindWord, gainDb, q, spare, out);
        return out;
    }
    BiquadWords crossover(std::int32_t kindWord, std::int32_t spare = 0) {
        BiquadWords out{untouched, untouched, untouched, untouched, untouched};
        generator_->computeCrossover(kindWord, spare, out);
        return out;
    }
    std::unique_ptr<IcoefficientGenerator> generator_ = makeGenerator(GetParam());
};

INSTANTIATE_TEST_SUITE_P(, GeneratorContract, ::testing::ValuesIn(allGenerators));

TEST_P(GeneratorContract, TheSpareArgumentOfABandChangesNothing) {
    for (const std::uint8_t type : Codes{0, 1, 2}) {
        const BiquadWords plain = band(kindWordOf(type, 0, 1000), 4.0F, 0.9F, 0);
        for (const std::int32_t spare : {1, -1, 0x01020304, std::numeric_limits<std::int32_t>::min()}) {
            EXPECT_EQ(band(kindWordOf(type, 0, 1000), 4.0F, 0.9F, spare), plain);
        }
    }
}

TEST_P(GeneratorContract, TheSpareByteOfABandChangesNothing) {
    for (const std::uint8_t type : Codes{0, 1, 2}) {
        const BiquadWords plain = band(kindWordOf(type, 0, 1000), 4.0F, 0.9F);
        for (const std::uint8_t spare : Codes{1, 0x7F, 0x80, 0xFF}) {
            EXPECT_EQ(band(kindWordOf(type, spare, 1000), 4.0F, 0.9F), plain);
        }
    }
}

TEST_P(GeneratorContract, TheSpareArgumentAndTheEnabledByteOfACrossoverChangeNothing) {
    for (const std::uint8_t kind : Codes{0, 1}) {
        const BiquadWords plain = crossover(kindWordOf(0, kind, 1000));
        for (const std::uint8_t enabled : Codes{1, 0x80, 0xFF}) {
            EXPECT_EQ(crossover(kindWordOf(enabled, kind, 1000)), plain);
        }
        for (const std::int32_t spare : {2, 4, -1, std::numeric_limits<std::int32_t>::min()}) {
            EXPECT_EQ(crossover(kindWordOf(0, kind, 1000), spare), plain);
        }
    }
}

TEST_P(GeneratorContract, EveryNonZeroDirectionIsALowPass) {
    const BiquadWords lowPass = crossover(kindWordOf(0, 1, 1000));
    EXPECT_NE(crossover(kindWordOf(0, 0, 1000)), lowPass);
    for (const std::uint8_t kind : Codes{2, 0x7F, 0x80, 0xFF}) {
        EXPECT_EQ(crossover(kindWordOf(0, kind, 1000)), lowPass);
    }
}

TEST_P(GeneratorContract, EveryParameterOfABandChangesTheResult) {
    for (const float gainDb : {5.0F, -5.0F}) {
        const BiquadWords plain = band(kindWordOf(2, 0, 1000), gainDb, 1.0F);
        EXPECT_NE(band(kindWordOf(1, 0, 1000), gainDb, 1.0F), plain);
        EXPECT_NE(band(kindWordOf(0, 0, 1000), gainDb, 1.0F), plain);
        EXPECT_NE(band(kindWordOf(1, 0, 1000), gainDb, 1.0F), band(kindWordOf(0, 0, 1000), gainDb, 1.0F));
        for (const std::uint8_t type : Codes{0, 1, 2}) {
            const BiquadWords ofType = band(kindWordOf(type, 0, 1000), gainDb, 1.0F);
            EXPECT_NE(band(kindWordOf(type, 0, 1001), gainDb, 1.0F), ofType) << "frequency";
            EXPECT_NE(band(kindWordOf(type, 0, 1000), gainDb + 0.1F, 1.0F), ofType) << "gain";
            EXPECT_NE(band(kindWordOf(type, 0, 1000), -gainDb, 1.0F), ofType) << "sign of the gain";
            EXPECT_NE(band(kindWordOf(type, 0, 1000), gainDb, 1.1F), ofType) << "Q";
        }
    }
}

TEST_P(GeneratorContract, EveryParameterOfACrossoverChangesTheResult) {
    for (const std::uint8_t kind : Codes{0, 1}) {
        const BiquadWords plain = crossover(kindWordOf(0, kind, 1000));
        EXPECT_NE(crossover(kindWordOf(0, static_cast<std::uint8_t>(1 - kind), 1000)), plain);
        EXPECT_NE(crossover(kindWordOf(0, kind, 1001)), plain);
    }
}

TEST_P(GeneratorContract, UnknownTypesPassEverythingThroughAndSayFalseWithoutAWarning) {
    for (int type = 3; type < 256; ++type) {
        const Computed result = computeBand(*generator_, static_cast<std::uint8_t>(type), 1000, 6.0F, 1.0F);
        ASSERT_FALSE(result.converted) << type;
        ASSERT_EQ(wordsOf(result.section), (Words{1 << 28, 0, 0, 0, 0})) << type;
    }
    EXPECT_TRUE(generator_->warnUnstable());
}

TEST_P(GeneratorContract, KeepsNoStateBetweenCalls) {
    const BiquadWords first = band(kindWordOf(1, 0, 300), -7.3F, 0.6F);
    const BiquadWords firstCrossover = crossover(kindWordOf(1, 1, 300));
    std::mt19937 random(3);
    for (int i = 0; i < 300; ++i) {
        const auto word = static_cast<std::int32_t>(random());
        band(word, static_cast<float>(word % 40), static_cast<float>(random() % 100) / 10.0F);
        crossover(word);
        ASSERT_EQ(band(kindWordOf(1, 0, 300), -7.3F, 0.6F), first);
        ASSERT_EQ(crossover(kindWordOf(1, 1, 300)), firstCrossover);
    }
}

TEST_P(GeneratorContract, RandomArgumentsNeverTouchWordsBehindAFailure) {
    std::mt19937_64 random(11);
    int failures = 0;
    for (int i = 0; i < 20000; ++i) {
        const auto type = static_cast<std::uint8_t>(random() % 3);
        const auto frequencyHz = static_cast<std::uint16_t>(random());
        const auto gainDb = static_cast<float>(std::uniform_real_distribution<double>(-60, 60)(random));
        const auto q = std::ldexp(static_cast<float>(random() % 1000) / 500.0F - 0.5F,
                                  static_cast<int>(random() % 40) - 20);
        const Computed result = computeBand(*generator_, type, frequencyHz, gainDb, q);
        const Words words = wordsOf(result.section);
        if (!result.converted) {
            ++failures;
            std::size_t end = words.size();
            while (end > 0 && words[end - 1] == untouched) {
                --end;
            }
            ASSERT_GT(end, 0U);
            ASSERT_EQ(words[end - 1], 0);
        }
    }
    EXPECT_GT(failures, 1000);
}

/// Rounding decides whether a1 just fits or just does not.
void expectTheLimitOfA1(const Computed& result) {
    const Words words = wordsOf(result.section);
    if (result.converted) {
        EXPECT_NEAR(static_cast<double>(words[3]), 2147483647.0, 1);
        EXPECT_NEAR(words[4], 1 << 30, 1);
    } else {
        EXPECT_EQ(words[3], 0);
        EXPECT_EQ(words[4], untouched);
    }
}

TEST_P(GeneratorContract, HalfTheSamplingRateIsNoAccident) {
    // tan is at its pole there: the doubles on both sides of it decide whether a1 just fits or just does not.
    const std::uint16_t frequencyHz = GetParam() == Generator::bzt ? 24750 : 22050;
    const Computed result = computeBand(*generator_, 2, frequencyHz, 6.0F, 1.0F);
    const Words words = wordsOf(result.section);
    if (GetParam() == Generator::bzt) {
        EXPECT_NEAR(words[0], 1 << 28, 1);
        EXPECT_NEAR(words[1], 1 << 29, 1);
        EXPECT_NEAR(words[2], 1 << 28, 1);
        expectTheLimitOfA1(result);
    } else {
        EXPECT_TRUE(result.converted);
        EXPECT_NEAR(words[0], 1 << 28, 1);
    }
}

TEST_P(GeneratorContract, ACrossoverAtHalfTheSamplingRateIsAtThePoleOfTheTangent) {
    for (const std::uint8_t kind : Codes{0, 1}) {
        const Computed result = computeCrossover(*generator_, kind, 22050);
        const Words words = wordsOf(result.section);
        if (GetParam() == Generator::bzt) {
            // Everything passes the low-pass, nothing the high-pass; a1 / 2 is 1 but for rounding.
            EXPECT_NEAR(words[0], kind == 1 ? 1 << 28 : 0, 1);
            EXPECT_NEAR(words[1], kind == 1 ? 1 << 29 : 0, 1);
            EXPECT_NEAR(words[2], kind == 1 ? 1 << 28 : 0, 1);
            expectTheLimitOfA1(result);
        } else {
            EXPECT_TRUE(result.converted);
        }
    }
}

TEST_P(GeneratorContract, AQualityOfZeroConvertsToZeroWithoutAWarning) {
    for (const std::uint8_t type : Codes{0, 1, 2}) {
        for (const float gainDb : {6.0F, 0.0F, -6.0F}) {
            const Computed result = computeBand(*generator_, type, 1000, gainDb, 0.0F);
            EXPECT_TRUE(result.converted);
            // The matched b0 is 1 whatever the roots are.
            const std::int32_t b0 = GetParam() == Generator::mzt ? 1 << 28 : 0;
            EXPECT_EQ(wordsOf(result.section), (Words{b0, 0, 0, 0, 0})) << int{type} << " " << gainDb;
        }
    }
    EXPECT_TRUE(generator_->warnUnstable());
}

// K of the bilinear half decides the rate: with g = 0 and Q huge a2 is 1 and a1 = 2 (K^2 - 1) / (1 + K^2),
// that is -2 cos(2 pi f / fs).
TEST(SamplingRates, BztBandsAreWarpedFor49500AndCrossoversFor44100) {
    coeffBZT2 generator;
    const double a1Band = std::ldexp(computeBand(generator, 2, 1000, 0.0F, 1e9F).section.a1, -30);
    EXPECT_NEAR(a1Band, -2 * std::cos(2 * std::numbers::pi * 1000 / 49500), 1e-8);
    const double k = std::tan(std::numbers::pi * 1000 / 44100);
    const double a1Crossover = 2 * (k * k - 1) / (1 + std::numbers::sqrt2 * k + k * k);
    EXPECT_NEAR(std::ldexp(computeCrossover(generator, 0, 1000).section.a1, -30), a1Crossover, 1e-8);
    EXPECT_NEAR(std::ldexp(computeCrossover(generator, 1, 1000).section.a1, -30), a1Crossover, 1e-8);
}

TEST(SamplingRates, BothHalvesOfTheMixedGeneratorUse44100) {
    coeffBZTMZT generator;
    // Bilinear and matched poles of an undamped pair agree, so their mean does too.
    const double a1 = std::ldexp(computeBand(generator, 2, 1000, 0.0F, 1e9F).section.a1, -30);
    EXPECT_NEAR(a1, -2 * std::cos(2 * std::numbers::pi * 1000 / 44100), 1e-8);
}

TEST(SamplingRates, MixedCrossoversAreTheMeanOfTheOtherTwo) {
    coeffBZT2 bilinear;
    coeffMZT matched;
    coeffBZTMZT mixed;
    for (const std::uint8_t kind : Codes{0, 1}) {
        for (const std::uint16_t frequencyHz : Frequencies{20, 123, 1000, 7000, 20000, 21000}) {
            const Words first = wordsOf(computeCrossover(bilinear, kind, frequencyHz).section);
            const Words second = wordsOf(computeCrossover(matched, kind, frequencyHz).section);
            const Words mean = wordsOf(computeCrossover(mixed, kind, frequencyHz).section);
            for (std::size_t i = 0; i < mean.size(); ++i) {
                EXPECT_NEAR(static_cast<double>(mean[i]),
                            (static_cast<double>(first[i]) + static_cast<double>(second[i])) / 2, 1.5)
                    << "word " << i << " at " << frequencyHz;
            }
        }
    }
}

TEST(SamplingRates, AFrequencyOfACrossoverIsTakenWithAnArithmeticShift) {
    coeffMZT generator;
    // 65535 is -1 Hz: the poles move just outside the circle, a1 = -2 e^(1e-4) does not fit.
    const Computed result = computeCrossover(generator, 0, 65535);
    EXPECT_FALSE(result.converted);
    EXPECT_EQ(wordsOf(result.section), (Words{1 << 28, -(1 << 29), 1 << 28, 0, untouched}));
}

}  // namespace
}  // namespace tessavo::test
