#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "target/fault_plan.h"

namespace tessavo::test {

/// How each fault is written, in the order of the help, which has a line for every row of the table.
inline std::vector<std::string> faultForms() {
    std::vector<std::string> forms;
    std::istringstream help(faultHelp());
    for (std::string line; std::getline(help, line);) {
        std::istringstream(line) >> forms.emplace_back();
    }
    return forms;
}

/// The name in a form of a fault: "junk" of "junk[=N]"; of a fault as it is given, too: "junk" of "junk=4".
inline std::string faultName(const std::string& form) {
    return form.substr(0, form.find_first_of("[="));
}

}  // namespace tessavo::test
