#pragma once

#include <string>

#include "cli/arguments.h"

namespace tessavo::cli {

/// Prints what measurements hold, their mean and smoothed where that was asked for, as lines or as JSON.
int runMeasurement(const Arguments& arguments, const CommandContext& context);

/// What the command's help tells besides its options.
[[nodiscard]] std::string measurementHelp();

}  // namespace tessavo::cli
