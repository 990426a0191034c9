#pragma once

#include <string>

namespace tessavo::ports {

/// Whether a simulated target of this program has announced this name. Any thread.
[[nodiscard]] bool isAnnounced(const std::string& portName);

}  // namespace tessavo::ports
