#pragma once

#include "dsp/icoefficient_generator.h"

namespace tessavo {

/// Bilinear transform bands are pre-warped for 49500 Hz, crossovers for 44100 Hz.
class coeffBZT2 final : public IcoefficientGenerator {
 public:
    using IcoefficientGenerator::IcoefficientGenerator;

    bool computeCrossover(std::int32_t kindWord, std::int32_t spare, BiquadWords& out) override;
    bool computeBand(std::int32_t kindWord, float gainDb, float q, std::int32_t spare,
                     BiquadWords& out) override;
};

}  // namespace tessavo
