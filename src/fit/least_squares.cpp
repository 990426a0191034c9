#include "fit/least_squares.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "fit/lane_sums.h"

namespace tessavo {

namespace {

constexpr double firstDamping = 1e-2;
constexpr double leastGain = 1e-3;  // of the cost, by which a step must be better to go on
constexpr double mostDamping = 1e4;
// How far one step may go: about a third of an octave, 6 dB, a factor of two in Q.
constexpr std::array<double, termsPerBand> longestStep{0.25, 6.0, 0.7};

}  // namespace

double LeastSquares::costOfShapes(std::span<const BandShape> bands) {
    ratios_.clear();
    for (const BandShape& band : bands) {
        ratios_.push_back(designedRatio(*problem_.method, band));
    }
    return costOf(problem_, ratios_, levels_);
}

double LeastSquares::highestLevel(std::span<const BandShape> bands) {
    (void)costOfShapes(bands);
    return *std::ranges::max_element(levels_.levelsDb);
}

void LeastSquares::computeSlopes(std::span<const BandShape> bands) {
    const std::size_t count = problem_.points.size();
    slopes_.resize(bands.size() * termsPerBand * count);
    deviations_.resize(count);
    const double weight = std::sqrt(boostPenalty);
    for (std::size_t i = 0; i < count; ++i) {
        const double excess = std::max(0.0, levels_.levelsDb[i] - problem_.mostBoostDb);
        deviations_[i] = i < problem_.rangeCount ? levels_.levelsDb[i] - problem_.wantedDb[i] - levels_.meanDb
                                                 : weight * excess;
    }
    isBeyondBoost_ = std::any_of(deviations_.begin() + static_cast<std::ptrdiff_t>(problem_.rangeCount),
                                 deviations_.end(), [](double excess) { return excess > 0.0; });
    for (std::size_t band = 0; band < bands.size(); ++band) {
        std::array<double*, termsPerBand> columns{};
        for (std::size_t term = 0; term < termsPerBand; ++term) {
            columns[term] = &slopes_[(band * termsPerBand + term) * count];
        }
        levelSlopes(*problem_.method, bands[band], problem_.points, columns);
        for (double* column : columns) {
            double mean = 0;
            for (std::size_t i = 0; i < problem_.rangeCount; ++i) {
                mean += column[i];
            }
            mean /= static_cast<double>(problem_.rangeCount);
            for (std::size_t i = 0; i < problem_.rangeCount; ++i) {
                column[i] -= mean;
            }
            for (std::size_t i = problem_.rangeCount; i < count; ++i) {
                column[i] = deviations_[i] > 0.0 ? weight * column[i] : 0.0;
            }
        }
    }
}

void LeastSquares::computeNormalEquations(std::size_t terms) {
    const std::size_t stride = problem_.points.size();
    // Beyond the range nothing counts as long as the limit of the boosts holds.
    const std::size_t count = isBeyondBoost_ ? stride : problem_.rangeCount;
    normal_.resize(terms * terms);
    gradient_.resize(terms);
    for (std::size_t row = 0; row < terms; ++row) {
        const double* column = &slopes_[row * stride];
        gradient_[row] = productSum(column, deviations_.data(), count);
        for (std::size_t other = 0; other <= row; ++other) {
            const double product = productSum(column, &slopes_[other * stride], count);
            normal_[row * terms + other] = product;
            normal_[other * terms + row] = product;
        }
    }
}

void LeastSquares::holdAtEdges(std::span<const BandShape> bands, std::span<const BandRoom> rooms) {
    held_.assign(bands.size() * termsPerBand, false);
    for (std::size_t i = 0; i < held_.size(); ++i) {
        const std::size_t term = i % termsPerBand;
        const BandRoom& room = rooms[i / termsPerBand];
        const double value = termOf(bands[i / termsPerBand], term);
        held_[i] = room.lowest[term] >= room.highest[term] ||
                   (value <= room.lowest[term] && gradient_[i] > 0.0) ||
                   (value >= room.highest[term] && gradient_[i] < 0.0);
    }
}

// Cholesky factors of the damped normal equations; what is held takes no part.
bool LeastSquares::solve(std::size_t terms, double damping) {
    constexpr double smallestPivot = 1e-12;
    factor_.assign(terms * terms, 0.0);
    step_.assign(terms, 0.0);
    for (std::size_t row = 0; row < terms; ++row) {
        if (held_[row]) {
            factor_[row * terms + row] = 1.0;
            continue;
        }
        for (std::size_t column = 0; column <= row; ++column) {
            if (held_[column]) {
                continue;
            }
            double sum = normal_[row * terms + column];
            if (row == column) {
                sum += damping * sum + smallestPivot;
            }
            sum -= productSum(&factor_[row * terms], &factor_[column * terms], column);
            if (row == column) {
                if (!(sum > 0.0)) {
                    return false;
                }
                factor_[row * terms + row] = std::sqrt(sum);
            } else {
                factor_[row * terms + column] = sum / factor_[column * terms + column];
            }
        }
    }
    for (std::size_t row = 0; row < terms; ++row) {
        const double wanted = held_[row] ? 0.0 : -gradient_[row];
        step_[row] =
            (wanted - productSum(&factor_[row * terms], step_.data(), row)) / factor_[row * terms + row];
    }
    for (std::size_t row = terms; row-- > 0;) {
        double sum = step_[row];
        for (std::size_t below = row + 1; below < terms; ++below) {
            sum -= factor_[below * terms + row] * step_[below];
        }
        step_[row] = sum / factor_[row * terms + row];
    }
    return true;
}

double LeastSquares::improve(std::span<BandShape> bands, std::span<const BandRoom> rooms, int mostSteps) {
    constexpr double dampingUp = 5.0;
    constexpr double dampingDown = 0.2;
    const std::size_t terms = bands.size() * termsPerBand;
    double cost = costOfShapes(bands);
    double damping = firstDamping;
    std::vector<BandShape> tried(bands.begin(), bands.end());
    for (int round = 0; round < mostSteps; ++round) {
        computeSlopes(bands);
        computeNormalEquations(terms);
        holdAtEdges(bands, rooms);
        const double before = cost;
        bool better = false;
        for (; !better && damping < mostDamping; damping *= better ? dampingDown : dampingUp) {
            if (!solve(terms, damping)) {
                continue;
            }
            for (std::size_t i = 0; i < terms; ++i) {
                const std::size_t term = i % termsPerBand;
                const BandRoom& room = rooms[i / termsPerBand];
                const double step = std::clamp(step_[i], -longestStep[term], longestStep[term]);
                termOf(tried[i / termsPerBand], term) =
                    std::clamp(termOf(bands[i / termsPerBand], term) + step, room.lowest[term],
                               std::max(room.lowest[term], room.highest[term]));
            }
            const double reached = costOfShapes(tried);
            better = reached < cost;
            if (better) {
                cost = reached;
                std::ranges::copy(tried, bands.begin());
            }
        }
        if (!better || before - cost < leastGain * before) {
            break;
        }
    }
    return cost;
}

}  // namespace tessavo
