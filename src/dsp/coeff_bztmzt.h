#pragma once

#include "dsp/icoefficient_generator.h"

namespace tessavo {

/// Mean of the bilinear and the matched section, both at 44100 Hz.
class coeffBZTMZT final : public IcoefficientGenerator {
 public:
    using IcoefficientGenerator::IcoefficientGenerator;

    bool computeCrossover(std::int32_t kindWord, std::int32_t spare, BiquadWords& out) override;
    bool computeBand(std::int32_t kindWord, float gainDb, float q, std::int32_t spare,
                     BiquadWords& out) override;
};

}  // namespace tessavo
