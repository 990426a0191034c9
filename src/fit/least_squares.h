#pragma once

#include <span>
#include <vector>

#include "fit/fit_problem.h"

namespace tessavo {

/// Brings bands off the steps of the target to the nearest least of their cost: damped least squares after K. Levenberg (1944)
/// and D. W. Marquardt (1963), with the level as a term that is solved for at each step. What stands at an edge of its room
/// and would leave it is held there.
class LeastSquares {
 public:
    explicit LeastSquares(const FitProblem& problem) : problem_(problem) {}

    /// \param bands are moved; none of them leaves its room
    /// \param rooms one for each band; a term whose lowest value is its highest stays
    /// \param mostSteps slopes are computed so many times at most
    /// \return the cost that was reached, never above that before
    double improve(std::span<BandShape> bands, std::span<const BandRoom> rooms, int mostSteps);

    [[nodiscard]] double costOfShapes(std::span<const BandShape> bands);

    /// The highest level of all bands together, at the points of the problem.
    [[nodiscard]] double highestLevel(std::span<const BandShape> bands);

 private:
    void computeSlopes(std::span<const BandShape> bands);
    void computeNormalEquations(std::size_t terms);
    [[nodiscard]] bool solve(std::size_t terms, double damping);
    void holdAtEdges(std::span<const BandShape> bands, std::span<const BandRoom> rooms);

    const FitProblem& problem_;
    FitLevels levels_;
    std::vector<PowerRatio> ratios_;
    std::vector<double> slopes_;      // term by term, each at all points
    std::vector<double> deviations_;  // at all points, weighted beyond the range
    std::vector<double> normal_;      // terms x terms
    std::vector<double> gradient_;
    std::vector<double> factor_;  // of the damped normal equations
    std::vector<double> step_;
    std::vector<bool> held_;
    bool isBeyondBoost_ = false;
};

}  // namespace tessavo
