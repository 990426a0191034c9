#include "measure/alignment_text.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "base/number_text.h"

namespace tessavo {
namespace {

using Distances = std::array<std::optional<double>, channelCount>;

const Distances car{112, 142, 116, 138, 124, 148, 96, 245};

Alignment alignDistances(const Distances& distancesCm, double celsius = 20) {
    return align(arrivalTimes(distancesCm, celsius), celsius);
}

ChannelAlignment nearest(double neededMs) {
    return align({0.0, neededMs}, 20).channels[0].value();
}

double numberBehindAt(const std::string& text) {
    const std::string at = " at ";
    return numberAtStart(text.substr(text.find(at) + at.size())).value;
}

TEST(AlignmentText, TellsWhatBecomesOfEachChannelOfACar) {
    const Alignment aligned = alignDistances(car);
    const std::array<const char*, channelCount> results{"within 1 cm",     "within 1 cm", "within 2 cm",
                                                        "within 1 cm",     "within 1 cm", "within 1 cm",
                                                        "12 cm too early", "the farthest"};
    for (std::size_t position = 0; position < channelCount; ++position) {
        EXPECT_EQ(alignmentResult(aligned.channels.at(position).value(), 20), results.at(position))
            << position;
    }
    EXPECT_EQ(worstOf(aligned), PagePosition{6});
    EXPECT_EQ(countMissing(aligned), 1);
    EXPECT_EQ(shortfallText(aligned.channels[6].value()),
              "4.3 ms are needed, 4.0 ms are possible (2.0 ms in the group, 2.0 ms in the channel); 0.3 ms "
              "or 12 cm are "
              "missing.");
    EXPECT_EQ(possibleText(aligned, AlignmentUnit::centimeters),
              "All eight are in line if the farthest is at 233 cm or nearer");
    EXPECT_EQ(possibleText(aligned, AlignmentUnit::milliseconds),
              "All eight are in line if the farthest arrives at 6.79 ms or sooner");
}

TEST(AlignmentText, NeverTellsThatNothingIsMissing) {
    EXPECT_EQ(shortfallText(nearest(4.04)).substr(0, 44), "4.04 ms are needed, 4.00 ms are possible (2.");
    EXPECT_NE(shortfallText(nearest(4.04)).find("; 0.04 ms or 1 cm are missing."), std::string::npos);
    EXPECT_NE(shortfallText(nearest(4.002)).find("; 0.002 ms or 1 cm are missing."), std::string::npos);
    EXPECT_EQ(alignmentResult(nearest(4.002), 20), "1 cm too early");
}

TEST(AlignmentText, CountsTheChannelsThatWereTold) {
    EXPECT_EQ(allTold(align({1.0}, 20)), "The only one");
    EXPECT_EQ(allTold(align({1.0, std::nullopt, 9.0}, 20)), "Both");
    EXPECT_EQ(allTold(align({1.0, 2.0, 9.0}, 20)), "All three");
    const Alignment two = align({2.0, 1.0, 9.0}, 20);
    EXPECT_EQ(countMissing(two), 2);
    EXPECT_EQ(worstOf(two), PagePosition{1});
}

TEST(AlignmentText, NamesAFarthestPlaceThatIsInReachAsItReads) {
    std::mt19937_64 random(11);
    std::uniform_int_distribution<int> tenths(0, 3000);
    for (int run = 0; run < 1000; ++run) {
        const double near = tenths(random) / 10.0;
        const double celsius = tenths(random) / 30.0 - 40.0;
        const Alignment far = alignDistances({near, near + 400}, celsius);
        ASSERT_FALSE(far.isReachable);
        const double shownCm = numberBehindAt(possibleText(far, AlignmentUnit::centimeters));
        EXPECT_GT(shownCm, far.farthestPossibleCm - 1);
        EXPECT_TRUE(alignDistances({near, shownCm}, celsius).isReachable) << near << " cm, " << celsius;
        EXPECT_FALSE(alignDistances({near, shownCm + 1}, celsius).isReachable) << near << " cm, " << celsius;
        const Alignment late = align({near, near + 5}, celsius);
        const double shownMs = numberBehindAt(possibleText(late, AlignmentUnit::milliseconds));
        EXPECT_NEAR(shownMs, near + 4, 1e-6) << "tenths of a millisecond read as they are";
        EXPECT_TRUE(align({near, shownMs}, celsius).isReachable) << near << " ms";
    }
}

}  // namespace
}  // namespace tessavo
