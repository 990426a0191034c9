#include "comm/serial.h"

#include <cstring>

namespace tessavo {

bool serial_frame::isPossible(std::uint32_t baudRate, std::uint8_t dataBits, int parity,
                              std::uint8_t stopBits) {
    constexpr std::uint8_t fewestDataBits = 5;
    constexpr std::uint8_t mostDataBits = 8;
    const std::uint8_t longStop = dataBits == fewestDataBits ? stopBitsOneAndHalf : stopBitsTwo;
    return baudRate != 0 && dataBits >= fewestDataBits && dataBits <= mostDataBits && parity >= parityNone &&
           parity <= paritySpace && (stopBits == stopBitsOne || stopBits == longStop);
}

std::uint32_t CSerial::Setup(std::uint32_t baudRate, std::uint8_t dataBits, int parity, std::uint8_t stopBits,
                             int dtrMode) {
    return lastError_ = isOpen() ? applySetup(baudRate, dataBits, parity, stopBits, dtrMode)
                                 : serial_result::invalidHandle;
}

std::uint32_t CSerial::SetupHandshaking(int mode) {
    if (!isOpen()) {
        return lastError_ = serial_result::invalidHandle;
    }
    const bool known = mode >= handshakeNone && mode <= handshakeSoftware;
    return lastError_ = known ? applyHandshaking(mode) : serial_result::invalidArgument;
}

std::uint32_t CSerial::SetupReadTimeouts(int mode) {
    if (!isOpen()) {
        return lastError_ = serial_result::invalidHandle;
    }
    const bool known = mode == nonBlocking || mode == blocking;
    return lastError_ = known ? applyReadTimeouts(mode) : serial_result::invalidArgument;
}

std::uint32_t CSerial::SetMask(std::uint32_t eventMask) {
    lastError_ = isOpen() ? applyMask(eventMask) : serial_result::invalidHandle;
    if (lastError_ == serial_result::success) {
        eventMask_ = eventMask;
    }
    return lastError_;
}

std::uint32_t CSerial::SetEventChar(std::uint8_t character, bool adjustMask) {
    const std::uint32_t result = storeEventChar(character);
    if (result != serial_result::success || !adjustMask) {
        return lastError_ = result;
    }
    return SetMask(eventMask_ | serial_event::eventCharacter);
}

int CSerial::setting(int Settings::*which) {
    Settings settings;
    lastError_ = readSettings(settings);
    return lastError_ == serial_result::success ? settings.*which : -1;
}

int CSerial::GetBaudrate() {
    const int baudRate = setting(&Settings::baudRate);
    if (baudRate < 0 && lastError_ == serial_result::success) {
        lastError_ = serial_result::generalFailure;
    }
    return baudRate;
}

int CSerial::GetDataBits() {
    return setting(&Settings::dataBits);
}

int CSerial::GetParity() {
    return setting(&Settings::parity);
}

int CSerial::GetStopBits() {
    return setting(&Settings::stopBits);
}

int CSerial::GetHandshaking() {
    return setting(&Settings::handshaking);
}

std::uint32_t CSerial::Write(const void* data, std::size_t size, std::uint32_t* written,
                             SerialOverlapped* overlapped, std::uint32_t timeoutMs) {
    return unlessRefused(Transfer{TransferKind::write, nullptr, data, size}, written, overlapped, timeoutMs);
}

std::uint32_t CSerial::Read(void* data, std::size_t size, std::uint32_t* read, SerialOverlapped* overlapped,
                            std::uint32_t timeoutMs) {
    return unlessRefused(Transfer{TransferKind::read, data, data, size}, read, overlapped, timeoutMs);
}

std::uint32_t CSerial::WaitEvent(SerialOverlapped* overlapped, std::uint32_t timeoutMs) {
    return unlessRefused(Transfer{TransferKind::event, nullptr, nullptr, 0}, nullptr, overlapped, timeoutMs);
}

std::uint32_t CSerial::unlessRefused(const Transfer& transfer, std::uint32_t* count,
                                     SerialOverlapped* overlapped, std::uint32_t timeoutMs) {
    std::uint32_t moved = 0;
    lastError_ = refusal(transfer, overlapped, timeoutMs);
    if (lastError_ == serial_result::success) {
        lastError_ = carryOut(transfer, overlapped, timeoutMs, moved);
    }
    if (count != nullptr) {
        *count = moved;
    }
    return lastError_;
}

std::uint32_t CSerial::Complete(SerialOverlapped& overlapped, std::uint32_t* count, std::uint32_t timeoutMs) {
    std::uint32_t moved = 0;
    lastError_ = isOpen() ? carryOn(overlapped, timeoutMs, moved) : serial_result::invalidHandle;
    if (count != nullptr) {
        *count = moved;
    }
    return lastError_;
}

std::uint32_t CSerial::WriteString(const char* text, std::uint32_t* written, SerialOverlapped* overlapped,
                                   std::uint32_t timeoutMs) {
    return Write(text, text == nullptr ? 0 : std::strlen(text), written, overlapped, timeoutMs);
}

std::uint32_t CSerial::GetEventMask() {
    lastError_ = isOpen() ? serial_result::success : serial_result::invalidHandle;
    return isOpen() ? eventMask_ : 0;
}

std::uint32_t CSerial::refusal(const Transfer& transfer, const SerialOverlapped* overlapped,
                               std::uint32_t timeoutMs) const {
    if (!isOpen()) {
        return serial_result::invalidHandle;
    }
    if (!hasOverlapped() && (overlapped != nullptr || timeoutMs != infinite)) {
        return serial_result::invalidFunction;
    }
    if ((transfer.from == nullptr && transfer.size != 0) || transfer.size > largestTransfer) {
        return serial_result::invalidArgument;
    }
    return isCancelled() ? serial_result::operationAborted : serial_result::success;
}

}  // namespace tessavo
