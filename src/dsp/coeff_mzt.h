#pragma once

#include "dsp/icoefficient_generator.h"

namespace tessavo {

/// The filter method "MZT": the matched z-transform at 44100 Hz, whose gain is not normalised.
class coeffMZT final : public IcoefficientGenerator {
 public:
    using IcoefficientGenerator::IcoefficientGenerator;

 private:
    [[nodiscard]] Section designCrossover(const CrossoverRequest& request) const override;
    [[nodiscard]] std::optional<Section> designBand(const BandRequest& request) const override;
};

}  // namespace tessavo
