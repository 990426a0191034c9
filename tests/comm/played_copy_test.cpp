#include "comm/played_copy.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

#include "params/volume_gain_table.h"
#include "support/harness.h"

namespace tessavo::test {
namespace {

TEST(PlayedCopyOfAnImage, IsTheImageToTheByteWithoutTerms) {
    PlayedCopy played;
    EXPECT_TRUE(played.isPlain() && played.tookPlain());
    std::mt19937_64 random(3);
    for (int i = 0; i < 200; ++i) {
        Bytes bytes(imageSize);
        for (auto& byte : bytes) {
            byte = static_cast<std::uint8_t>(random());
        }
        EXPECT_SAME_BYTES(bytesOf(played.of(recordOf<ParameterImage>(bytes))), bytes);
    }
    Tuning tuning;
    EXPECT_SAME_BYTES(bytesOf(played.take(tuning.state)), tuning.image());
    EXPECT_TRUE(played.tookPlain());
}

TEST(PlayedCopyOfAnImage, LowersTheGainWordOfEveryChannelAndTouchesNoOtherByte) {
    Tuning tuning;
    PlayedCopy played;
    tuning.state.setSelectionMask(0x80);
    for (std::uint8_t p = 0; p < channelCount; ++p) {
        tuning.state.setSelectionMask(selectionBit({p}));
        tuning.state.setVolume(static_cast<float>(p) - 5.0F, true);
    }
    played.setLoweredSteps(3);
    EXPECT_FALSE(played.isPlain());
    Bytes expected = tuning.image();
    for (std::size_t p = 0; p < channelCount; ++p) {
        const float levelDb = static_cast<float>(p) - 5.0F - 1.5F;
        writeAt(expected, imageBlockOffset(pageChannels[p]) + 4, gainWordOf(levelDb, 0.0F));
    }
    EXPECT_SAME_BYTES(bytesOf(played.of(tuning.state.image())), expected);
    EXPECT_SAME_BYTES(bytesOf(played.take(tuning.state)), expected);
    EXPECT_FALSE(played.tookPlain());
    played.setLoweredSteps(0);
    EXPECT_FALSE(played.tookPlain()) << "until another one is taken";
    EXPECT_SAME_BYTES(bytesOf(played.take(tuning.state)), tuning.image());
    EXPECT_TRUE(played.tookPlain());
}

// Image and terms change together: while one thread takes copies, each is of one pair.
TEST(PlayedCopyOfAnImage, IsNeverMadeOfOneSideWithTheTermsOfTheOther) {
    Tuning tuning;
    tuning.state.setSelectionMask(0xFF);
    PlayedCopy played;
    const std::uint32_t soft = gainWordOf(2.0F, 0.0F);
    tuning.state.setVolume(2.0F, true);
    std::atomic<bool> stop = false;
    std::atomic<int> taken = 0;
    std::atomic<int> wrong = 0;
    std::thread taker([&] {
        while (!stop) {
            const ParameterImage copy = played.take(tuning.state);
            for (const ChannelImageBlock& channel : copy.channels) {
                wrong += channel.gainWord != soft ? 1 : 0;
            }
            ++taken;
        }
    });
    for (int i = 0; i < 2000 || taken < 500; ++i) {
        const bool louder = i % 2 == 0;
        const SemaphoreHold hold = played.hold();
        tuning.state.setVolume(louder ? 8.0F : 2.0F, true);
        played.setLoweredSteps(louder ? 12 : 0);
    }
    stop = true;
    taker.join();
    EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace tessavo::test
