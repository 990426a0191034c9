#include "params/level_match.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <utility>

#include "params/volume_gain_table.h"
#include "support/harness.h"

namespace tessavo::test {
namespace {

/// Every channel has a source and plays at this level.
ParameterImage imageAt(float levelDb) {
    ParameterImage image;
    image.routerSource.fill(1);
    for (ChannelImageBlock& channel : image.channels) {
        channel.gainWord = gainWordOf(levelDb, 0.0F);
    }
    return image;
}

TEST(LoweredGainWord, GoesDownTheTableAndEndsAtMinusSixDecibels) {
    const auto& table = volumeGainTable();
    constexpr std::size_t lowest = 96;
    ASSERT_EQ(table[lowest].levelDb, -6.0);
    for (std::size_t from = 0; from < table.size(); ++from) {
        const std::uint32_t word = table[from].gainWord;
        EXPECT_EQ(stepsAboveLowest(word), from < lowest ? lowest - from : 0) << from;
        for (unsigned steps = 0; steps < 150; ++steps) {
            const std::size_t to = from >= lowest ? from : std::min(from + steps, lowest);
            ASSERT_EQ(loweredGainWord(word, steps), table[to].gainWord) << from << " by " << steps;
        }
    }
}

TEST(LoweredGainWord, AWordBetweenTwoEntriesStaysOrGoesDownFromTheLowerOne) {
    const std::uint32_t odd = volumeGainTable()[84].gainWord + 1;
    EXPECT_EQ(loweredGainWord(odd, 0), odd);
    EXPECT_EQ(loweredGainWord(odd, 1), volumeGainTable()[85].gainWord);
    const std::uint32_t low = volumeGainTable()[96].gainWord - 1;
    EXPECT_EQ(loweredGainWord(low, 3), low);
    EXPECT_EQ(loweredGainWord(0, 3), 0U);
    EXPECT_EQ(loweredGainWord(0xFFFFFFFF, 2), volumeGainTable()[2].gainWord);
}

TEST(LevelMatching, LowersTheLouderSideToTheNearestStepAndNeverRaises) {
    const ParameterImage image = imageAt(10.0F);
    for (const auto& [difference, steps] : {std::pair{0.0, 0U},
                                            {0.24, 0U},
                                            {0.26, 1U},
                                            {0.5, 1U},
                                            {2.5, 5U},
                                            {3.01, 6U},
                                            {-0.3, 0U},
                                            {-12.0, 0U}}) {
        EXPECT_EQ(matchLevel(image, -20.0 + difference, -20.0), (LevelMatch{.loweredSteps = steps}))
            << difference;
    }
}

TEST(LevelMatching, TheLowestChannelWithASourceEndsItAndTheRestIsMissing) {
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const RecordChannel channel = recordChannelAt({position});
        ParameterImage image = imageAt(10.0F);
        image.channels[channel.value].gainWord = gainWordOf(-4.0F, 0.0F);
        EXPECT_EQ(matchLevel(image, 2.0, 0.0), (LevelMatch{.loweredSteps = 4})) << "just enough";
        EXPECT_EQ(matchLevel(image, 3.5, 0.0),
                  (LevelMatch{.loweredSteps = 4, .missingSteps = 3, .lowest = channel}));
        image.channels[channel.value].gainWord = gainWordOf(-6.0F, 0.0F);
        EXPECT_EQ(matchLevel(image, 3.5, 0.0), (LevelMatch{.missingSteps = 7, .lowest = channel}));
        EXPECT_EQ(matchLevel(image, 0.0, 3.5), LevelMatch{}) << "the softer one misses nothing";
        image.routerSource[channel.value] = 0;
        EXPECT_EQ(matchLevel(image, 3.5, 0.0), (LevelMatch{.loweredSteps = 7}))
            << "nobody hears that channel";
    }
}

TEST(LevelMatching, OfTwoChannelsTheLowerOneEndsIt) {
    ParameterImage image = imageAt(10.0F);
    image.channels[1].gainWord = gainWordOf(-3.0F, 0.0F);
    image.channels[6].gainWord = gainWordOf(-5.0F, 0.0F);
    EXPECT_EQ(matchLevel(image, 30.0, 0.0),
              (LevelMatch{.loweredSteps = 2, .missingSteps = 58, .lowest = RecordChannel{6}}));
}

TEST(LevelMatching, WithoutTwoLoudnessesNothingIsLowered) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const ParameterImage image = imageAt(10.0F);
    for (const double odd : {infinity, -infinity, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(matchLevel(image, 0.0, odd), LevelMatch{.isComparable = false});
        EXPECT_EQ(matchLevel(image, odd, 0.0), LevelMatch{.isComparable = false});
    }
}

}  // namespace
}  // namespace tessavo::test
