#pragma once

#include <memory>
#include <string>

#include "comm/line.h"
#include "comm/serial.h"

namespace tessavo {

/// The line behind a serial port of the system.
class SerialPortLine : public ILine {
 public:
    /// \param portName as listPorts() gives it; opened under devicePath() of it
    /// \param port what the line works with
    explicit SerialPortLine(std::string portName,
                            std::unique_ptr<CSerial> port = std::make_unique<CSerial>());

    /// Succeeds on a port that is open already.
    std::uint32_t open() override;
    /// A port that was open already keeps the settings that it has.
    std::uint32_t setUp(const LineSettings& settings) override;
    LineRead read(std::span<std::uint8_t> bytes, Milliseconds timeout) override;
    std::uint32_t write(std::span<const std::uint8_t> bytes, Milliseconds timeout) override;
    void close() override;
    void cancel() override;

 private:
    std::string portName_;
    std::unique_ptr<CSerial> port_;
    bool wasOpen_ = false;
};

/// The LineMaker of a program that works with serial ports.
[[nodiscard]] std::unique_ptr<ILine> makeSerialPortLine(const std::string& portName);

}  // namespace tessavo
