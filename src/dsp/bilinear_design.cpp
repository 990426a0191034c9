#include <cmath>
#include <numbers>

#include "dsp/filter_designs.h"
#include "dsp/filter_kind.h"

namespace tessavo {

namespace {

double prewarp(double frequencyHz, double samplingRateHz) {
    return std::tan(std::numbers::pi * frequencyHz / samplingRateHz);
}

// A quadratic in the bilinear variable before the division by its leading term: c0 + c1 z^-1 + c2 z^-2.
struct Quadratic {
    double c0;
    double c1;
    double c2;
};

Section divide(const Quadratic& numerator, const Quadratic& denominator) {
    const double d = denominator.c0;
    return {numerator.c0 / d, numerator.c1 / d, numerator.c2 / d, denominator.c1 / d, denominator.c2 / d};
}

}  // namespace

std::optional<Section> bilinearBand(const BandRequest& request, double samplingRateHz) {
    const double k = prewarp(request.frequencyHz, samplingRateHz);
    const double k2 = k * k;
    const double q = request.q;
    const double v = request.linearGain;
    const double rootV = std::sqrt(v);

    const Quadratic plain{1.0 + k / q + k2, 2.0 * (k2 - 1.0), 1.0 - k / q + k2};
    Quadratic raised{};
    switch (static_cast<BandType>(request.type)) {
        case BandType::peak:
            raised = {1.0 + v * k / q + k2, 2.0 * (k2 - 1.0), 1.0 - v * k / q + k2};
            break;
        case BandType::lowShelf:
            raised = {1.0 + rootV * k / q + v * k2, 2.0 * (v * k2 - 1.0), 1.0 - rootV * k / q + v * k2};
            break;
        case BandType::highShelf:
            raised = {v + rootV * k / q + k2, 2.0 * (k2 - v), v - rootV * k / q + k2};
            break;
        default:
            return std::nullopt;
    }
    if (request.boosts()) {
        return divide(raised, plain);
    }
    Section cut = divide(plain, raised);
    if (static_cast<BandType>(request.type) == BandType::highShelf) {
        // The same denominator with V divided out: equal in value, and this form sets the last bits.
        const double inverseRoot = std::sqrt(1.0 / v);
        const double d = 1.0 + inverseRoot * k / q + k2 / v;
        cut.a1 = 2.0 * (k2 / v - 1.0) / d;
        cut.a2 = (1.0 - inverseRoot * k / q + k2 / v) / d;
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
