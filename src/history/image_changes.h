#pragma once

#include <string>

#include "params/tuning_snapshot.h"

namespace tessavo {

/// What a step did, in words, that changed no byte of the sets: what plays may differ from them, a set may
/// remember another receipt, and coefficients may have been computed by another filter method.
/// \param before, after differ, but not in their stores
[[nodiscard]] std::string describeImageChange(const TuningSnapshot& before, const TuningSnapshot& after);

}  // namespace tessavo
