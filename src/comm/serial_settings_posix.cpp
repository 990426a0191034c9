#include <sys/ioctl.h>
#include <termios.h>

#include "comm/serial_native_posix.h"
#include "comm/tty_settings_posix.h"

namespace tessavo {

namespace {

// A rate that the hardware can only come near to still works.
constexpr std::uint32_t rateTolerancePercent = 5;

bool near(std::uint32_t wanted, std::uint32_t got) {
    const std::uint32_t difference = wanted > got ? wanted - got : got - wanted;
    return difference <= wanted / 100 * rateTolerancePercent;
}

bool taken(tty::Framing wanted, const tty::Framing& got) {
    if (!near(wanted.baudRate, got.baudRate)) {
        return false;
    }
    wanted.baudRate = got.baudRate;
    return wanted == got;
}

}  // namespace

std::uint32_t CSerial::Setup(std::uint32_t baudRate, std::uint8_t dataBits, int parity, std::uint8_t stopBits,
                             int dtrMode) {
    if (!isOpen()) {
        return lastError_ = serial_result::invalidHandle;
    }
    const int device = native_->device.get();
    termios former{};
    if (lastError_ = tty::readSettings(device, former); lastError_ != serial_result::success) {
        return lastError_;
    }
    termios wanted = former;
    const tty::Framing framing{baudRate, dataBits, parity, stopBits};
    if (!tty::setFraming(wanted, framing)) {
        return lastError_ = serial_result::invalidParameter;
    }
    if (dtrMode == 1 && tty::handshakingOf(wanted) == handshakeHardware) {
        tty::setHandshaking(wanted, handshakeNone);
    }
    termios got{};
    lastError_ = tty::writeSettings(device, wanted);
    if (lastError_ == serial_result::success) {
        lastError_ = tty::readSettings(device, got);
    }
    // Drivers leave out silently what they cannot do.
    if (lastError_ == serial_result::success && !taken(framing, tty::framingOf(got))) {
        lastError_ = serial_result::invalidParameter;
    }
    if (lastError_ != serial_result::success) {
        static_cast<void>(tty::writeSettings(device, former));
    } else if (dtrMode == 1) {
        tty::driveLines(native_->lineControl, device, TIOCM_DTR, TIOCM_RTS);
    }
    return lastError_;
}

std::uint32_t CSerial::storeEventChar(std::uint8_t character) {
    if (!isOpen()) {
        return serial_result::invalidHandle;
    }
    native_->eventChar = character;
    return serial_result::success;
}

std::uint32_t CSerial::SetMask(std::uint32_t eventMask) {
    if (!isOpen()) {
        return lastError_ = serial_result::invalidHandle;
    }
    eventMask_ = eventMask;
    return lastError_ = serial_result::success;
}

std::uint32_t CSerial::SetupHandshaking(int mode) {
    if (!isOpen()) {
        return lastError_ = serial_result::invalidHandle;
    }
    if (mode < handshakeNone || mode > handshakeSoftware) {
        return lastError_ = serial_result::invalidArgument;
    }
    const int device = native_->device.get();
    termios settings{};
    lastError_ = tty::readSettings(device, settings);
    if (lastError_ == serial_result::success) {
        tty::setHandshaking(settings, mode);
        lastError_ = tty::writeSettings(device, settings);
    }
    if (lastError_ == serial_result::success) {
        constexpr int bothLines = TIOCM_DTR | TIOCM_RTS;
        tty::driveLines(native_->lineControl, device, mode == handshakeHardware ? bothLines : 0,
                        mode == handshakeHardware ? 0 : bothLines);
    }
    return lastError_;
}

std::uint32_t CSerial::SetupReadTimeouts(int mode) {
    if (!isOpen()) {
        return lastError_ = serial_result::invalidHandle;
    }
    if (mode != nonBlocking && mode != blocking) {
        return lastError_ = serial_result::invalidArgument;
    }
    native_->blockingReads = mode == blocking;
    return lastError_ = serial_result::success;
}

int CSerial::GetBaudrate() {
    termios settings{};
    lastError_ = tty::readSettings(native_->device.get(), settings);
    if (lastError_ != serial_result::success) {
        return -1;
    }
    const std::uint32_t baudRate = tty::framingOf(settings).baudRate;
    if (baudRate == 0) {
        lastError_ = serial_result::generalFailure;
        return -1;
    }
    return static_cast<int>(baudRate);
}

int CSerial::GetDataBits() {
    termios settings{};
    lastError_ = tty::readSettings(native_->device.get(), settings);
    return lastError_ == serial_result::success ? tty::framingOf(settings).dataBits : -1;
}

int CSerial::GetParity() {
    termios settings{};
    lastError_ = tty::readSettings(native_->device.get(), settings);
    return lastError_ == serial_result::success ? tty::framingOf(settings).parity : -1;
}

int CSerial::GetStopBits() {
    termios settings{};
    lastError_ = tty::readSettings(native_->device.get(), settings);
    return lastError_ == serial_result::success ? tty::framingOf(settings).stopBits : -1;
}

int CSerial::GetHandshaking() {
    termios settings{};
    lastError_ = tty::readSettings(native_->device.get(), settings);
    return lastError_ == serial_result::success ? tty::handshakingOf(settings) : -1;
}

std::uint8_t CSerial::GetEventChar() {
    lastError_ = isOpen() ? serial_result::success : serial_result::invalidHandle;
    return isOpen() ? native_->eventChar : std::uint8_t{0};
}

}  // namespace tessavo
