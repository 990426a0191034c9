#include "compare/channel_clip.h"

#include <cstring>
#include <gtest/gtest.h>

#include "base/md5.h"
#include "compare/sets.h"

namespace tessavo::test {
namespace {

/// Offsets in the record that belong to a channel itself.
std::vector<std::size_t> ownBytes(std::size_t channel) {
    std::vector<std::size_t> offsets;
    const auto add = [&](std::size_t first, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) {
            offsets.push_back(first + i);
        }
    };
    const std::size_t block = recordChannelOffset(channel);
    for (std::size_t band = 0; band < 8; ++band) {
        add(block + 16 * band, 1);
        add(block + 16 * band + 2, 11);
    }
    add(block + 128, 5);
    add(block + 134, 5);
    add(block + 140, 12);  // volume, group gain, gain group
    add(block + 153, 1);   // phase; the flag at 152 stays
    add(block + 156, 12);  // delay, group delay, delay group
    add(recordLimiterOffset(channel), 21);
    return offsets;
}

/// Bytes whose check is right again.
Bytes checked(Bytes bytes) {
    const Md5Digest check = md5(std::span(bytes).first(204));
    std::memcpy(bytes.data() + 204, check.data(), check.size());
    return bytes;
}

std::string troubleOf(const Bytes& bytes) {
    const ChannelClipReading reading = readChannelClip(bytes);
    EXPECT_EQ(reading.clip.has_value(), reading.trouble.empty());
    return reading.trouble;
}

TEST(ChannelClip, PastesEverythingOfTheChannelAndNothingOfItsPlace) {
    std::mt19937_64 random(31);
    const ParameterSet source = randomSet(random);
    const ParameterSet target = randomSet(random);
    for (std::uint8_t from = 0; from < channelCount; ++from) {
        const ChannelClip clip = clipOf(source, {from});
        for (std::uint8_t position = 0; position < channelCount; ++position) {
            const std::size_t to = pageChannels[position];
            Bytes expected = bytesOf(target);
            const std::vector<std::size_t> taken = ownBytes(from);
            const std::vector<std::size_t> given = ownBytes(to);
            for (std::size_t i = 0; i < taken.size(); ++i) {
                expected[given[i]] = bytesOf(source)[taken[i]];
            }
            const ParameterSet pasted = pasteChannel(target, clip, selectionBit({position}));
            EXPECT_SAME_BYTES(bytesOf(pasted), expected) << int{from} << " to " << to;
        }
    }
}

TEST(ChannelClip, GoesIntoEachOfSeveralChannelsAndIntoNone) {
    std::mt19937_64 random(32);
    const ParameterSet target = randomSet(random);
    const ChannelClip clip = clipOf(randomSet(random), {5});
    EXPECT_SAME_BYTES(bytesOf(pasteChannel(target, clip, 0)), bytesOf(target));
    for (unsigned mask = 1; mask < 256; ++mask) {
        ParameterSet one = target;
        for (unsigned bit = 1; bit < 256; bit <<= 1U) {
            one = pasteChannel(one, clip, static_cast<std::uint8_t>(mask & bit));
        }
        const ParameterSet pasted = pasteChannel(target, clip, static_cast<std::uint8_t>(mask));
        EXPECT_SAME_BYTES(bytesOf(pasted), bytesOf(one)) << mask;
        std::size_t channels = 0;
        for (const CompareGroup& group : compareSets(target, pasted).groups) {
            EXPECT_EQ(group.kind, CompareGroupKind::channel);
            ++channels;
        }
        EXPECT_EQ(channels, static_cast<std::size_t>(std::popcount(mask)));
    }
}

TEST(ChannelClip, PastedSoundsAsWhereItWasTakenFrom) {
    std::mt19937_64 random(33);
    const ParameterSet source = randomSet(random);
    const ParameterImage before = imageOf(source);
    const ParameterImage after = imageOf(pasteChannel(source, clipOf(source, {2}), 0xFF));
    for (std::size_t channel = 0; channel < channelCount; ++channel) {
        EXPECT_EQ(after.channels[channel].gainWord, before.channels[2].gainWord);
        EXPECT_EQ(after.channels[channel].delaySamples, before.channels[2].delaySamples);
        EXPECT_EQ(after.channels[channel].channelFlag, before.channels[channel].channelFlag);
        EXPECT_EQ(after.routerSource[channel], before.routerSource[channel]);
    }
}

TEST(ChannelClip, GoesThroughItsBytes) {
    std::mt19937_64 random(34);
    for (int round = 0; round < 50; ++round) {
        const ParameterSet source = randomSet(random);
        const RecordChannel channel{static_cast<std::uint8_t>(random() % 8)};
        const ChannelClip clip = clipOf(source, channel);
        const Bytes bytes = channelClipBytes(clip);
        ASSERT_EQ(bytes.size(), 220U);
        const ChannelClipReading reading = readChannelClip(bytes);
        ASSERT_TRUE(reading.clip) << reading.trouble;
        EXPECT_SAME_BYTES(bytesOf(reading.clip->params), bytesOf(clip.params));
        EXPECT_SAME_BYTES(bytesOf(reading.clip->limiter), bytesOf(clip.limiter));
        EXPECT_EQ(reading.clip->channel, channel);
        EXPECT_EQ(reading.clip->source, source.routerSource[channel.value]);
    }
}

TEST(ChannelClip, RefusesBytesThatAreCutShortOrLonger) {
    const Bytes whole = channelClipBytes(clipOf(freshSet(), {0}));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(troubleOf(cut), "The channel on the clipboard is cut short.") << size;
    }
    Bytes longer = whole;
    longer.push_back(0);
    EXPECT_EQ(troubleOf(longer), "The channel on the clipboard is damaged.");
    EXPECT_EQ(troubleOf({}), "The channel on the clipboard is cut short.");
}

TEST(ChannelClip, RefusesEachDamagedByte) {
    const Bytes whole = channelClipBytes(clipOf(freshSet(), {0}));
    for (std::size_t i = 0; i < whole.size(); ++i) {
        for (unsigned bit = 1; bit < 256; bit <<= 1U) {
            Bytes damaged = whole;
            damaged[i] ^= static_cast<std::uint8_t>(bit);
            EXPECT_FALSE(readChannelClip(damaged).clip) << i;
        }
    }
    Bytes other = whole;
    other[0] = 'X';
    EXPECT_EQ(troubleOf(other), "The channel on the clipboard is not one of Tessavo.");
    Bytes value = whole;
    value[100] ^= 1U;
    EXPECT_EQ(troubleOf(value), "The channel on the clipboard is damaged.");
}

TEST(ChannelClip, TellsANewerVersion) {
    Bytes newer = channelClipBytes(clipOf(freshSet(), {0}));
    newer[4] = 2;
    constexpr auto told = "The channel on the clipboard was copied by a newer version of Tessavo.";
    EXPECT_EQ(troubleOf(newer), told);
    newer.resize(40);
    EXPECT_EQ(troubleOf(newer), told);
    newer.resize(1000);
    EXPECT_EQ(troubleOf(newer), told);
    newer[4] = 0;
    EXPECT_EQ(troubleOf(newer), "The channel on the clipboard is damaged.");
}

// A right check does not make right what a copy never holds.
TEST(ChannelClip, RefusesWhatItNeverWrites) {
    const Bytes whole = channelClipBytes(clipOf(freshSet(), {0}));
    // No channel, spare bytes, the flag, spare bytes of a band, of a crossover and of the limiter.
    for (const std::size_t place :
         {8U, 10U, 11U, 12U + 152, 12U + 154, 12U + 1, 12U + 14, 12U + 133, 180U + 21}) {
        Bytes bytes = whole;
        bytes[place] = 8;
        EXPECT_EQ(troubleOf(checked(bytes)), "The channel on the clipboard is damaged.") << place;
    }
    Bytes size = whole;
    size[6] = 219;
    EXPECT_EQ(troubleOf(checked(size)), "The channel on the clipboard is damaged.");
    Bytes volume = whole;
    volume[12 + 143] = 0x42;
    EXPECT_TRUE(readChannelClip(checked(volume)).clip);
}

TEST(ChannelClip, RefusesNoise) {
    std::mt19937_64 random(35);
    for (int round = 0; round < 2000; ++round) {
        Bytes noise(random() % 400);
        for (std::uint8_t& byte : noise) {
            byte = static_cast<std::uint8_t>(random());
        }
        EXPECT_FALSE(troubleOf(noise).empty());
    }
}

}  // namespace
}  // namespace tessavo::test
