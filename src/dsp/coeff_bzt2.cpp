#include "dsp/coeff_bzt2.h"

#include "dsp/filter_designs.h"
#include "dsp/filter_kind.h"

namespace tessavo {

Section coeffBZT2::designCrossover(const CrossoverRequest& request) const {
    return bilinearCrossover(request, designSamplingRateHz);
}

std::optional<Section> coeffBZT2::designBand(const BandRequest& request) const {
    return bilinearBand(request, responseSamplingRateHz);
}

}  // namespace tessavo
