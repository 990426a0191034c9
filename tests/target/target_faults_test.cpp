#include <algorithm>
#include <gtest/gtest.h>

#include "support/device_host.h"

namespace tessavo::test {
namespace {

using std::chrono::milliseconds;

/// A host whose device makes the named trouble.
struct FaultyHost : DeviceHost {
    explicit FaultyHost(const std::vector<std::string>& faults) : DeviceHost({.faults = planOf(faults)}) {}

    static FaultPlan planOf(const std::vector<std::string>& faults) {
        FaultPlan plan;
        for (const std::string& fault : faults) {
            EXPECT_EQ(addFault(plan, fault), "");
        }
        return plan;
    }
};

/// The reply behind a request's positive answer.
Bytes replyBehind(Bytes heard) {
    EXPECT_FALSE(heard.empty());
    EXPECT_EQ(heard.front(), control_byte::positive);
    heard.erase(heard.begin());
    return heard;
}

TEST(TargetFaults, NoRequest) {
    FaultyHost host({"no-request"});
    EXPECT_EQ(host.open(), silence);
    EXPECT_EQ(host.exchange(liveFrame(imageOf(1))), positive) << "the rest of the device is sound";
}

TEST(TargetFaults, WrongRequest) {
    FaultyHost host({"wrong-request"});
    const Bytes heard = host.open();
    ASSERT_EQ(heard.size(), 1U);
    EXPECT_NE(heard, requestByte);
    FaultyHost repeating({"wrong-request=5"});
    EXPECT_EQ(repeating.open(), Bytes(5, heard[0]));
    EXPECT_EQ(repeating.open(), Bytes(5, heard[0])) << "in every connection";
}

TEST(TargetFaults, NegativeAnswerToOneBlock) {
    FaultyHost host({"negative=2"});
    for (int connection = 0; connection < 2; ++connection) {
        host.open();
        EXPECT_EQ(host.exchange(frameOf(frame_type::block1k, 1, {1})), positive);
        EXPECT_EQ(host.exchange(frameOf(frame_type::block1k, 2, Bytes(1024, 2))), negative);
        EXPECT_EQ(host.exchange(frameOf(frame_type::block1k, 2, Bytes(1024, 3))), positive)
            << "not taken before";
        EXPECT_EQ(host.exchange(disconnect), positive);
        ASSERT_EQ(host.device.memory().software.size(), 2048U);
        EXPECT_EQ(host.device.memory().software.back(), 3);
        host.close();
    }
}

TEST(TargetFaults, NegativeAnswerToARequest) {
    FaultyHost host({"negative=1"});
    EXPECT_EQ(host.push(requestFrame({5})), negative);
    EXPECT_EQ(host.exchange(requestFrame({5})).size(), 1 + maximumFrameSize);
}

TEST(TargetFaults, SilenceAtOneBlock) {
    FaultyHost host({"silence=1"});
    EXPECT_EQ(host.push(liveFrame(imageOf(1))), silence);
    EXPECT_EQ(host.device.memory().live, imageOf(0));
    EXPECT_EQ(host.exchange(liveFrame(imageOf(1))), positive);
}

TEST(TargetFaults, JunkBeforeEachAnswer) {
    FaultyHost host({"junk=3"});
    EXPECT_EQ(host.open(), requestByte) << "the request byte is no answer";
    for (const Bytes& heard : {host.exchange(liveFrame(imageOf(1))), host.exchange(disconnect)}) {
        ASSERT_EQ(heard.size(), 4U);
        EXPECT_EQ(heard.back(), control_byte::positive);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_NE(heard[i], control_byte::positive);
            EXPECT_NE(heard[i], control_byte::negative);
            EXPECT_NE(heard[i], control_byte::request);
        }
    }
    const Bytes heard = host.exchange(requestFrame({5}));
    ASSERT_EQ(heard.size(), 4U + maximumFrameSize);
    XModemMessage message;
    EXPECT_TRUE(ParseFrame(std::span{heard}.subspan(4), message)) << "the reply itself stays clean";
}

TEST(TargetFaults, DamagedReply) {
    FaultyHost host({"damaged-reply"});
    const Bytes reply = replyBehind(host.push(requestFrame({5})));
    ASSERT_EQ(reply.size(), maximumFrameSize);
    XModemMessage message;
    EXPECT_FALSE(ParseFrame(reply, message));
    EXPECT_EQ(message.complement, 0xFE);
}

TEST(TargetFaults, TruncatedReply) {
    FaultyHost host({"truncated-reply=100"});
    EXPECT_EQ(replyBehind(host.push(requestFrame({5}))).size(), 100U);
    EXPECT_EQ(host.readFromDevice(milliseconds(60000)), silence);
    FaultyHost nothing({"truncated-reply=0"});
    EXPECT_EQ(nothing.push(requestFrame({5})), positive);
}

TEST(TargetFaults, WrongComplement) {
    FaultyHost host({"wrong-complement"});
    const Bytes reply = replyBehind(host.push(requestFrame({5})));
    ASSERT_EQ(reply.size(), maximumFrameSize);
    EXPECT_NE(reply[2], 0xFE);
    Bytes repaired = reply;
    repaired[2] = 0xFE;
    XModemMessage message;
    EXPECT_FALSE(ParseFrame(reply, message));
    EXPECT_TRUE(ParseFrame(repaired, message)) << "nothing else is wrong";
}

TEST(TargetFaults, LateReply) {
    FaultyHost host({"late=3000"});
    host.open();
    EXPECT_EQ(host.exchange(requestFrame({5}), milliseconds(2999)), positive);
    EXPECT_EQ(host.readFromDevice(milliseconds(1)).size(), maximumFrameSize);
}

TEST(TargetFaults, ALateReplyDoesNotReachTheNextConnection) {
    FaultyHost host({"late=3000"});
    EXPECT_EQ(host.push(requestFrame({5})), positive);
    host.close();
    EXPECT_EQ(host.open(), requestByte);
    EXPECT_EQ(host.readFromDevice(milliseconds(10000)), silence);
}

TEST(TargetFaults, WrongConfirmation) {
    FaultyHost host({"wrong-confirmation"});
    host.push(liveFrame(imageOf(1)));
    const Bytes reply = host.ask({8});
    ASSERT_EQ(reply.size(), maximumPayloadSize);
    EXPECT_NE(Bytes(reply.begin(), reply.begin() + 10), Bytes(10, 0x11));
}

TEST(TargetFaults, WrongDigest) {
    FaultyHost host({"wrong-digest"});
    const Bytes reply = host.ask({4, 1});
    ASSERT_EQ(reply.size(), maximumPayloadSize) << "the frame itself is right";
    const auto digest = md5(imageOf(0));
    EXPECT_TRUE(std::equal(digest.begin(), digest.end() - 1, reply.begin() + 3404));
    EXPECT_NE(digest.back(), reply[3419]);
}

TEST(TargetFaults, NoAnswerToTheDisconnect) {
    FaultyHost host({"no-disconnect"});
    host.push(frameOf(frame_type::block1k, 1, Bytes(1024, 5)));
    EXPECT_EQ(host.exchange(disconnect), silence);
    EXPECT_EQ(host.device.memory().software.size(), 1024U) << "it was heard all the same";
}

TEST(TargetFaults, TheCableIsPulledAtEveryByteOfAnExchange) {
    // Request byte, live frame, answer, disconnect, answer.
    constexpr std::size_t whole = 1 + maximumFrameSize + 1 + 1 + 1;
    const auto stepFrom = [](std::size_t count) -> std::size_t {
        return count < 10 || count > 4095 ? 1 : 97;
    };
    for (std::size_t count = 1; count <= whole + 1; count += stepFrom(count)) {
        FaultyHost host({"cable=" + std::to_string(count)});
        Bytes heard = host.open();
        const Bytes frame = liveFrame(imageOf(1));
        for (const Bytes& sent : {frame, disconnect}) {
            const Bytes more = host.exchange(sent);
            heard.insert(heard.end(), more.begin(), more.end());
        }
        const Bytes all{control_byte::request, control_byte::positive, control_byte::positive};
        const std::size_t expected = count < 1 + frame.size() + 1 ? 1 : count < whole ? 2 : 3;
        ASSERT_EQ(heard, Bytes(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(expected))) << count;
        ASSERT_EQ(host.device.cablePulled(), count <= whole) << count;
        ASSERT_EQ(host.device.memory().live, imageOf(count > frame.size() ? 1 : 0)) << count;
        if (count <= whole) {
            ASSERT_FALSE(host.device.isOpen());
            ASSERT_EQ(host.open(), silence) << "nothing comes back to life";
            ASSERT_EQ(host.device.nextDue(), std::nullopt);
        }
    }
}

TEST(TargetFaults, TheCableCountsOverAllConnections) {
    FaultyHost host({"cable=5"});
    for (int connection = 0; connection < 4; ++connection) {
        EXPECT_EQ(host.open(), requestByte);
        host.close();
    }
    EXPECT_FALSE(host.device.cablePulled());
    EXPECT_EQ(host.open(), requestByte);
    EXPECT_TRUE(host.device.cablePulled());
}

TEST(TargetFaults, FaultsCombine) {
    FaultyHost host({"junk", "negative=1", "wrong-digest", "damaged-reply"});
    host.open();
    EXPECT_EQ(host.exchange(requestFrame({4, 0})).back(), control_byte::negative);
    const Bytes heard = host.exchange(requestFrame({4, 0}));
    ASSERT_EQ(heard.size(), 2U + maximumFrameSize);
    XModemMessage message;
    EXPECT_FALSE(ParseFrame(std::span{heard}.subspan(2), message));
}

}  // namespace
}  // namespace tessavo::test
