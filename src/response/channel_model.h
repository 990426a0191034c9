#pragma once

#include <cstdint>
#include <vector>

#include "dsp/icoefficient_generator.h"
#include "dsp/section.h"
#include "params/parameter_image.h"

namespace tessavo {

/// What an output channel does to its source, in real numbers: gain and polarity, delay, and the sections in circuit.
/// Sources and the limiter are no part of it.
struct ChannelModel {
    double gain = 1.0;               ///< linear; negative where the polarity is inverted
    std::uint32_t delaySamples = 0;  ///< at 49500 Hz
    /// At most mostSections: the bands that are not off, then the crossovers that are enabled, one of 4th order twice.
    std::vector<Section> sections{};

    static constexpr std::size_t mostSections = bandCount + 2 * crossoverCount;
};

/// What the target does: gain word / 2^24, the delay in samples and the fixed-point words of the sections.
[[nodiscard]] ChannelModel playedModel(const ChannelImageBlock& block);

/// What it would do if coefficients did not become fixed point: the same gain and delay, and the sections as the method
/// designs them from the parameters of bands and crossovers.
[[nodiscard]] ChannelModel idealModel(const ChannelImageBlock& block, const IcoefficientGenerator& method);

}  // namespace tessavo
