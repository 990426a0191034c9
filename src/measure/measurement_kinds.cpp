#include "measure/measurement_kinds.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "measure/level_curve.h"

namespace tessavo {

namespace {

std::vector<double> levelsOf(std::span<const MeasuredPoint> points) {
    std::vector<double> levels;
    levels.reserve(points.size());
    for (const MeasuredPoint& point : points) {
        levels.push_back(point.levelDb);
    }
    return levels;
}

double medianOf(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

/// How two columns go with each other.
struct Likeness {
    double levelSpread = 0;  ///< root of the mean square about the mean
    double thirdSpread = 0;
    double correlation = 0;  ///< -1 to 1
    double distance = 0;     ///< mean of the absolute differences
};

Likeness likenessOf(std::span<const MeasuredPoint> points) {
    std::vector<double> thirds;
    Likeness likeness;
    for (const MeasuredPoint& point : points) {
        thirds.push_back(point.third);
        likeness.distance += std::abs(point.third - point.levelDb) / static_cast<double>(points.size());
    }
    double levelMean = 0.0;
    double thirdMean = 0.0;
    likeness.levelSpread = rmsAboutMean(levelsOf(points), levelMean);
    likeness.thirdSpread = rmsAboutMean(thirds, thirdMean);
    double product = 0.0;
    for (const MeasuredPoint& point : points) {
        product +=
            (point.levelDb - levelMean) * (point.third - thirdMean) / static_cast<double>(points.size());
    }
    const double spreads = likeness.levelSpread * likeness.thirdSpread;
    likeness.correlation = spreads > 0.0 ? product / spreads : 0.0;
    return likeness;
}

/// Whether the third column is another level. Two levels above 0 that differ little, or spread alike, are two sound
/// pressures; two that go up and down together by as much are two levels about 0.
bool isSecondLevel(std::span<const MeasuredPoint> points) {
    constexpr double nearDb = 25.0;
    constexpr double alikeSpread = 3.0;
    constexpr double clearCorrelation = 0.6;
    constexpr double alikeSlope = 2.5;
    const Likeness likeness = likenessOf(points);
    const bool areAboveZero = std::ranges::all_of(
        points, [](const MeasuredPoint& point) { return point.levelDb > 0.0 && point.third > 0.0; });
    if (areAboveZero) {
        return likeness.distance <= nearDb || likeness.thirdSpread <= alikeSpread * likeness.levelSpread;
    }
    return likeness.correlation >= clearCorrelation &&
           likeness.thirdSpread <= alikeSlope * likeness.levelSpread &&
           likeness.levelSpread <= alikeSlope * likeness.thirdSpread;
}

/// Whether a column that leaves a turn behind is a phase of many turns: it goes one way nearly everywhere.
bool goesOneWay(std::span<const MeasuredPoint> points) {
    constexpr double nearlyAll = 0.9;
    std::size_t rising = 0;
    std::size_t falling = 0;
    bool isFrequency = true;
    for (std::size_t index = 1; index < points.size(); ++index) {
        rising += points[index].third > points[index - 1].third ? 1U : 0U;
        falling += points[index].third < points[index - 1].third ? 1U : 0U;
        isFrequency = isFrequency && std::abs(points[index].third / points[index].frequencyHz - 1.0) < 0.01;
    }
    const auto steps = static_cast<double>(points.size() - 1);
    return !isFrequency && static_cast<double>(std::max(rising, falling)) >= nearlyAll * steps;
}

bool haveEvenSteps(std::span<const MeasuredPoint> points) {
    constexpr std::size_t fewest = 8;
    constexpr double tolerance = 0.02;
    if (points.size() < fewest) {
        return false;
    }
    const double range = points.back().frequencyHz - points.front().frequencyHz;
    const double step = range / static_cast<double>(points.size() - 1);
    // What is left out at 0 Hz is a step before the first.
    for (std::size_t index = 0; index < points.size(); ++index) {
        const double even = points.front().frequencyHz + step * static_cast<double>(index);
        if (std::abs(points[index].frequencyHz - even) > tolerance * step + 1e-5 * range) {
            return false;
        }
    }
    return points.front().frequencyHz <= 1.5 * step;
}

}  // namespace

bool isPhaseColumn(std::span<const MeasuredPoint> points) {
    constexpr double leastTurnDegrees = 30.0;
    constexpr double halfTurnDegrees = 180.0;
    constexpr double turnDegrees = 360.0;
    std::vector<double> degrees;
    bool hasWrap = false;
    bool isWithinTurn = true;
    for (const MeasuredPoint& point : points) {
        if (!std::isfinite(point.third)) {
            return false;
        }
        hasWrap = hasWrap || (!degrees.empty() && std::abs(point.third - degrees.back()) > halfTurnDegrees);
        isWithinTurn = isWithinTurn && std::abs(point.third) <= turnDegrees;
        degrees.push_back(point.third);
    }
    const std::vector<double> unwrapped = unwrappedDegrees(degrees);
    const auto [lowest, highest] = std::ranges::minmax_element(unwrapped);
    if (lowest == unwrapped.end() || *highest - *lowest <= leastTurnDegrees) {
        return false;
    }
    if (!isWithinTurn) {
        return goesOneWay(points);
    }
    return hasWrap || !isSecondLevel(points);
}

bool areOhms(std::span<const MeasuredPoint> points) {
    constexpr double leastOhms = 1.0;
    constexpr double usualOhms = 40.0;
    constexpr double quarterTurnDegrees = 90.0;
    constexpr double clearDegrees = 5.0;
    constexpr std::size_t fewest = 8;
    double lowest = 0.0;
    double highest = 0.0;
    for (const MeasuredPoint& point : points) {
        if (!std::isfinite(point.third) || point.levelDb < leastOhms) {
            return false;
        }
        lowest = std::min(lowest, point.third);
        highest = std::max(highest, point.third);
    }
    return points.size() >= fewest && lowest >= -quarterTurnDegrees && highest <= quarterTurnDegrees &&
           lowest < -clearDegrees && highest > clearDegrees && medianOf(levelsOf(points)) < usualOhms;
}

bool areSamples(std::span<const MeasuredPoint> points) {
    constexpr double fullScale = 2.0;
    constexpr double longestSeconds = 20.0;
    constexpr double clearPeak = 20.0;
    constexpr double fewestSwings = 0.05;
    if (!areLevelsWithin(points, -fullScale, fullScale) || !haveEvenSteps(points)) {
        return false;
    }
    if (points.back().frequencyHz < longestSeconds) {
        return true;
    }
    std::vector<double> sizes;
    std::size_t swings = 0;
    for (std::size_t index = 0; index < points.size(); ++index) {
        sizes.push_back(std::abs(points[index].levelDb));
        swings += index > 0 && points[index].levelDb * points[index - 1].levelDb < 0.0 ? 1U : 0U;
    }
    return *std::ranges::max_element(sizes) > clearPeak * medianOf(sizes) &&
           static_cast<double>(swings) >= fewestSwings * static_cast<double>(points.size());
}

bool areLevelsWithin(std::span<const MeasuredPoint> points, double least, double most) {
    return std::ranges::all_of(
        points, [&](const MeasuredPoint& point) { return point.levelDb >= least && point.levelDb <= most; });
}

}  // namespace tessavo
