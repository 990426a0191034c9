#pragma once

#include <string>

#include "params/tuning_snapshot.h"

namespace tessavo {

/// What a step did, in words for a person, found by comparing the states before and after it:
/// "Channel 7, Filter 3 gain −4.5 dB". Short enough for a menu.
/// \param before, after differ
[[nodiscard]] std::string describeStep(const TuningSnapshot& before, const TuningSnapshot& after);

}  // namespace tessavo
