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

bool isWhatWasWanted(tty::Framing wanted, const tty::Framing& got) {
    if (!near(wanted.baudRate, got.baudRate)) {
        return false;
    }
    wanted.baudRate = got.baudRate;
    return wanted == got;
}

}  // namespace

std::uint32_t CSerial::applySetup(std::uint32_t baudRate, std::uint8_t dataBits, int parity,
                                  std::uint8_t stopBits, int dtrMode) {
    const int device = native_->device.get();
    termios former{};
    if (const std::uint32_t result = tty::readSettings(device, former); result != serial_result::success) {
        return result;
    }
    termios wanted = former;
    const tty::Framing framing{baudRate, dataBits, parity, stopBits};
    if (!tty::setFraming(wanted, framing)) {
        return serial_result::invalidParameter;
    }
    if (dtrMode == 1 && tty::handshakingOf(wanted) == handshakeHardware) {
        tty::setHandshaking(wanted, handshakeNone);
    }
    termios got{};
    std::uint32_t result = tty::writeSettings(device, wanted);
    if (result == serial_result::success) {
        result = tty::readSettings(device, got);
    }
    // Drivers leave out silently what they cannot do.
    if (result == serial_result::success && !isWhatWasWanted(framing, tty::framingOf(got))) {
        result = serial_result::invalidParameter;
    }
    if (result != serial_result::success) {
        static_cast<void>(tty::writeSettings(device, former));
    } else if (dtrMode == 1) {
        tty::driveLines(native_->lineControl, device, TIOCM_DTR, TIOCM_RTS);
    }
    return result;
}

std::uint32_t CSerial::storeEventChar(std::uint8_t character) {
    if (!isOpen()) {
        return serial_result::invalidHandle;
    }
    native_->eventChar = character;
    return serial_result::success;
}

// Nothing of it is the device's: eventStep() looks at what is asked for.
std::uint32_t CSerial::applyMask(std::uint32_t /*eventMask*/) {
    return serial_result::success;
}

std::uint32_t CSerial::applyHandshaking(int mode) {
    const int device = native_->device.get();
    termios settings{};
    std::uint32_t result = tty::readSettings(device, settings);
    if (result == serial_result::success) {
        tty::setHandshaking(settings, mode);
        result = tty::writeSettings(device, settings);
    }
    if (result == serial_result::success) {
        constexpr int bothLines = TIOCM_DTR | TIOCM_RTS;
        tty::driveLines(native_->lineControl, device, mode == handshakeHardware ? bothLines : 0,
                        mode == handshakeHardware ? 0 : bothLines);
    }
    return result;
}

std::uint32_t CSerial::applyReadTimeouts(int mode) {
    native_->blockingReads = mode == blocking;
    return serial_result::success;
}

std::uint32_t CSerial::readSettings(Settings& settings) const {
    termios stored{};
    const std::uint32_t result = tty::readSettings(native_->device.get(), stored);
    if (result == serial_result::success) {
        const tty::Framing framing = tty::framingOf(stored);
        settings = {.baudRate = framing.baudRate == 0 ? -1 : static_cast<int>(framing.baudRate),
                    .dataBits = framing.dataBits,
                    .parity = framing.parity,
                    .stopBits = framing.stopBits,
                    .handshaking = tty::handshakingOf(stored)};
    }
    return result;
}

std::uint8_t CSerial::GetEventChar() {
    lastError_ = isOpen() ? serial_result::success : serial_result::invalidHandle;
    return isOpen() ? native_->eventChar : std::uint8_t{0};
}

}  // namespace tessavo
