#include "fit/boost_limit.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "dsp/filter_kind.h"
#include "fit/least_squares.h"

namespace tessavo {

namespace {

// Words are rounded: where nothing may be boosted, they still do by less than this.
constexpr double roundingDb = 1e-6;

struct LevelPeak {
    double hz = 0;
    double db = 0;
};

const FitPoints& closePoints() {
    constexpr std::size_t count = 1500;
    static const FitPoints points = FitPoints::even(lowestHeardHz, highestHeardHz, count);
    return points;
}

double levelAtPlace(std::span<const PowerRatio> bands, double x) {
    double power = 1.0;
    for (const PowerRatio& band : bands) {
        power *= band.numerator(x) / band.denominator(x);
    }
    return decibelsOfPower(power);
}

/// The highest place between two, by the golden section.
LevelPeak highestBetween(std::span<const PowerRatio> bands, double low, double high) {
    constexpr int rounds = 22;
    constexpr double section = 1.0 / std::numbers::phi;
    for (int round = 0; round < rounds; ++round) {
        const double left = high - section * (high - low);
        const double right = low + section * (high - low);
        if (levelAtPlace(bands, left) < levelAtPlace(bands, right)) {
            low = left;
        } else {
            high = right;
        }
    }
    const double x = (low + high) / 2.0;
    return {std::asin(std::sqrt(x)) * responseSamplingRateHz / std::numbers::pi, levelAtPlace(bands, x)};
}

/// The peaks above a level.
std::vector<LevelPeak> peaksAbove(std::span<const PowerRatio> bands, double leastDb) {
    // The narrowest peak is higher between two of the close points by far less.
    constexpr double slackDb = 1.0;
    const FitPoints& points = closePoints();
    const std::vector<double> levels = levelsOf(bands, points);
    const std::size_t last = levels.size() - 1;
    std::vector<LevelPeak> peaks;
    for (std::size_t i = 0; i <= last; ++i) {
        const bool isPeak =
            (i == 0 || levels[i] >= levels[i - 1]) && (i == last || levels[i] >= levels[i + 1]);
        if (!isPeak || levels[i] + slackDb < leastDb) {
            continue;
        }
        LevelPeak peak = highestBetween(bands, points.halfAngleSquare[i == 0 ? 0 : i - 1],
                                        points.halfAngleSquare[std::min(last, i + 1)]);
        if (peak.db < levels[i]) {
            peak = {points.frequenciesHz[i], levels[i]};
        }
        if (peak.db > leastDb) {
            peaks.push_back(peak);
        }
    }
    return peaks;
}

void watch(FitProblem& problem, std::span<const LevelPeak> peaks) {
    for (const LevelPeak& peak : peaks) {
        problem.points.watch(peak.hz);
    }
}

}  // namespace

double highestLevel(std::span<const PowerRatio> bands) {
    double highest = 0;
    for (const LevelPeak& peak : peaksAbove(bands, 0.0)) {
        highest = std::max(highest, peak.db);
    }
    return highest;
}

void holdBoost(FitProblem& problem, std::vector<BandShape>& shapes, double mostBoostDb) {
    constexpr int mostTries = 4;
    constexpr int steps = 8;
    // What goes beyond by less is left to the search on the steps.
    constexpr double slackDb = 0.3;
    for (int attempt = 0; attempt < mostTries; ++attempt) {
        std::vector<PowerRatio> ratios;
        ratios.reserve(shapes.size());
        for (const BandShape& shape : shapes) {
            ratios.push_back(designedRatio(*problem.method, shape));
        }
        const std::vector<LevelPeak> peaks = peaksAbove(ratios, mostBoostDb + slackDb);
        if (peaks.empty()) {
            return;
        }
        watch(problem, peaks);
        LeastSquares solver(problem);
        const std::vector<BandRoom> rooms(shapes.size(), problem.room);
        (void)solver.improve(shapes, rooms, steps);
    }
}

void holdBoost(FitProblem problem, SteppedBands& stepped, double mostBoostDb) {
    constexpr int mostTries = 16;
    constexpr double stricterDb = 0.02;
    for (int attempt = 0; attempt < mostTries; ++attempt) {
        const std::vector<LevelPeak> peaks =
            peaksAbove(playedRatios(*problem.method, stepped.bands), mostBoostDb + roundingDb);
        if (peaks.empty()) {
            return;
        }
        watch(problem, peaks);
        problem.mostBoostDb = mostBoostDb - stricterDb * attempt;
        stepped = searchOnSteps(problem, std::move(stepped.bands));
    }
    constexpr int mostCuts = 60;
    for (int cut = 0; cut < mostCuts; ++cut) {
        if (highestLevel(playedRatios(*problem.method, stepped.bands)) <= mostBoostDb + roundingDb) {
            break;
        }
        for (EqBandParams& band : stepped.bands) {
            band.gainDb = static_cast<float>(std::trunc(static_cast<double>(band.gainDb) * 9.0) / 10.0);
        }
    }
    stepped = costOfStepped(problem, std::move(stepped.bands));
}

}  // namespace tessavo
