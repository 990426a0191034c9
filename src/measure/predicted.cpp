#include "measure/predicted.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <iterator>
#include <numbers>
#include <optional>
#include <vector>

#include "response/complex_response.h"

namespace tessavo {

namespace {

constexpr double lowestDb = -300.0;

// A sum of waves that is smaller than its parts by this much, 240 dB, is made of their rounding errors.
constexpr double nothing = 1e-12;

// Also for what is no number. No comparison with that is true.
double toldLevel(double levelDb) {
    return levelDb > lowestDb ? levelDb : lowestDb;
}

std::complex<double> wave(double levelDb, double degrees) {
    const double radians = std::remainder(degrees, 360.0) * (std::numbers::pi / 180.0);
    return std::polar(std::pow(10.0, levelDb / 20.0), radians);
}

/// The curves at the frequencies of the first that all of them have; none where there are no such frequencies.
std::vector<LevelCurve> together(std::span<const LevelCurve> curves) {
    if (curves.empty()) {
        return {};
    }
    double lowestHz = 0.0;
    double highestHz = curves.front().frequenciesHz.empty() ? 0.0 : curves.front().frequenciesHz.back();
    for (const LevelCurve& curve : curves) {
        if (curve.frequenciesHz.empty()) {
            return {};
        }
        lowestHz = std::max(lowestHz, curve.frequenciesHz.front());
        highestHz = std::min(highestHz, curve.frequenciesHz.back());
    }
    std::vector<double> frequenciesHz;
    std::ranges::copy_if(curves.front().frequenciesHz, std::back_inserter(frequenciesHz),
                         [&](double hertz) { return hertz >= lowestHz && hertz <= highestHz; });
    if (frequenciesHz.empty()) {
        return {};
    }
    std::vector<LevelCurve> result;
    result.reserve(curves.size());
    for (const LevelCurve& curve : curves) {
        result.push_back(resampled(curve, frequenciesHz));
    }
    return result;
}

double highestAt(const std::vector<LevelCurve>& curves, std::size_t point) {
    double highestDb = curves.front().levelsDb[point];
    for (const LevelCurve& curve : curves) {
        highestDb = std::max(highestDb, curve.levelsDb[point]);
    }
    return highestDb;
}

LevelCurve sumOfPowers(const std::vector<LevelCurve>& curves) {
    LevelCurve sum{curves.front().frequenciesHz, {}, {}};
    sum.levelsDb.reserve(sum.frequenciesHz.size());
    for (std::size_t i = 0; i < sum.frequenciesHz.size(); ++i) {
        const double highestDb = highestAt(curves, i);
        double power = 0.0;
        for (const LevelCurve& curve : curves) {
            power += std::pow(10.0, (curve.levelsDb[i] - highestDb) / 10.0);
        }
        sum.levelsDb.push_back(toldLevel(highestDb + 10.0 * std::log10(power)));
    }
    return sum;
}

LevelCurve sumOfWaves(const std::vector<LevelCurve>& curves) {
    LevelCurve sum{curves.front().frequenciesHz, {}, {}};
    std::vector<double> degrees;
    double lastDegrees = 0.0;
    for (std::size_t i = 0; i < sum.frequenciesHz.size(); ++i) {
        const double highestDb = highestAt(curves, i);
        std::complex<double> value = 0.0;
        for (const LevelCurve& curve : curves) {
            value += wave(curve.levelsDb[i] - highestDb, curve.phasesDegrees[i]);
        }
        // A direction of nothing is none: it stays.
        const bool isThere = std::abs(value) > nothing;
        lastDegrees = isThere ? std::arg(value) * (180.0 / std::numbers::pi) : lastDegrees;
        sum.levelsDb.push_back(isThere ? toldLevel(highestDb + 20.0 * std::log10(std::abs(value)))
                                       : lowestDb);
        degrees.push_back(lastDegrees);
    }
    sum.phasesDegrees = unwrappedDegrees(degrees);
    return sum;
}

}  // namespace

LevelCurve predicted(const LevelCurve& measurement, const ChannelModel& channel) {
    LevelCurve result = measurement;
    const auto grid = FrequencyGrid::of(measurement.frequenciesHz);
    if (!grid) {
        return result;
    }
    const ComplexResponse response = ComplexResponse::ofChannel(channel, *grid);
    double turnedDegrees = 0.0;
    for (std::size_t i = 0; i < response.size(); ++i) {
        result.levelsDb[i] = toldLevel(measurement.levelsDb[i] + response.levelDb(i));
        if (measurement.hasPhase()) {
            const double degrees = response.unwrappedPhaseDegrees(i);
            turnedDegrees = std::isfinite(degrees) ? degrees : turnedDegrees;
            result.phasesDegrees[i] = measurement.phasesDegrees[i] + turnedDegrees;
        }
    }
    return result;
}

PredictedSum predictedSum(std::span<const LevelCurve> predictedCurves) {
    const std::vector<LevelCurve> curves = together(predictedCurves);
    if (curves.empty()) {
        return {};
    }
    const bool isComplex = std::ranges::all_of(curves, &LevelCurve::hasPhase);
    return {isComplex ? sumOfWaves(curves) : sumOfPowers(curves), isComplex};
}

}  // namespace tessavo
