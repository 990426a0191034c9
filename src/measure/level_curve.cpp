#include "measure/level_curve.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tessavo {

namespace {

constexpr double turnDegrees = 360.0;

/// A value between two points of a curve, or at one.
struct Place {
    std::size_t left = 0;
    std::size_t right = 0;
    double part = 0;  ///< of the way to the right one, 0 to 1

    [[nodiscard]] double of(std::span<const double> values) const {
        // At a point its value is told to the last bit, and so is a level that both points share.
        return left == right ? values[left] : values[left] + part * (values[right] - values[left]);
    }
};

/// \param right the first point that is not below the frequency; as many as there are where there is none
Place placeBefore(std::span<const double> frequenciesHz, std::size_t right, double frequencyHz) {
    if (right == frequenciesHz.size()) {
        return {right - 1, right - 1, 0.0};
    }
    if (right == 0 || frequenciesHz[right] == frequencyHz) {
        return {right, right, 0.0};
    }
    const double lowerHz = frequenciesHz[right - 1];
    const double width = std::log(frequenciesHz[right] / lowerHz);
    return {right - 1, right, width > 0.0 ? std::log(frequencyHz / lowerHz) / width : 0.0};
}

}  // namespace

double levelAt(const LevelCurve& curve, double frequencyHz) {
    const std::vector<double>& frequencies = curve.frequenciesHz;
    const auto notBelow = std::ranges::lower_bound(frequencies, frequencyHz);
    const auto right = static_cast<std::size_t>(notBelow - frequencies.begin());
    return placeBefore(frequencies, right, frequencyHz).of(curve.levelsDb);
}

LevelCurve resampled(const LevelCurve& curve, std::span<const double> frequenciesHz) {
    LevelCurve result;
    result.frequenciesHz.assign(frequenciesHz.begin(), frequenciesHz.end());
    result.levelsDb.reserve(frequenciesHz.size());
    result.phasesDegrees.reserve(curve.hasPhase() ? frequenciesHz.size() : 0);
    std::size_t right = 0;
    for (const double frequencyHz : frequenciesHz) {
        while (right < curve.frequenciesHz.size() && curve.frequenciesHz[right] < frequencyHz) {
            ++right;
        }
        const Place place = placeBefore(curve.frequenciesHz, right, frequencyHz);
        result.levelsDb.push_back(place.of(curve.levelsDb));
        if (curve.hasPhase()) {
            result.phasesDegrees.push_back(place.of(curve.phasesDegrees));
        }
    }
    return result;
}

std::vector<double> unwrappedDegrees(std::span<const double> degrees) {
    std::vector<double> unwrapped;
    unwrapped.reserve(degrees.size());
    for (const double phase : degrees) {
        const double before = unwrapped.empty() ? phase : unwrapped.back();
        unwrapped.push_back(phase + turnDegrees * std::nearbyint((before - phase) / turnDegrees));
    }
    return unwrapped;
}

double rmsAboutMean(std::span<const double> differencesDb, double& meanDb) {
    meanDb = 0.0;
    if (differencesDb.empty()) {
        return 0.0;
    }
    const auto count = static_cast<double>(differencesDb.size());
    for (const double difference : differencesDb) {
        meanDb += difference / count;
    }
    double squares = 0.0;
    for (const double difference : differencesDb) {
        squares += (difference - meanDb) * (difference - meanDb);
    }
    return std::sqrt(squares / count);
}

}  // namespace tessavo
