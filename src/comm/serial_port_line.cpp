#include "comm/serial_port_line.h"

#include <utility>

#include "comm/port_list.h"

namespace tessavo {

namespace {

constexpr std::uint32_t driverQueues = 0;
// DTR and RTS stay as the port has them: the target looks at neither.
constexpr int dtrAsItIs = 0;

constexpr std::uint32_t inMilliseconds(Milliseconds duration) {
    return static_cast<std::uint32_t>(duration.count());
}

}  // namespace

SerialPortLine::SerialPortLine(std::string portName, std::unique_ptr<CSerial> port)
    : portName_(std::move(portName)), port_(std::move(port)) {}

std::uint32_t SerialPortLine::open() {
    // Only a port that is opened for overlapped I/O knows time-outs.
    const std::uint32_t result = port_->Open(devicePath(portName_), driverQueues, driverQueues, true);
    wasOpen_ = result == serial_result::alreadyInitialised;
    return wasOpen_ ? serial_result::success : result;
}

std::uint32_t SerialPortLine::setUp(const LineSettings& settings) {
    if (!wasOpen_) {
        const std::uint32_t result =
            port_->Setup(settings.baudRate, settings.dataBits, settings.parity, settings.stopBits, dtrAsItIs);
        if (result != serial_result::success) {
            return result;
        }
    }
    port_->SetupReadTimeouts(CSerial::blocking);
    return serial_result::success;
}

LineRead SerialPortLine::read(std::span<std::uint8_t> bytes, Milliseconds timeout) {
    std::uint32_t count = 0;
    const std::uint32_t result =
        port_->Read(bytes.data(), bytes.size(), &count, nullptr, inMilliseconds(timeout));
    return {result, count};
}

std::uint32_t SerialPortLine::write(std::span<const std::uint8_t> bytes, Milliseconds timeout) {
    return port_->Write(bytes.data(), bytes.size(), nullptr, nullptr, inMilliseconds(timeout));
}

void SerialPortLine::close() {
    port_->Close();
}

void SerialPortLine::cancel() {
    port_->Cancel();
}

std::unique_ptr<ILine> makeSerialPortLine(const std::string& portName) {
    return std::make_unique<SerialPortLine>(portName);
}

}  // namespace tessavo
