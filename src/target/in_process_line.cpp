#include "target/in_process_line.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "comm/port_list.h"

namespace tessavo {

namespace {

using SteadyTime = std::chrono::steady_clock::time_point;

TargetTime targetNow() {
    return std::chrono::duration_cast<TargetTime>(std::chrono::steady_clock::now().time_since_epoch());
}

SteadyTime steadyTimeOf(TargetTime time) {
    return SteadyTime(std::chrono::duration_cast<SteadyTime::duration>(time));
}

}  // namespace

InProcessLine::~InProcessLine() {
    InProcessLine::close();
}

std::uint32_t InProcessLine::open() {
    const std::lock_guard guard(target_.mutex_);
    if (open_) {
        return serial_result::success;
    }
    if (target_.inUse_) {
        return serial_result::accessDenied;
    }
    if (target_.device_.cablePulled()) {
        return serial_result::fileNotFound;
    }
    target_.inUse_ = true;
    open_ = true;
    input_.clear();
    target_.device_.opened(targetNow());
    return serial_result::success;
}

std::uint32_t InProcessLine::setUp(const LineSettings& settings) {
    if (!open_) {
        return serial_result::invalidHandle;
    }
    return serial_frame::isPossible(settings.baudRate, settings.dataBits, settings.parity, settings.stopBits)
               ? serial_result::success
               : serial_result::invalidParameter;
}

void InProcessLine::close() {
    const std::lock_guard guard(target_.mutex_);
    if (open_) {
        target_.device_.closed();
        target_.inUse_ = false;
        open_ = false;
    }
}

std::uint32_t InProcessLine::refusal() const {
    if (!open_) {
        return serial_result::invalidHandle;
    }
    return cancelled_ ? serial_result::operationAborted : serial_result::success;
}

void InProcessLine::takeDueBytes() {
    const auto bytes = target_.device_.takeDue(targetNow());
    input_.insert(input_.end(), bytes.begin(), bytes.end());
}

std::uint32_t InProcessLine::waitForBytes(std::unique_lock<std::mutex>& guard, std::size_t count,
                                          Milliseconds timeout) {
    const SteadyTime end = std::chrono::steady_clock::now() + timeout;
    while (true) {
        // Bytes count that were due before the time ran out, however late this thread woke up.
        const bool late = std::chrono::steady_clock::now() >= end;
        takeDueBytes();
        if (input_.size() >= count) {
            return serial_result::success;
        }
        if (cancelled_) {
            return serial_result::operationAborted;
        }
        const auto due = target_.device_.nextDue();
        if (target_.device_.cablePulled() && !due) {
            return serial_result::ioDevice;
        }
        if (late) {
            return serial_result::timeout;
        }
        target_.changed_.wait_until(guard, due ? std::min(end, steadyTimeOf(*due)) : end);
    }
}

LineRead InProcessLine::read(std::span<std::uint8_t> bytes, Milliseconds timeout) {
    std::unique_lock guard(target_.mutex_);
    LineRead read{refusal(), 0};
    if (read.result == serial_result::success) {
        read.result = waitForBytes(guard, bytes.size(), timeout);
        read.count = std::min(bytes.size(), input_.size());
        const auto last = input_.begin() + static_cast<std::ptrdiff_t>(read.count);
        std::copy(input_.begin(), last, bytes.begin());
        input_.erase(input_.begin(), last);
    }
    return read;
}

std::uint32_t InProcessLine::write(std::span<const std::uint8_t> bytes, Milliseconds /*timeout*/) {
    const std::lock_guard guard(target_.mutex_);
    if (const std::uint32_t result = refusal(); result != serial_result::success) {
        return result;
    }
    if (target_.device_.cablePulled()) {
        return serial_result::ioDevice;
    }
    target_.device_.receive(bytes, targetNow());
    return serial_result::success;
}

void InProcessLine::cancel() {
    const std::lock_guard guard(target_.mutex_);
    cancelled_ = true;
    target_.changed_.notify_all();
}

LineMaker linesTo(InProcessTarget& target, LineMaker others) {
    return [&target, others = std::move(others)](const std::string& portName) -> std::unique_ptr<ILine> {
        if (devicePath(portName) == devicePath(target.portName())) {
            return std::make_unique<InProcessLine>(target);
        }
        return others(portName);
    };
}

}  // namespace tessavo
