#pragma once

#include "cli/arguments.h"

namespace tessavo::cli {

// The commands that talk to the target, and the list of ports.

int runPorts(const Arguments& arguments, const Surroundings& around);
int runVersions(const Arguments& arguments, const Surroundings& around);
int runClip(const Arguments& arguments, const Surroundings& around);
int runLive(const Arguments& arguments, const Surroundings& around);
int runWriteSet(const Arguments& arguments, const Surroundings& around);
int runReadSet(const Arguments& arguments, const Surroundings& around);
int runFlash(const Arguments& arguments, const Surroundings& around);

}  // namespace tessavo::cli
