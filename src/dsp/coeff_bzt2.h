#pragma once

#include "dsp/icoefficient_generator.h"

namespace tessavo {

/// The filter method "BZT": the bilinear transform. Bands are pre-warped for 49500 Hz, crossovers for 44100
/// Hz; the two rates differ on purpose.
class coeffBZT2 final : public IcoefficientGenerator {
 public:
    using IcoefficientGenerator::IcoefficientGenerator;

 private:
    [[nodiscard]] Section designCrossover(const CrossoverRequest& request) const override;
    [[nodiscard]] std::optional<Section> designBand(const BandRequest& request) const override;
};

}  // namespace tessavo
