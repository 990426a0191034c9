#include <algorithm>
#include <gtest/gtest.h>
#include <limits>

#include "compare/channel_clip.h"
#include "compare/sets.h"

namespace tessavo::test {
namespace {

TEST(ChannelClipText, HasALineForEachFilterAndForEverythingElse) {
    ParameterSet set = freshSet();
    set.routerSource[2] = 1;
    OutputChannelParams& channel = set.channels[2];
    channel.bands[0] = {2, 0, 90, 3.5F, 0.7F, 0, {}};
    channel.bands[1] = {0, 0, 6000, -2.25F, 1.0F, 1, {}};
    channel.crossovers[0] = {1, 0, 80, 4, 0};
    channel.volumeDb = -2.5F;
    channel.delayMs = 1.7F;
    channel.invertPhase = 1;
    channel.groupDelayMs = 0.3F;
    set.limiters[2].enabled = 0;
    EXPECT_EQ(
        channelClipText(clipOf(set, {2})),
        "Channel 7: FrontLeft\n"
        "Filter 1: ON  Peak  Fc 90.0 Hz  Gain 3.5 dB  Q 0.7\n"
        "Filter 2: OFF  High Shelf  Fc 6000.0 Hz  Gain -2.25 dB  Q 1.0\n"
        "Filter 3: OFF  Peak  Fc 500.0 Hz  Gain 0.0 dB  Q 1.0\n"
        "Filter 4: OFF  Peak  Fc 1000.0 Hz  Gain 0.0 dB  Q 1.0\n"
        "Filter 5: OFF  Peak  Fc 2500.0 Hz  Gain 0.0 dB  Q 1.0\n"
        "Filter 6: OFF  Peak  Fc 6000.0 Hz  Gain 0.0 dB  Q 1.0\n"
        "Filter 7: OFF  Peak  Fc 12000.0 Hz  Gain 0.0 dB  Q 1.0\n"
        "Filter 8: OFF  Peak  Fc 16000.0 Hz  Gain 0.0 dB  Q 1.0\n"
        "Crossover 1: ON  HP  Fc 80.0 Hz  Order 4\n"
        "Crossover 2: OFF  LP  Fc 20000.0 Hz  Order 2\n"
        "Volume: -2.5 dB\n"
        "Group gain: 0.0 dB  Group A\n"
        "Delay: 1.7 ms\n"
        "Group delay: 0.3 ms  Group A\n"
        "Invert Phase: ON\n"
        "Limiter: OFF  Attack 50 ms  Release 120 ms  Gain -6.0 dB  Activate -7.0 dB  Deactivate -21.0 dB\n");
}

TEST(ChannelClipText, IsAsciiWithTheSameLinesWhateverTheValues) {
    std::mt19937_64 random(36);
    for (int round = 0; round < 100; ++round) {
        ParameterSet set = randomSet(random);
        set.channels[1].volumeDb =
            round % 2 == 0 ? std::numeric_limits<float>::quiet_NaN() : -std::numeric_limits<float>::max();
        const std::string text = channelClipText(clipOf(set, {1}));
        EXPECT_EQ(std::ranges::count(text, '\n'), 17);
        EXPECT_EQ(text.back(), '\n');
        EXPECT_TRUE(std::ranges::all_of(text, [](char c) { return c == '\n' || (c >= ' ' && c <= '~'); }))
            << text;
    }
}

}  // namespace
}  // namespace tessavo::test
