#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessavo {

/// Full device path of a port, as CSerial::Open() takes it: the system's prefix ("\\.\" or "/dev/") and the
/// name. A name that carries the prefix already is not given another one.
[[nodiscard]] std::wstring devicePath(std::string_view portName);

/// Names of the serial ports of this machine, as the user sees them: COM3; ttyUSB0, ttyACM0, ttyS0, pts/3.
///
/// Real ports only (no ttyS without hardware), then the names listed in the environment variable
/// TESSAVO_PORTS (separated by commas or spaces). On Linux USB ports stand first, then running simulated
/// targets, other ports with a device that was plugged in, and the computer's own serial ports; elsewhere
/// simulated targets stand behind all of the system's. Each kind is sorted by name and number, the targets
/// inside this program behind those of others. No name appears twice. Opens no port. Any thread.
[[nodiscard]] std::vector<std::string> listPorts();

}  // namespace tessavo
