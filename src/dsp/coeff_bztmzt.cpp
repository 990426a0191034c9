#include "dsp/coeff_bztmzt.h"

#include "dsp/filter_designs.h"
#include "dsp/filter_kind.h"

namespace tessavo {

namespace {

Section mean(const Section& bilinear, const Section& matched) {
    return {(bilinear.b0 + matched.b0) / 2.0, (bilinear.b1 + matched.b1) / 2.0,
            (bilinear.b2 + matched.b2) / 2.0, (bilinear.a1 + matched.a1) / 2.0,
            (bilinear.a2 + matched.a2) / 2.0};
}

}  // namespace

Section coeffBZTMZT::designCrossover(const CrossoverRequest& request) const {
    return mean(bilinearCrossover(request, designSamplingRateHz), matchedCrossover(request));
}

std::optional<Section> coeffBZTMZT::designBand(const BandRequest& request) const {
    const auto bilinear = bilinearBand(request, designSamplingRateHz);
    const auto matched = matchedBand(request);
    return bilinear && matched ? std::optional(mean(*bilinear, *matched)) : std::nullopt;
}

}  // namespace tessavo
