#pragma once

#include "dsp/icoefficient_generator.h"

namespace tessavo {

/// Matched z-transform at 44100 Hz, without gain normalisation.
class coeffMZT final : public IcoefficientGenerator {
 public:
    using IcoefficientGenerator::IcoefficientGenerator;

    bool computeCrossover(std::int32_t kindWord, std::int32_t spare, BiquadWords& out) override;
    bool computeBand(std::int32_t kindWord, float gainDb, float q, std::int32_t spare,
                     BiquadWords& out) override;
};

}  // namespace tessavo
