#include "dsp/icoefficient_generator.h"

#include "dsp/fixed_point.h"

namespace tessavo {

bool IcoefficientGenerator::convert(const std::array<double, 5>& scaled, BiquadWords& out) {
    if (coefficientsToFixed(scaled, out)) {
        return true;
    }
    if (warnUnstable_) {
        warnUnstable_ = false;
        if (warn_) {
            warn_(unstableFilterText);
        }
    }
    return false;
}

bool IcoefficientGenerator::passThrough(BiquadWords& out) {
    out = {unityNumeratorWord, 0, 0, 0, 0};
    return false;
}

}  // namespace tessavo
