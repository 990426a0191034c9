#pragma once

#include <span>
#include <vector>

#include "dsp/icoefficient_generator.h"
#include "fit/band_shape.h"
#include "fit/fit_points.h"

namespace tessavo {

/// What is asked of the bands of a fit, as numbers at points.
///
/// The points of the range come first; behind them, over the whole range that is heard, those at which nothing but the limit of
/// all boosts is watched.
struct FitProblem {
    const IcoefficientGenerator* method = nullptr;
    FitPoints points{};
    std::size_t rangeCount = 0;  ///< points of the range
    std::vector<double>
        wantedDb{};          ///< what the bands should give at the points of the range, up to one level
    double mostBoostDb = 0;  ///< of all bands together
    BandRoom room{};         ///< what each band may take
};

/// Scratch room for levels at the points of a problem, kept from one computation to the next.
struct FitLevels {
    std::vector<double> numerators{};
    std::vector<double> denominators{};
    std::vector<double> levelsDb{};
    double meanDb = 0;  ///< what the levels of the range are above the wanted ones, on the mean
};

/// How far bands are from what is wanted: the mean of the squares of the deviations in dB from their own mean, and a
/// penalty for boosts beyond the limit.
/// \param levels takes the levels of all bands together, and the mean
[[nodiscard]] double costOf(const FitProblem& problem, std::span<const PowerRatio> bands, FitLevels& levels);

/// The cost of given levels; their mean goes into levels.meanDb.
[[nodiscard]] double costOfLevels(const FitProblem& problem, FitLevels& levels);

/// What a level beyond the limit of all boosts counts, beside a deviation inside the range.
inline constexpr double boostPenalty = 30.0;

}  // namespace tessavo
