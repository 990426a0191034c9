#pragma once

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

#include "dsp/filter_kind.h"
#include "dsp/filter_methods.h"
#include "fit/band_fit.h"
#include "params/section_words.h"
#include "response/complex_response.h"

namespace tessavo::test {

/// A channel of full level without filters.
inline ChannelImageBlock plainChannel() {
    ChannelImageBlock channel;
    channel.gainWord = 1U << 24U;
    for (EqBandParams& band : channel.bands) {
        band = {.type = 2, .frequencyHz = 1000, .gainDb = 3.0F, .q = 1.0F, .off = 1};
    }
    return channel;
}

/// The channel with other bands and the words that a method makes of them.
inline ChannelImageBlock withBands(ChannelImageBlock channel, std::span<const EqBandParams> bands,
                                   IcoefficientGenerator& method) {
    for (std::size_t i = 0; i < bands.size(); ++i) {
        channel.bands.at(i) = bands[i];
        (void)computeBandWords(method, bands[i], channel.bandWords.at(i));
    }
    return channel;
}

/// Levels of what the target does with a channel, by its exact response.
inline std::vector<double> playedLevels(const ChannelImageBlock& channel,
                                        std::span<const double> frequenciesHz) {
    const auto grid = FrequencyGrid::of(frequenciesHz);
    const ComplexResponse response = ComplexResponse::ofChannel(playedModel(channel), *grid);
    std::vector<double> levels;
    for (std::size_t i = 0; i < response.size(); ++i) {
        levels.push_back(response.levelDb(i));
    }
    return levels;
}

/// RMS of measurement + response - target about its mean, at 96 points an octave.
inline double rmsOf(const ChannelImageBlock& channel, const LevelCurve& measurement, const LevelCurve& target,
                    const FitLimits& limits) {
    const std::vector<double> frequencies = evenFrequencies(limits.fromHz, limits.toHz);
    const LevelCurve curve = smoothed(measurement, limits.smoothing);
    std::vector<double> differences = playedLevels(channel, frequencies);
    for (std::size_t i = 0; i < frequencies.size(); ++i) {
        differences[i] += levelAt(curve, frequencies[i]) - levelAt(target, frequencies[i]);
    }
    double mean = 0;
    return rmsAboutMean(differences, mean);
}

/// The highest level of a channel from 20 Hz to 20 kHz, at close points.
inline double highestOf(const ChannelImageBlock& channel) {
    const FrequencyGrid grid = FrequencyGrid::logarithmic(lowestHeardHz, highestHeardHz, 12000);
    return std::ranges::max(playedLevels(channel, grid.frequenciesHz()));
}

}  // namespace tessavo::test
