#pragma once

#include <string>

#include "params/tuning_snapshot.h"

namespace tessavo {

/// What a step did, in words for a person, found by comparing the states before and after it:
/// "Channel 7, Filter 3 gain −4.5 dB". One line for a menu, at most 60 characters; what does not fit is counted:
/// "Channel 7, 12 values". Elements are named as their pages name them; channels therefore have the number of
/// "Channel Selection", but on "Output Group" and among the flags that of the page. A set is named where it is not
/// the current one of both states, and with its name.
/// \param before, after differ; their current sets are 0 to 4
[[nodiscard]] std::string describeStep(const TuningSnapshot& before, const TuningSnapshot& after);

}  // namespace tessavo
