#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "comm/clock.h"
#include "comm/comm_log.h"
#include "comm/line.h"
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

/// A line wired to a device, in virtual time.
class DeviceLine : public ILine {
 public:
    /// \param opens false for a port that is not there
    DeviceLine(TargetDevice& device, VirtualClock& clock, bool opens = true)
        : device_(device), clock_(clock), opens_(opens) {}

    std::uint32_t open() override {
        if (!opens_) {
            return serial_result::fileNotFound;
        }
        device_.opened(clock_.time);
        return serial_result::success;
    }
    std::uint32_t setUp(const LineSettings& /*settings*/) override { return serial_result::success; }
    LineRead read(std::span<std::uint8_t> bytes, Milliseconds timeout) override {
        const TargetTime deadline = clock_.time + timeout;
        while (true) {
            const Bytes due = device_.takeDue(clock_.time);
            input_.insert(input_.end(), due.begin(), due.end());
            if (input_.size() >= bytes.size()) {
                break;
            }
            if (device_.cablePulled()) {
                return {serial_result::ioDevice, 0};
            }
            const auto next = device_.nextDue();
            if (!next || *next > deadline) {
                clock_.time = deadline;
                return {serial_result::timeout, 0};
            }
            clock_.time = std::max(clock_.time, *next);
        }
        std::copy_n(input_.begin(), bytes.size(), bytes.begin());
        input_.erase(input_.begin(), input_.begin() + static_cast<std::ptrdiff_t>(bytes.size()));
        return {serial_result::success, bytes.size()};
    }
    std::uint32_t write(std::span<const std::uint8_t> bytes, Milliseconds /*timeout*/) override {
        if (device_.cablePulled()) {
            return serial_result::ioDevice;
        }
        device_.receive(bytes, clock_.time);
        return serial_result::success;
    }
    void close() override {
        if (opens_) {
            device_.closed();
        }
    }
    void cancel() override {}

 private:
    TargetDevice& device_;
    VirtualClock& clock_;
    bool opens_;
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
