#include "target/in_process_port.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <span>

namespace tessavo {

namespace {

using SteadyTime = std::chrono::steady_clock::time_point;

TargetTime targetNow() {
    return std::chrono::duration_cast<TargetTime>(std::chrono::steady_clock::now().time_since_epoch());
}

SteadyTime steadyTimeOf(TargetTime time) {
    return SteadyTime(std::chrono::duration_cast<SteadyTime::duration>(time));
}

constexpr int largestBaudRate = std::numeric_limits<int>::max();

}  // namespace

InProcessPort::~InProcessPort() {
    InProcessPort::Close();
}

std::uint32_t InProcessPort::Open(const std::wstring& deviceName, std::uint32_t /*inQueue*/,
                                  std::uint32_t /*outQueue*/, bool overlapped) {
    if (open_) {
        return lastError_ = serial_result::alreadyInitialised;
    }
    if (deviceName != target_.deviceName()) {
        return lastError_ = serial_result::fileNotFound;
    }
    const std::lock_guard guard(target_.mutex_);
    if (target_.inUse_) {
        return lastError_ = serial_result::accessDenied;
    }
    if (target_.device_.cablePulled()) {
        return lastError_ = serial_result::fileNotFound;
    }
    target_.inUse_ = true;
    open_ = true;
    overlapped_ = overlapped;
    line_ = Line{};
    input_.clear();
    eventMask_ = serial_event::standard;
    target_.device_.opened(targetNow());
    return lastError_ = serial_result::success;
}

std::uint32_t InProcessPort::Close() {
    if (open_) {
        const std::lock_guard guard(target_.mutex_);
        target_.device_.closed();
        target_.inUse_ = false;
        open_ = false;
        eventMask_ = 0;
    }
    return lastError_ = serial_result::success;
}

std::uint32_t InProcessPort::onOpen(const std::function<void()>& use) {
    if (!open_) {
        return lastError_ = serial_result::invalidHandle;
    }
    use();
    return lastError_ = serial_result::success;
}

std::uint32_t InProcessPort::Setup(std::uint32_t baudRate, std::uint8_t dataBits, int parity,
                                   std::uint8_t stopBits, int dtrMode) {
    const bool possible = baudRate > 0 && baudRate <= static_cast<std::uint32_t>(largestBaudRate) &&
                          dataBits >= 5 && dataBits <= 8 && parity >= serial_frame::parityNone &&
                          parity <= serial_frame::paritySpace && stopBits <= serial_frame::stopBitsTwo;
    if (open_ && !possible) {
        return lastError_ = serial_result::invalidParameter;
    }
    return onOpen([&] {
        line_.baudRate = static_cast<int>(baudRate);
        line_.dataBits = dataBits;
        line_.parity = parity;
        line_.stopBits = stopBits;
        if (dtrMode == 1 && line_.handshaking == handshakeHardware) {
            line_.handshaking = handshakeNone;
        }
    });
}

std::uint32_t InProcessPort::SetEventChar(std::uint8_t character, bool adjustMask) {
    return onOpen([&] {
        line_.eventCharacter = character;
        eventMask_ |= adjustMask ? serial_event::eventCharacter : 0;
    });
}

std::uint32_t InProcessPort::SetMask(std::uint32_t eventMask) {
    return onOpen([&] { eventMask_ = eventMask; });
}

std::uint32_t InProcessPort::SetupHandshaking(int mode) {
    if (open_ && (mode < handshakeNone || mode > handshakeSoftware)) {
        return lastError_ = serial_result::invalidArgument;
    }
    return onOpen([&] { line_.handshaking = mode; });
}

std::uint32_t InProcessPort::SetupReadTimeouts(int mode) {
    if (open_ && mode != nonBlocking && mode != blocking) {
        return lastError_ = serial_result::invalidArgument;
    }
    return onOpen([&] { line_.blockingReads = mode == blocking; });
}

int InProcessPort::GetBaudrate() {
    return onOpen([] {}) == serial_result::success ? line_.baudRate : -1;
}

int InProcessPort::GetDataBits() {
    return onOpen([] {}) == serial_result::success ? line_.dataBits : -1;
}

int InProcessPort::GetParity() {
    return onOpen([] {}) == serial_result::success ? line_.parity : -1;
}

int InProcessPort::GetStopBits() {
    return onOpen([] {}) == serial_result::success ? line_.stopBits : -1;
}

int InProcessPort::GetHandshaking() {
    return onOpen([] {}) == serial_result::success ? line_.handshaking : -1;
}

std::uint32_t InProcessPort::GetEventMask() {
    return onOpen([] {}) == serial_result::success ? eventMask_ : 0;
}

std::uint8_t InProcessPort::GetEventChar() {
    return onOpen([] {}) == serial_result::success ? line_.eventCharacter : std::uint8_t{0};
}

std::uint32_t InProcessPort::refusal(const void* data, std::size_t size, const SerialOverlapped* overlapped,
                                     std::uint32_t timeoutMs) const {
    if (!open_) {
        return serial_result::invalidHandle;
    }
    if (overlapped != nullptr || (!overlapped_ && timeoutMs != infinite)) {
        return serial_result::invalidFunction;
    }
    if ((data == nullptr && size != 0) || size > std::numeric_limits<std::int32_t>::max()) {
        return serial_result::invalidArgument;
    }
    return cancelled_ ? serial_result::operationAborted : serial_result::success;
}

void InProcessPort::hear() {
    const auto bytes = target_.device_.takeDue(targetNow());
    input_.insert(input_.end(), bytes.begin(), bytes.end());
}

std::uint32_t InProcessPort::waitUntil(std::unique_lock<std::mutex>& guard, std::uint32_t timeoutMs,
                                       const std::function<bool()>& done) {
    const SteadyTime end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (true) {
        // Bytes count that were due before the time ran out, however late this thread woke up.
        const bool late = timeoutMs != infinite && std::chrono::steady_clock::now() >= end;
        hear();
        if (done()) {
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
        std::optional<SteadyTime> until;
        if (timeoutMs != infinite) {
            until = end;
        }
        if (due) {
            until = std::min(until.value_or(SteadyTime::max()), steadyTimeOf(*due));
        }
        if (until) {
            target_.changed_.wait_until(guard, *until);
        } else {
            target_.changed_.wait(guard);
        }
    }
}

std::uint32_t InProcessPort::WaitEvent(SerialOverlapped* overlapped, std::uint32_t timeoutMs) {
    std::unique_lock guard(target_.mutex_);
    lastError_ = refusal(nullptr, 0, overlapped, timeoutMs);
    if (lastError_ == serial_result::success) {
        const bool wanted = (eventMask_ & serial_event::received) != 0;
        lastError_ = waitUntil(guard, timeoutMs, [&] { return wanted && !input_.empty(); });
        eventType_ = lastError_ == serial_result::success ? serial_event::received : 0;
    }
    return lastError_;
}

std::uint32_t InProcessPort::Write(const void* data, std::size_t size, std::uint32_t* written,
                                   SerialOverlapped* overlapped, std::uint32_t timeoutMs) {
    const std::lock_guard guard(target_.mutex_);
    lastError_ = refusal(data, size, overlapped, timeoutMs);
    if (lastError_ == serial_result::success && target_.device_.cablePulled()) {
        lastError_ = serial_result::ioDevice;
    }
    const bool done = lastError_ == serial_result::success;
    if (done) {
        target_.device_.receive(std::span(static_cast<const std::uint8_t*>(data), size), targetNow());
    }
    if (written != nullptr) {
        *written = done ? static_cast<std::uint32_t>(size) : 0;
    }
    return lastError_;
}

std::uint32_t InProcessPort::Read(void* data, std::size_t size, std::uint32_t* read,
                                  SerialOverlapped* overlapped, std::uint32_t timeoutMs) {
    std::unique_lock guard(target_.mutex_);
    std::size_t count = 0;
    lastError_ = refusal(data, size, overlapped, timeoutMs);
    if (lastError_ == serial_result::success) {
        if (line_.blockingReads) {
            lastError_ = waitUntil(guard, timeoutMs, [&] { return input_.size() >= size; });
        } else {
            hear();
            if (input_.empty() && size > 0 && target_.device_.cablePulled()) {
                lastError_ = serial_result::ioDevice;
            }
        }
        count = std::min(size, input_.size());
        const auto last = input_.begin() + static_cast<std::ptrdiff_t>(count);
        std::copy(input_.begin(), last, static_cast<std::uint8_t*>(data));
        input_.erase(input_.begin(), last);
    }
    if (read != nullptr) {
        *read = static_cast<std::uint32_t>(count);
    }
    return lastError_;
}

void InProcessPort::Cancel() {
    const std::lock_guard guard(target_.mutex_);
    cancelled_ = true;
    target_.changed_.notify_all();
}

void InProcessPort::ClearCancel() {
    const std::lock_guard guard(target_.mutex_);
    cancelled_ = false;
}

std::uint32_t InProcessPort::Complete(SerialOverlapped& /*overlapped*/, std::uint32_t* count,
                                      std::uint32_t /*timeoutMs*/) {
    if (count != nullptr) {
        *count = 0;
    }
    return lastError_ = open_ ? serial_result::invalidArgument : serial_result::invalidHandle;
}

}  // namespace tessavo
