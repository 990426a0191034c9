#include "target/frame_collector.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

#include "support/device_host.h"

namespace tessavo::test {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

/// Writes down what a collector finds.
struct Found {
    std::vector<Bytes> frames;
    int disconnects = 0;
    std::size_t dropped = 0;
    FrameCollector collector{
        {.frame =
             [this](std::span<const std::uint8_t> frame) { frames.emplace_back(frame.begin(), frame.end()); },
         .disconnect = [this] { ++disconnects; },
         .dropped = [this](std::size_t count) { dropped += count; }}};
};

constexpr TargetTime start = milliseconds(10000);

TEST(FrameCollector, FindsEveryTypeWhole) {
    for (const std::uint8_t type : Bytes{1, 2, 3, 5}) {
        Found found;
        const Bytes frame = frameOf(type, 1, {9, 8, 7});
        found.collector.receive(frame, start);
        EXPECT_THAT(found.frames, ElementsAre(frame));
        EXPECT_EQ(found.dropped, 0U);
    }
}

TEST(FrameCollector, FindsFramesCutAtEveryPlace) {
    const Bytes frame = frameOf(frame_type::block128, 1, {4, 4, 4, 0x43});
    for (std::size_t cut = 0; cut <= frame.size(); ++cut) {
        Found found;
        found.collector.receive(std::span{frame}.first(cut), start);
        found.collector.receive(std::span{frame}.subspan(cut), start + milliseconds(499));
        EXPECT_THAT(found.frames, ElementsAre(frame)) << cut;
        EXPECT_EQ(found.disconnects, 0) << cut;
    }
}

TEST(FrameCollector, FindsFramesBackToBack) {
    Found found;
    Bytes bytes = frameOf(frame_type::block128, 1, {1});
    const Bytes second = frameOf(frame_type::block1k, 2, {2});
    bytes.insert(bytes.end(), second.begin(), second.end());
    bytes.push_back(control_byte::disconnect);
    bytes.push_back(control_byte::disconnect);
    found.collector.receive(bytes, start);
    EXPECT_EQ(found.frames.size(), 2U);
    EXPECT_EQ(found.disconnects, 2);
}

TEST(FrameCollector, AnIncompleteFrameEndsWithTheQuietGap) {
    const Bytes frame = frameOf(frame_type::block128, 1, {});
    for (std::size_t cut = 1; cut < frame.size(); ++cut) {
        Found found;
        found.collector.receive(std::span{frame}.first(cut), start);
        found.collector.receive(frame, start + FrameCollector::quietGap);
        EXPECT_THAT(found.frames, ElementsAre(frame)) << cut;
        EXPECT_EQ(found.dropped, cut);
    }
}

TEST(FrameCollector, AQuietGapBetweenFramesDropsNothing) {
    Found found;
    const Bytes frame = frameOf(frame_type::block128, 1, {});
    found.collector.receive(frame, start);
    found.collector.receive(frame, start + std::chrono::hours(1));
    EXPECT_EQ(found.frames.size(), 2U);
    EXPECT_EQ(found.dropped, 0U);
}

TEST(FrameCollector, BytesThatStartNoFrameAreDroppedOneByOne) {
    Found found;
    Bytes bytes{0, 6, 7, 0x15, 0x43, 0xFF};
    const Bytes frame = frameOf(frame_type::block128, 1, {});
    bytes.insert(bytes.end(), frame.begin(), frame.end());
    found.collector.receive(bytes, start);
    EXPECT_THAT(found.frames, ElementsAre(frame));
    EXPECT_EQ(found.dropped, 6U);
}

TEST(FrameCollector, ResetForgetsAnIncompleteFrame) {
    Found found;
    const Bytes frame = frameOf(frame_type::block128, 1, {});
    found.collector.receive(std::span{frame}.first(50), start);
    found.collector.reset();
    found.collector.receive(frame, start);
    EXPECT_THAT(found.frames, ElementsAre(frame));
    EXPECT_EQ(found.dropped, 50U);
}

TEST(FrameCollector, EveryByteIsAccountedFor) {
    std::mt19937 random(20240607);
    for (int round = 0; round < 200; ++round) {
        Found found;
        TargetTime now = start;
        std::size_t sent = 0;
        for (int piece = 0; piece < 20; ++piece) {
            Bytes bytes(random() % 3000);
            for (auto& byte : bytes) {
                byte = static_cast<std::uint8_t>(random() % (round % 2 == 0 ? 256 : 8));
            }
            sent += bytes.size();
            found.collector.receive(bytes, now);
            now += milliseconds(random() % 700);
        }
        found.collector.reset();
        std::size_t seen = found.dropped + static_cast<std::size_t>(found.disconnects);
        for (const Bytes& frame : found.frames) {
            ASSERT_EQ(frame.size(), payloadSize(frame[0]) + frameOverhead);
            seen += frame.size();
        }
        ASSERT_EQ(seen, sent);
    }
}

}  // namespace
}  // namespace tessavo::test
