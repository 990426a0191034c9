#pragma once

#include <string>

#include "cli/arguments.h"

namespace tessavo::cli {

/// Shows what the recovery files of the user's data folder hold, and writes the sets of the newest to a
/// settings file. Changes none of them. Fails where there is nothing to restore.
int runRecover(const Arguments& arguments, const CommandContext& context);

/// What help tells of the command behind its example.
[[nodiscard]] std::string recoverHelp();

}  // namespace tessavo::cli
