#pragma once

#include <span>
#include <vector>

#include "fit/fit_problem.h"
#include "fit/step_search.h"

namespace tessavo {

// The limit of all boosts together, which holds at every frequency from 20 Hz to 20 kHz. A search watches it at some points only;
// here the points are added at which it is broken between them.

/// The highest level of some bands together from 20 Hz to 20 kHz, in dB; 0 where that is below.
[[nodiscard]] double highestLevel(std::span<const PowerRatio> bands);

/// Brings bands off the steps close to the limit.
/// \param problem watches more points afterwards
void holdBoost(FitProblem& problem, std::vector<BandShape>& shapes, double mostBoostDb);

/// Brings bands on the steps below the limit, by their words. Where no search does, all gains become less.
void holdBoost(FitProblem problem, SteppedBands& stepped, double mostBoostDb);

}  // namespace tessavo
