#include "dsp/coeff_mzt.h"

#include "dsp/filter_designs.h"

namespace tessavo {

bool coeffMZT::computeCrossover(std::int32_t kindWord, std::int32_t, BiquadWords& out) {
    return convert(matchedCrossover(CrossoverRequest::unpack(kindWord)).scaled(), out);
}

bool coeffMZT::computeBand(std::int32_t kindWord, float gainDb, float q, std::int32_t, BiquadWords& out) {
    const auto section = matchedBand(BandRequest::unpack(kindWord, gainDb, q));
    return section ? convert(section->scaled(), out) : passThrough(out);
}

}  // namespace tessavo
