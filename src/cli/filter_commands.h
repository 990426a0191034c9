#pragma once

#include "cli/arguments.h"

namespace tessavo::cli {

/// Prints what becomes of each line of another program's filter text. Changes nothing.
int runFilters(const Arguments& arguments, const CommandContext& context);

/// Takes the filters of a text into channels of a set, and writes the settings file that comes of it.
int runImportFilters(const Arguments& arguments, const CommandContext& context);

/// Writes the filters of a channel as a text for another program.
int runExportFilters(const Arguments& arguments, const CommandContext& context);

/// What help tells of the texts that can be read.
[[nodiscard]] std::string filterTextHelp();

}  // namespace tessavo::cli
