#include <windows.h>

#include "comm/serial_native_win32.h"

namespace tessavo {

using win32::resultOf;

namespace {

std::uint32_t readControl(const win32::SerialCalls& calls, HANDLE file, DCB& control) {
    control.DCBlength = sizeof control;
    return file == nullptr ? serial_result::invalidHandle : resultOf(calls.getCommState(file, &control));
}

}  // namespace

std::uint32_t CSerial::applySetup(std::uint32_t baudRate, std::uint8_t dataBits, int parity,
                                  std::uint8_t stopBits, int dtrMode) {
    // Not every driver refuses them.
    if (!serial_frame::isPossible(baudRate, dataBits, parity, stopBits)) {
        return serial_result::invalidParameter;
    }
    DCB control{};
    const std::uint32_t result = readControl(*native_->calls, native_->handle(), control);
    if (result != serial_result::success) {
        return result;
    }
    control.BaudRate = baudRate;
    control.ByteSize = dataBits;
    control.Parity = static_cast<BYTE>(parity);
    control.StopBits = stopBits;
    control.fParity = parity != serial_frame::parityNone ? 1 : 0;
    if (dtrMode == 1) {
        control.fDtrControl = DTR_CONTROL_ENABLE;
        control.fRtsControl = RTS_CONTROL_DISABLE;
    }
    return resultOf(native_->calls->setCommState(native_->handle(), &control));
}

std::uint32_t CSerial::storeEventChar(std::uint8_t character) {
    DCB control{};
    if (const std::uint32_t result = readControl(*native_->calls, native_->handle(), control);
        result != serial_result::success) {
        return result;
    }
    control.EvtChar = static_cast<char>(character);
    return resultOf(native_->calls->setCommState(native_->handle(), &control));
}

std::uint32_t CSerial::applyMask(std::uint32_t eventMask) {
    return resultOf(native_->calls->setCommMask(native_->handle(), eventMask));
}

std::uint32_t CSerial::applyHandshaking(int mode) {
    DCB control{};
    const std::uint32_t result = readControl(*native_->calls, native_->handle(), control);
    if (result != serial_result::success) {
        return result;
    }
    const bool hardware = mode == handshakeHardware;
    const bool software = mode == handshakeSoftware;
    control.fOutxCtsFlow = hardware ? 1 : 0;
    control.fOutxDsrFlow = hardware ? 1 : 0;
    control.fDtrControl = hardware ? DTR_CONTROL_HANDSHAKE : DTR_CONTROL_DISABLE;
    control.fRtsControl = hardware ? RTS_CONTROL_HANDSHAKE : RTS_CONTROL_DISABLE;
    control.fOutX = software ? 1 : 0;
    control.fInX = software ? 1 : 0;
    return resultOf(native_->calls->setCommState(native_->handle(), &control));
}

std::uint32_t CSerial::applyReadTimeouts(int mode) {
    COMMTIMEOUTS timeouts{};
    std::uint32_t result = resultOf(native_->calls->getCommTimeouts(native_->handle(), &timeouts));
    if (result == serial_result::success) {
        timeouts.ReadIntervalTimeout = mode == nonBlocking ? MAXDWORD : 0;
        timeouts.ReadTotalTimeoutMultiplier = 0;
        timeouts.ReadTotalTimeoutConstant = 0;
        result = resultOf(native_->calls->setCommTimeouts(native_->handle(), &timeouts));
    }
    if (result == serial_result::success) {
        native_->blockingReads = mode == blocking;
    }
    return result;
}

std::uint32_t CSerial::readSettings(Settings& settings) const {
    DCB control{};
    const std::uint32_t result = readControl(*native_->calls, native_->handle(), control);
    if (result == serial_result::success) {
        const bool hardware =
            control.fDtrControl == DTR_CONTROL_HANDSHAKE && control.fRtsControl == RTS_CONTROL_HANDSHAKE;
        const bool software = control.fOutX != 0 && control.fInX != 0;
        settings = {.baudRate = static_cast<int>(control.BaudRate),
                    .dataBits = control.ByteSize,
                    .parity = control.fParity != 0 ? control.Parity : serial_frame::parityNone,
                    .stopBits = control.StopBits,
                    .handshaking = hardware   ? handshakeHardware
                                   : software ? handshakeSoftware
                                              : handshakeNone};
    }
    return result;
}

std::uint8_t CSerial::GetEventChar() {
    DCB control{};
    lastError_ = readControl(*native_->calls, native_->handle(), control);
    return lastError_ == serial_result::success ? static_cast<std::uint8_t>(control.EvtChar)
                                                : std::uint8_t{0};
}

}  // namespace tessavo
