#pragma once

#include <array>
#include <cmath>
#include <complex>
#include <numbers>
#include <random>
#include <vector>

#include "dsp/filter_methods.h"
#include "params/parameter_image.h"
#include "params/section_words.h"
#include "params/volume_gain_table.h"
#include "response/channel_model.h"

namespace tessavo::test {

using LongComplex = std::complex<long double>;

/// A section's coefficients: b0, b1, b2, a1, a2.
using LongSection = std::array<long double, 5>;

inline LongSection longSection(const BiquadWords& words) {
    return {std::ldexp(static_cast<long double>(words.b0), -28),
            std::ldexp(static_cast<long double>(words.b1), -28),
            std::ldexp(static_cast<long double>(words.b2), -28),
            std::ldexp(static_cast<long double>(words.a1), -30),
            std::ldexp(static_cast<long double>(words.a2), -30)};
}

/// A channel in extended precision, term by term as the formulas stand in a textbook.
struct LongChannel {
    long double gain = 1;
    long double delaySamples = 0;
    std::vector<LongSection> sections;

    static long double angle(double hertz) {
        return 2.0L * std::numbers::pi_v<long double> * static_cast<long double>(hertz) / 49500.0L;
    }

    [[nodiscard]] LongComplex at(double hertz) const {
        const LongComplex back = std::polar(1.0L, -angle(hertz));
        LongComplex value = gain * std::polar(1.0L, -angle(hertz) * delaySamples);
        for (const LongSection& s : sections) {
            value *= (s[0] + s[1] * back + s[2] * back * back) / (1.0L + s[3] * back + s[4] * back * back);
        }
        return value;
    }

    /// - d arg H / dw: each coefficient of z^-k counts k samples.
    [[nodiscard]] long double groupDelaySamples(double hertz) const {
        const LongComplex back = std::polar(1.0L, -angle(hertz));
        long double delay = delaySamples;
        for (const LongSection& s : sections) {
            const LongComplex numerator = s[0] + s[1] * back + s[2] * back * back;
            const LongComplex denominator = 1.0L + s[3] * back + s[4] * back * back;
            delay += ((s[1] * back + 2.0L * s[2] * back * back) / numerator).real();
            delay -= ((s[3] * back + 2.0L * s[4] * back * back) / denominator).real();
        }
        return delay;
    }

    [[nodiscard]] static LongChannel played(const ChannelImageBlock& block) {
        return of(
            block, [&](std::size_t band) { return longSection(block.bandWords.at(band)); },
            [&](std::size_t k) { return longSection(block.crossoverWords.at(k)); });
    }

    template <typename Band, typename Crossover>
    [[nodiscard]] static LongChannel of(const ChannelImageBlock& block, Band band, Crossover crossover) {
        LongChannel channel;
        channel.gain = std::ldexp(static_cast<long double>(block.gainWord), -24);
        channel.gain = block.invertPhase == 0 ? channel.gain : -channel.gain;
        channel.delaySamples = block.delaySamples;
        for (std::size_t b = 0; b < 8; ++b) {
            if (block.bands.at(b).off == 0) {
                channel.sections.push_back(band(b));
            }
        }
        for (std::size_t k = 0; k < 2; ++k) {
            if (block.crossovers.at(k).enabled != 0) {
                channel.sections.push_back(crossover(k));
                if (block.crossovers.at(k).order == 4) {
                    channel.sections.push_back(crossover(k));
                }
            }
        }
        return channel;
    }
};

inline double decibels(long double magnitude) {
    return static_cast<double>(20.0L * std::log10(magnitude));
}

/// Words of all sections by a method, and the gain word of a volume, in an image's block.
inline void computeWords(ChannelImageBlock& block, IcoefficientGenerator& method) {
    for (std::size_t b = 0; b < block.bands.size(); ++b) {
        computeBandWords(method, block.bands.at(b), block.bandWords.at(b));
    }
    for (std::size_t k = 0; k < block.crossovers.size(); ++k) {
        computeCrossoverWords(method, block.crossovers.at(k), block.crossoverWords.at(k));
    }
}

/// A block that changes nothing: 0 dB, no delay, everything out of circuit.
inline ChannelImageBlock plainBlock() {
    ChannelImageBlock block;
    block.gainWord = 1U << 24U;
    for (EqBandParams& band : block.bands) {
        band = {.type = 2, .frequencyHz = 1000, .gainDb = 0, .q = 1, .off = 1};
    }
    block.crossovers = {{{.enabled = 0, .kind = 0, .frequencyHz = 20, .order = 2},
                         {.enabled = 0, .kind = 1, .frequencyHz = 20000, .order = 2}}};
    return block;
}

/// A block with values from all over the ranges that a person may set, the ends of them often.
inline ChannelImageBlock randomBlock(std::mt19937& random, IcoefficientGenerator& method) {
    const auto real = [&](double low, double high) {
        const int edge = std::uniform_int_distribution(0, 9)(random);
        return edge == 0 ? low : edge == 1 ? high : std::uniform_real_distribution(low, high)(random);
    };
    const auto whole = [&](int low, int high) { return std::uniform_int_distribution(low, high)(random); };
    const auto hertz = [&] { return static_cast<std::uint16_t>(std::lround(std::exp2(real(4.33, 14.28)))); };
    ChannelImageBlock block = plainBlock();
    for (EqBandParams& band : block.bands) {
        band.type = static_cast<std::uint8_t>(whole(0, 2));
        band.frequencyHz = hertz();
        band.gainDb = static_cast<float>(real(-18, 18));
        band.q = static_cast<float>(real(0.1, 20));
        band.off = static_cast<std::uint8_t>(whole(0, 3) == 0 ? 1 : 0);
    }
    for (CrossoverParams& crossover : block.crossovers) {
        crossover.enabled = static_cast<std::uint8_t>(whole(0, 1));
        crossover.kind = static_cast<std::uint8_t>(whole(0, 1));
        crossover.frequencyHz = hertz();
        crossover.order = static_cast<std::uint8_t>(whole(0, 1) == 0 ? 2 : 4);
    }
    block.gainWord = gainWordOf(static_cast<float>(real(-6, 18)), 0.0F);
    block.invertPhase = static_cast<std::uint8_t>(whole(0, 1));
    block.delaySamples = static_cast<std::uint32_t>(whole(0, 198));
    computeWords(block, method);
    return block;
}

}  // namespace tessavo::test
