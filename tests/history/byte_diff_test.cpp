#include "history/byte_diff.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace tessavo {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes randomRow(std::mt19937& random, std::size_t size) {
    Bytes row(size);
    std::generate(row.begin(), row.end(), [&] { return static_cast<std::uint8_t>(random()); });
    return row;
}

Bytes bytesOf(const ByteDiff& diff) {
    return {diff.bytes().begin(), diff.bytes().end()};
}

Bytes applied(const ByteDiff& diff, Bytes row) {
    diff.applyTo(row);
    return row;
}

/// Checks that a difference leads both ways, and gives its runs.
std::vector<std::pair<std::size_t, std::size_t>> runsOf(const Bytes& one, const Bytes& other) {
    const ByteDiff diff = ByteDiff::between(one, other);
    EXPECT_EQ(applied(diff, one), other);
    EXPECT_EQ(applied(diff, other), one);
    EXPECT_EQ(diff.empty(), one == other);
    const Bytes bytes = bytesOf(diff);
    const auto again = ByteDiff::fromBytes(bytes, one.size());
    EXPECT_TRUE(again.has_value());
    EXPECT_EQ(again ? bytesOf(*again) : Bytes{}, bytes);
    EXPECT_EQ(again ? applied(*again, one) : Bytes{}, other);
    std::vector<std::pair<std::size_t, std::size_t>> runs;
    for (std::size_t at = 0; at + 4 <= bytes.size();) {
        const std::size_t offset = bytes[at] + 256U * bytes[at + 1];
        const std::size_t count = bytes[at + 2] + 256U * bytes[at + 3];
        runs.emplace_back(offset, count);
        at += 4 + count;
    }
    return runs;
}

using Runs = std::vector<std::pair<std::size_t, std::size_t>>;

TEST(ByteDiff, OfEqualRowsIsEmpty) {
    std::mt19937 random(1);
    for (const std::size_t size : {0U, 1U, 63U, 64U, 65U, 43388U, 49980U, 65535U}) {
        const Bytes row = randomRow(random, size);
        EXPECT_EQ(runsOf(row, row), Runs{}) << size;
    }
    EXPECT_TRUE(ByteDiff().empty());
    EXPECT_EQ(applied(ByteDiff(), {1, 2}), (Bytes{1, 2}));
}

TEST(ByteDiff, FindsTheFirstTheLastAndEveryOtherByte) {
    for (const std::size_t size : {1U, 2U, 63U, 64U, 65U, 128U, 200U}) {
        const Bytes row(size, 7);
        for (std::size_t at = 0; at < size; ++at) {
            Bytes other = row;
            other[at] = 9;
            EXPECT_EQ(runsOf(row, other), (Runs{{at, 1}})) << size;
        }
    }
}

TEST(ByteDiff, KeepsAWholeRow) {
    for (const std::size_t size : {1U, 64U, 43388U, 49980U, 65535U}) {
        EXPECT_EQ(runsOf(Bytes(size, 0x0F), Bytes(size, 0xF0)), (Runs{{0, size}}));
    }
}

TEST(ByteDiff, JoinsRunsAcrossGapsThatCostLessThanAHead) {
    for (std::size_t gap = 1; gap <= 70; ++gap) {
        const Bytes row(200, 3);
        Bytes other = row;
        other[10] = 4;
        other[11 + gap] = 4;
        const Runs expected = gap < 4 ? Runs{{10, gap + 2}} : Runs{{10, 1}, {11 + gap, 1}};
        EXPECT_EQ(runsOf(row, other), expected) << gap;
    }
}

TEST(ByteDiff, HoldsOneByteAndItsHeadForOneByte) {
    Bytes other(43388);
    other[43387] = 0x55;
    EXPECT_EQ(bytesOf(ByteDiff::between(Bytes(43388), other)), (Bytes{0x7B, 0xA9, 1, 0, 0x55}));
}

TEST(ByteDiff, LeadsFromEitherOfTwoRandomRowsToTheOther) {
    std::mt19937 random(2);
    for (int round = 0; round < 2000; ++round) {
        const Bytes one = randomRow(random, random() % 700);
        Bytes other = one;
        for (std::size_t changes = random() % 40; changes > 0 && !other.empty(); --changes) {
            const std::size_t at = random() % other.size();
            const std::size_t end = std::min<std::size_t>(other.size(), at + 1 + random() % 9);
            for (std::size_t i = at; i < end; ++i) {
                other[i] = static_cast<std::uint8_t>(random());
            }
        }
        std::size_t end = 0;
        for (const auto& [offset, count] : runsOf(one, other)) {
            EXPECT_TRUE(end == 0 || offset >= end + 4) << "two runs that one head would have held";
            EXPECT_TRUE(one[offset] != other[offset] && one[offset + count - 1] != other[offset + count - 1]);
            end = offset + count;
        }
    }
}

TEST(ByteDiff, TakesNoBytesThatAreCutShort) {
    std::mt19937 random(3);
    const Bytes one = randomRow(random, 500);
    Bytes other = one;
    for (const std::size_t at : {0U, 20U, 21U, 22U, 300U, 499U}) {
        other[at] ^= 0xFFU;
    }
    const Bytes whole = bytesOf(ByteDiff::between(one, other));
    // At the ends of runs, and at the start, a difference ends that is whole.
    const std::vector<std::size_t> ends{0, 5, 12, 17, 22};
    ASSERT_EQ(whole.size(), ends.back());
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const bool isEnd = std::ranges::count(ends, size) == 1;
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(ByteDiff::fromBytes(cut, one.size()).has_value(), isEnd) << size;
    }
}

TEST(ByteDiff, TakesNoRunsThatLieWrongly) {
    const auto isTaken = [](const Bytes& bytes, std::size_t length) {
        return ByteDiff::fromBytes(bytes, length).has_value();
    };
    EXPECT_TRUE(isTaken({0, 0, 1, 0, 9}, 1));
    EXPECT_FALSE(isTaken({0, 0, 1, 0, 9}, 0)) << "beyond an empty row";
    EXPECT_FALSE(isTaken({1, 0, 1, 0, 9}, 1)) << "behind the row";
    EXPECT_FALSE(isTaken({0, 0, 2, 0, 9, 9}, 1)) << "over the row's end";
    EXPECT_FALSE(isTaken({0, 0, 0, 0}, 9)) << "an empty run";
    EXPECT_FALSE(isTaken({0, 0, 1, 0, 9, 0, 0, 0, 0}, 9)) << "an empty run at the end";
    EXPECT_TRUE(isTaken({0, 0, 1, 0, 9, 1, 0, 1, 0, 9}, 9)) << "side by side";
    EXPECT_FALSE(isTaken({0, 0, 2, 0, 9, 9, 1, 0, 1, 0, 9}, 9)) << "overlapping";
    EXPECT_FALSE(isTaken({5, 0, 1, 0, 9, 0, 0, 1, 0, 9}, 9)) << "falling";
    EXPECT_FALSE(isTaken({0xFF, 0xFF, 0xFF, 0xFF, 9}, 65535)) << "sums that do not fit into two bytes";
    EXPECT_TRUE(isTaken({0xFE, 0xFF, 1, 0, 9}, 65535)) << "the last byte of the longest row";
}

TEST(ByteDiff, WhateverIsTakenStaysWithinItsRow) {
    std::mt19937 random(4);
    constexpr std::size_t length = 40;
    int taken = 0;
    for (int round = 0; round < 200000; ++round) {
        Bytes bytes(random() % 24);
        // Small numbers, so that some of them fit.
        std::generate(bytes.begin(), bytes.end(), [&] {
            return static_cast<std::uint8_t>(random() % 3 == 0 ? random() % 45 : random() % 2);
        });
        const auto diff = ByteDiff::fromBytes(bytes, length);
        if (!diff) {
            continue;
        }
        ++taken;
        // Guards on both sides; the address sanitizer sees what goes further.
        Bytes row(3 * length, 1);
        diff->applyTo(std::span(row).subspan(length, length));
        EXPECT_TRUE(std::all_of(row.begin(), row.begin() + length, [](auto byte) { return byte == 1; }));
        EXPECT_TRUE(std::all_of(row.begin() + 2 * length, row.end(), [](auto byte) { return byte == 1; }));
        diff->applyTo(std::span(row).subspan(length, length));
        EXPECT_EQ(row, Bytes(3 * length, 1)) << "twice leads back";
    }
    EXPECT_GT(taken, 100);
}

}  // namespace
}  // namespace tessavo
