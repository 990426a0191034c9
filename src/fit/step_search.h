#pragma once

#include <vector>

#include "fit/fit_problem.h"

namespace tessavo {

/// Bands on the steps of the target, and how far they are from what is wanted, by their words.
struct SteppedBands {
    std::vector<EqBandParams> bands{};
    double cost = 0;
};

/// Puts bands on the steps of the target (1 Hz, 0.1 dB, 0.1 in Q) and searches there: one band after the other is put
/// there while the rest is improved around it; then each value of each band goes up and down, until nothing is better.
[[nodiscard]] SteppedBands putOnSteps(const FitProblem& problem, std::vector<BandShape> shapes);

/// Bands on the steps with their cost.
[[nodiscard]] SteppedBands costOfStepped(const FitProblem& problem, std::vector<EqBandParams> bands);

/// The search on the steps alone.
[[nodiscard]] SteppedBands searchOnSteps(const FitProblem& problem, std::vector<EqBandParams> bands);

}  // namespace tessavo
