#pragma once

#include <span>
#include <vector>

#include "fit/step_search.h"

namespace tessavo {

/// Whether two bands fight each other: one raises and one lowers by more than 6 dB within half an octave.
[[nodiscard]] bool fightingBands(std::span<const EqBandParams> bands);

/// Looks for bands that do not fight.
/// \param problem its room becomes that of such bands where they are taken, so that no later search makes them fight again
/// \param shapes those from which the fighting ones came
/// \return such bands where they are within 0.1 dB of the fighting ones, which are returned otherwise
[[nodiscard]] SteppedBands withoutFights(FitProblem& problem, const std::vector<BandShape>& shapes,
                                         SteppedBands fighting);

}  // namespace tessavo
