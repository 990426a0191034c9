#include "params/loudness.h"

#include <array>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <numbers>

#include "base/saturate.h"
#include "support/harness.h"

namespace tessavo::test {
namespace {

constexpr std::uint32_t unityGainWord = 1 << 24;
constexpr BiquadWords unity{.b0 = unityNumeratorWord};
constexpr double rateHz = 49500.0;
/// A cascade of the input side that changes nothing.
constexpr std::array<BiquadWords, inputSectionCount> flatInput = [] {
    std::array<BiquadWords, inputSectionCount> words{};
    words.fill(unity);
    return words;
}();

/// Sections that change nothing everywhere, 0 dB, and no source.
ParameterImage flatImage() {
    ParameterImage image;
    for (ChannelImageBlock& channel : image.channels) {
        channel.gainWord = unityGainWord;
        channel.bandWords.fill(unity);
        channel.crossoverWords.fill(unity);
        channel.crossovers.fill({.enabled = 1, .order = 2});
    }
    return image;
}

/// The same with one channel that has a source.
ParameterImage oneChannel(std::size_t channel = 0) {
    ParameterImage image = flatImage();
    image.routerSource[channel] = 1;
    return image;
}

double loudness(const ParameterImage& image) {
    return loudnessDb(image, flatInput);
}

BiquadWords wordsOf(double b0, double b1, double b2, double a1 = 0.0, double a2 = 0.0) {
    const auto word = [](double value, double unit) {
        return truncateTo<std::int32_t>(std::floor(value * unit + 0.5));
    };
    constexpr double numerator = 1 << 28;
    constexpr double denominator = 1 << 30;
    return {word(b0, numerator), word(b1, numerator), word(b2, numerator), word(a1, denominator),
            word(a2, denominator)};
}

/// A Butterworth high-pass of 2nd order by the bilinear transform.
BiquadWords highPass(double frequencyHz) {
    const double k = std::tan(std::numbers::pi * frequencyHz / rateHz);
    const double norm = 1.0 / (1.0 + std::numbers::sqrt2 * k + k * k);
    return wordsOf(norm, -2.0 * norm, norm, 2.0 * (k * k - 1.0) * norm,
                   (1.0 - std::numbers::sqrt2 * k + k * k) * norm);
}

/// The mean of a power over 100 Hz to 10 kHz, each octave counting the same, in dB, by Simpson's rule.
double meanDb(const std::function<double(double)>& powerAtHz) {
    constexpr int parts = 4000;
    double sum = 0.0;
    for (int i = 0; i <= parts; ++i) {
        const double frequencyHz = 100.0 * std::pow(100.0, static_cast<double>(i) / parts);
        sum += powerAtHz(frequencyHz) * (i == 0 || i == parts ? 1 : i % 2 == 1 ? 4 : 2);
    }
    return 10.0 * std::log10(sum / (3.0 * parts));
}

TEST(Loudness, OneFlatChannelAtZeroDecibelsIsZero) {
    for (std::size_t channel = 0; channel < channelCount; ++channel) {
        EXPECT_NEAR(loudness(oneChannel(channel)), 0.0, 1e-9) << channel;
    }
}

TEST(Loudness, FlatSetsThreeDecibelsApartInVolumeAreThreeDecibelsApart) {
    Tuning tuning;
    for (std::uint8_t c = 0; c < channelCount; ++c) {
        tuning.state.setRouterSource({c}, 3);
    }
    tuning.state.setSelectionMask(0xFF);
    tuning.state.setVolume(2.0F, true);
    const double before = loudness(tuning.state.image());
    tuning.state.setVolume(5.0F, true);
    EXPECT_NEAR(loudness(tuning.state.image()) - before, 3.0, 1e-6);
    tuning.state.setVolume(30.0F, true);
    EXPECT_NEAR(loudness(tuning.state.image()) - before, 16.0, 1e-6) << "18 dB is the highest";
    tuning.state.setVolume(2.0F, true);
    for (std::uint8_t c = 0; c < channelCount; ++c) {
        tuning.state.setGroupGain({c}, -4.0F);
    }
    EXPECT_NEAR(loudness(tuning.state.image()) - before, -4.0, 1e-6) << "the group gain counts";
    tuning.state.setVolume(-20.0F, true);
    EXPECT_NEAR(loudness(tuning.state.image()) - before, -8.0, 1e-6) << "-6 dB is the lowest";
}

TEST(Loudness, ThePowersOfAllChannelsWithASourceAreAdded) {
    ParameterImage image = flatImage();
    EXPECT_TRUE(std::isinf(loudness(image)) && loudness(image) < 0) << "nothing is heard";
    for (std::uint32_t c = 0; c < channelCount; ++c) {
        EXPECT_FALSE(hasSource(image, {static_cast<std::uint8_t>(c)}));
        image.routerSource[c] = c + 1;
        EXPECT_TRUE(hasSource(image, {static_cast<std::uint8_t>(c)}));
        EXPECT_NEAR(loudness(image), 10.0 * std::log10(c + 1.0), 1e-9);
    }
    image.channels[2].invertPhase = 1;
    image.channels[3].delaySamples = 400;
    EXPECT_NEAR(loudness(image), 10.0 * std::log10(8.0), 1e-9) << "neither phase nor delay counts";
    image.channels[5].gainWord *= 4;
    EXPECT_NEAR(loudness(image), 10.0 * std::log10(7.0 + 16.0), 1e-9);
    image.routerSource[5] = 0;
    EXPECT_NEAR(loudness(image), 10.0 * std::log10(7.0), 1e-9);
}

TEST(Loudness, ACrossoverTakesAwayWhatItDoes) {
    // Of a Butterworth high-pass of 2nd order at a: x^4 / (1 + x^4) with x = f / a, whose integral over ln x is
    // ln(1 + x^4) / 4. The bilinear transform is as good as that well below half the sampling rate.
    for (const double frequencyHz : {300.0, 1000.0, 2000.0}) {
        ParameterImage image = oneChannel(6);
        image.channels[6].crossoverWords[0] = highPass(frequencyHz);
        const auto integral = [&](double hz) { return std::log1p(std::pow(hz / frequencyHz, 4.0)) / 4.0; };
        const double expected = 10.0 * std::log10((integral(10000.0) - integral(100.0)) / std::log(100.0));
        EXPECT_NEAR(loudness(image), expected, 0.03) << frequencyHz;
    }
    ParameterImage halved = oneChannel(6);
    halved.channels[6].crossoverWords[0] = highPass(1000.0);
    EXPECT_NEAR(loudness(halved), -3.01, 0.03) << "half of the octaves are left";
}

TEST(Loudness, EverySectionOfAChannelCounts) {
    const BiquadWords twice = wordsOf(2.0, 0.0, 0.0);
    const double sixDb = 20.0 * std::log10(2.0);
    for (std::size_t i = 0; i < bandCount + crossoverCount; ++i) {
        ParameterImage image = oneChannel();
        ChannelImageBlock& block = image.channels[0];
        (i < bandCount ? block.bandWords[i] : block.crossoverWords[i - bandCount]) = twice;
        EXPECT_NEAR(loudness(image), sixDb, 1e-9) << i;
    }
}

// A filter switched off is what A and B are compared by most often; the plot goes on drawing it.
TEST(Loudness, WhatIsOffDoesNotCountWhateverItsWordsSay) {
    const BiquadWords twice = wordsOf(2.0, 0.0, 0.0);
    const double sixDb = 20.0 * std::log10(2.0);
    ParameterImage image = oneChannel(5);
    ChannelImageBlock& block = image.channels[5];
    block.bandWords.fill(twice);
    block.crossoverWords.fill(twice);
    int sections = bandCount + crossoverCount;
    for (EqBandParams& band : block.bands) {
        band.off = 1;
        EXPECT_NEAR(loudness(image), --sections * sixDb, 1e-9);
    }
    for (CrossoverParams& crossover : block.crossovers) {
        crossover.enabled = 0;
        EXPECT_NEAR(loudness(image), --sections * sixDb, 1e-9);
    }
}

TEST(Loudness, ACrossoverOf4thOrderIsItsSectionTwice) {
    const double sixDb = 20.0 * std::log10(2.0);
    for (std::size_t k = 0; k < crossoverCount; ++k) {
        ParameterImage image = oneChannel();
        image.channels[0].crossoverWords[k] = wordsOf(0.5, 0.0, 0.0);
        image.channels[0].crossovers[k].order = 4;
        EXPECT_NEAR(loudness(image), -2.0 * sixDb, 1e-9) << k;
        image.channels[0].crossovers[k].enabled = 0;
        EXPECT_NEAR(loudness(image), 0.0, 1e-9) << k;
    }
}

TEST(Loudness, TheInputLevelCountsForEveryChannel) {
    ParameterImage image = flatImage();
    image.routerSource.fill(1);
    for (const std::int16_t gainDb : std::to_array<std::int16_t>({-40, -1, 0, 18})) {
        image.inputGainDb = gainDb;
        EXPECT_NEAR(loudness(image), gainDb + 10.0 * std::log10(8.0), 1e-9);
    }
}

TEST(Loudness, WhatChangesFromPointToPointIsTheIntegralOfItsPower) {
    // (1 + z^-1) / 2 has the power cos^2(w / 2).
    ParameterImage image = oneChannel();
    image.channels[0].bandWords[3] = wordsOf(0.5, 0.5, 0.0);
    EXPECT_NEAR(loudness(image), meanDb([](double hz) {
                    const double cosine = std::cos(std::numbers::pi * hz / rateHz);
                    return cosine * cosine;
                }),
                0.005);
}

TEST(Loudness, TheInputSideCountsUnlessItIsBypassed) {
    ParameterImage image = oneChannel();
    for (std::size_t i = 0; i < inputSectionCount; ++i) {
        auto input = flatInput;
        input[i] = wordsOf(0.5, 0.0, 0.0);
        EXPECT_NEAR(loudnessDb(image, input), -20.0 * std::log10(2.0), 1e-9) << i;
        ParameterImage bypassed = image;
        bypassed.inputRow0.bypass = bypassed.inputRow1.bypass = 1;
        EXPECT_NEAR(loudnessDb(bypassed, input), 0.0, 1e-9) << i;
    }
    // Both sides are multiplied point by point, not one mean by the other.
    auto input = flatInput;
    input[4] = wordsOf(0.5, 0.5, 0.0);
    image.channels[0].bandWords[0] = wordsOf(0.5, 0.5, 0.0);
    EXPECT_NEAR(loudnessDb(image, input),
                meanDb([](double hz) { return std::pow(std::cos(std::numbers::pi * hz / rateHz), 4.0); }),
                0.005);
}

TEST(Loudness, WordsThatNobodyWouldComputeGiveNoLoudnessOrAFiniteOne) {
    ParameterImage silent = oneChannel();
    silent.channels[0].bandWords[0] = {};
    EXPECT_TRUE(std::isinf(loudness(silent))) << "a section of zeros lets nothing pass";
    ParameterImage muted = oneChannel();
    muted.channels[0].gainWord = 0;
    EXPECT_TRUE(std::isinf(loudness(muted)));
    ParameterImage odd = oneChannel();
    odd.channels[0].bandWords.fill(
        {.b0 = INT32_MIN, .b1 = INT32_MAX, .b2 = INT32_MIN, .a1 = 1, .a2 = INT32_MAX});
    odd.routerSource.fill(0xFFFFFFFF);
    EXPECT_FALSE(std::isnan(loudness(odd)));
}

}  // namespace
}  // namespace tessavo::test
