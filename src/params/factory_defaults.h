#pragma once

#include "params/records.h"

namespace tessavo {

/// A store as it is before any page has written its defaults: zeros but for the five record sizes.
[[nodiscard]] ParameterStore emptyStore();

/// Writes the defaults of every page into all five sets, over whatever they hold; fields without a default
/// stay.
void writeDefaults(ParameterStore& store);

}  // namespace tessavo
