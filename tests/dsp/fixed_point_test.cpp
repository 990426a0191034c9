#include "dsp/fixed_point.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>

#include "dsp/golden_words.h"

namespace tessavo::test {
namespace {

constexpr double twoTo31 = 2147483648.0;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();

struct Conversion {
    bool converted;
    Words words;
};

Conversion convert(const std::array<double, 5>& scaled) {
    BiquadWords out{untouched, untouched, untouched, untouched, untouched};
    const bool converted = coefficientsToFixed(scaled, out);
    return {converted, wordsOf(out)};
}

/// Converts one value in the first place.
std::int32_t wordOf(double value) {
    const Conversion result = convert({value, 0, 0, 0, 0});
    EXPECT_TRUE(result.converted) << value;
    return result.words[0];
}

/// The conversion bit by bit: shift left, double, move the integer part over; then the sign.
std::int32_t bitByBit(double value) {
    std::uint32_t word = 0;
    double rest = value < 0 ? -value : value;
    if (rest >= 1) {
        word = 1;
        rest = 0;
    }
    for (int bit = 0; bit < 31; ++bit) {
        word <<= 1U;
        rest *= 2;
        if (rest >= 1) {
            rest -= 1;
            word += 1;
        }
    }
    return std::bit_cast<std::int32_t>(value < 0 ? 0U - word : word);
}

TEST(FixedPoint, MinusOneIsTheLowestWord) {
    EXPECT_EQ(wordOf(-1.0), std::numeric_limits<std::int32_t>::min());
}

TEST(FixedPoint, OneIsOutOfRange) {
    const Conversion result = convert({1.0, 0.5, 0.5, 0.5, 0.5});
    EXPECT_FALSE(result.converted);
    EXPECT_EQ(result.words, (Words{0, untouched, untouched, untouched, untouched}));
}

TEST(FixedPoint, AlmostOneNeverRoundsUp) {
    EXPECT_EQ(wordOf(0.9999999999), 2147483647);
    EXPECT_EQ(wordOf(std::nextafter(1.0, 0.0)), 2147483647);
}

TEST(FixedPoint, BelowMinusOneIsOutOfRange) {
    EXPECT_FALSE(convert({std::nextafter(-1.0, -2.0), 0, 0, 0, 0}).converted);
    EXPECT_EQ(wordOf(std::nextafter(-1.0, 0.0)), -2147483647);
}

TEST(FixedPoint, InfinitiesAreOutOfRange) {
    EXPECT_FALSE(convert({inf, 0, 0, 0, 0}).converted);
    EXPECT_FALSE(convert({-inf, 0, 0, 0, 0}).converted);
}

TEST(FixedPoint, NotANumberGivesZeroAndGoesOn) {
    const Conversion result = convert({0.5, nan, 0.25, -nan, -0.25});
    EXPECT_TRUE(result.converted);
    EXPECT_EQ(result.words, (Words{1 << 30, 0, 1 << 29, 0, -(1 << 29)}));
}

TEST(FixedPoint, TruncatesTowardsZeroOnBothSides) {
    EXPECT_EQ(wordOf(2.75 / twoTo31), 2);
    EXPECT_EQ(wordOf(-2.75 / twoTo31), -2);
    EXPECT_EQ(wordOf(0.999 / twoTo31), 0);
    EXPECT_EQ(wordOf(-0.999 / twoTo31), 0);
    EXPECT_EQ(wordOf(1.0 / twoTo31), 1);
    EXPECT_EQ(wordOf(-1.0 / twoTo31), -1);
}

TEST(FixedPoint, ZerosAndTinyValuesGiveZero) {
    EXPECT_EQ(wordOf(0.0), 0);
    EXPECT_EQ(wordOf(-0.0), 0);
    EXPECT_EQ(wordOf(std::numeric_limits<double>::denorm_min()), 0);
    EXPECT_EQ(wordOf(-std::numeric_limits<double>::min()), 0);
}

TEST(FixedPoint, KeepsTheOrderOfTheFiveValues) {
    const Conversion result = convert({0.5, -0.25, 0.125, -0.0625, 0.03125});
    EXPECT_TRUE(result.converted);
    EXPECT_EQ(result.words, (Words{1 << 30, -(1 << 29), 1 << 28, -(1 << 27), 1 << 26}));
}

TEST(FixedPoint, AFailureAtEachPlaceKeepsWordsBeforeAndLeavesWordsBehind) {
    for (std::size_t index = 0; index < 5; ++index) {
        for (const double bad : {1.0, -1.5, inf, -inf, 1e300}) {
            std::array<double, 5> scaled{0.5, 0.5, 0.5, 0.5, 0.5};
            scaled[index] = bad;
            Words expected{};
            for (std::size_t i = 0; i < 5; ++i) {
                expected[i] = i < index ? 1 << 30 : i == index ? 0 : untouched;
            }
            const Conversion result = convert(scaled);
            EXPECT_FALSE(result.converted);
            EXPECT_EQ(result.words, expected) << "place " << index << ", value " << bad;
        }
    }
}

TEST(FixedPoint, EveryExactFractionComesBack) {
    std::mt19937_64 random(31);
    for (int i = 0; i < 20000; ++i) {
        const auto word = static_cast<std::int32_t>(static_cast<std::uint32_t>(random()));
        ASSERT_EQ(wordOf(static_cast<double>(word) / twoTo31), word);
    }
}

TEST(FixedPoint, AgreesWithTheConversionBitByBit) {
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    std::uniform_int_distribution<int> exponent(-60, 0);
    for (int i = 0; i < 20000; ++i) {
        const double value = std::ldexp(uniform(random), exponent(random));
        ASSERT_EQ(wordOf(value), bitByBit(value)) << std::hexfloat << value;
    }
}

TEST(FixedPoint, WordsAreInTheOrderB0B1B2A1A2) {
    const BiquadWords section{1, 2, 3, 4, 5};
    const auto raw = std::bit_cast<Words>(section);
    EXPECT_EQ(raw, (Words{1, 2, 3, 4, 5}));
}

}  // namespace
}  // namespace tessavo::test
