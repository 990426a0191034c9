#pragma once

#include <string>
#include <vector>

namespace tessavo::cli {

/// The program's arguments without its name, in UTF-8 whatever the system hands to main().
[[nodiscard]] std::vector<std::string> programArguments(int argc, char** argv);

}  // namespace tessavo::cli
