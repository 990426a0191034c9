#include "response/headroom.h"

#include <cmath>
#include <gtest/gtest.h>

#include "response/complex_response.h"
#include "response/long_channel.h"

namespace tessavo::test {
namespace {

TEST(ChannelHeadroom, OfAChannelThatChangesNothingIsThatOfItsVolume) {
    ChannelImageBlock block = plainBlock();
    EXPECT_EQ(headroomOf(playedModel(block)).highestDb, 0.0);
    EXPECT_EQ(headroomOf(playedModel(block)).leftDb, 18.0);
    // Polarity and delay raise nothing.
    block.invertPhase = 1;
    block.delaySamples = 99;
    EXPECT_NEAR(headroomOf(playedModel(block)).highestDb, 0.0, 1e-14);
    block.gainWord = gainWordOf(18.0F, 0.0F);
    EXPECT_NEAR(headroomOf(playedModel(block)).leftDb, 0.0, 1e-6);
}

TEST(ChannelHeadroom, OfASilentChannelHasNoLevel) {
    ChannelImageBlock block = plainBlock();
    block.gainWord = 0;
    const Headroom headroom = headroomOf(playedModel(block));
    EXPECT_EQ(headroom.highestDb, -std::numeric_limits<double>::infinity());
    EXPECT_EQ(headroom.leftDb, std::numeric_limits<double>::infinity());
}

TEST(ChannelHeadroom, FindsTheTopOfAPeakBetweenThePoints) {
    // The bilinear peak has its gain at its frequency exactly: 10^(gain / 20), a single.
    const FilterMethods methods = makeFilterMethods();
    for (const int hertz : {20, 33, 997, 5003, 19999}) {
        for (const double q : {0.1, 1.0, 20.0}) {
            ChannelImageBlock block = plainBlock();
            block.gainWord = gainWordOf(6.0F, 0.0F);
            block.bands[2] = {.type = 2,
                              .frequencyHz = static_cast<std::uint16_t>(hertz),
                              .gainDb = 12.5F,
                              .q = static_cast<float>(q),
                              .off = 0};
            const Headroom headroom = headroomOf(idealModel(block, *methods[0]));
            const double expectedDb =
                20 * std::log10(static_cast<double>(static_cast<float>(std::pow(10.0, 12.5 / 20)))) +
                20 * std::log10(block.gainWord / 16777216.0);
            EXPECT_NEAR(headroom.highestDb, expectedDb, 1e-9) << hertz << " " << q;
            EXPECT_NEAR(headroom.atHz, hertz, 1e-3 * hertz) << hertz << " " << q;
            EXPECT_NEAR(headroom.leftDb, 18.0 - expectedDb, 1e-9) << hertz << " " << q;
        }
    }
}

TEST(ChannelHeadroom, IsNeverBelowAnyPointAndHardlyAboveADenseLook) {
    const FilterMethods methods = makeFilterMethods();
    const FrequencyGrid dense = FrequencyGrid::logarithmic(20.0, 20000.0, 40000);
    std::mt19937 random(5);
    for (int round = 0; round < 60; ++round) {
        IcoefficientGenerator& method = *methods.at(static_cast<std::size_t>(round) % 3);
        const ChannelModel model = playedModel(randomBlock(random, method));
        const ComplexResponse response = ComplexResponse::ofChannel(model, dense);
        double highestDb = -1e9;
        for (std::size_t i = 0; i < dense.size(); ++i) {
            highestDb = std::max(highestDb, response.levelDb(i));
        }
        const Headroom headroom = headroomOf(model);
        EXPECT_GT(headroom.highestDb, highestDb - 1e-9) << round;
        EXPECT_LT(headroom.highestDb, highestDb + 0.01) << round;
        EXPECT_GE(headroom.atHz, 20.0);
        EXPECT_LE(headroom.atHz, 20000.0);
    }
}

TEST(ChannelHeadroom, CountsOnlyWhatIsHeard) {
    // A low shelf of -12 dB at 20 Hz is down below 20 Hz and up above: the highest level is at the upper end; the other
    // way round it is at the lower end, and below that it rises further.
    const FilterMethods methods = makeFilterMethods();
    ChannelImageBlock block = plainBlock();
    block.bands[0] = {.type = 1, .frequencyHz = 20, .gainDb = 12, .q = 0.5F, .off = 0};
    const ChannelModel model = idealModel(block, *methods[0]);
    const Headroom headroom = headroomOf(model);
    EXPECT_EQ(headroom.atHz, 20.0);
    EXPECT_LT(headroom.highestDb, 11.9);
    block.bands[0].gainDb = -12;
    EXPECT_GT(headroomOf(idealModel(block, *methods[0])).atHz, 19999.0);
}

}  // namespace
}  // namespace tessavo::test
