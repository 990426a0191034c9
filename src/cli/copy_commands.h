#pragma once

#include <string>

#include "cli/arguments.h"

namespace tessavo::cli {

// The commands that copy the sets of the target into a folder and back.

int runBackup(const Arguments& arguments, const CommandContext& context);
int runRestore(const Arguments& arguments, const CommandContext& context);
int runVerify(const Arguments& arguments, const CommandContext& context);

/// What help tells of restoring behind its example.
[[nodiscard]] std::string restoreHelp();

}  // namespace tessavo::cli
