#include "comm/framing.h"

#include <algorithm>
#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string_view>

#include "support/exchange_fixture.h"

namespace tessavo::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;

constexpr std::array<std::uint8_t, 4> sizedTypes{1, 2, 3, 5};

Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

TEST(Crc16, MatchesThePublishedVectors) {
    EXPECT_EQ(Crc16(bytesOf("123456789")), 0x29B1);
    EXPECT_EQ(Crc16(Bytes{}), 0xFFFF);
    EXPECT_EQ(Crc16(bytesOf("A")), 0xB915);
    EXPECT_EQ(Crc16(Bytes(1, 0x00)), 0xE1F0);
    EXPECT_EQ(Crc16(Bytes(1, 0xFF)), 0xFF00);
    EXPECT_EQ(Crc16(Bytes(4, 0x00)), 0x84C0);
    EXPECT_EQ(Crc16(Bytes(4, 0xFF)), 0x1D0F);
    EXPECT_EQ(Crc16(Bytes(256, 'A')), 0xEA0B);
}

TEST(Crc16, OfNoBytesReadsNothing) {
    EXPECT_EQ(Crc16(0, nullptr), 0xFFFF);
}

TEST(Crc16, MatchesTheBitwiseDefinition) {
    for (std::uint32_t round = 0; round < 500; ++round) {
        const Bytes bytes = randomBytes(round * 9, round);
        ASSERT_EQ(Crc16(bytes), bitwiseCrc(bytes)) << bytes.size() << " bytes";
        ASSERT_EQ(Crc16(bytes.size(), bytes.data()), bitwiseCrc(bytes));
    }
}

TEST(Crc16, OfBytesWithTheirCrcBehindThemIsZero) {
    Bytes bytes = randomBytes(1000, 7);
    const std::uint16_t crc = Crc16(bytes);
    bytes.push_back(static_cast<std::uint8_t>(crc >> 8));
    bytes.push_back(static_cast<std::uint8_t>(crc & 0xFF));
    EXPECT_EQ(Crc16(bytes), 0);
}

TEST(PayloadSize, KnowsFourTypesAndNoOther) {
    for (unsigned type = 0; type < 256; ++type) {
        const std::size_t expected = type == 1   ? 128
                                     : type == 2 ? 1024
                                     : type == 3 ? 2048
                                     : type == 5 ? 4096
                                                 : 0;
        EXPECT_EQ(payloadSize(static_cast<std::uint8_t>(type)), expected) << type;
    }
}

TEST(BuildFrame, LaysOutEveryType) {
    for (const std::uint8_t type : sizedTypes) {
        const Bytes payload = randomBytes(payloadSize(type), type);
        Bytes out(payload.size() + 5);
        EXPECT_EQ(BuildFrame(type, 0x37, payload, out), out.size());
        EXPECT_EQ(out, frameOf(type, 0x37, payload));
    }
}

TEST(BuildFrame, ComplementsEveryBlockNumber) {
    const Bytes payload(128);
    Bytes out(133);
    for (unsigned number = 0; number < 256; ++number) {
        BuildFrame(1, static_cast<std::uint8_t>(number), payload, out);
        EXPECT_EQ(out[1], number);
        EXPECT_EQ(out[2], 255 - number);
    }
}

TEST(BuildFrame, OfAnUnknownTypeIsFiveBytesWithTheCrcOfNothing) {
    for (const std::uint8_t type : {std::uint8_t{0}, std::uint8_t{4}, std::uint8_t{6}, std::uint8_t{255}}) {
        Bytes out(5, 0xEE);
        EXPECT_EQ(BuildFrame(type, 1, randomBytes(4096, 1), out), 5U);
        EXPECT_THAT(out, ElementsAre(type, 0x01, 0xFE, 0xFF, 0xFF));
    }
}

TEST(BuildFrame, PadsAShortPayload) {
    const Bytes payload = randomBytes(3, 3);
    Bytes whole = payload;
    whole.resize(128, 0x1A);
    Bytes out(133);
    EXPECT_EQ(BuildFrame(1, 1, payload, out), 133U);
    EXPECT_EQ(out, frameOf(1, 1, whole));
}

TEST(BuildFrame, ReadsNoMoreThanThePayloadSize) {
    const Bytes payload = randomBytes(500, 5);
    Bytes out(133);
    EXPECT_EQ(BuildFrame(1, 1, payload, out), 133U);
    EXPECT_EQ(out, frameOf(1, 1, std::span(payload).first(128)));
}

TEST(BuildFrame, LeavesTheBytesBehindTheFrame) {
    Bytes out(200, 0xEE);
    EXPECT_EQ(BuildFrame(1, 1, Bytes(128), out), 133U);
    EXPECT_THAT(std::span(out).subspan(133), Each(0xEE));
}

TEST(BuildFrame, RefusesASmallBuffer) {
    for (const std::uint8_t type : sizedTypes) {
        Bytes out(payloadSize(type) + 4, 0xEE);
        EXPECT_EQ(BuildFrame(type, 1, Bytes{}, out), 0U);
        EXPECT_THAT(out, Each(0xEE));
    }
    Bytes out(4, 0xEE);
    EXPECT_EQ(BuildFrame(4, 1, Bytes{}, out), 0U);
}

TEST(ParseFrame, TakesEveryTypeBack) {
    for (const std::uint8_t type : sizedTypes) {
        const Bytes payload = randomBytes(payloadSize(type), 100U + type);
        const Bytes frame = frameOf(type, 0xA5, payload);
        XModemMessage message;
        ASSERT_TRUE(ParseFrame(frame, message));
        EXPECT_EQ(message.type, type);
        EXPECT_EQ(message.kind, type);
        EXPECT_EQ(message.blockNumber, 0xA5);
        EXPECT_EQ(message.complement, 0x5A);
        EXPECT_EQ(message.size, payload.size());
        EXPECT_EQ(message.receivedCrc, bitwiseCrc(payload));
        EXPECT_THAT(std::span(message.payload).first(payload.size()), ElementsAreArray(payload));
    }
}

TEST(ParseFrame, TakesEveryBlockNumber) {
    for (unsigned number = 0; number < 256; ++number) {
        XModemMessage message;
        EXPECT_TRUE(ParseFrame(frameOf(1, static_cast<std::uint8_t>(number), Bytes(128)), message));
        EXPECT_EQ(message.blockNumber, number);
    }
}

TEST(ParseFrame, TakesAFrameOfAnUnknownTypeAsEmpty) {
    XModemMessage message;
    message.payload.fill(0xEE);
    EXPECT_TRUE(ParseFrame(Bytes{4, 1, 0xFE, 0xFF, 0xFF}, message));
    EXPECT_EQ(message.type, 4);
    EXPECT_EQ(message.kind, 0U);
    EXPECT_EQ(message.size, 0);
    EXPECT_EQ(message.receivedCrc, 0xFFFF);
    EXPECT_THAT(message.payload, Each(0xEE));
    EXPECT_FALSE(ParseFrame(Bytes{4, 1, 0xFE, 0xFF, 0xFE}, message));
}

TEST(ParseFrame, IgnoresBytesBehindTheFrame) {
    Bytes frame = frameOf(1, 1, randomBytes(128, 9));
    frame.resize(4101, 0x77);
    XModemMessage message;
    EXPECT_TRUE(ParseFrame(frame, message));
    EXPECT_EQ(message.size, 128);
}

TEST(ParseFrame, RefusesAWrongComplementWithARightCrc) {
    Bytes frame = frameOf(1, 1, randomBytes(128, 9));
    frame[2] = 0xFF;
    XModemMessage message;
    EXPECT_FALSE(ParseFrame(frame, message));
    EXPECT_EQ(message.complement, 0xFF);
}

TEST(ParseFrame, RefusesEveryTruncation) {
    for (const std::uint8_t type : sizedTypes) {
        const Bytes frame = frameOf(type, 1, randomBytes(payloadSize(type), type));
        for (std::size_t size = 0; size < frame.size(); ++size) {
            XModemMessage message;
            ASSERT_FALSE(ParseFrame(std::span(frame).first(size), message)) << size << " bytes";
        }
    }
}

class FlippedBits : public testing::TestWithParam<std::uint8_t> {};

// The type byte is not covered by the CRC: a changed type moves the payload's end, and the bytes there read
// as the CRC only by the rarest chance, which this payload does not hold.
TEST_P(FlippedBits, AreAllSeen) {
    const std::uint8_t type = GetParam();
    Bytes frame = frameOf(type, 0x01, randomBytes(payloadSize(type), 40U + type));
    XModemMessage message;
    ASSERT_TRUE(ParseFrame(frame, message));
    for (std::size_t bit = 0; bit < frame.size() * 8; ++bit) {
        const auto mask = static_cast<std::uint8_t>(1U << (bit % 8));
        frame[bit / 8] ^= mask;
        ASSERT_FALSE(ParseFrame(frame, message)) << "byte " << bit / 8 << " bit " << bit % 8;
        frame[bit / 8] ^= mask;
    }
}

TEST_P(FlippedBits, AreSeenInPairsToo) {
    const std::uint8_t type = GetParam();
    Bytes frame = frameOf(type, 0x01, randomBytes(payloadSize(type), 50U + type));
    const Bytes places = randomBytes(4000, type);
    XModemMessage message;
    for (std::size_t i = 0; i + 3 < places.size(); i += 4) {
        const std::size_t bits = (payloadSize(type) + 2) * 8;
        const std::size_t first = (places[i] * 256U + places[i + 1]) % bits;
        const std::size_t second = (places[i + 2] * 256U + places[i + 3]) % bits;
        if (first == second) {
            continue;
        }
        const auto flip = [&](std::size_t bit) {
            frame[3 + bit / 8] ^= static_cast<std::uint8_t>(1U << (bit % 8));
        };
        flip(first);
        flip(second);
        ASSERT_FALSE(ParseFrame(frame, message)) << "bits " << first << " and " << second;
        flip(first);
        flip(second);
    }
    EXPECT_TRUE(ParseFrame(frame, message));
}

INSTANTIATE_TEST_SUITE_P(EveryType, FlippedBits, testing::ValuesIn(sizedTypes),
                         [](const auto& tested) { return "Type" + std::to_string(int{tested.param}); });

}  // namespace
}  // namespace tessavo::test
