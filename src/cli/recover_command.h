#pragma once

#include <string>

#include "cli/arguments.h"

namespace tessavo::cli {

/// Shows what the recovery files of the user's data folder hold, and writes the sets of the newest to a
/// settings file, with its notes beside it where there are any or where other notes stand there. Where a
/// file would be written over, nothing is written unless that is forced. Changes no recovery file. Fails where
/// there is nothing to restore.
int runRecover(const Arguments& arguments, const CommandContext& context);

/// What help tells of the command behind its example.
[[nodiscard]] std::string recoverHelp();

}  // namespace tessavo::cli
