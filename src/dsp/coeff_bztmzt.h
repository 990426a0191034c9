#pragma once

#include "dsp/icoefficient_generator.h"

namespace tessavo {

/// The filter method "BZT/MZT": each coefficient is the mean of those of the bilinear and of the matched
/// section, both designed for 44100 Hz.
class coeffBZTMZT final : public IcoefficientGenerator {
 public:
    using IcoefficientGenerator::IcoefficientGenerator;

 private:
    [[nodiscard]] Section designCrossover(const CrossoverRequest& request) const override;
    [[nodiscard]] std::optional<Section> designBand(const BandRequest& request) const override;
};

}  // namespace tessavo
