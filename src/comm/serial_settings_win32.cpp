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

std::uint32_t CSerial::Setup(std::uint32_t baudRate, std::uint8_t dataBits, int parity, std::uint8_t stopBits,
                             int dtrMode) {
    if (!isOpen()) {
        return lastError_ = serial_result::invalidHandle;
    }
    // Not every driver refuses them.
    if (!serial_frame::isPossible(baudRate, dataBits, parity, stopBits)) {
        return lastError_ = serial_result::invalidParameter;
    }
    DCB control{};
    lastError_ = readControl(*native_->calls, native_->handle(), control);
    if (lastError_ == serial_result::success) {
        control.BaudRate = baudRate;
        control.ByteSize = dataBits;
        control.Parity = static_cast<BYTE>(parity);
        control.StopBits = stopBits;
        control.fParity = parity != serial_frame::parityNone ? 1 : 0;
        if (dtrMode == 1) {
            control.fDtrControl = DTR_CONTROL_ENABLE;
            control.fRtsControl = RTS_CONTROL_DISABLE;
        }
        lastError_ = resultOf(native_->calls->setCommState(native_->handle(), &control));
    }
    return lastError_;
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

std::uint32_t CSerial::SetMask(std::uint32_t eventMask) {
    if (!isOpen()) {
        return lastError_ = serial_result::invalidHandle;
    }
    lastError_ = resultOf(native_->calls->setCommMask(native_->handle(), eventMask));
    if (lastError_ == serial_result::success) {
        eventMask_ = eventMask;
    }
    return lastError_;
}

std::uint32_t CSerial::SetupHandshaking(int mode) {
    if (!isOpen()) {
        return lastError_ = serial_result::invalidHandle;
    }
    if (mode < handshakeNone || mode > handshakeSoftware) {
        return lastError_ = serial_result::invalidArgument;
    }
    DCB control{};
    lastError_ = readControl(*native_->calls, native_->handle(), control);
    if (lastError_ == serial_result::success) {
        const bool hardware = mode == handshakeHardware;
        const bool software = mode == handshakeSoftware;
        control.fOutxCtsFlow = hardware ? 1 : 0;
        control.fOutxDsrFlow = hardware ? 1 : 0;
        control.fDtrControl = hardware ? DTR_CONTROL_HANDSHAKE : DTR_CONTROL_DISABLE;
        control.fRtsControl = hardware ? RTS_CONTROL_HANDSHAKE : RTS_CONTROL_DISABLE;
        control.fOutX = software ? 1 : 0;
        control.fInX = software ? 1 : 0;
        lastError_ = resultOf(native_->calls->setCommState(native_->handle(), &control));
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
    COMMTIMEOUTS timeouts{};
    lastError_ = resultOf(native_->calls->getCommTimeouts(native_->handle(), &timeouts));
    if (lastError_ == serial_result::success) {
        timeouts.ReadIntervalTimeout = mode == nonBlocking ? MAXDWORD : 0;
        timeouts.ReadTotalTimeoutMultiplier = 0;
        timeouts.ReadTotalTimeoutConstant = 0;
        lastError_ = resultOf(native_->calls->setCommTimeouts(native_->handle(), &timeouts));
    }
    if (lastError_ == serial_result::success) {
        native_->blockingReads = mode == blocking;
    }
    return lastError_;
}

int CSerial::GetBaudrate() {
    DCB control{};
    lastError_ = readControl(*native_->calls, native_->handle(), control);
    return lastError_ == serial_result::success ? static_cast<int>(control.BaudRate) : -1;
}

int CSerial::GetDataBits() {
    DCB control{};
    lastError_ = readControl(*native_->calls, native_->handle(), control);
    return lastError_ == serial_result::success ? control.ByteSize : -1;
}

int CSerial::GetParity() {
    DCB control{};
    lastError_ = readControl(*native_->calls, native_->handle(), control);
    if (lastError_ != serial_result::success) {
        return -1;
    }
    return control.fParity != 0 ? control.Parity : serial_frame::parityNone;
}

int CSerial::GetStopBits() {
    DCB control{};
    lastError_ = readControl(*native_->calls, native_->handle(), control);
    return lastError_ == serial_result::success ? control.StopBits : -1;
}

int CSerial::GetHandshaking() {
    DCB control{};
    lastError_ = readControl(*native_->calls, native_->handle(), control);
    if (lastError_ != serial_result::success) {
        return -1;
    }
    if (control.fDtrControl == DTR_CONTROL_HANDSHAKE && control.fRtsControl == RTS_CONTROL_HANDSHAKE) {
        return handshakeHardware;
    }
    return control.fOutX != 0 && control.fInX != 0 ? handshakeSoftware : handshakeNone;
}

std::uint8_t CSerial::GetEventChar() {
    DCB control{};
    lastError_ = readControl(*native_->calls, native_->handle(), control);
    return lastError_ == serial_result::success ? static_cast<std::uint8_t>(control.EvtChar)
                                                : std::uint8_t{0};
}

}  // namespace tessavo
