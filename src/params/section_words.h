#pragma once

#include "dsp/icoefficient_generator.h"
#include "params/records.h"

namespace tessavo {

/// Computes the words of one band of a record by a filter method.
/// \param words as IcoefficientGenerator::computeBand() leaves them
/// \return as IcoefficientGenerator::computeBand()
bool computeBandWords(IcoefficientGenerator& method, const EqBandParams& band, BiquadWords& words);

/// Computes the words of one crossover of a record by a filter method.
/// \param words as IcoefficientGenerator::computeCrossover() leaves them
/// \return as IcoefficientGenerator::computeCrossover()
bool computeCrossoverWords(IcoefficientGenerator& method, const CrossoverParams& crossover,
                           BiquadWords& words);

/// The section of one band of a record by a filter method, before it becomes words.
/// \return a section that passes everything through for a type that no method knows, as the words are then
[[nodiscard]] Section designedBand(const IcoefficientGenerator& method, const EqBandParams& band);

/// The section of one crossover of a record by a filter method, before it becomes words.
[[nodiscard]] Section designedCrossover(const IcoefficientGenerator& method,
                                        const CrossoverParams& crossover);

/// A band of the input side.
/// \param inputBand 0 to 9 for the graphic bands, 10 bass, 11 middle, 12 treble
[[nodiscard]] const EqBandParams& inputBandOf(const ParameterSet& set, std::size_t inputBand);

}  // namespace tessavo
