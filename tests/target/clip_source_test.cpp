#include "target/clip_source.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

namespace tessavo::test {
namespace {

ClipBytes stateWith(std::size_t entry) {
    ClipBytes state{};
    state[entry] = 1;
    return state;
}

TEST(ClipPattern, CharactersAreTheBytesInOrder) {
    for (std::size_t entry = 0; entry < ClipBytes{}.size(); ++entry) {
        std::string line(ClipBytes{}.size(), '0');
        line[entry] = '1';
        EXPECT_EQ(parseClipPattern(line), stateWith(entry)) << line;
    }
}

TEST(ClipPattern, SpacesDoNotCount) {
    EXPECT_EQ(parseClipPattern(" 10000000 00000000\t00000000 00000000 00 \r"), stateWith(0));
}

TEST(ClipPattern, OtherLinesAreNone) {
    const std::string full(34, '0');
    EXPECT_EQ(parseClipPattern(""), std::nullopt);
    EXPECT_EQ(parseClipPattern("   "), std::nullopt);
    EXPECT_EQ(parseClipPattern(full.substr(1)), std::nullopt);
    EXPECT_EQ(parseClipPattern(full + "0"), std::nullopt);
    EXPECT_EQ(parseClipPattern(full.substr(1) + "2"), std::nullopt);
    EXPECT_EQ(parseClipPattern(full.substr(1) + "x"), std::nullopt);
    EXPECT_EQ(parseClipPattern(full + "x"), std::nullopt);
    EXPECT_EQ(parseClipPattern(std::string(34, '\0')), std::nullopt);
}

TEST(ClipSource, NothingClipsAtFirst) {
    ClipSource source;
    EXPECT_EQ(source.next(), ClipBytes{});
    EXPECT_EQ(source.next(), ClipBytes{});
}

TEST(ClipSource, AQueuedStateIsShownOnceAndTheLastStays) {
    ClipSource source;
    source.enqueue(stateWith(1));
    source.enqueue(stateWith(2));
    EXPECT_EQ(source.queued(), 2U);
    EXPECT_EQ(source.next(), stateWith(1));
    EXPECT_EQ(source.next(), stateWith(2));
    EXPECT_EQ(source.queued(), 0U);
    EXPECT_EQ(source.next(), stateWith(2));
}

TEST(ClipSource, HoldingOverridesQueueAndChance) {
    ClipSource source;
    source.enqueue(stateWith(1));
    source.hold(stateWith(5));
    EXPECT_EQ(source.queued(), 0U);
    EXPECT_EQ(source.next(), stateWith(5));
    source.randomise(1);
    source.hold(stateWith(6));
    EXPECT_EQ(source.next(), stateWith(6));
    EXPECT_EQ(source.next(), stateWith(6));
}

TEST(ClipSource, RandomStatesReachEveryEntryAndRepeatWithTheSeed) {
    ClipSource source;
    ClipSource twin;
    source.randomise(42);
    twin.randomise(42);
    std::array<int, std::tuple_size_v<ClipBytes>> lit{};
    constexpr int requests = 400;
    for (int i = 0; i < requests; ++i) {
        const ClipBytes state = source.next();
        EXPECT_EQ(state, twin.next());
        for (std::size_t entry = 0; entry < state.size(); ++entry) {
            ASSERT_LE(state[entry], 1);
            lit[entry] += state[entry];
        }
    }
    for (const int count : lit) {
        EXPECT_GT(count, requests / 10);
        EXPECT_LT(count, requests / 2);
    }
}

}  // namespace
}  // namespace tessavo::test
