#pragma once

#include <string>

#include "comm/target_commands.h"

namespace tessavo::cli {

/// One line for each stage and amplifier, with what clips there or "-". Entries that carry nothing are left
/// out.
[[nodiscard]] std::string clipReport(const ClipState& state);

}  // namespace tessavo::cli
