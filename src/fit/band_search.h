#pragma once

#include <vector>

#include "fit/fit_problem.h"
#include "fit/least_squares.h"
#include "fit/seed_pool.h"

namespace tessavo {

/// Finds bands off the steps of the target. It begins with choices of seeds, and with bands that are added one at a time where they
/// take away most; all of them are improved together. In the best of these, each band is then tried elsewhere.
class BandSearch {
 public:
    explicit BandSearch(const FitProblem& problem) : problem_(problem), solver_(problem), seeds_(problem) {}

    /// \param count of the bands, at least 1
    /// \return some solutions, the best first; at least one
    [[nodiscard]] std::vector<std::vector<BandShape>> run(std::size_t count);

    /// Goes on from bands that are there.
    [[nodiscard]] std::vector<BandShape> goOn(std::vector<BandShape> bands);

 private:
    [[nodiscard]] double improve(std::vector<BandShape>& bands, int steps);
    /// One band more at a time; by the variant one of them is the second best.
    [[nodiscard]] std::vector<BandShape> grown(std::size_t count, std::size_t variant, double& cost);
    [[nodiscard]] double settle(std::vector<BandShape>& bands, double cost);
    /// Puts the first band elsewhere, as the last one, where that is better.
    [[nodiscard]] bool moveFirst(std::vector<BandShape>& bands, double& cost);
    void holdBelowLimit(std::vector<BandShape>& bands);
    [[nodiscard]] std::vector<BandShape> bestSeeds(std::span<const BandShape> bands, std::size_t count);

    const FitProblem& problem_;
    LeastSquares solver_;
    SeedPool seeds_;
    std::vector<BandRoom> rooms_;
};

}  // namespace tessavo
