#pragma once

#include "cli/arguments.h"

namespace tessavo::cli {

/// Prints the exact response of a channel, or of several together, as a table or as JSON.
int runResponse(const Arguments& arguments, const CommandContext& context);

}  // namespace tessavo::cli
