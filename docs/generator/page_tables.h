#pragma once

#include <string>

#include "pages/rows/control_row.h"

namespace tessavo {

/// Table of the controls of a page whose rows tell what they do: one line for each field.
[[nodiscard]] std::string controlTable(const ControlRows& controls);

}  // namespace tessavo
