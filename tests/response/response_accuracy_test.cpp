#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

#include "response/complex_response.h"
#include "response/long_channel.h"

// The response beside a plain evaluation in extended precision, over random channels of every filter method.

namespace tessavo::test {
namespace {

constexpr double largestErrorDb = 1e-9;
constexpr double largestErrorDegrees = 1e-9;

/// 1 Hz to 24.7 kHz, and whole numbers in between. Nearer to 0 Hz and to half the sampling rate the plain formula itself
/// loses its digits, also in extended precision.
std::vector<double> frequencies() {
    std::vector<double> hertz = FrequencyGrid::logarithmic(1.0, 24700.0, 300).frequenciesHz();
    for (const double whole : {20.0, 50.0, 100.0, 1000.0, 10000.0, 12375.0, 20000.0}) {
        hertz.push_back(whole);
    }
    return hertz;
}

double turnedNear(double degrees, double reference) {
    return degrees - 360.0 * std::round((degrees - reference) / 360.0);
}

void expectSame(const ComplexResponse& response, const LongChannel& expected,
                const std::vector<double>& hertz) {
    ASSERT_EQ(response.size(), hertz.size());
    for (std::size_t i = 0; i < hertz.size(); ++i) {
        const LongComplex value = expected.at(hertz[i]);
        ASSERT_NEAR(response.levelDb(i), decibels(std::abs(value)), largestErrorDb) << hertz[i];
        const double degrees =
            static_cast<double>(std::arg(value) * 180.0L / std::numbers::pi_v<long double>);
        ASSERT_NEAR(turnedNear(response.phaseDegrees(i), degrees), degrees, largestErrorDegrees) << hertz[i];
        ASSERT_NEAR(turnedNear(response.unwrappedPhaseDegrees(i), degrees), degrees, largestErrorDegrees)
            << hertz[i];
        ASSERT_GT(response.phaseDegrees(i), -180.0);
        ASSERT_LE(response.phaseDegrees(i), 180.0);
        const auto delay = static_cast<double>(expected.groupDelaySamples(hertz[i]) / 49.5L);
        ASSERT_NEAR(response.groupDelayMs(i), delay, 1e-9 * std::max(1.0, std::abs(delay))) << hertz[i];
    }
}

class ResponseAccuracy : public testing::TestWithParam<std::size_t> {
 protected:
    FilterMethods methods_ = makeFilterMethods();
    IcoefficientGenerator& method_ = *methods_.at(GetParam());
    std::mt19937 random_{static_cast<std::uint32_t>(1700 + GetParam())};
    std::vector<double> hertz_ = frequencies();
    FrequencyGrid grid_ = *FrequencyGrid::of(hertz_);
};

TEST_P(ResponseAccuracy, OfTheWordsEqualsThePlainFormula) {
    for (int round = 0; round < 150; ++round) {
        SCOPED_TRACE(round);
        const ChannelImageBlock block = randomBlock(random_, method_);
        expectSame(ComplexResponse::ofChannel(playedModel(block), grid_), LongChannel::played(block), hertz_);
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST_P(ResponseAccuracy, OfTheIdealEqualsThePlainFormula) {
    for (int round = 0; round < 150; ++round) {
        SCOPED_TRACE(round);
        const ChannelImageBlock block = randomBlock(random_, method_);
        const auto wide = [](const Section& s) { return LongSection{s.b0, s.b1, s.b2, s.a1, s.a2}; };
        const LongChannel expected = LongChannel::of(
            block, [&](std::size_t b) { return wide(designedBand(method_, block.bands.at(b))); },
            [&](std::size_t k) { return wide(designedCrossover(method_, block.crossovers.at(k))); });
        expectSame(ComplexResponse::ofChannel(idealModel(block, method_), grid_), expected, hertz_);
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST_P(ResponseAccuracy, OfASumEqualsThePlainFormula) {
    for (int round = 0; round < 40; ++round) {
        std::vector<ComplexResponse> responses;
        std::vector<const ComplexResponse*> summed;
        std::vector<LongChannel> expected;
        responses.reserve(8);
        for (int channel = 0; channel < 8; ++channel) {
            const ChannelImageBlock block = randomBlock(random_, method_);
            summed.push_back(&responses.emplace_back(ComplexResponse::ofChannel(playedModel(block), grid_)));
            expected.push_back(LongChannel::played(block));
        }
        const ComplexResponse sum = ComplexResponse::sumOf(summed, grid_);
        for (std::size_t i = 0; i < hertz_.size(); ++i) {
            LongComplex whole = 0;
            long double most = 0;
            for (const LongChannel& channel : expected) {
                const LongComplex part = channel.at(hertz_[i]);
                whole += part;
                most = std::max(most, std::abs(part));
            }
            const LongComplex found(sum.at(i).real(), sum.at(i).imag());
            ASSERT_LT(std::abs(found - whole), 1e-10L * most) << hertz_[i];
            // Where channels take each other away, the digits of the parts are what there is.
            if (std::abs(whole) > most / 5) {
                ASSERT_NEAR(sum.levelDb(i), decibels(std::abs(whole)), largestErrorDb) << hertz_[i];
            }
        }
    }
}

TEST_P(ResponseAccuracy, TheGroupDelayOfASumIsTheSlopeOfItsPhase) {
    // Five points around each frequency, a hundredth of a Hz apart, in extended precision.
    const auto slopeDegrees = [](const std::vector<LongChannel>& channels, double hertz) {
        const auto phase = [&](double at) {
            LongComplex sum = 0;
            for (const LongChannel& channel : channels) {
                sum += channel.at(at);
            }
            return sum;
        };
        constexpr double step = 1.0 / 128;
        const auto turn = [&](double width) {
            return std::arg(phase(hertz + width) / phase(hertz - width)) / (2 * width);
        };
        return static_cast<double>((4 * turn(step) - turn(2 * step)) / 3 /
                                   (2 * std::numbers::pi_v<long double>));
    };
    for (int round = 0; round < 20; ++round) {
        std::vector<ComplexResponse> responses;
        std::vector<const ComplexResponse*> summed;
        std::vector<LongChannel> expected;
        responses.reserve(3);
        for (int channel = 0; channel < 3; ++channel) {
            const ChannelImageBlock block = randomBlock(random_, method_);
            summed.push_back(&responses.emplace_back(ComplexResponse::ofChannel(playedModel(block), grid_)));
            expected.push_back(LongChannel::played(block));
        }
        const ComplexResponse sum = ComplexResponse::sumOf(summed, grid_);
        for (std::size_t i = 100; i < hertz_.size(); ++i) {
            const double delayMs = -1000 * slopeDegrees(expected, hertz_[i]);
            ASSERT_NEAR(sum.groupDelayMs(i), delayMs, 1e-4 * std::max(1.0, std::abs(delayMs))) << hertz_[i];
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Methods, ResponseAccuracy, testing::Values(0, 1, 2));

}  // namespace
}  // namespace tessavo::test
