#pragma once

#include "cli/arguments.h"

namespace tessavo::cli {

// The commands that talk to the target, and the list of ports.

int runPorts(const Arguments& arguments, const CommandContext& context);
int runVersions(const Arguments& arguments, const CommandContext& context);
int runClip(const Arguments& arguments, const CommandContext& context);
int runLive(const Arguments& arguments, const CommandContext& context);
int runWriteSet(const Arguments& arguments, const CommandContext& context);
int runReadSet(const Arguments& arguments, const CommandContext& context);
int runFlash(const Arguments& arguments, const CommandContext& context);

}  // namespace tessavo::cli
