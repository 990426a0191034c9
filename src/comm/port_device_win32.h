#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "comm/port_device.h"

namespace tessavo::ports {

/// What the registry tells of the device behind a serial port. Where several devices had the port's name over
/// time, the one that is connected.
/// \param root, controlSet the key whose parts are "Enum" and "Control"
/// \param portName such as "COM3"
[[nodiscard]] PortDevice registryDevice(HKEY root, const std::wstring& controlSet, std::string_view portName);

}  // namespace tessavo::ports
