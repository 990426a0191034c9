#pragma once

#include <cstdint>

namespace tessavo {

/// Result codes of CSerial and of a line to the target. They carry the same numbers on every system.
namespace serial_result {
inline constexpr std::uint32_t success = 0;
inline constexpr std::uint32_t invalidFunction = 1;  ///< needs a port opened for overlapped I/O
inline constexpr std::uint32_t fileNotFound = 2;
inline constexpr std::uint32_t tooManyOpenFiles = 4;
inline constexpr std::uint32_t accessDenied = 5;   ///< no permission, or the port is in use
inline constexpr std::uint32_t invalidHandle = 6;  ///< the port is closed
inline constexpr std::uint32_t notEnoughMemory = 8;
inline constexpr std::uint32_t generalFailure = 31;
inline constexpr std::uint32_t invalidParameter = 87;  ///< the device cannot be set up like that
inline constexpr std::uint32_t busy = 170;             ///< the overlapped structure is in use
inline constexpr std::uint32_t nameTooLong = 206;
inline constexpr std::uint32_t operationAborted = 995;  ///< Cancel() was called
inline constexpr std::uint32_t ioDevice = 1117;         ///< the device vanished or reports an error
inline constexpr std::uint32_t badDevice = 1200;  ///< the name stands for something that is no serial port
inline constexpr std::uint32_t alreadyInitialised = 1247;
inline constexpr std::uint32_t timeout = 1460;
inline constexpr std::uint32_t invalidArgument = 0x80070057;
}  // namespace serial_result

/// Parity and stop-bit codes of CSerial and of LineSettings.
namespace serial_frame {
inline constexpr int parityNone = 0;
inline constexpr int parityOdd = 1;
inline constexpr int parityEven = 2;
inline constexpr int parityMark = 3;
inline constexpr int paritySpace = 4;
inline constexpr std::uint8_t stopBitsOne = 0;
inline constexpr std::uint8_t stopBitsOneAndHalf = 1;
inline constexpr std::uint8_t stopBitsTwo = 2;

/// Whether any device can have it: only 5 data bits take one and a half stop bits, and they take no two.
[[nodiscard]] bool isPossible(std::uint32_t baudRate, std::uint8_t dataBits, int parity,
                              std::uint8_t stopBits);
}  // namespace serial_frame

}  // namespace tessavo
