#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

#include "comm/clock.h"
#include "comm/serial_codes.h"

namespace tessavo {

/// How fast a line is and how it frames a byte.
struct LineSettings {
    std::uint32_t baudRate = 0;                         ///< in bit/s
    std::uint8_t dataBits = 8;                          ///< 5 to 8
    int parity = serial_frame::parityNone;              ///< see serial_frame
    std::uint8_t stopBits = serial_frame::stopBitsOne;  ///< see serial_frame
};

/// What a read from a line came to.
struct LineRead {
    std::uint32_t result = serial_result::success;  ///< as the operations of ILine return it
    std::size_t count = 0;                          ///< bytes that arrived, also when the read failed
};

/// The line to the target for one exchange: opened, set up, used and closed once.
///
/// A result is `serial_result::success`, another code of serial_result, or a code of the platform. One thread
/// uses a line; only cancel() may be called from any other meanwhile. Nothing throws.
class ILine {
 public:
    virtual ~ILine() = default;

    /// Opens the line for this program alone. Bytes that arrive from here on are kept for read().
    /// \return `fileNotFound`, `accessDenied` and others of serial_result when it cannot be opened
    virtual std::uint32_t open() = 0;
    /// Sets up the open line.
    /// \return `invalidParameter` when the line cannot be set up like that
    virtual std::uint32_t setUp(const LineSettings& settings) = 0;
    /// Waits until `bytes` is full.
    /// \return `timeout` when fewer bytes came in time, `ioDevice` when the device is gone
    virtual LineRead read(std::span<std::uint8_t> bytes, Milliseconds timeout) = 0;
    /// Sends all bytes.
    /// \return `timeout` when the line did not take them in time, `ioDevice` when the device is gone
    virtual std::uint32_t write(std::span<const std::uint8_t> bytes, Milliseconds timeout) = 0;
    /// Does nothing on a line that is not open.
    virtual void close() = 0;

    /// Ends a wait in read() or write(); that one and every later one return `operationAborted`. For good: a
    /// cancelled line can still be opened, set up and closed, but carries nothing any more.
    virtual void cancel() = 0;
};

/// Makes the line that leads to a port, whose name is as listPorts() gives it, and does not open it. Never
/// null: whether the port is there, ILine::open() tells. Called on the thread of the exchange.
using LineMaker = std::function<std::unique_ptr<ILine>(const std::string& portName)>;

}  // namespace tessavo
