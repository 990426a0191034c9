#include "params/loudness.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "plot/response_terms.h"

namespace tessavo {

namespace {

constexpr std::size_t firstPoint = lowestPinkHz / curveStepHz - 1;
constexpr std::size_t lastPoint = highestPinkHz / curveStepHz - 1;
constexpr std::size_t pointCount = lastPoint - firstPoint + 1;
constexpr double unityGain = 1 << 24;

using Powers = std::array<double, pointCount>;

// What each point stands for in the integral, as a part of the whole range.
Powers makeWeights() {
    const auto at = [](std::size_t i) {
        return std::log(static_cast<double>(firstPoint + std::min(i, pointCount - 1) + 1));
    };
    const double whole = at(pointCount - 1) - at(0);
    Powers weights{};
    for (std::size_t i = 0; i < pointCount; ++i) {
        weights[i] = (at(i + 1) - at(i == 0 ? 0 : i - 1)) / 2.0 / whole;
    }
    return weights;
}

// Sections that change nothing are most of them, and would take most of the time.
void keepSections(std::vector<BiquadWords>& sections) {
    std::erase(sections, BiquadWords{.b0 = unityNumeratorWord});
}

Powers powersOf(std::vector<BiquadWords> sections) {
    keepSections(sections);
    Powers powers;
    powers.fill(1.0);
    if (sections.empty()) {
        return powers;
    }
    for (std::size_t i = 0; i < pointCount; ++i) {
        const double db = plainMagnitudeDb(sections, firstPoint + i);
        powers[i] = std::isnan(db) ? 1.0 : std::pow(10.0, db / 10.0);
    }
    return powers;
}

// The plot draws all words; the target passes by what is off.
std::vector<BiquadWords> playedSections(const ChannelImageBlock& block) {
    std::vector<BiquadWords> sections;
    for (std::size_t band = 0; band < bandCount; ++band) {
        if (block.bands[band].off == 0) {
            sections.push_back(block.bandWords[band]);
        }
    }
    constexpr std::uint8_t sectionOrder = 2;
    for (std::size_t crossover = 0; crossover < crossoverCount; ++crossover) {
        const CrossoverParams& params = block.crossovers[crossover];
        if (params.enabled != 0) {
            sections.insert(sections.end(), params.order > sectionOrder ? 2 : 1,
                            block.crossoverWords[crossover]);
        }
    }
    return sections;
}

}  // namespace

bool hasSource(const ParameterImage& image, RecordChannel channel) {
    // The target reads the low byte.
    return (image.routerSource[channel.value] & 0xFFU) != 0;
}

double loudnessDb(const ParameterImage& image, std::span<const BiquadWords, inputSectionCount> inputWords) {
    static const Powers weights = makeWeights();
    const bool isBypassed = image.inputRow0.bypass == 1;
    const Powers input =
        powersOf(isBypassed ? std::vector<BiquadWords>() : std::vector(inputWords.begin(), inputWords.end()));
    double sum = 0.0;
    for (std::uint8_t c = 0; c < channelCount; ++c) {
        if (!hasSource(image, {c})) {
            continue;
        }
        const ChannelImageBlock& block = image.channels[c];
        const Powers channel = powersOf(playedSections(block));
        double power = 0.0;
        for (std::size_t i = 0; i < pointCount; ++i) {
            const double both = input[i] * channel[i];
            // Nothing times something that never ends.
            power += weights[i] * (std::isnan(both) ? 1.0 : both);
        }
        const double gain = block.gainWord / unityGain;
        sum += gain > 0.0 ? gain * gain * power : 0.0;
    }
    return image.inputGainDb + 10.0 * std::log10(sum);
}

}  // namespace tessavo
