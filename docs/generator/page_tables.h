#pragma once

#include <string>

#include "pages/rows/control_row.h"

namespace tessavo {

/// Table of the controls of a page whose rows tell what they do: one line for each field.
[[nodiscard]] std::string controlTable(const ControlRows& controls);

/// Lowest and highest value that a person may set: "-20 … 20".
[[nodiscard]] std::string numberRange(const Field& field);

}  // namespace tessavo
