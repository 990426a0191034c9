#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <termios.h>

#include "base/descriptor_posix.h"

namespace tessavo::tty {

/// The serial_result that stands for an errno value.
[[nodiscard]] std::uint32_t resultOf(int error);

/// Opens a terminal device that no other program uses, keeps others out, and makes it raw. Never waits for
/// modem lines, never becomes the controlling terminal, keeps what has arrived.
/// \param path whole path of the device, as the system has its bytes
/// \return a serial_result; `device` is untouched unless it is `success`.
[[nodiscard]] std::uint32_t openDevice(const std::string& path, Descriptor& device);

/// Lets others in and closes.
/// \param discardOutput throws away what was not sent yet instead of waiting for it
void closeDevice(Descriptor& device, bool discardOutput);

[[nodiscard]] std::uint32_t readSettings(int device, termios& settings);
/// Takes effect at once; neither direction is flushed.
[[nodiscard]] std::uint32_t writeSettings(int device, const termios& settings);

/// The system's call that drives modem lines: TIOCMBIS or TIOCMBIC and the TIOCM_ bits.
using LineControl = std::function<int(int device, unsigned long request, const int* lines)>;
[[nodiscard]] LineControl systemLineControl();

/// Drives modem lines; a device without such lines is left alone.
/// \param raised, dropped TIOCM_ bits
void driveLines(const LineControl& control, int device, int raised, int dropped);

/// A moment by which a wait ends.
class Deadline {
 public:
    /// \param timeoutMs CSerial::infinite for none
    explicit Deadline(std::uint32_t timeoutMs);
    /// For poll(): rounded up, so that no wait ends early; -1 without end.
    [[nodiscard]] int remaining() const;

 private:
    bool endless_;
    std::chrono::steady_clock::time_point end_;
};

enum class Waited : std::uint8_t { ready, hungUp, cancelled, timedOut, failed };

/// Waits until the device is ready for `events` (POLLIN or POLLOUT), it hangs up, or `cancel` becomes
/// readable.
[[nodiscard]] Waited waitFor(int device, short events, int cancel, const Deadline& deadline);

}  // namespace tessavo::tty
