#include "filtertext/cookbook.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

#include "dsp/filter_kind.h"

namespace tessavo {

namespace {

constexpr double pi = std::numbers::pi;

double tangentOf(double frequencyHz, double samplingRateHz) {
    return std::tan(pi * frequencyHz / samplingRateHz);
}

double frequencyOf(double tangent, double samplingRateHz) {
    return std::atan(tangent) * samplingRateHz / pi;
}

/// The cookbook's A, never below 1: a cut is the inverse of the boost by as many dB.
double amplitudeOf(double gainDb) {
    return std::pow(10.0, std::abs(gainDb) / 40.0);
}

/// What the tangent of a shelf's centre is multiplied by on its way into the target.
double shelfFactor(FilterShape shape, double gainDb) {
    const double factor = std::pow(10.0, std::abs(gainDb) / 80.0);
    return shape == FilterShape::lowShelf ? 1.0 / factor : factor;
}

double crossoverScale() {
    return designSamplingRateHz / responseSamplingRateHz;
}

Section divided(double b0, double b1, double b2, double a0, double a1, double a2) {
    return {b0 / a0, b1 / a0, b2 / a0, a1 / a0, a2 / a0};
}

Section peakSection(double amplitude, double cosine, double alpha) {
    return divided(1.0 + alpha * amplitude, -2.0 * cosine, 1.0 - alpha * amplitude, 1.0 + alpha / amplitude,
                   -2.0 * cosine, 1.0 - alpha / amplitude);
}

Section shelfSection(bool low, double amplitude, double cosine, double alpha) {
    const double sign = low ? 1.0 : -1.0;
    const double up = amplitude + 1.0;
    const double down = sign * (amplitude - 1.0) * cosine;
    const double side = 2.0 * std::sqrt(amplitude) * alpha;
    return divided(amplitude * (up - down + side),
                   sign * 2.0 * amplitude * ((amplitude - 1.0) - sign * up * cosine),
                   amplitude * (up - down - side), up + down + side,
                   -sign * 2.0 * ((amplitude - 1.0) + sign * up * cosine), up + down - side);
}

}  // namespace

bool isConvertible(const CookbookFilter& filter, double samplingRateHz) {
    return std::isfinite(samplingRateHz) && std::isfinite(filter.frequencyHz) &&
           std::isfinite(filter.gainDb) && std::isfinite(filter.q) && filter.frequencyHz > 0.0 &&
           filter.frequencyHz < samplingRateHz / 2.0 && filter.q > 0.0;
}

Section cookbookSection(const CookbookFilter& filter, double samplingRateHz) {
    const double w = 2.0 * pi * filter.frequencyHz / samplingRateHz;
    const double cosine = std::cos(w);
    const double alpha = std::sin(w) / (2.0 * filter.q);
    const double amplitude = std::pow(10.0, filter.gainDb / 40.0);
    switch (filter.shape) {
        case FilterShape::lowShelf:
            return shelfSection(true, amplitude, cosine, alpha);
        case FilterShape::highShelf:
            return shelfSection(false, amplitude, cosine, alpha);
        case FilterShape::lowPass:
            return divided((1.0 - cosine) / 2.0, 1.0 - cosine, (1.0 - cosine) / 2.0, 1.0 + alpha,
                           -2.0 * cosine, 1.0 - alpha);
        case FilterShape::highPass:
            return divided((1.0 + cosine) / 2.0, -(1.0 + cosine), (1.0 + cosine) / 2.0, 1.0 + alpha,
                           -2.0 * cosine, 1.0 - alpha);
        case FilterShape::peak:
            break;
    }
    return peakSection(amplitude, cosine, alpha);
}

std::optional<double> shelfQOfSlope(double slope, double gainDb) {
    const double amplitude = amplitudeOf(gainDb);
    const double inverseSquare = (amplitude + 1.0 / amplitude) * (1.0 / slope - 1.0) + 2.0;
    if (!(inverseSquare > 0.0) || !std::isfinite(inverseSquare)) {
        return std::nullopt;
    }
    return 1.0 / std::sqrt(inverseSquare);
}

std::optional<double> shelfSlopeOfQ(double q, double gainDb) {
    const double amplitude = amplitudeOf(gainDb);
    const double inverseSlope = (1.0 / (q * q) - 2.0) / (amplitude + 1.0 / amplitude) + 1.0;
    if (!(inverseSlope > 0.0) || !std::isfinite(inverseSlope)) {
        return std::nullopt;
    }
    return 1.0 / inverseSlope;
}

double shelfCentre(FilterShape shape, double cornerHz, double gainDb, double slope) {
    const double factor = std::pow(10.0, std::abs(gainDb) / (80.0 * slope));
    return shape == FilterShape::lowShelf ? cornerHz * factor : cornerHz / factor;
}

double peakQOfBandwidth(double octaves, double frequencyHz, double samplingRateHz) {
    const double w = 2.0 * pi * frequencyHz / samplingRateHz;
    return 1.0 / (2.0 * std::sinh(std::numbers::ln2 / 2.0 * octaves * w / std::sin(w)));
}

DeviceFilter toDevice(const CookbookFilter& filter, double samplingRateHz) {
    DeviceFilter device{filter.shape, filter.frequencyHz, filter.gainDb, filter.q, filter.order};
    if (!isBand(filter.shape)) {
        device.frequencyHz *= crossoverScale();
        device.gainDb = 0.0;
        device.q = 0.0;
    } else if (filter.shape == FilterShape::peak) {
        device.q *= amplitudeOf(filter.gainDb);
    } else {
        device.frequencyHz = frequencyOf(
            tangentOf(filter.frequencyHz, samplingRateHz) * shelfFactor(filter.shape, filter.gainDb),
            samplingRateHz);
    }
    return device;
}

CookbookFilter toCookbook(const DeviceFilter& filter, double samplingRateHz) {
    CookbookFilter cookbook{filter.shape, filter.frequencyHz, filter.gainDb, filter.q, filter.order};
    if (!isBand(filter.shape)) {
        cookbook.frequencyHz /= crossoverScale();
        cookbook.gainDb = 0.0;
        cookbook.q = butterworthQ;
    } else if (filter.shape == FilterShape::peak) {
        cookbook.q /= amplitudeOf(filter.gainDb);
    } else {
        cookbook.frequencyHz = frequencyOf(
            tangentOf(filter.frequencyHz, samplingRateHz) / shelfFactor(filter.shape, filter.gainDb),
            samplingRateHz);
    }
    return cookbook;
}

double sectionLevelDb(const Section& section, double hz, double samplingRateHz) {
    const std::complex<double> z = std::polar(1.0, -2.0 * pi * hz / samplingRateHz);
    const std::complex<double> above = section.b0 + z * (section.b1 + z * section.b2);
    const std::complex<double> below = 1.0 + z * (section.a1 + z * section.a2);
    return 20.0 * std::log10(std::abs(above) / std::abs(below));
}

double filterWeight(const CookbookFilter& filter, double samplingRateHz) {
    // Narrow filters, of Q 50 and more, need steps far below their width of a fiftieth of an octave.
    constexpr int steps = 4096;
    // Where a low-pass lets nothing pass the level is minus infinity, and what lies this deep is not heard.
    constexpr double deepestDb = 120.0;
    const Section section = cookbookSection(filter, samplingRateHz);
    const double octaves = std::log2(std::min(highestHeardHz, samplingRateHz / 2.0) / lowestHeardHz);
    if (!(octaves > 0.0)) {
        return 0.0;
    }
    double sum = 0.0;
    for (int step = 0; step < steps; ++step) {
        const double hz = lowestHeardHz * std::exp2(octaves * (step + 0.5) / steps);
        sum += std::min(deepestDb, std::abs(sectionLevelDb(section, hz, samplingRateHz)));
    }
    return sum * octaves / steps;
}

}  // namespace tessavo
