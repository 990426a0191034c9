#pragma once

#include "dsp/icoefficient_generator.h"
#include "params/records.h"

namespace tessavo {

/// Lets a method compute the words of one band of a record.
///
/// \return as IcoefficientGenerator::computeBand()
bool computeBandWords(IcoefficientGenerator& method, const EqBandParams& band, BiquadWords& words);

/// The same for a crossover.
bool computeCrossoverWords(IcoefficientGenerator& method, const CrossoverParams& crossover,
                           BiquadWords& words);

/// Band of the input side: 0 to 9 graphic bands, 10 bass, 11 middle, 12 treble.
[[nodiscard]] const EqBandParams& inputBandOf(const ParameterSet& set, std::size_t inputBand);

}  // namespace tessavo
