#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessavo {

/// Full device path of a port, as CSerial::Open takes it: the system's prefix ("\\.\" or "/dev/") and the
/// name, which may carry that prefix already.
[[nodiscard]] std::wstring devicePath(std::string_view portName);

/// Names of the serial ports of this machine, as the user sees them: COM3; ttyUSB0, ttyACM0, ttyS0, pts/3.
///
/// Real ports only (no ttyS without hardware), then the names listed in the environment variable
/// TESSAVO_PORTS (separated by commas or spaces). On Linux USB ports stand first, then running simulated
/// targets, other ports with a device that was plugged in, and the computer's own serial ports; elsewhere
/// simulated targets stand behind all of the system's. Each kind is sorted by name and number. No name
/// appears twice. Opens no port.
[[nodiscard]] std::vector<std::string> listPorts();

/// Makes a simulated target's port known to listPorts() of every program of this user while it lives, also
/// when the program dies without a word. On systems without pseudo-terminals a simulated target has its port
/// to itself: there it is known inside the program only.
class AnnouncedPort {
 public:
    /// \param portName as listPorts() is to give it; failing to announce is not an error
    explicit AnnouncedPort(const std::string& portName);
    ~AnnouncedPort();
    AnnouncedPort(const AnnouncedPort&) = delete;
    AnnouncedPort& operator=(const AnnouncedPort&) = delete;

 private:
    std::string path_;
    int lock_ = -1;
};

}  // namespace tessavo
