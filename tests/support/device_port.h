#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "comm/clock.h"
#include "comm/comm_log.h"
#include "comm/serial.h"
#include "comm/transfer_engine.h"
#include "support/device_host.h"

namespace tessavo::test {

/// Time that passes only when somebody waits.
class VirtualClock final : public IClock {
 public:
    Milliseconds now() override { return std::chrono::duration_cast<Milliseconds>(time); }
    bool sleep(Milliseconds duration) override {
        time += duration;
        return true;
    }
    TargetTime time = std::chrono::seconds(1);
};

/// A serial port wired to a device, in virtual time.
class DevicePort final : public CSerial {
 public:
    DevicePort(TargetDevice& device, VirtualClock& clock) : device_(device), clock_(clock) {}

    std::uint32_t Open(const std::wstring& /*deviceName*/, std::uint32_t /*inQueue*/,
                       std::uint32_t /*outQueue*/, bool /*overlapped*/) override {
        input_.clear();
        device_.opened(clock_.time);
        return serial_result::success;
    }
    std::uint32_t Close() override {
        device_.closed();
        return serial_result::success;
    }
    std::uint32_t Setup(std::uint32_t /*baudRate*/, std::uint8_t /*dataBits*/, int /*parity*/,
                        std::uint8_t /*stopBits*/, int /*dtrMode*/) override {
        return serial_result::success;
    }
    std::uint32_t SetupReadTimeouts(int /*mode*/) override { return serial_result::success; }
    std::uint32_t Write(const void* data, std::size_t size, std::uint32_t* /*written*/,
                        SerialOverlapped* /*overlapped*/, std::uint32_t /*timeoutMs*/) override {
        if (device_.cablePulled()) {
            return serial_result::ioDevice;
        }
        const auto* bytes = static_cast<const std::uint8_t*>(data);
        device_.receive(std::span{bytes, size}, clock_.time);
        return serial_result::success;
    }
    std::uint32_t Read(void* data, std::size_t size, std::uint32_t* read, SerialOverlapped* /*overlapped*/,
                       std::uint32_t timeoutMs) override {
        const TargetTime deadline = clock_.time + std::chrono::milliseconds(timeoutMs);
        while (true) {
            const Bytes due = device_.takeDue(clock_.time);
            input_.insert(input_.end(), due.begin(), due.end());
            if (input_.size() >= size) {
                break;
            }
            if (device_.cablePulled()) {
                return serial_result::ioDevice;
            }
            const auto next = device_.nextDue();
            if (!next || *next > deadline) {
                clock_.time = deadline;
                *read = 0;
                return serial_result::timeout;
            }
            clock_.time = std::max(clock_.time, *next);
        }
        std::copy_n(input_.begin(), size, static_cast<std::uint8_t*>(data));
        input_.erase(input_.begin(), input_.begin() + static_cast<std::ptrdiff_t>(size));
        *read = static_cast<std::uint32_t>(size);
        return serial_result::success;
    }

 private:
    TargetDevice& device_;
    VirtualClock& clock_;
    Bytes input_;
};

/// Keeps the last error line of an exchange.
class ErrorLog final : public ICommLog {
 public:
    void log(LogKind kind, std::string_view text) override {
        if (kind == LogKind::error) {
            lastError = text;
        }
    }
    std::string lastError;
};

class NoBoxes final : public IMessageBox {
 public:
    BoxAnswer show(std::string_view text, BoxIcon /*icon*/, BoxButtons /*buttons*/) override {
        last = text;
        return BoxAnswer::ok;
    }
    std::string last;
};

}  // namespace tessavo::test
