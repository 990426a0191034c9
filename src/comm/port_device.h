#pragma once

#include <string>

namespace tessavo {

/// What the system tells of what stands behind a port.
struct PortDevice {
    /// For a person, such as "CP2102 USB to UART"; UTF-8, one line, empty when nothing is known.
    std::string description;
    /// The same for the same USB device in whichever socket; empty when it is not known or no USB device.
    std::string identity;

    friend bool operator==(const PortDevice&, const PortDevice&) = default;
};

/// Whether the system has a port of this name now. Asks the system for the name only: opens nothing and does
/// not wait. False for an empty name. Any thread.
[[nodiscard]] bool portIsThere(const std::string& portName);

/// What stands behind a port, as the system has it in its lists: opens no port. Any thread.
/// \return nothing known for a name that the system does not have
[[nodiscard]] PortDevice portDevice(const std::string& portName);

}  // namespace tessavo
