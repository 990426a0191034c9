#include "compare/channel_mirror.h"

#include <gtest/gtest.h>

#include "compare/channel_clip.h"
#include "compare/sets.h"

namespace tessavo::test {
namespace {

using Words = std::vector<std::string>;

Words textsOf(const MirrorPlan& plan) {
    Words words;
    for (const MirrorPair& pair : plan.pairs) {
        words.push_back(pair.text);
    }
    return words;
}

/// A set whose channels have these sources, in page order.
ParameterSet setWith(const std::array<std::uint8_t, 8>& sources) {
    std::mt19937_64 random(41);
    ParameterSet set = randomSet(random);
    for (std::size_t position = 0; position < 8; ++position) {
        set.routerSource[pageChannels[position]] = sources[position];
    }
    return set;
}

TEST(ChannelMirror, PairsEverySideOfEverySource) {
    const MirrorPlan plan = planMirror(setWith({8, 7, 9, 10, 4, 5, 12, 13}));
    EXPECT_EQ(textsOf(plan), (Words{"Channel 2 (FrontLeftCenter) to Channel 1 (FrontRightCenter)",
                                    "Channel 3 (LeftTotal) to Channel 4 (RightTotal)",
                                    "Channel 5 (RearLeft) to Channel 6 (RearRight)",
                                    "Channel 7 (RearLeftTotal) to Channel 8 (RearRightTotal)"}));
    EXPECT_TRUE(plan.unpaired.empty());
    EXPECT_EQ(plan.pairs[0].left.value, 3);
    EXPECT_EQ(plan.pairs[0].right.value, 7);
    const MirrorPlan front = planMirror(setWith({0, 3, 6, 2, 11, 0, 1, 99}));
    EXPECT_EQ(textsOf(front), Words{"Channel 7 (FrontLeft) to Channel 4 (FrontRight)"});
    EXPECT_TRUE(front.unpaired.empty());
}

TEST(ChannelMirror, PairsEqualSourcesInPageOrder) {
    const MirrorPlan plan = planMirror(setWith({2, 1, 1, 2, 1, 2, 0, 0}));
    EXPECT_EQ(textsOf(plan), (Words{"Channel 2 (FrontLeft) to Channel 1 (FrontRight)",
                                    "Channel 3 (FrontLeft) to Channel 4 (FrontRight)",
                                    "Channel 5 (FrontLeft) to Channel 6 (FrontRight)"}));
}

TEST(ChannelMirror, TellsWhatHasNoPartnerAndWhy) {
    const MirrorPlan plan = planMirror(setWith({1, 2, 1, 5, 7, 0, 6, 3}));
    EXPECT_EQ(textsOf(plan), Words{"Channel 1 (FrontLeft) to Channel 2 (FrontRight)"});
    EXPECT_EQ(plan.unpaired,
              (Words{"Channel 3 (FrontLeft) stays: no other channel has the source FrontRight.",
                     "Channel 4 (RearRight) stays: no channel has the source RearLeft.",
                     "Channel 5 (FrontLeftCenter) stays: no channel has the source FrontRightCenter."}));
    const MirrorPlan none = planMirror(setWith({0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(none.pairs.empty());
    EXPECT_TRUE(none.unpaired.empty());
}

// Whatever the sources: each channel is in one pair or told of or has no side, and only right ones change.
TEST(ChannelMirror, ChangesTheRightChannelsOfThePairsAlone) {
    std::mt19937_64 random(42);
    for (int round = 0; round < 300; ++round) {
        ParameterSet set = randomSet(random);
        std::size_t sided = 0;
        for (std::uint8_t& source : set.routerSource) {
            source = static_cast<std::uint8_t>(random() % 14);
            sided += source == 0 || source == 3 || source == 6 || source == 11 ? 0U : 1U;
        }
        const MirrorPlan plan = planMirror(set);
        EXPECT_EQ(2 * plan.pairs.size() + plan.unpaired.size(), sided);
        const ParameterSet mirrored = mirrorChannels(set, plan.pairs);
        std::array<bool, 8> isRight{};
        for (const MirrorPair& pair : plan.pairs) {
            isRight.at(pair.right.value) = true;
            EXPECT_SAME_BYTES(bytesOf(clipOf(mirrored, pair.right).params),
                              bytesOf(clipOf(set, pair.left).params));
            EXPECT_SAME_BYTES(bytesOf(clipOf(mirrored, pair.right).limiter),
                              bytesOf(clipOf(set, pair.left).limiter));
        }
        const SetComparison comparison = compareSets(set, mirrored);
        EXPECT_EQ(comparison.spareBytes, 0U);
        for (const CompareGroup& group : comparison.groups) {
            EXPECT_TRUE(group.kind == CompareGroupKind::channel && isRight.at(group.channel.value));
        }
        EXPECT_SAME_BYTES(bytesOf(mirrorChannels(mirrored, plan.pairs)), bytesOf(mirrored));
    }
}

}  // namespace
}  // namespace tessavo::test
