#include <cmath>
#include <numbers>

#include "dsp/band_types.h"
#include "dsp/filter_designs.h"

namespace tessavo {

namespace {

double prewarp(double frequencyHz, double samplingRateHz) {
    return std::tan(std::numbers::pi * frequencyHz / samplingRateHz);
}

Section divide(const BilinearQuadratic& numerator, const BilinearQuadratic& denominator) {
    const double d = denominator.c0;
    return {numerator.c0 / d, numerator.c1 / d, numerator.c2 / d, denominator.c1 / d, denominator.c2 / d};
}

}  // namespace

std::optional<Section> bilinearBand(const BandRequest& request, double samplingRateHz) {
    const BandDesign* design = bandDesign(request.type);
    if (design == nullptr) {
        return std::nullopt;
    }
    const double k = prewarp(request.frequencyHz, samplingRateHz);
    const BandTerms terms{k, k * k, request.q, request.linearGain, std::sqrt(request.linearGain)};
    const BilinearQuadratic plain{1.0 + k / terms.q + terms.w2, 2.0 * (terms.w2 - 1.0),
                                  1.0 - k / terms.q + terms.w2};
    const BilinearQuadratic raised = design->bilinearZeros(terms);
    if (request.boosts()) {
        return divide(raised, plain);
    }
    Section cut = divide(plain, raised);
    if (design->bilinearCutPoles != nullptr) {
        const BilinearQuadratic poles = design->bilinearCutPoles(terms);
        cut.a1 = poles.c1 / poles.c0;
        cut.a2 = poles.c2 / poles.c0;
    }
    return cut;
}

Section bilinearCrossover(const CrossoverRequest& request, double samplingRateHz) {
    const double k = prewarp(request.frequencyHz, samplingRateHz);
    const double k2 = k * k;
    const double d = 1.0 + std::numbers::sqrt2 * k + k2;
    const double a1 = 2.0 * (k2 - 1.0) / d;
    const double a2 = (1.0 - std::numbers::sqrt2 * k + k2) / d;
    if (request.lowPass) {
        return {k2 / d, 2.0 * k2 / d, k2 / d, a1, a2};
    }
    return {1.0 / d, -2.0 / d, 1.0 / d, a1, a2};
}

}  // namespace tessavo
