#include "params/section_words.h"

namespace tessavo {

namespace {

// The kind word of a coefficient generator: the block's first four bytes, little-endian.
std::int32_t kindWord(std::uint8_t low, std::uint8_t high, std::uint16_t frequencyHz) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(low) |
                                     static_cast<std::uint32_t>(high) << 8U |
                                     static_cast<std::uint32_t>(frequencyHz) << 16U);
}

// No design reads the word's second byte.
std::int32_t kindWordOf(const EqBandParams& band) {
    return kindWord(band.type, 0, band.frequencyHz);
}

std::int32_t kindWordOf(const CrossoverParams& crossover) {
    return kindWord(crossover.enabled, crossover.kind, crossover.frequencyHz);
}

}  // namespace

bool computeBandWords(IcoefficientGenerator& method, const EqBandParams& band, BiquadWords& words) {
    return method.computeBand(kindWordOf(band), band.gainDb, band.q, 0, words);
}

bool computeCrossoverWords(IcoefficientGenerator& method, const CrossoverParams& crossover,
                           BiquadWords& words) {
    return method.computeCrossover(kindWordOf(crossover), 0, words);
}

Section designedBand(const IcoefficientGenerator& method, const EqBandParams& band) {
    return method.bandSection(kindWordOf(band), band.gainDb, band.q).value_or(Section{});
}

Section designedCrossover(const IcoefficientGenerator& method, const CrossoverParams& crossover) {
    return method.crossoverSection(kindWordOf(crossover));
}

const EqBandParams& inputBandOf(const ParameterSet& set, std::size_t inputBand) {
    return inputBand < inputBandCount ? set.inputEqBands[inputBand]
                                      : set.inputToneBands[inputBand - inputBandCount];
}

}  // namespace tessavo
