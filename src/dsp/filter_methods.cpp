#include "dsp/filter_methods.h"

#include "dsp/coeff_bzt2.h"
#include "dsp/coeff_bztmzt.h"
#include "dsp/coeff_mzt.h"

namespace tessavo {

FilterMethods makeFilterMethods(const IcoefficientGenerator::Warn& warn) {
    return {std::make_unique<coeffBZT2>(warn), std::make_unique<coeffMZT>(warn),
            std::make_unique<coeffBZTMZT>(warn)};
}

}  // namespace tessavo
