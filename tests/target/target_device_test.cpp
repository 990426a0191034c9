#include "target/target_device.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <set>

#include "support/device_host.h"

namespace tessavo::test {
namespace {

using std::chrono::milliseconds;

constexpr std::size_t readReplySize = 1 + maximumFrameSize;

bool isConfirmed(const Bytes& reply) {
    return reply.size() == maximumPayloadSize &&
           std::all_of(reply.begin(), reply.begin() + 10, [](std::uint8_t byte) { return byte == 0x11; });
}

TEST(TargetDevice, OpeningGivesOneRequestByte) {
    DeviceHost host;
    EXPECT_EQ(host.readFromDevice(), silence);
    EXPECT_EQ(host.open(), requestByte);
    EXPECT_EQ(host.readFromDevice(milliseconds(60000)), silence);
    host.close();
    EXPECT_EQ(host.readFromDevice(), silence);
    EXPECT_EQ(host.open(), requestByte);
    EXPECT_EQ(host.open(), requestByte) << "reopened before the closing was noticed";
}

TEST(TargetDevice, ASecondOpeningGetsItsRequestByteAndLeavesTheMessageAlone) {
    DeviceHost host;
    host.device.openedAgain(host.now);
    EXPECT_EQ(host.readFromDevice(), silence) << "nobody has opened it a first time";
    host.open();
    EXPECT_EQ(host.exchange(frameOf(frame_type::block1k, 1, Bytes(1024, 1))), positive);
    host.device.openedAgain(host.now);
    EXPECT_EQ(host.readFromDevice(), requestByte);
    EXPECT_EQ(host.exchange(frameOf(frame_type::block1k, 2, Bytes(1024, 2))), positive);
    EXPECT_EQ(host.exchange(disconnect), positive);
    EXPECT_EQ(host.device.memory().software.size(), 2048U);
}

TEST(TargetDevice, ClosingTakesBackWhatWasNotHeard) {
    DeviceHost host;
    host.device.opened(host.now);
    host.close();
    EXPECT_EQ(host.device.nextDue(), std::nullopt);
    EXPECT_EQ(host.readFromDevice(), silence);
}

TEST(TargetDevice, HearsNothingWhileClosed) {
    DeviceHost host;
    EXPECT_EQ(host.exchange(liveFrame(imageOf(1))), silence);
    EXPECT_EQ(host.exchange(disconnect), silence);
    EXPECT_EQ(host.device.memory().live, imageOf(0));
}

TEST(TargetDevice, ALiveImageIsTakenAndConfirmed) {
    DeviceHost host;
    EXPECT_EQ(host.push(liveFrame(imageOf(1))), positive);
    EXPECT_EQ(host.exchange(disconnect), positive);
    EXPECT_EQ(host.device.memory().live, imageOf(1));
    EXPECT_EQ(host.device.memory().sets[0], imageOf(0)) << "no set changes";
    EXPECT_TRUE(isConfirmed(host.ask({8})));
    EXPECT_TRUE(isConfirmed(host.ask({8}))) << "asking does not use it up";
}

TEST(TargetDevice, ALiveImageWithAWrongDigestIsAnsweredButNotConfirmed) {
    DeviceHost host;
    EXPECT_FALSE(isConfirmed(host.ask({8}))) << "nothing has been sent yet";
    host.push(liveFrame(imageOf(1)));
    Bytes message = liveMessage(imageOf(2));
    message.back() ^= 0x80;
    EXPECT_EQ(host.push(frameOf(frame_type::block4k, 1, message)), positive);
    EXPECT_EQ(host.device.memory().live, imageOf(1));
    const Bytes reply = host.ask({8});
    ASSERT_EQ(reply.size(), maximumPayloadSize);
    EXPECT_FALSE(isConfirmed(reply));
    host.push(liveFrame(imageOf(2)));
    EXPECT_TRUE(isConfirmed(host.ask({8})));
}

TEST(TargetDevice, EveryByteOfTheLiveImageIsDigested) {
    DeviceHost host;
    const Bytes message = liveMessage(imageOf(3));
    for (std::size_t byteOffset = 0; byteOffset < message.size(); ++byteOffset) {
        Bytes damaged = message;
        damaged[byteOffset] ^= 0x01;
        ASSERT_EQ(host.push(frameOf(frame_type::block4k, 1, damaged)), positive);
        ASSERT_EQ(host.device.memory().live, imageOf(0)) << byteOffset;
    }
}

TEST(TargetDevice, SavesTheLiveImageIntoEachSet) {
    for (std::uint8_t set = 0; set < targetSetCount; ++set) {
        DeviceHost host;
        host.push(liveFrame(imageOf(9)));
        EXPECT_EQ(host.push(saveFrame(set, imageOf(9))), positive);
        EXPECT_EQ(host.exchange(disconnect), positive);
        for (std::uint8_t other = 0; other < targetSetCount; ++other) {
            EXPECT_EQ(host.device.memory().sets[other], imageOf(other == set ? 9 : 0));
        }
    }
}

TEST(TargetDevice, SavesNothingWithAnotherDigest) {
    DeviceHost host;
    host.push(liveFrame(imageOf(1)));
    EXPECT_EQ(host.push(saveFrame(2, imageOf(2))), negative);
    EXPECT_EQ(host.device.memory().sets[2], imageOf(0));
    EXPECT_EQ(host.exchange(saveFrame(2, imageOf(1))), positive) << "the block may be sent again";
    EXPECT_EQ(host.device.memory().sets[2], imageOf(1));
}

TEST(TargetDevice, SavesIntoNoSetBeyondTheFifth) {
    DeviceHost host;
    host.push(liveFrame(imageOf(1)));
    for (int set = targetSetCount; set < 256; ++set) {
        EXPECT_EQ(host.push(saveFrame(static_cast<std::uint8_t>(set), imageOf(1))), negative);
    }
    EXPECT_EQ(host.device.memory().sets, TargetMemory::holding(imageOf(0)).sets);
}

TEST(TargetDevice, RefusesUnknownCommands) {
    DeviceHost host;
    for (int code = 0; code < 256; ++code) {
        const auto byte = static_cast<std::uint8_t>(code);
        if (code != 1) {
            EXPECT_EQ(host.push(frameOf(frame_type::block128, 1, {byte, 1})), negative) << code;
        }
        if (code != 4 && code != 5 && code != 6 && code != 8) {
            EXPECT_EQ(host.push(requestFrame({byte})), negative) << code;
        }
    }
}

TEST(TargetDevice, AnswersExactlyTheRequestsThatTheTableOfMessagesTells) {
    for (int code = 0; code < 256; ++code) {
        const auto told = std::ranges::find_if(targetMessages(), [code](const TargetMessage& message) {
            return message.code == code && message.frameType == frame_type::block2k;
        });
        DeviceHost host;
        const Bytes reply = host.ask({static_cast<std::uint8_t>(code), 1});
        EXPECT_EQ(reply.size(), told == targetMessages().end() ? 0 : maximumPayloadSize) << code;
    }
}

TEST(TargetDevice, TheTableOfMessagesTellsRepliesOfRequestsOnlyAndEachCodeOnce) {
    std::set<int> codes;
    for (const TargetMessage& message : targetMessages()) {
        EXPECT_EQ(message.reply.empty(), message.frameType != frame_type::block2k) << message.name;
        EXPECT_GT(payloadSize(message.frameType), 0U) << message.name;
        EXPECT_TRUE(!message.code || codes.insert(*message.code).second) << message.name;
    }
    EXPECT_EQ(codes, (std::set{1, 4, 5, 6, 8}));
}

TEST(TargetDevice, SendsEachSetWithItsDigest) {
    TargetMemory memory;
    for (std::uint8_t set = 0; set < targetSetCount; ++set) {
        memory.sets[set] = imageOf(static_cast<std::uint8_t>(set + 1));
    }
    DeviceHost host({}, memory);
    for (std::uint8_t set = 0; set < targetSetCount; ++set) {
        const Bytes reply = host.ask({4, set});
        ASSERT_EQ(reply.size(), maximumPayloadSize);
        EXPECT_TRUE(std::equal(memory.sets[set].begin(), memory.sets[set].end(), reply.begin()));
        EXPECT_TRUE(std::all_of(reply.begin() + 3384, reply.begin() + 3404,
                                [](std::uint8_t byte) { return byte == 0; }));
        const auto digest = md5(memory.sets[set]);
        EXPECT_TRUE(std::equal(digest.begin(), digest.end(), reply.begin() + 3404));
    }
    EXPECT_EQ(host.push(requestFrame({4, 6})), negative);
    EXPECT_EQ(host.push(requestFrame({4, 255})), negative);
}

TEST(TargetDevice, SendsItsVersions) {
    DeviceHost host({.versions = {.hardware = 0x01020304, .software = 0xA0B0C0D0}});
    const Bytes reply = host.ask({5});
    ASSERT_EQ(reply.size(), maximumPayloadSize);
    EXPECT_THAT(Bytes(reply.begin() + 12, reply.begin() + 20),
                testing::ElementsAre(4, 3, 2, 1, 0xD0, 0xC0, 0xB0, 0xA0));
}

TEST(TargetDevice, SendsItsClipStates) {
    DeviceHost host;
    ClipBytes state{};
    for (std::size_t i = 0; i < state.size(); ++i) {
        state[i] = static_cast<std::uint8_t>(i + 1);
    }
    host.device.clip().enqueue(state);
    Bytes reply = host.ask({6});
    ASSERT_EQ(reply.size(), maximumPayloadSize);
    EXPECT_TRUE(std::equal(state.begin(), state.end(), reply.begin()));
    EXPECT_TRUE(std::all_of(reply.begin() + 34, reply.end(), [](std::uint8_t byte) { return byte == 0; }));
    host.device.clip().hold({});
    EXPECT_EQ(host.ask({6}), Bytes(maximumPayloadSize, 0));
}

TEST(TargetDevice, RequestsMayBeRepeatedButNotRenumbered) {
    DeviceHost host;
    host.open();
    EXPECT_EQ(host.exchange(requestFrame({5})).size(), readReplySize);
    EXPECT_EQ(host.exchange(requestFrame({5})).size(), readReplySize);
    EXPECT_EQ(host.exchange(frameOf(frame_type::block2k, 2, Bytes{5})), negative);
    EXPECT_EQ(host.exchange(disconnect), positive);
}

TEST(TargetDevice, ARepeatedBlockIsNotTakenTwice) {
    DeviceHost host;
    host.open();
    const Bytes first(1024, 'a');
    const Bytes second(1024, 'b');
    EXPECT_EQ(host.exchange(frameOf(frame_type::block1k, 1, first)), positive);
    EXPECT_EQ(host.exchange(frameOf(frame_type::block1k, 1, first)), positive);
    EXPECT_EQ(host.exchange(frameOf(frame_type::block1k, 2, second)), positive);
    EXPECT_EQ(host.exchange(frameOf(frame_type::block1k, 2, second)), positive);
    EXPECT_EQ(host.exchange(frameOf(frame_type::block1k, 1, first)), negative) << "two blocks back";
    EXPECT_EQ(host.exchange(disconnect), positive);
    Bytes image = first;
    image.insert(image.end(), second.begin(), second.end());
    EXPECT_EQ(host.device.memory().software, image);
}

TEST(TargetDevice, BlocksOutOfTurnAreRefused) {
    DeviceHost host;
    host.open();
    for (int number = 0; number < 256; ++number) {
        if (number != 1) {
            EXPECT_EQ(host.exchange(frameOf(frame_type::block1k, static_cast<std::uint8_t>(number), {})),
                      negative);
        }
    }
    EXPECT_EQ(host.exchange(frameOf(frame_type::block1k, 1, {})), positive);
    EXPECT_EQ(host.exchange(frameOf(frame_type::block1k, 3, {})), negative);
    EXPECT_EQ(host.exchange(frameOf(frame_type::block4k, 2, {})), negative) << "another type";
    EXPECT_EQ(host.exchange(frameOf(frame_type::block4k, 1, {})), negative) << "another type is no repeat";
    EXPECT_EQ(host.exchange(frameOf(frame_type::block1k, 2, {})), positive);
}

TEST(TargetDevice, FurtherBlocksOfAMessageAreTaken) {
    DeviceHost host;
    host.push(liveFrame(imageOf(1)));
    EXPECT_EQ(host.exchange(frameOf(frame_type::block4k, 2, {1, 2, 3})), positive);
    EXPECT_EQ(host.push(saveFrame(1, imageOf(1))), positive);
    EXPECT_EQ(host.exchange(frameOf(frame_type::block128, 2, {1, 2})), positive);
    EXPECT_EQ(host.device.memory().live, imageOf(1));
    EXPECT_EQ(host.device.memory().sets[2], imageOf(0));
}

TEST(TargetDevice, ADisconnectBeginsANewMessage) {
    DeviceHost host;
    EXPECT_EQ(host.push(liveFrame(imageOf(1))), positive);
    EXPECT_EQ(host.exchange(disconnect), positive);
    EXPECT_EQ(host.exchange(disconnect), positive) << "a repeated disconnect is answered again";
    EXPECT_EQ(host.exchange(liveFrame(imageOf(2))), positive);
    EXPECT_EQ(host.device.memory().live, imageOf(2));
}

TEST(TargetDevice, BlockNumbersWrap) {
    DeviceHost host;
    host.open();
    Bytes image;
    for (int block = 1; block <= 512; ++block) {
        const Bytes payload(1024, static_cast<std::uint8_t>(block * 3));
        image.insert(image.end(), payload.begin(), payload.end());
        ASSERT_EQ(
            host.exchange(frameOf(frame_type::block1k, static_cast<std::uint8_t>(block & 0xFF), payload)),
            positive)
            << block;
    }
    EXPECT_EQ(host.exchange(frameOf(frame_type::block1k, 1, {})), negative) << "larger than an image can be";
    EXPECT_EQ(host.exchange(disconnect), positive);
    EXPECT_EQ(host.device.memory().software, image);
}

TEST(TargetDevice, SoftwareIsCompleteOnlyAtTheDisconnect) {
    DeviceHost host;
    host.push(frameOf(frame_type::block1k, 1, Bytes(1024, 7)));
    EXPECT_TRUE(host.device.memory().software.empty());
    host.close();
    EXPECT_TRUE(host.logged("dropped it"));
    host.open();
    EXPECT_EQ(host.exchange(disconnect), positive);
    EXPECT_TRUE(host.device.memory().software.empty());
}

TEST(TargetDevice, SoftwareOfEverySizeIsKept) {
    for (const std::size_t size : {1U, 2U, 1000U, 1021U, 1022U, 1023U, 1024U, 1025U, 2046U, 2047U, 2048U}) {
        DeviceHost host;
        host.open();
        Bytes image(size);
        std::mt19937 random(static_cast<std::uint32_t>(size));
        std::generate(image.begin(), image.end(), [&] { return static_cast<std::uint8_t>(random() & 0xFF); });
        Bytes sent = image;
        sent.push_back(static_cast<std::uint8_t>(Crc16(image) >> 8));
        sent.push_back(static_cast<std::uint8_t>(Crc16(image) & 0xFF));
        std::uint8_t block = 1;
        for (std::size_t offset = 0; offset < size; offset += 1024) {
            const auto end = std::min(sent.size(), offset + 1024);
            const Bytes payload(sent.begin() + static_cast<std::ptrdiff_t>(offset),
                                sent.begin() + static_cast<std::ptrdiff_t>(end));
            ASSERT_EQ(host.exchange(frameOf(frame_type::block1k, block++, payload)), positive);
        }
        EXPECT_EQ(host.exchange(disconnect), positive);
        Bytes kept = host.device.memory().software;
        EXPECT_EQ(kept.size(), size % 1024 == 1023 ? size + 1 : size);
        kept.resize(size);
        EXPECT_EQ(kept, image);
        EXPECT_EQ(host.logged("its CRC is right"), size % 1024 != 0 && size % 1024 != 1023) << size;
    }
}

TEST(TargetDevice, AMessageOfNoBlocksChangesNothing) {
    DeviceHost host;
    host.push(frameOf(frame_type::block1k, 1, {1, 2, 3}));
    host.exchange(disconnect);
    const Bytes before = host.device.memory().software;
    EXPECT_FALSE(before.empty());
    host.close();
    EXPECT_EQ(host.open(), requestByte);
    EXPECT_EQ(host.exchange(disconnect), positive);
    EXPECT_EQ(host.device.memory().software, before);
}

TEST(TargetDevice, AFrameDamagedAtAnyPlaceIsNeverTaken) {
    const Bytes frame = saveFrame(1, imageOf(5));
    for (std::size_t byteOffset = 0; byteOffset < frame.size(); ++byteOffset) {
        for (const std::uint8_t mask : Bytes{0x01, 0x80, 0xFF}) {
            DeviceHost host;
            host.push(liveFrame(imageOf(5)));
            host.close();
            host.open();
            Bytes damaged = frame;
            damaged[byteOffset] = static_cast<std::uint8_t>(damaged[byteOffset] ^ mask);
            const Bytes answer = host.exchange(damaged);
            ASSERT_NE(answer, positive) << byteOffset;
            if (byteOffset > 0) {
                ASSERT_EQ(answer, negative) << byteOffset;
            }
            ASSERT_EQ(host.device.memory().sets[1], imageOf(0)) << byteOffset;
            ASSERT_EQ(host.exchange(frame), positive)
                << "the same frame, sent again, after place " << byteOffset;
            ASSERT_EQ(host.device.memory().sets[1], imageOf(5)) << byteOffset;
        }
    }
}

TEST(TargetDevice, ALiveFrameDamagedAtAnyPlaceIsNeverTaken) {
    const Bytes frame = liveFrame(imageOf(5));
    for (std::size_t byteOffset = 1; byteOffset < frame.size(); ++byteOffset) {
        DeviceHost host;
        Bytes damaged = frame;
        damaged[byteOffset] ^= 0x20;
        ASSERT_EQ(host.push(damaged), negative) << byteOffset;
        ASSERT_EQ(host.device.memory().live, imageOf(0)) << byteOffset;
        ASSERT_EQ(host.exchange(frame), positive) << byteOffset;
    }
}

TEST(TargetDevice, AFrameCutAtAnyPlaceIsForgottenAfterTheQuietGap) {
    const Bytes frame = saveFrame(1, imageOf(0));
    for (std::size_t length = 1; length < frame.size(); ++length) {
        DeviceHost host;
        host.open();
        ASSERT_EQ(host.exchange(std::span{frame}.first(length), milliseconds(500)), silence) << length;
        ASSERT_EQ(host.exchange(frame), positive) << length;
    }
}

TEST(TargetDevice, ALiveFrameCutAtAnyPlaceDoesNotReachTheNextConnection) {
    const Bytes frame = liveFrame(imageOf(5));
    DeviceHost host;
    for (std::size_t length = 1; length < frame.size(); ++length) {
        host.close();
        host.device.opened(host.now);
        host.device.receive(std::span{frame}.first(length), host.now);
        host.close();
        ASSERT_EQ(host.open(), requestByte) << length;
        ASSERT_EQ(host.exchange(requestFrame({5})).size(), readReplySize) << length;
    }
    EXPECT_EQ(host.device.memory().live, imageOf(0));
}

TEST(TargetDevice, GarbageNeverWedgesIt) {
    std::mt19937 random(4711);
    DeviceHost host;
    for (int round = 0; round < 1000; ++round) {
        host.close();
        host.open();
        Bytes garbage(random() % 6000);
        for (auto& byte : garbage) {
            byte = static_cast<std::uint8_t>(random() % (round % 3 == 0 ? 7 : 256));
        }
        for (std::size_t at = 0; at < garbage.size();) {
            const std::size_t length = std::min<std::size_t>(1 + random() % 2000, garbage.size() - at);
            host.device.receive(std::span{garbage}.subspan(at, length), host.now);
            host.now += milliseconds(random() % 600);
            at += length;
        }
        host.readFromDevice(FrameCollector::quietGap);
        ASSERT_EQ(host.exchange(disconnect), positive) << round;
        const ImageBytes image = imageOf(static_cast<std::uint8_t>(round));
        ASSERT_EQ(host.exchange(liveFrame(image)), positive) << round;
        ASSERT_EQ(host.device.memory().live, image);
    }
    EXPECT_EQ(host.device.memory().sets, TargetMemory::holding(imageOf(0)).sets);
}

TEST(TargetDevice, RepliesKeepTheLinesPace) {
    DeviceHost host({.timePerByte = byteTime(115200)});
    host.open();
    host.device.receive(requestFrame({5}), host.now);
    EXPECT_EQ(host.device.nextDue(), host.now + byteTime(115200));
    EXPECT_EQ(host.readFromDevice(milliseconds(1)).size(), 11U);
    EXPECT_EQ(host.readFromDevice(milliseconds(355)).size(), 4102U - 11U - 1U);
    EXPECT_EQ(host.readFromDevice(milliseconds(1)).size(), 1U) << "4102 bytes take 356.07 ms";
}

}  // namespace
}  // namespace tessavo::test
