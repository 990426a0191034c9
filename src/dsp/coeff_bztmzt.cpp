#include "dsp/coeff_bztmzt.h"

#include <array>

#include "dsp/filter_designs.h"
#include "dsp/filter_kind.h"

namespace tessavo {

namespace {

std::array<double, 5> scaledMean(const Section& bilinear, const Section& matched) {
    std::array<double, 5> mean = bilinear.scaled();
    const std::array<double, 5> other = matched.scaled();
    for (std::size_t i = 0; i < mean.size(); ++i) {
        mean[i] = (mean[i] + other[i]) / 2.0;
    }
    return mean;
}

}  // namespace

bool coeffBZTMZT::computeCrossover(std::int32_t kindWord, std::int32_t, BiquadWords& out) {
    const auto request = CrossoverRequest::unpack(kindWord);
    return convert(scaledMean(bilinearCrossover(request, designSamplingRateHz), matchedCrossover(request)),
                   out);
}

bool coeffBZTMZT::computeBand(std::int32_t kindWord, float gainDb, float q, std::int32_t, BiquadWords& out) {
    const auto request = BandRequest::unpack(kindWord, gainDb, q);
    const auto bilinear = bilinearBand(request, designSamplingRateHz);
    const auto matched = matchedBand(request);
    return bilinear && matched ? convert(scaledMean(*bilinear, *matched), out) : passThrough(out);
}

}  // namespace tessavo
