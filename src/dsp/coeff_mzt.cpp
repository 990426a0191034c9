#include "dsp/coeff_mzt.h"

#include "dsp/filter_designs.h"

namespace tessavo {

Section coeffMZT::designCrossover(const CrossoverRequest& request) const {
    return matchedCrossover(request);
}

std::optional<Section> coeffMZT::designBand(const BandRequest& request) const {
    return matchedBand(request);
}

}  // namespace tessavo
