#include <array>
#include <cmath>
#include <numbers>

#include "base/saturate.h"
#include "dsp/filter_kind.h"
#include "plot/response_terms.h"

namespace tessavo {

double curveAngle(std::size_t point) {
    return 2.0 * std::numbers::pi * static_cast<double>(point + 1) * curveStepHz / responseSamplingRateHz;
}

namespace {

double sectionDb(const BiquadWords& words, double w) {
    const double b0 = words.b0 * numeratorUnit;
    const double b1 = words.b1 * numeratorUnit;
    const double b2 = words.b2 * numeratorUnit;
    const double a1 = words.a1 * denominatorUnit;
    const double a2 = words.a2 * denominatorUnit;
    const double nRe = b0 + b1 * std::cos(w) + b2 * std::cos(2.0 * w);
    const double nIm = b1 * std::sin(w) + b2 * std::sin(2.0 * w);
    const double dRe = 1.0 + a1 * std::cos(w) + a2 * std::cos(2.0 * w);
    const double dIm = a1 * std::sin(w) + a2 * std::sin(2.0 * w);
    return 10.0 * std::log10((nRe * nRe + nIm * nIm) / (dRe * dRe + dIm * dIm));
}

}  // namespace

double plainMagnitudeAt(std::span<const BiquadWords> cascade, double angle) {
    double sum = 0.0;
    for (const BiquadWords& words : cascade) {
        sum += sectionDb(words, angle);
    }
    return sum;
}

double plainMagnitudeDb(std::span<const BiquadWords> cascade, std::size_t point) {
    return plainMagnitudeAt(cascade, curveAngle(point));
}

ResponseCurve plainResponse(std::span<const BiquadWords> cascade) {
    std::array<double, curvePointCount> sums{};
    for (const BiquadWords& words : cascade) {
        for (std::size_t i = 0; i < curvePointCount; ++i) {
            sums[i] += sectionDb(words, curveAngle(i));
        }
    }
    ResponseCurve curve;
    for (std::size_t i = 0; i < curvePointCount; ++i) {
        curve.frequencyHz[i] = static_cast<std::int32_t>(i + 1) * curveStepHz;
        curve.magnitudeDb[i] = truncateTo<std::int32_t>(sums[i]);
    }
    return curve;
}

}  // namespace tessavo
