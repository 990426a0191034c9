#pragma once

#include "app/tab_pages.h"
#include "params/message_box.h"
#include "params/tuning_state.h"

namespace tessavo {

/// Makes the pages of the program. What it is given outlives the pages.
[[nodiscard]] PageFactory pageFactory(TuningState& tuning, IMessageBox& boxes);

}  // namespace tessavo
