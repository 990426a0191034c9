#include "measure/alignment.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <random>

namespace tessavo {
namespace {

using Distances = std::array<std::optional<double>, channelCount>;

const Distances car{112, 142, 116, 138, 124, 148, 96, 245};

Alignment alignDistances(const Distances& distancesCm, double celsius = 20) {
    return align(arrivalTimes(distancesCm, celsius), celsius);
}

TEST(Alignment, KnowsTheSpeedOfSound) {
    EXPECT_NEAR(speedOfSound(20), 343.2, 0.05);
    EXPECT_DOUBLE_EQ(speedOfSound(0), 331.3);
    EXPECT_NEAR(speedOfSound(lowestAirCelsius), 306.1, 0.05);
    EXPECT_NEAR(speedOfSound(highestAirCelsius), 365.9, 0.05);
    EXPECT_NEAR(*arrivalTimes({343.2}, 20)[0], 10.0, 0.002);
    EXPECT_FALSE(arrivalTimes({343.2}, 20)[1]);
    EXPECT_EQ(*arrivalTimes({0.0}, 20)[0], 0.0);
}

TEST(Alignment, OfACar) {
    const Alignment aligned = alignDistances(car);
    const std::array<double, channelCount> needs{3.9, 3.0, 3.8, 3.1, 3.5, 2.8, 4.3, 0.0};
    const std::array<int, channelCount> groups{20, 20, 20, 20, 20, 20, 20, 0};
    const std::array<int, channelCount> channels{19, 10, 18, 11, 15, 8, 20, 0};
    for (std::size_t position = 0; position < channelCount; ++position) {
        const ChannelAlignment& channel = aligned.channels.at(position).value();
        EXPECT_NEAR(channel.neededMs, needs.at(position), 0.05) << position;
        EXPECT_EQ(channel.groupTenthMs, groups.at(position)) << position;
        EXPECT_EQ(channel.channelTenthMs, channels.at(position)) << position;
        if (position != 6) {
            EXPECT_EQ(channel.missingMs, 0.0) << position;
            EXPECT_EQ(channel.missingCm, 0.0) << position;
        }
    }
    EXPECT_NEAR(aligned.channels[6]->missingMs, 0.34, 0.005);
    EXPECT_NEAR(aligned.channels[6]->missingCm, 11.7, 0.05);
    EXPECT_FALSE(aligned.isReachable);
    EXPECT_EQ(aligned.farthest, PagePosition{7});
    EXPECT_NEAR(aligned.farthestPossibleCm, 233.28, 0.01);
    EXPECT_NEAR(aligned.farthestPossibleMs, 6.797, 0.001);
}

TEST(Alignment, ReachesWhatItCallsPossibleAndNothingBeyond) {
    for (const double celsius : {-40.0, -3.5, 20.0, 60.0}) {
        const Alignment before = alignDistances(car, celsius);
        Distances distances = car;
        distances[7] = before.farthestPossibleCm;
        const Alignment possible = alignDistances(distances, celsius);
        EXPECT_TRUE(possible.isReachable) << celsius;
        EXPECT_EQ(possible.channels[6]->givenMs(), 4.0);
        EXPECT_EQ(possible.channels[6]->missingCm, 0.0);
        distances[7] = before.farthestPossibleCm + 0.01;
        const Alignment beyond = alignDistances(distances, celsius);
        EXPECT_FALSE(beyond.isReachable) << celsius;
        EXPECT_NEAR(beyond.channels[6]->missingCm, 0.01, 1e-6);
    }
}

TEST(Alignment, GivesTheGroupItsDelayFirst) {
    struct Case {
        double neededMs;
        int groupTenthMs;
        int channelTenthMs;
    };
    for (const Case& each :
         {Case{0, 0, 0}, Case{0.04, 0, 0}, Case{0.0625, 1, 0}, Case{0.25, 3, 0}, Case{1.94, 19, 0},
          Case{1.96, 20, 0}, Case{2.04, 20, 0}, Case{2.06, 20, 1}, Case{3.94, 20, 19}, Case{3.96, 20, 20},
          Case{4.0, 20, 20}, Case{4.04, 20, 20}, Case{500, 20, 20}}) {
        const Alignment aligned = align({0.0, each.neededMs}, 20);
        const ChannelAlignment& nearest = aligned.channels[0].value();
        EXPECT_EQ(nearest.groupTenthMs, each.groupTenthMs) << each.neededMs;
        EXPECT_EQ(nearest.channelTenthMs, each.channelTenthMs) << each.neededMs;
        EXPECT_EQ(aligned.isReachable, each.neededMs <= 4.0) << each.neededMs;
        EXPECT_DOUBLE_EQ(nearest.missingMs, std::max(0.0, each.neededMs - 4.0));
    }
}

TEST(Alignment, OfNothingOfOneAndOfEqualOnes) {
    const Alignment nothing = align({}, 20);
    EXPECT_FALSE(nothing.farthest);
    EXPECT_TRUE(nothing.isReachable);
    EXPECT_TRUE(
        std::ranges::none_of(nothing.channels, [](const auto& channel) { return channel.has_value(); }));
    const Alignment one = align({std::nullopt, std::nullopt, 7.0}, 20);
    EXPECT_EQ(one.farthest, PagePosition{2});
    EXPECT_EQ(one.channels[2]->givenMs(), 0.0);
    EXPECT_FALSE(one.channels[0]);
    const Alignment equal = align({0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0}, 20);
    EXPECT_EQ(equal.farthest, PagePosition{0});
    EXPECT_TRUE(equal.isReachable);
    for (const auto& channel : equal.channels) {
        EXPECT_EQ(channel->givenMs(), 0.0);
    }
}

std::vector<std::uint8_t> bytesOf(const ParameterSet& set) {
    std::vector<std::uint8_t> bytes(sizeof set);
    std::memcpy(bytes.data(), &set, sizeof set);
    return bytes;
}

// A set whose bytes are all random.
ParameterSet anySet(std::mt19937_64& random) {
    std::vector<std::uint8_t> bytes(sizeof(ParameterSet));
    std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(random()); });
    ParameterSet set;
    std::memcpy(&set, bytes.data(), sizeof set);
    return set;
}

void checkWritten(const Alignment& aligned, const ParameterSet& before) {
    ParameterSet written = before;
    applyAlignment(aligned, written);
    ParameterSet expected = before;
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        if (const auto& channel = aligned.channels.at(position)) {
            OutputChannelParams& params = expected.channels.at(recordChannelAt({position}).value);
            params.groupDelayMs = static_cast<float>(channel->groupTenthMs) / 10.0F;
            params.delayMs = static_cast<float>(channel->channelTenthMs) / 10.0F;
        }
    }
    EXPECT_EQ(bytesOf(written), bytesOf(expected)) << "the two delays of the told channels and no other byte";
}

TEST(Alignment, OfAThousandSetsIsExactToHalfAStepWhereItCanBe) {
    std::mt19937_64 random(20);
    std::uniform_real_distribution<double> shares(0, 1);
    int reachable = 0;
    int beyond = 0;
    for (int run = 0; run < 1000; ++run) {
        const double celsius = lowestAirCelsius + (highestAirCelsius - lowestAirCelsius) * shares(random);
        const double spreadMs = 8 * shares(random);
        ArrivalTimes times;
        double latest = -1;
        for (auto& time : times) {
            if (shares(random) < 0.8) {
                time = 3 + spreadMs * shares(random);
                latest = std::max(latest, *time);
            }
        }
        const Alignment aligned = align(times, celsius);
        ASSERT_EQ(aligned.farthest.has_value(), latest >= 0);
        bool allReached = true;
        for (std::size_t position = 0; position < channelCount; ++position) {
            const auto& channel = aligned.channels.at(position);
            ASSERT_EQ(channel.has_value(), times.at(position).has_value());
            if (!channel) {
                continue;
            }
            const double needed = latest - *times.at(position);
            EXPECT_DOUBLE_EQ(channel->neededMs, needed);
            EXPECT_TRUE(channel->groupTenthMs >= 0 && channel->groupTenthMs <= 20);
            EXPECT_TRUE(channel->channelTenthMs >= 0 && channel->channelTenthMs <= 20);
            EXPECT_TRUE(channel->groupTenthMs == 20 || channel->channelTenthMs == 0) << "the group first";
            if (needed <= 4.0) {
                ++reachable;
                EXPECT_LE(std::abs(channel->givenMs() - needed), 0.05 + 1e-9);
                EXPECT_EQ(channel->missingMs, 0.0);
            } else {
                ++beyond;
                allReached = false;
                EXPECT_EQ(channel->groupTenthMs + channel->channelTenthMs, 40);
                EXPECT_NEAR(channel->missingMs, needed - 4.0, 1e-9);
                EXPECT_NEAR(channel->missingCm, (needed - 4.0) * speedOfSound(celsius) / 10.0, 1e-6);
            }
        }
        EXPECT_EQ(aligned.isReachable, allReached);
        if (aligned.farthest) {
            EXPECT_EQ(*times.at(aligned.farthest->value), latest);
            EXPECT_EQ(aligned.channels.at(aligned.farthest->value)->givenMs(), 0.0);
        }
        checkWritten(aligned, anySet(random));
    }
    EXPECT_GT(reachable, 1000);
    EXPECT_GT(beyond, 300);
}

}  // namespace
}  // namespace tessavo
