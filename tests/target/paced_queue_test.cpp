#include "target/paced_queue.h"

#include <gtest/gtest.h>

namespace tessavo::test {
namespace {

using std::chrono::milliseconds;
using Bytes = std::vector<std::uint8_t>;

constexpr TargetTime at(int ms) {
    return milliseconds(ms);
}

TEST(PacedQueue, AByteTakesTenBitTimes) {
    EXPECT_EQ(byteTime(1000), milliseconds(10));
    EXPECT_EQ(byteTime(115200).count(), 86805);
    EXPECT_EQ(byteTime(0).count(), 0);
}

TEST(PacedQueue, BytesArriveOneAfterTheOther) {
    PacedQueue line(milliseconds(10));
    line.push(Bytes{1, 2, 3}, at(100));
    EXPECT_EQ(line.nextDue(), at(110));
    EXPECT_TRUE(line.take(at(109)).empty());
    EXPECT_EQ(line.take(at(110)), Bytes{1});
    EXPECT_EQ(line.nextDue(), at(120));
    EXPECT_EQ(line.take(at(1000)), (Bytes{2, 3}));
    EXPECT_EQ(line.nextDue(), std::nullopt);
}

TEST(PacedQueue, ASecondRunWaitsForTheFirst) {
    PacedQueue line(milliseconds(10));
    line.push(Bytes{1, 2}, at(0));
    line.push(Bytes{3}, at(5));
    EXPECT_EQ(line.take(at(29)), (Bytes{1, 2}));
    EXPECT_EQ(line.nextDue(), at(30));
    line.push(Bytes{4}, at(500));
    EXPECT_EQ(line.take(at(509)), Bytes{3});
    EXPECT_EQ(line.take(at(510)), Bytes{4});
}

TEST(PacedQueue, AnUnpacedLineIsAsFastAsItsStart) {
    PacedQueue line(TargetTime{0});
    line.push(Bytes{1, 2, 3}, at(100));
    EXPECT_TRUE(line.take(at(99)).empty());
    EXPECT_EQ(line.take(at(100)), (Bytes{1, 2, 3}));
}

TEST(PacedQueue, TheLimitCutsAndLosesNothing) {
    PacedQueue line(TargetTime{0});
    line.push(Bytes{1, 2, 3}, at(0));
    line.push(Bytes{4, 5}, at(0));
    EXPECT_EQ(line.take(at(0), 0), Bytes{});
    EXPECT_EQ(line.take(at(0), 4), (Bytes{1, 2, 3, 4}));
    EXPECT_EQ(line.size(), 1U);
    EXPECT_EQ(line.take(at(0), 4), Bytes{5});
    EXPECT_EQ(line.size(), 0U);
}

TEST(PacedQueue, ClearingFreesTheLine) {
    PacedQueue line(milliseconds(10));
    line.push(Bytes(1000, 7), at(0));
    line.clear();
    EXPECT_EQ(line.size(), 0U);
    EXPECT_EQ(line.nextDue(), std::nullopt);
    line.push(Bytes{9}, at(1));
    EXPECT_EQ(line.take(at(11)), Bytes{9});
}

TEST(PacedQueue, NothingPushedIsNothingDue) {
    PacedQueue line(milliseconds(10));
    line.push({}, at(50));
    EXPECT_EQ(line.nextDue(), std::nullopt);
    EXPECT_TRUE(line.take(at(1000)).empty());
}

}  // namespace
}  // namespace tessavo::test
