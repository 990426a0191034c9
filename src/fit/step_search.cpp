#include "fit/step_search.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "fit/least_squares.h"

namespace tessavo {

namespace {

constexpr double stepsPerUnit = 10.0;  // of gain in dB and of Q
constexpr int mostSweeps = 12;

double onTenths(double value, double lowest, double highest) {
    // The limits may lie between two steps; what is rounded stays inside.
    const double least = std::ceil(lowest * stepsPerUnit - 1e-6);
    const double most = std::floor(highest * stepsPerUnit + 1e-6);
    return std::clamp(std::round(value * stepsPerUnit), least, std::max(least, most)) / stepsPerUnit;
}

struct Place {
    double hz = 0;
    double gainDb = 0;
    double q = 0;
};

EqBandParams steppedBand(std::uint8_t type, const Place& place, const BandRoom& room) {
    EqBandParams band;
    band.type = type;
    const double lowestHz = std::ceil(std::exp(room.lowest[0]) - 1e-6);
    const double highestHz = std::floor(std::exp(room.highest[0]) + 1e-6);
    band.frequencyHz =
        static_cast<std::uint16_t>(std::clamp(std::round(place.hz), lowestHz, std::max(lowestHz, highestHz)));
    band.gainDb = static_cast<float>(onTenths(place.gainDb, room.lowest[1], room.highest[1]));
    band.q = static_cast<float>(onTenths(place.q, std::exp(room.lowest[2]), std::exp(room.highest[2])));
    return band;
}

/// Bands with their levels, of which one at a time is exchanged.
class SteppedLevels {
 public:
    SteppedLevels(const FitProblem& problem, std::vector<EqBandParams> bands)
        : problem_(problem), bands_(std::move(bands)) {
        powers_.resize(bands_.size());
        for (std::size_t i = 0; i < bands_.size(); ++i) {
            powers_[i].resize(problem_.points.size());
            // A gain whose words the target cannot hold gives way until it can.
            while (!computePowers(bands_[i], powers_[i])) {
                bands_[i].gainDb = static_cast<float>(std::trunc(bands_[i].gainDb * 9.0) / 10.0);
            }
        }
        trial_.resize(problem_.points.size());
        levels_.levelsDb.resize(problem_.points.size());
        begin(bands_.size());
        for (std::size_t k = 0; k < others_.size(); ++k) {
            levels_.levelsDb[k] = decibelsOfPower(others_[k]);
        }
        cost_ = costOfLevels(problem_, levels_);
    }

    [[nodiscard]] double cost() const { return cost_; }
    [[nodiscard]] const std::vector<EqBandParams>& bands() const { return bands_; }

    /// Multiplies the powers of all bands but one, which is then exchanged; of all where there is no such band.
    void begin(std::size_t band) {
        others_.assign(problem_.points.size(), 1.0);
        for (std::size_t i = 0; i < bands_.size(); ++i) {
            if (i != band) {
                for (std::size_t k = 0; k < others_.size(); ++k) {
                    others_[k] *= powers_[i][k];
                }
            }
        }
    }

    /// Takes another band in the place of one where that is better.
    bool exchange(std::size_t place, const EqBandParams& band) {
        const EqBandParams& now = bands_[place];
        if (now.type == band.type && now.frequencyHz == band.frequencyHz && now.gainDb == band.gainDb &&
            now.q == band.q) {
            return false;
        }
        if (!computePowers(band, trial_)) {
            return false;
        }
        for (std::size_t k = 0; k < others_.size(); ++k) {
            levels_.levelsDb[k] = decibelsOfPower(others_[k] * trial_[k]);
        }
        const double cost = costOfLevels(problem_, levels_);
        if (!(cost < cost_)) {
            return false;
        }
        cost_ = cost;
        bands_[place] = band;
        powers_[place].swap(trial_);
        return true;
    }

 private:
    bool computePowers(const EqBandParams& band, std::vector<double>& powers) const {
        const auto ratio = playedRatio(*problem_.method, band);
        if (!ratio) {
            return false;
        }
        for (std::size_t k = 0; k < powers.size(); ++k) {
            const double x = problem_.points.halfAngleSquare[k];
            powers[k] = ratio->numerator(x) / ratio->denominator(x);
        }
        return true;
    }

    const FitProblem& problem_;
    std::vector<EqBandParams> bands_;
    std::vector<std::vector<double>> powers_;
    std::vector<double> others_;
    std::vector<double> trial_;
    FitLevels levels_;
    double cost_ = 0;
};

/// Tries the neighbours of one band, far ones first.
bool improveBand(SteppedLevels& levels, std::size_t which, const BandRoom& room, bool finely) {
    levels.begin(which);
    bool better = false;
    const auto tryAt = [&](double hz, double gainDb, double q) {
        const EqBandParams now = levels.bands()[which];
        better = levels.exchange(which, steppedBand(now.type, {hz, gainDb, q}, room)) || better;
    };
    const auto now = [&]() -> const EqBandParams& { return levels.bands()[which]; };
    for (const double part : {0.02, 0.005}) {
        const double hertz = std::max(1.0, std::round(part * now().frequencyHz));
        tryAt(now().frequencyHz + hertz, now().gainDb, now().q);
        tryAt(now().frequencyHz - hertz, now().gainDb, now().q);
    }
    for (const double decibels : {0.3, 0.1}) {
        tryAt(now().frequencyHz, now().gainDb + decibels, now().q);
        tryAt(now().frequencyHz, now().gainDb - decibels, now().q);
    }
    for (const double q : {0.2, 0.1}) {
        tryAt(now().frequencyHz, now().gainDb, now().q + q);
        tryAt(now().frequencyHz, now().gainDb, now().q - q);
    }
    if (finely) {
        for (const double sign : {-1.0, 1.0}) {
            tryAt(now().frequencyHz + sign, now().gainDb, now().q);
            tryAt(now().frequencyHz, now().gainDb + sign * 0.1, now().q + 0.1);
            tryAt(now().frequencyHz, now().gainDb + sign * 0.1, now().q - 0.1);
        }
    }
    return better;
}

/// Puts one of several bands on the steps next to it: of gain and Q those around it, of which the better ones are taken. Where a
/// method has an edge, the nearest one may stand on its wrong side.
EqBandParams nearestSteps(LeastSquares& solver, std::vector<BandShape>& shapes, std::size_t which,
                          const BandRoom& room) {
    const BandShape exact = shapes[which];
    const double gainSteps = exact.gainDb * stepsPerUnit;
    const double qSteps = std::exp(exact.logQ) * stepsPerUnit;
    EqBandParams best;
    BandShape bestShape = exact;
    double bestCost = 0;
    bool first = true;
    for (const double gain : {std::floor(gainSteps), std::ceil(gainSteps)}) {
        for (const double q : {std::floor(qSteps), std::ceil(qSteps)}) {
            const EqBandParams band =
                steppedBand(static_cast<std::uint8_t>(exact.type),
                            {std::exp(exact.logHz), gain / stepsPerUnit, q / stepsPerUnit}, room);
            BandShape& shape = shapes[which];
            shape = {exact.type, std::log(static_cast<double>(band.frequencyHz)),
                     static_cast<double>(band.gainDb), std::log(static_cast<double>(band.q))};
            const double cost = solver.costOfShapes(shapes);
            if (first || cost < bestCost) {
                best = band;
                bestShape = shape;
                bestCost = cost;
                first = false;
            }
        }
    }
    shapes[which] = bestShape;
    return best;
}

}  // namespace

SteppedBands costOfStepped(const FitProblem& problem, std::vector<EqBandParams> bands) {
    const SteppedLevels levels(problem, std::move(bands));
    return {levels.bands(), levels.cost()};
}

SteppedBands searchOnSteps(const FitProblem& problem, std::vector<EqBandParams> bands) {
    SteppedLevels levels(problem, std::move(bands));
    bool finely = false;
    for (int sweep = 0; sweep < mostSweeps; ++sweep) {
        bool better = false;
        for (std::size_t i = 0; i < levels.bands().size(); ++i) {
            better = improveBand(levels, i, problem.room, finely) || better;
        }
        if (!better && finely) {
            break;
        }
        finely = finely || !better;
    }
    return {levels.bands(), levels.cost()};
}

SteppedBands putOnSteps(const FitProblem& problem, std::vector<BandShape> shapes) {
    constexpr int stepsAround = 2;
    LeastSquares solver(problem);
    std::vector<BandRoom> rooms(shapes.size(), problem.room);
    std::vector<EqBandParams> bands;
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        bands.push_back(nearestSteps(solver, shapes, i, problem.room));
        const BandShape& fixed = shapes[i];
        rooms[i] = {.lowest = {fixed.logHz, fixed.gainDb, fixed.logQ},
                    .highest = {fixed.logHz, fixed.gainDb, fixed.logQ}};
        if (i + 1 < shapes.size()) {
            (void)solver.improve(shapes, rooms, stepsAround);
        }
    }
    return searchOnSteps(problem, std::move(bands));
}

}  // namespace tessavo
