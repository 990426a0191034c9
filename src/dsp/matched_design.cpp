#include <cmath>
#include <numbers>
#include <utility>

#include "dsp/band_types.h"
#include "dsp/filter_designs.h"
#include "dsp/filter_kind.h"

namespace tessavo {

namespace {

constexpr double samplePeriodS = 1.0 / designSamplingRateHz;

double angularFrequency(double frequencyHz) {
    return 2.0 * std::numbers::pi * frequencyHz;
}

// Roots sigma +- sqrt(d).
MappedQuadratic mapRoots(double sigma, double d) {
    if (d < 0.0) {
        const double radius = std::exp(sigma * samplePeriodS);
        return {-2.0 * radius * std::cos(std::sqrt(-d) * samplePeriodS), radius};
    }
    const double root = std::sqrt(d);
    return {-(std::exp((sigma + root) * samplePeriodS) + std::exp((sigma - root) * samplePeriodS)),
            std::exp(2.0 * sigma * samplePeriodS)};
}

}  // namespace

MappedQuadratic mapQuadratic(double p, double q) {
    const double sigma = -p / 2.0;
    return mapRoots(sigma, sigma * sigma - q);
}

std::optional<Section> matchedBand(const BandRequest& request) {
    const BandDesign* design = bandDesign(request.type);
    if (design == nullptr) {
        return std::nullopt;
    }
    const double w = angularFrequency(request.frequencyHz);
    const BandTerms terms{w, w * w, request.q, request.linearGain, std::sqrt(request.linearGain)};
    const AnalogQuadratic zeros = design->matchedZeros(terms);
    MappedQuadratic numerator = mapQuadratic(zeros.p, zeros.q);
    MappedQuadratic denominator = mapQuadratic(w / terms.q, terms.w2);
    if (!request.boosts()) {
        std::swap(numerator, denominator);
    }
    return Section{1.0, numerator.c1, numerator.c2, denominator.c1, denominator.c2};
}

Section matchedCrossover(const CrossoverRequest& request) {
    const double w = angularFrequency(request.frequencyHz);
    const auto singleRoot2 = static_cast<double>(std::numbers::sqrt2_v<float>);
    const double sigma = -w / singleRoot2;
    const MappedQuadratic denominator = mapRoots(sigma, sigma * sigma - w * w);
    if (request.lowPass) {
        return {1.0, 2.0 * std::exp(-samplePeriodS), std::exp(-2.0 * samplePeriodS), denominator.c1,
                denominator.c2};
    }
    return {1.0, -2.0, 1.0, denominator.c1, denominator.c2};
}

}  // namespace tessavo
