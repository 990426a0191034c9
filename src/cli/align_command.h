#pragma once

#include "cli/arguments.h"

namespace tessavo::cli {

/// Writes delays into a set that let all loudspeakers be heard at one time, and the settings file that comes of it. What the
/// target cannot reach is told and is no failure.
int runAlign(const Arguments& arguments, const CommandContext& context);

}  // namespace tessavo::cli
