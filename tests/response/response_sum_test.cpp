#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

#include "response/complex_response.h"
#include "response/long_channel.h"

namespace tessavo::test {
namespace {

ChannelModel delayed(std::uint32_t samples) {
    ChannelModel model;
    model.delaySamples = samples;
    return model;
}

class ResponseSum : public testing::Test {
 protected:
    ComplexResponse sum(const std::vector<ChannelModel>& models, const FrequencyGrid& grid) {
        responses_.clear();
        for (const ChannelModel& model : models) {
            responses_.push_back(ComplexResponse::ofChannel(model, grid));
        }
        std::vector<const ComplexResponse*> summed;
        for (const ComplexResponse& response : responses_) {
            summed.push_back(&response);
        }
        return ComplexResponse::sumOf(summed, grid);
    }

    static void expectSilent(const ComplexResponse& response) {
        for (std::size_t i = 0; i < response.size(); ++i) {
            ASSERT_EQ(response.at(i), 0.0) << i;
            ASSERT_EQ(response.levelDb(i), -std::numeric_limits<double>::infinity());
            ASSERT_TRUE(std::isnan(response.phaseDegrees(i)));
            ASSERT_TRUE(std::isnan(response.groupDelayMs(i)));
        }
    }

    FilterMethods methods_ = makeFilterMethods();
    std::mt19937 random_{11};
    FrequencyGrid grid_ = FrequencyGrid::logarithmic(20.0, 20000.0, 1000);
    std::vector<ComplexResponse> responses_;
};

TEST_F(ResponseSum, OfNothingIsSilence) {
    const ComplexResponse nothing = sum({}, grid_);
    EXPECT_EQ(nothing.size(), grid_.size());
    expectSilent(nothing);
}

TEST_F(ResponseSum, OfOneChannelIsThatChannel) {
    for (int round = 0; round < 20; ++round) {
        const ChannelModel model = playedModel(randomBlock(random_, *methods_[0]));
        const ComplexResponse one = sum({model}, grid_);
        const ComplexResponse& channel = responses_.front();
        for (std::size_t i = 0; i < grid_.size(); ++i) {
            ASSERT_EQ(one.levelDb(i), channel.levelDb(i));
            ASSERT_EQ(one.phaseDegrees(i), channel.phaseDegrees(i));
            ASSERT_NEAR(one.groupDelayMs(i), channel.groupDelayMs(i),
                        1e-9 * std::max(1.0, std::abs(channel.groupDelayMs(i))));
            // Counted from the first point on, the same but for whole turns that all points share.
            const double offset = one.unwrappedPhaseDegrees(i) - channel.unwrappedPhaseDegrees(i);
            ASSERT_NEAR(offset, one.unwrappedPhaseDegrees(0) - channel.unwrappedPhaseDegrees(0), 1e-9) << i;
        }
    }
}

TEST_F(ResponseSum, OfAChannelAndItsInverseIsExactlyNothing) {
    for (int round = 0; round < 30; ++round) {
        const ChannelModel model =
            playedModel(randomBlock(random_, *methods_.at(static_cast<std::size_t>(round) % 3)));
        ChannelModel inverse = model;
        inverse.gain = -inverse.gain;
        expectSilent(sum({model, inverse}, grid_));
    }
}

TEST_F(ResponseSum, OfEightChannelsThatCancelInPairsIsExactlyNothingInEveryOrder) {
    for (int round = 0; round < 30; ++round) {
        std::vector<ChannelModel> models;
        for (int pair = 0; pair < 4; ++pair) {
            models.push_back(playedModel(randomBlock(random_, *methods_[0])));
            models.push_back(models.back());
            models.back().gain = -models.back().gain;
        }
        std::shuffle(models.begin(), models.end(), random_);
        expectSilent(sum(models, grid_));
    }
}

TEST_F(ResponseSum, IsExactlyNothingWhereADelayTurnsByHalf) {
    // By hand: 1 sample is half a turn at 24750 Hz, 2 at 12375 Hz, 99 at 250 Hz; at 0 Hz both add up to 6.02 dB.
    for (const auto& [samples, hertz] :
         {std::pair{1U, 24750.0}, {2U, 12375.0}, {99U, 250.0}, {33U, 24750.0}}) {
        const auto grid = *FrequencyGrid::of(std::array{hertz, 0.0});
        const ComplexResponse both = sum({{}, delayed(samples)}, grid);
        EXPECT_EQ(both.at(0), 0.0) << samples;
        EXPECT_EQ(both.levelDb(1), 20 * std::log10(2.0));
    }
}

TEST_F(ResponseSum, OfTwoDelaysIsAComb) {
    // By hand: 1 + z^-n is 2 cos(wn/2) with half of the delay.
    const ComplexResponse both = sum({{}, delayed(10)}, grid_);
    for (std::size_t i = 0; i < grid_.size(); ++i) {
        const long double half = LongChannel::angle(grid_.frequenciesHz()[i]) * 5.0L;
        ASSERT_NEAR(std::abs(both.at(i)), static_cast<double>(2 * std::abs(std::cos(half))), 1e-14);
        ASSERT_NEAR(both.groupDelayMs(i), 5 / 49.5, 1e-10);
    }
}

TEST_F(ResponseSum, OfALinkwitzRileyCrossoverIsFlatInLevel) {
    // Both halves warped alike, 4th order, add up to an all-pass: the sum of squares of a Butterworth pair.
    ChannelImageBlock low = plainBlock();
    ChannelImageBlock high = plainBlock();
    low.crossovers[1] = {.enabled = 1, .kind = 1, .frequencyHz = 2500, .order = 4};
    high.crossovers[0] = {.enabled = 1, .kind = 0, .frequencyHz = 2500, .order = 4};
    const ComplexResponse both = sum({idealModel(low, *methods_[0]), idealModel(high, *methods_[0])}, grid_);
    for (std::size_t i = 0; i < grid_.size(); ++i) {
        ASSERT_NEAR(both.levelDb(i), 0.0, 1e-12) << grid_.frequenciesHz()[i];
    }
    // An all-pass of second order turns by one turn from 0 Hz to half the rate; nearly all of it lies in the range.
    EXPECT_NEAR(both.unwrappedPhaseDegrees(999), -360.0, 20.0);
    EXPECT_LT(both.unwrappedPhaseDegrees(999), both.unwrappedPhaseDegrees(0));
}

TEST_F(ResponseSum, FollowsItsPhaseOverPointsThatHaveNone) {
    const auto grid = *FrequencyGrid::of(std::array{0.0, 100.0, 24749.0, 24750.0});
    // 1 + z^-1 turns by a quarter until half the rate, where it is 0.
    const ComplexResponse both = sum({{}, delayed(1)}, grid);
    EXPECT_EQ(both.unwrappedPhaseDegrees(0), 0.0);
    EXPECT_NEAR(both.unwrappedPhaseDegrees(2), -90.0 * 24749 / 24750, 1e-9);
    EXPECT_TRUE(std::isnan(both.unwrappedPhaseDegrees(3)));
    const auto over = *FrequencyGrid::of(std::array{24749.0, 24750.0, 24749.0});
    const ComplexResponse back = sum({{}, delayed(1)}, over);
    EXPECT_EQ(back.unwrappedPhaseDegrees(2), back.unwrappedPhaseDegrees(0));
}

TEST_F(ResponseSum, IsNotDefinedWhereAChannelIsNot) {
    const auto grid = *FrequencyGrid::of(std::array{0.0, 1000.0});
    ChannelModel pole;
    pole.sections.push_back({.b0 = 1, .b1 = 0, .b2 = 0, .a1 = -2, .a2 = 1});
    const ComplexResponse both = sum({{}, pole}, grid);
    EXPECT_TRUE(std::isnan(both.levelDb(0)));
    EXPECT_TRUE(std::isfinite(both.levelDb(1)));
}

}  // namespace
}  // namespace tessavo::test
