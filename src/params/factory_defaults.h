#pragma once

#include "params/records.h"

namespace tessavo {

/// A store as it is before any page has written its defaults: zeros but for the five record sizes.
[[nodiscard]] ParameterStore emptyStore();

/// Writes the field table's defaults into all five sets, over whatever they hold. Fields without a default
/// stay.
void writeDefaults(ParameterStore& store);

}  // namespace tessavo
