#include "dsp/coeff_bzt2.h"

#include "dsp/filter_designs.h"
#include "dsp/filter_kind.h"

namespace tessavo {

bool coeffBZT2::computeCrossover(std::int32_t kindWord, std::int32_t, BiquadWords& out) {
    return convert(bilinearCrossover(CrossoverRequest::unpack(kindWord), designSamplingRateHz).scaled(), out);
}

bool coeffBZT2::computeBand(std::int32_t kindWord, float gainDb, float q, std::int32_t, BiquadWords& out) {
    const auto section = bilinearBand(BandRequest::unpack(kindWord, gainDb, q), responseSamplingRateHz);
    return section ? convert(section->scaled(), out) : passThrough(out);
}

}  // namespace tessavo
