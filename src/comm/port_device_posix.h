#pragma once

#include <filesystem>
#include <string>

#include "comm/port_device.h"

namespace tessavo::ports {

/// Where a port's device is, in the order in which a person looks for it.
enum class Attachment {
    usb,      ///< at a USB socket
    plugged,  ///< card, Bluetooth and the like
    builtIn   ///< part of the computer
};

/// What the kernel tells of a terminal.
struct TerminalDevice {
    Attachment attachment = Attachment::builtIn;
    PortDevice device;
};

/// Reads the kernel's folder of a terminal, /sys/class/tty/NAME. Files that are missing, too long or not what
/// they should be count as not there; where no bus is told the terminal's name decides.
[[nodiscard]] TerminalDevice terminalDevice(const std::filesystem::path& terminalFolder);

/// Does what portIsThere() does, in a folder of devices.
/// \param portName without the folder
/// \param deviceFolder where the names' devices are, such as "/dev"
[[nodiscard]] bool isThere(const std::string& portName, const std::filesystem::path& deviceFolder);

/// Does what portDevice() does, without simulated targets. A name that is a link tells what it leads to.
/// \param portName without the folder
/// \param ttyClass the kernel's folder of terminals, with one folder for each
/// \param deviceFolder where the names' devices are, such as "/dev"
[[nodiscard]] PortDevice deviceBehind(const std::string& portName, const std::filesystem::path& ttyClass,
                                      const std::filesystem::path& deviceFolder);

/// Whether a terminal is named like a serial port of the computer itself, ttyS and a number.
[[nodiscard]] bool isUartName(std::string_view name);

}  // namespace tessavo::ports
