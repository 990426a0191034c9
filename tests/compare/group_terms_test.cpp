#include "compare/group_terms.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>

#include "compare/sets.h"
#include "params/volume_gain_table.h"

namespace tessavo::test {
namespace {

constexpr std::array<GroupTerms, 2> bothTerms{GroupTerms::kept, GroupTerms::cleared};

/// A set as it is when an image with these words of record channel 4 was read into a fresh one.
struct Received {
    ParameterImage image;
    ParameterSet set;
};

Received receive(std::uint32_t gainWord, int groupGainTenths, std::uint32_t samples,
                 std::uint32_t groupDelayTenths) {
    ParameterImage image = imageOf(freshSet());
    image.channels[4].gainWord = gainWord;
    image.channels[4].delaySamples = samples;
    image.groupGainTenthDb[4] = groupGainTenths;
    image.groupDelayTenthMs[4] = groupDelayTenths;
    ParameterStore store{};
    store.sets[0] = freshSet();
    readImageFields(store, 0, image);
    return {image, store.sets[0]};
}

/// Levels of the gain words that volumes and group gains can make.
std::vector<VolumeGainEntry> reachableLevels() {
    std::vector<VolumeGainEntry> levels;
    std::ranges::copy_if(volumeGainTable(), std::back_inserter(levels), [](const VolumeGainEntry& entry) {
        return entry.levelDb >= -6 && entry.levelDb <= 18;
    });
    return levels;
}

bool anyVolumeGives(std::uint32_t gainWord, float groupGainDb) {
    for (int tenths = -60; tenths <= 180; ++tenths) {
        if (gainWordOf(static_cast<float>(tenths) / 10, groupGainDb) == gainWord) {
            return true;
        }
    }
    return false;
}

/// How many pairs of a gain step and a group gain no volume of whole tenths can make, counted in whole numbers.
int impossibleVolumes() {
    int count = 0;
    for (int level = -60; level <= 180; level += 5) {
        for (int group = -60; group <= 180; ++group) {
            const int least = level == -60 ? -120 : level;
            const int most = level == 180 ? 360 : level + 4;
            count += most - group < -60 || least - group > 180 ? 1 : 0;
        }
    }
    return count;
}

bool anyDelayGives(std::uint32_t samples, float groupDelayMs) {
    for (int hundredths = 0; hundredths <= 200; ++hundredths) {
        if (delaySamplesOf(static_cast<float>(hundredths) / 100, groupDelayMs) == samples) {
            return true;
        }
    }
    return false;
}

/// Checks one channel: what edits would send afterwards is what was received, or the channel is as it was.
void expectTakenOrToldOf(const Received& received, GroupTerms terms, bool isPossible) {
    const GroupTermsResult result = takeOutGroupTerms(received.set, received.image, terms);
    const OutputChannelParams& before = received.set.channels[4];
    const OutputChannelParams& after = result.record.channels[4];
    ASSERT_EQ(result.stays.empty(), isPossible);
    if (!isPossible) {
        EXPECT_SAME_BYTES(bytesOf(after), bytesOf(before));
        EXPECT_EQ(result.stays[0].channel.value, 4);
        EXPECT_TRUE(result.stays[0].reason.starts_with("Channel 4 stays: ")) << result.stays[0].reason;
        return;
    }
    EXPECT_EQ(gainWordOf(after.volumeDb, after.groupGainDb), received.image.channels[4].gainWord);
    EXPECT_EQ(delaySamplesOf(after.delayMs, after.groupDelayMs), received.image.channels[4].delaySamples);
    EXPECT_TRUE(after.volumeDb >= -6 && after.volumeDb <= 18) << after.volumeDb;
    EXPECT_TRUE(after.delayMs >= 0 && after.delayMs <= 2) << after.delayMs;
    const bool isKept = terms == GroupTerms::kept;
    EXPECT_EQ(after.groupGainDb, isKept ? before.groupGainDb : 0);
    EXPECT_EQ(after.groupDelayMs, isKept ? before.groupDelayMs : 0);
}

TEST(GroupTermsTest, AreTakenOutOfEachVolumeThatHasOneForEachGainStepAndEachTenth) {
    std::map<bool, int> count;
    for (const GroupTerms terms : bothTerms) {
        for (const VolumeGainEntry& entry : reachableLevels()) {
            for (int tenths = -60; tenths <= 180; ++tenths) {
                SCOPED_TRACE(std::to_string(entry.levelDb) + " " + std::to_string(tenths));
                const Received received = receive(entry.gainWord, tenths, 0, 0);
                const bool isKept = terms == GroupTerms::kept;
                const bool isPossible =
                    anyVolumeGives(entry.gainWord, isKept ? received.set.channels[4].groupGainDb : 0);
                ++count[isPossible];
                expectTakenOrToldOf(received, terms, isPossible);
            }
        }
    }
    EXPECT_EQ(count[false], impossibleVolumes());
    EXPECT_EQ(count[true] + count[false], 2 * 49 * 241);
}

// No page sets such gains, but an image may bring them. The least and the greatest word have many volumes.
TEST(GroupTermsTest, BeyondEveryRangeAreTakenOutWhereAVolumeGivesTheWord) {
    std::map<bool, int> count;
    for (const VolumeGainEntry& entry : reachableLevels()) {
        for (const int tenths : {-100000, -500, -400, -245, -243, -240, -100, 190, 241, 300, 420, 100000}) {
            SCOPED_TRACE(std::to_string(entry.levelDb) + " " + std::to_string(tenths));
            const Received received = receive(entry.gainWord, tenths, 0, 0);
            const bool isPossible = anyVolumeGives(entry.gainWord, received.set.channels[4].groupGainDb);
            ++count[isPossible];
            expectTakenOrToldOf(received, GroupTerms::kept, isPossible);
        }
    }
    EXPECT_GT(count[true], 20);
    EXPECT_GT(count[false], 400);
}

TEST(GroupTermsTest, AreTakenOutOfEachDelayThatHasOneForEachSampleAndEachTenth) {
    std::map<bool, int> count;
    const std::uint32_t unity = gainWordOf(0, 0);
    for (const GroupTerms terms : bothTerms) {
        for (std::uint32_t samples = 0; samples <= 220; ++samples) {
            for (std::uint32_t tenths = 0; tenths <= 20; ++tenths) {
                SCOPED_TRACE(std::to_string(samples) + " " + std::to_string(tenths));
                const Received received = receive(unity, 0, samples, tenths);
                const bool isKept = terms == GroupTerms::kept;
                const bool isPossible =
                    anyDelayGives(samples, isKept ? received.set.channels[4].groupDelayMs : 0);
                ++count[isPossible];
                expectTakenOrToldOf(received, terms, isPossible);
            }
        }
    }
    EXPECT_GT(count[true], 4000);
    EXPECT_GT(count[false], 4000);
}

// Whatever a person had set comes back to its own words, and to its own numbers where the sum was on the target's steps.
TEST(GroupTermsTest, GiveBackWhatWasSet) {
    for (int volume = -60; volume <= 180; volume += 5) {
        for (int gain = -60; gain <= 180; gain += 5) {
            if (volume + gain < -60 || volume + gain > 180) {
                continue;
            }
            ParameterSet set = freshSet();
            set.channels[4].volumeDb = static_cast<float>(volume) / 10;
            set.channels[4].groupGainDb = static_cast<float>(gain) / 10;
            set.channels[4].delayMs = 1.3F;
            set.channels[4].groupDelayMs = 0.4F;
            const GroupTermsResult result = takeOutGroupTerms(throughTheTarget(set), imageOf(set));
            EXPECT_SAME_BYTES(bytesOf(result.record), bytesOf(set)) << volume << " " << gain;
            ASSERT_EQ(result.taken.size(), 1U);
            EXPECT_EQ(result.taken[0].value, 4);
        }
    }
}

TEST(GroupTermsTest, LeaveEverythingElseAsItIs) {
    std::mt19937_64 random(51);
    for (int round = 0; round < 200; ++round) {
        const ParameterSet sent = randomSet(random);
        const ParameterImage image = imageOf(sent);
        const ParameterSet set = throughTheTarget(sent);
        for (const GroupTerms terms : bothTerms) {
            const GroupTermsResult result = takeOutGroupTerms(set, image, terms);
            for (const ComparedLine& line : linesOf(compareSets(set, result.record))) {
                const FieldId field = line.element.field;
                const bool isOwn = field == FieldId::volume || field == FieldId::delay;
                const bool isTerm = field == FieldId::groupGain || field == FieldId::groupDelay;
                EXPECT_TRUE(isOwn || (isTerm && terms == GroupTerms::cleared)) << line.name;
                const std::size_t channel = line.element.index.outer;
                EXPECT_FALSE(std::ranges::any_of(
                    result.stays, [&](const UntakenChannel& each) { return each.channel.value == channel; }));
            }
            EXPECT_EQ(compareSets(set, result.record).spareBytes, 0U);
            for (std::uint8_t c = 0; c < channelCount; ++c) {
                const auto isThat = [&](const UntakenChannel& each) { return each.channel.value == c; };
                if (std::ranges::none_of(result.stays, isThat)) {
                    EXPECT_EQ(imageOf(result.record).channels[c].gainWord, image.channels[c].gainWord);
                    EXPECT_EQ(imageOf(result.record).channels[c].delaySamples,
                              image.channels[c].delaySamples);
                }
            }
            // Nothing is left to take out.
            const GroupTermsResult again = takeOutGroupTerms(result.record, image, terms);
            EXPECT_SAME_BYTES(bytesOf(again.record), bytesOf(result.record));
        }
    }
}

TEST(GroupTermsTest, MakeTheEditThatFollowsSendWhatWasReceived) {
    Tuning source;
    source.state.setGroupGain({7}, -3.5F);
    source.state.setVolume(2.0F, true);
    source.state.setDelay(0.7F, true);
    source.state.setGroupDelay({7}, 1.2F);
    const ParameterImage received = source.state.image();
    Tuning tuning;
    tuning.state.replaceImage(received);
    tuning.state.imageToSet();
    ASSERT_TRUE(hasGroupTerms(tuning.state.currentParameterSet()));
    const GroupTermsResult result =
        takeOutGroupTerms(tuning.state.currentParameterSet(), tuning.state.image());
    EXPECT_TRUE(tuning.state.replaceSet(0, result.record));
    EXPECT_SAME_BYTES(tuning.image(), bytesOf(received));
    tuning.state.setGroupGain({7}, -3.5F);
    tuning.state.setGroupDelay({7}, 1.2F);
    EXPECT_SAME_BYTES(tuning.image(), bytesOf(received));
}

TEST(GroupTermsTest, SayWhyAChannelStays) {
    const auto reasonOf = [](const Received& received, GroupTerms terms = GroupTerms::kept) {
        const GroupTermsResult result = takeOutGroupTerms(received.set, received.image, terms);
        EXPECT_EQ(result.stays.size(), 1U);
        EXPECT_TRUE(result.taken.empty());
        return result.stays.empty() ? std::string() : result.stays[0].reason;
    };
    const std::uint32_t unity = gainWordOf(0, 0);
    EXPECT_EQ(reasonOf(receive(unity, 75, 0, 0)),
              "Channel 4 stays: its volume would have to be \u22127.5 dB, and \u22126.0 dB is the least.");
    EXPECT_EQ(reasonOf(receive(gainWordOf(18, 0), -10, 0, 0)),
              "Channel 4 stays: its volume would have to be 19.0 dB, and 18.0 dB is the most.");
    EXPECT_EQ(reasonOf(receive(unity + 1, 75, 0, 0)),
              "Channel 4 stays: no volume gives the gain that was received.");
    EXPECT_EQ(reasonOf(receive(volumeGainTable()[0].gainWord, 75, 0, 0)),
              "Channel 4 stays: no volume gives the gain that was received.");
    EXPECT_EQ(reasonOf(receive(unity, 0, 150, 5)),
              "Channel 4 stays: its delay would have to be 2.5 ms, and 2.0 ms is the most.");
    EXPECT_EQ(reasonOf(receive(unity, 0, 10, 5)),
              "Channel 4 stays: its delay would have to be \u22120.3 ms, and 0.0 ms is the least.");
    EXPECT_EQ(reasonOf(receive(unity, 0, 150, 15), GroupTerms::cleared),
              "Channel 4 stays: its delay would have to be 3.0 ms, and 2.0 ms is the most.");
}

TEST(GroupTermsTest, AreFoundInEveryChannel) {
    EXPECT_FALSE(hasGroupTerms(freshSet()));
    for (std::size_t channel = 0; channel < channelCount; ++channel) {
        ParameterSet gain = freshSet();
        gain.channels[channel].groupGainDb = -0.1F;
        EXPECT_TRUE(hasGroupTerms(gain));
        ParameterSet delay = freshSet();
        delay.channels[channel].groupDelayMs = 0.1F;
        EXPECT_TRUE(hasGroupTerms(delay));
    }
}

}  // namespace
}  // namespace tessavo::test
