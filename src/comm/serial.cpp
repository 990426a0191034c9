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

std::uint32_t CSerial::SetEventChar(std::uint8_t character, bool adjustMask) {
    const std::uint32_t result = storeEventChar(character);
    if (result != serial_result::success || !adjustMask) {
        return lastError_ = result;
    }
    return SetMask(eventMask_ | serial_event::eventCharacter);
}

std::uint32_t CSerial::WriteString(const char* text, std::uint32_t* written, SerialOverlapped* overlapped,
                                   std::uint32_t timeoutMs) {
    return Write(text, text == nullptr ? 0 : std::strlen(text), written, overlapped, timeoutMs);
}

std::uint32_t CSerial::GetEventMask() {
    lastError_ = isOpen() ? serial_result::success : serial_result::invalidHandle;
    return isOpen() ? eventMask_ : 0;
}

std::uint32_t CSerial::refusal(const void* data, std::size_t size, const SerialOverlapped* overlapped,
                               std::uint32_t timeoutMs) const {
    if (!isOpen()) {
        return serial_result::invalidHandle;
    }
    if (!hasOverlapped() && (overlapped != nullptr || timeoutMs != infinite)) {
        return serial_result::invalidFunction;
    }
    if ((data == nullptr && size != 0) || size > largestTransfer) {
        return serial_result::invalidArgument;
    }
    return isCancelled() ? serial_result::operationAborted : serial_result::success;
}

}  // namespace tessavo
