#pragma once

#include <string>
#include <vector>

#include "cli/console.h"

namespace tessavo::cli {

/// What the program ends with.
namespace exit_code {
inline constexpr int done = 0;
inline constexpr int failed = 1;      ///< refused or failed; for `diff`, the files differ
inline constexpr int wrongUsage = 2;  ///< nothing was tried
}  // namespace exit_code

/// Runs one command as the program does.
///
/// \param arguments without the program's name, in UTF-8
/// \return a value of exit_code. No file that the arguments name is written unless it is `done`, but for a
/// backup of which a set is damaged or missing.
int runCommandLine(const std::vector<std::string>& arguments, const Console& console);

}  // namespace tessavo::cli
