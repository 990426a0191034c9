#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "params/volume_gain_table.h"
#include "support/harness.h"

namespace tessavo::test {
namespace {

constexpr std::array<std::uint32_t, 302> goldenGainWords{
#include "params/golden_volume.inc"
};

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float inf = std::numeric_limits<float>::infinity();

std::uint32_t wordAt(double levelDb) {
    return goldenGainWords[static_cast<std::size_t>((42.0 - levelDb) * 2)];
}

TEST(VolumeGainTable, HoldsEveryHalfDecibelFrom42ToMinus108AndAHalf) {
    const auto& table = volumeGainTable();
    ASSERT_EQ(table.size(), 303U);
    for (std::size_t j = 0; j < goldenGainWords.size(); ++j) {
        EXPECT_EQ(table[j].levelDb, 42.0 - 0.5 * static_cast<double>(j)) << j;
        EXPECT_EQ(table[j].gainWord, goldenGainWords[j]) << j;
    }
}

TEST(VolumeGainTable, EndsWithMinus108Point9AndTheWord60) {
    EXPECT_EQ(volumeGainTable()[302].levelDb, -108.9);
    EXPECT_EQ(volumeGainTable()[302].gainWord, 60U);
}

TEST(VolumeGainTable, HasTheKnownWords) {
    EXPECT_EQ(volumeGainTable()[84].gainWord, 0x01000000U);  // 0 dB
    EXPECT_EQ(volumeGainTable()[48].gainWord, 0x07F17AF4U);  // 18 dB
    EXPECT_EQ(volumeGainTable()[96].gainWord, 0x00804DCEU);  // -6 dB
    EXPECT_EQ(volumeGainTable()[44].gainWord, 0x0A000000U);  // 20 dB
    EXPECT_EQ(volumeGainTable()[4].gainWord, 0x64000000U);   // 40 dB
}

TEST(GainWord, OfTwentyDecibelsIsThatOfEighteen) {
    EXPECT_EQ(gainWordOf(20.0F, 0.0F), 0x07F17AF4U);
}

TEST(GainWord, OfMinusTenDecibelsIsThatOfMinusSix) {
    EXPECT_EQ(gainWordOf(-10.0F, 0.0F), 0x00804DCEU);
}

TEST(GainWord, ClampsTheSumAndNotItsTerms) {
    EXPECT_EQ(gainWordOf(18.0F, 1.0F), wordAt(18.0));
    EXPECT_EQ(gainWordOf(30.0F, -20.0F), wordAt(10.0));
    EXPECT_EQ(gainWordOf(-40.0F, 41.0F), wordAt(1.0));
    EXPECT_EQ(gainWordOf(5.0F, -12.0F), wordAt(-6.0));
}

TEST(GainWord, RoundsDownToTheHalfDecibel) {
    EXPECT_EQ(gainWordOf(0.3F, 0.0F), 0x01000000U);
    EXPECT_EQ(gainWordOf(0.49F, 0.0F), wordAt(0.0));
    EXPECT_EQ(gainWordOf(0.5F, 0.0F), wordAt(0.5));
    EXPECT_EQ(gainWordOf(-0.1F, 0.0F), wordAt(-0.5));
    EXPECT_EQ(gainWordOf(-0.5F, 0.0F), wordAt(-0.5));
    EXPECT_EQ(gainWordOf(17.9F, 0.0F), wordAt(17.5));
    EXPECT_EQ(gainWordOf(-5.9F, 0.0F), wordAt(-6.0));
}

TEST(GainWord, SumsInSinglePrecision) {
    // -5.9 + 0.4 is -5.5 as a single, but lies just below it as a double.
    EXPECT_LT(static_cast<double>(-5.9F) + static_cast<double>(0.4F), -5.5);
    EXPECT_EQ(gainWordOf(-5.9F, 0.4F), wordAt(-5.5));
    EXPECT_EQ(gainWordOf(0.4F, -5.9F), wordAt(-5.5));
}

TEST(GainWord, IsDefinedForValuesThatAreNoLevel) {
    EXPECT_EQ(gainWordOf(nan, 0.0F), wordAt(-6.0));
    EXPECT_EQ(gainWordOf(0.0F, nan), wordAt(-6.0));
    EXPECT_EQ(gainWordOf(inf, -inf), wordAt(-6.0));
    EXPECT_EQ(gainWordOf(inf, 0.0F), wordAt(18.0));
    EXPECT_EQ(gainWordOf(-inf, 0.0F), wordAt(-6.0));
}

TEST(GainWord, FollowsTheTableForEveryTenthInTheRange) {
    for (int tenths = -80; tenths <= 200; ++tenths) {
        const float volumeDb = static_cast<float>(tenths) / 10.0F;
        EXPECT_EQ(gainWordOf(volumeDb, 0.0F), gainWordByFormula(volumeDb, 0.0F)) << volumeDb;
    }
}

TEST(LevelOfGainWord, FindsTheLevelOfEveryEntryButTheFirst) {
    for (std::size_t j = 1; j < goldenGainWords.size(); ++j) {
        EXPECT_EQ(levelOfGainWord(goldenGainWords[j]), 42.0 - 0.5 * static_cast<double>(j));
    }
}

TEST(LevelOfGainWord, StartsAtTheSecondEntry) {
    EXPECT_EQ(levelOfGainWord(goldenGainWords[0]), 41.5);
    EXPECT_EQ(levelOfGainWord(0xFFFFFFFFU), 41.5);
    EXPECT_EQ(levelOfGainWord(0x80000000U), 41.5);
}

TEST(LevelOfGainWord, RoundsDownBetweenTwoEntries) {
    EXPECT_EQ(levelOfGainWord(0x01000000U + 1), 0.0);
    EXPECT_EQ(levelOfGainWord(0x01000000U - 1), -0.5);
}

TEST(LevelOfGainWord, EndsAtTheLastEntry) {
    EXPECT_EQ(levelOfGainWord(60), -108.9);
    EXPECT_EQ(levelOfGainWord(59), -108.9);
    EXPECT_EQ(levelOfGainWord(0), -108.9);
}

TEST(DelaySamples, HaveFortyNineAndAHalfInAMillisecond) {
    EXPECT_EQ(delaySamplesOf(1.0F, 0.0F), 50U);
    EXPECT_EQ(delaySamplesOf(0.5F, 0.0F), 25U);
    EXPECT_EQ(delaySamplesOf(0.0F, 0.0F), 0U);
    EXPECT_EQ(delaySamplesOf(2.0F, 0.0F), 99U);
    EXPECT_EQ(delaySamplesOf(0.0F, 20.0F), 990U);
}

TEST(DelaySamples, AddTheGroupDelayBeforeTheyAreRounded) {
    EXPECT_EQ(delaySamplesOf(0.5F, 0.5F), 50U);
    EXPECT_EQ(delaySamplesOf(0.01F, 0.0F), 0U);
    EXPECT_EQ(delaySamplesOf(0.01F, 0.01F), 1U);
}

TEST(DelaySamples, AreComputedInDoublePrecision) {
    // 0.1 + 0.9 stays below 1 as doubles made of the two singles; as singles it would be 1 and give 50.
    EXPECT_EQ(delaySamplesOf(0.1F, 0.9F), 49U);
    EXPECT_EQ(delaySamplesOf(0.2F, 2.8F), 148U);
}

TEST(DelaySamples, AreDefinedForValuesThatAreNoDelay) {
    EXPECT_EQ(delaySamplesOf(-1.0F, 0.0F), 0U);
    EXPECT_EQ(delaySamplesOf(nan, 0.0F), 0U);
    EXPECT_EQ(delaySamplesOf(inf, -inf), 0U);
    EXPECT_EQ(delaySamplesOf(-inf, 0.0F), 0U);
    EXPECT_EQ(delaySamplesOf(inf, 0.0F), 0xFFFFFFFFU);
    EXPECT_EQ(delaySamplesOf(1e30F, 0.0F), 0xFFFFFFFFU);
}

TEST(DelayOfSamples, HasFortyEightInAMillisecond) {
    EXPECT_EQ(delayOfSamples(48), static_cast<float>(47.5 / 48.0));
    EXPECT_NEAR(static_cast<double>(delayOfSamples(48)), 0.989583, 1e-6);
    EXPECT_EQ(delayOfSamples(0), static_cast<float>(-0.5 / 48.0));
    EXPECT_EQ(delayOfSamples(50), static_cast<float>(49.5 / 48.0));
    EXPECT_EQ(delayOfSamples(0xFFFFFFFFU), static_cast<float>(4294967294.5 / 48.0));
}

}  // namespace
}  // namespace tessavo::test
