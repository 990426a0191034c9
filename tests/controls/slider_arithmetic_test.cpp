#include "controls/slider_arithmetic.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

namespace tessavo::test {
namespace {

constexpr int margin = 3;
constexpr int thumb = 13;

/// The rule for one pixel, written out anew.
int expectedPosition(int pixel, int extent, int minimum, int maximum) {
    const double share = (pixel - thumb / 2.0 - margin) / (extent - margin - margin - thumb);
    const double position = std::trunc(share * (static_cast<double>(maximum) - minimum) + minimum);
    return static_cast<int>(std::min<double>(maximum, std::max<double>(minimum, position)));
}

struct Range {
    int minimum, maximum;
};

const std::vector<Range> ranges{
    {-180, 180}, {-20000, -20}, {20, 20000},
    {-200, -1},  {0, 20},       {0, 1},
    {7, 7},      {-300, 0},     {std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}};

TEST(SliderArithmetic, FollowsTheRuleForEveryPixelOfManySlidersAndRanges) {
    for (const int extent : {20, 28, 98, 134, 138, 164, 170, 182, 190, 262, 266, 274, 640}) {
        const SliderTrack track{static_cast<double>(extent), margin, margin, thumb};
        for (const Range& range : ranges) {
            for (int pixel = -50; pixel <= extent + 50; ++pixel) {
                ASSERT_EQ(track.positionAt(pixel, range.minimum, range.maximum),
                          expectedPosition(pixel, extent, range.minimum, range.maximum))
                    << "pixel " << pixel << " of " << extent << ", range " << range.minimum << " to "
                    << range.maximum;
            }
        }
    }
}

TEST(SliderArithmetic, NeverLeavesTheRangeAndNeverTurnsBack) {
    std::mt19937 random(7);
    std::uniform_int_distribution<int> any(-40000, 40000);
    std::uniform_int_distribution<int> length(20, 700);
    for (int round = 0; round < 300; ++round) {
        const int first = any(random);
        const int second = any(random);
        const int minimum = std::min(first, second);
        const int maximum = std::max(first, second);
        const SliderTrack track{static_cast<double>(length(random)), margin, margin, thumb};
        int before = minimum;
        for (double pixel = -20; pixel < track.extent + 20; pixel += 0.25) {
            const int position = track.positionAt(pixel, minimum, maximum);
            ASSERT_GE(position, before);
            ASSERT_LE(position, maximum);
            before = position;
        }
    }
}

TEST(SliderArithmetic, TheEndsOfTheTravelAreTheEndsOfTheRange) {
    const SliderTrack track{182, margin, margin, thumb};
    for (const Range& range : ranges) {
        EXPECT_EQ(track.positionAt(track.clampPixel(-1000), range.minimum, range.maximum), range.minimum);
        EXPECT_EQ(track.positionAt(track.clampPixel(1000), range.minimum, range.maximum), range.maximum);
    }
}

TEST(SliderArithmetic, PixelsOfPositionsLeadBackToThemWithinOneStep) {
    const SliderTrack track{182, margin, margin, thumb};
    for (int position = -180; position <= 180; ++position) {
        const int back = track.positionAt(track.pixelOf(position, -180, 180), -180, 180);
        EXPECT_LE(std::abs(back - position), 1) << position;
    }
    EXPECT_DOUBLE_EQ(track.pixelOf(-180, -180, 180), 9.5);
    EXPECT_DOUBLE_EQ(track.pixelOf(180, -180, 180), 172.5);
}

TEST(SliderArithmetic, UnequalMarginsCountAtTheirOwnEnds) {
    const SliderTrack track{100, 10, 30, 20};
    EXPECT_DOUBLE_EQ(track.travel(), 40);
    EXPECT_DOUBLE_EQ(track.clampPixel(0), 20);
    EXPECT_DOUBLE_EQ(track.clampPixel(100), 60);
    EXPECT_EQ(track.positionAt(40, 0, 100), 50);
}

TEST(SliderArithmetic, TruncatesTowardsZeroOnBothSidesOfZero) {
    const SliderTrack track{119, margin, margin, thumb};
    // 100 pixels of travel; half a pixel is half a step.
    EXPECT_EQ(track.positionAt(9.5 + 25.5, -50, 50), -24);
    EXPECT_EQ(track.positionAt(9.5 + 75.5, -50, 50), 25);
}

TEST(SliderArithmetic, ASliderTooSmallForItsThumbStaysAtItsMinimum) {
    for (const double extent : {0.0, 5.0, 13.0, 19.0}) {
        const SliderTrack track{extent, margin, margin, thumb};
        for (const double pixel : {-100.0, 0.0, extent, 100.0}) {
            EXPECT_EQ(track.positionAt(pixel, -10, 10), -10);
        }
        EXPECT_DOUBLE_EQ(track.clampPixel(-100), track.clampPixel(100));
        EXPECT_DOUBLE_EQ(track.pixelOf(10, -10, 10), 9.5);
    }
}

TEST(SliderArithmetic, HasAnAnswerForEveryNumber) {
    const SliderTrack track{182, margin, margin, thumb};
    EXPECT_EQ(track.positionAt(std::nan(""), -5, 5), -5);
    EXPECT_EQ(track.positionAt(std::numeric_limits<double>::infinity(), -5, 5), 5);
    EXPECT_EQ(track.positionAt(-std::numeric_limits<double>::infinity(), -5, 5), -5);
    EXPECT_EQ(wholeWithin(1e300, -5, 5), 5);
    EXPECT_EQ(wholeWithin(-2.9, -5, 5), -2);
    EXPECT_EQ(wholeWithin(2.9, -5, 5), 2);
}

}  // namespace
}  // namespace tessavo::test
