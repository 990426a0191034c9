#include "fit/fit_problem.h"

#include <algorithm>
#include <array>

namespace tessavo {

double costOfLevels(const FitProblem& problem, FitLevels& levels) {
    // Several sums side by side, so that none waits for the one before it.
    constexpr std::size_t lanes = 4;
    std::array<double, lanes> sums{};
    std::array<double, lanes> squares{};
    std::array<double, lanes> beyond{};
    const auto count = static_cast<double>(problem.rangeCount);
    const auto add = [&](std::size_t i, std::size_t lane) {
        const double deviation = levels.levelsDb[i] - problem.wantedDb[i];
        sums[lane] += deviation;
        squares[lane] += deviation * deviation;
    };
    std::size_t i = 0;
    for (; i + lanes <= problem.rangeCount; i += lanes) {
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            add(i + lane, lane);
        }
    }
    for (; i < problem.rangeCount; ++i) {
        add(i, 0);
    }
    const auto addExcess = [&](std::size_t at, std::size_t lane) {
        const double level = levels.levelsDb[at];
        const double excess = level > problem.mostBoostDb ? level - problem.mostBoostDb : 0.0;
        beyond[lane] += excess * excess;
    };
    for (i = 0; i + lanes <= levels.levelsDb.size(); i += lanes) {
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            addExcess(i + lane, lane);
        }
    }
    for (; i < levels.levelsDb.size(); ++i) {
        addExcess(i, 0);
    }
    levels.meanDb = ((sums[0] + sums[1]) + (sums[2] + sums[3])) / count;
    const double square = ((squares[0] + squares[1]) + (squares[2] + squares[3])) / count;
    const double excess = ((beyond[0] + beyond[1]) + (beyond[2] + beyond[3])) / count;
    return std::max(0.0, square - levels.meanDb * levels.meanDb) + boostPenalty * excess;
}

double costOf(const FitProblem& problem, std::span<const PowerRatio> bands, FitLevels& levels) {
    const std::size_t count = problem.points.size();
    levels.numerators.assign(count, 1.0);
    levels.denominators.assign(count, 1.0);
    levels.levelsDb.resize(count);
    for (const PowerRatio& band : bands) {
        for (std::size_t i = 0; i < count; ++i) {
            const double x = problem.points.halfAngleSquare[i];
            levels.numerators[i] *= band.numerator(x);
            levels.denominators[i] *= band.denominator(x);
        }
    }
    for (std::size_t i = 0; i < count; ++i) {
        levels.levelsDb[i] = decibelsOfPower(levels.numerators[i] / levels.denominators[i]);
    }
    return costOfLevels(problem, levels);
}

}  // namespace tessavo
