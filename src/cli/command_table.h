#pragma once

#include <string>
#include <vector>

#include "cli/arguments.h"

namespace tessavo::cli {

/// One command of the program. Parser, help, manual page and manual read this row and nothing else.
struct CommandRow {
    std::string name;
    std::string purpose;  ///< what it does, for help and documents
    std::string example;  ///< a call of it without the program's name; help tells it
    Command run;
    std::vector<Option> options = {};
    std::string more = {};  ///< what help tells behind the example
};

/// All commands, in the order in which help tells them.
[[nodiscard]] const std::vector<CommandRow>& commandTable();

}  // namespace tessavo::cli
