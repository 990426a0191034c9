#include "params/section_words.h"

namespace tessavo {

namespace {

// The kind word of a coefficient generator: the block's first four bytes, little-endian.
std::int32_t kindWord(std::uint8_t low, std::uint8_t high, std::uint16_t frequencyHz) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(low) |
                                     static_cast<std::uint32_t>(high) << 8U |
                                     static_cast<std::uint32_t>(frequencyHz) << 16U);
}

}  // namespace

bool computeBandWords(IcoefficientGenerator& method, const EqBandParams& band, BiquadWords& words) {
    // No design reads the word's second byte.
    return method.computeBand(kindWord(band.type, 0, band.frequencyHz), band.gainDb, band.q, 0, words);
}

bool computeCrossoverWords(IcoefficientGenerator& method, const CrossoverParams& crossover,
                           BiquadWords& words) {
    return method.computeCrossover(kindWord(crossover.enabled, crossover.kind, crossover.frequencyHz), 0,
                                   words);
}

const EqBandParams& inputBandOf(const ParameterSet& set, std::size_t inputBand) {
    return inputBand < inputBandCount ? set.inputEqBands[inputBand]
                                      : set.inputToneBands[inputBand - inputBandCount];
}

}  // namespace tessavo
