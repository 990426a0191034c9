#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/profile.h"
#include "app/tab_pages.h"
#include "base/file_dialogs.h"
#include "base/message_box.h"
#include "params/tuning_state.h"

namespace tessavo {

class CommLink;

/// What the pages of the program work with. All of it outlives the pages.
struct PageDependencies {
    TuningState& tuning;
    IMessageBox& boxes;
    IFileDialogs& dialogs;
    Profile& profile;
    CommLink& link;
    /// Ports that the communication page offers.
    std::function<std::vector<std::string>()> listPorts;
    std::string firstPort;  ///< chosen at the start when it is there
    /// Every page and the view read the current set again.
    std::function<void()> refreshPages;
    std::string demoPort = {};  ///< ends with the program, so it is not remembered; may be empty
    /// What stands behind a port, for a person. May be empty.
    std::function<std::string(const std::string&)> describePort = {};
};

/// Makes the pages of the program and ties them to the line.
[[nodiscard]] PageFactory pageFactory(PageDependencies dependencies);

}  // namespace tessavo
