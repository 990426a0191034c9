#include <cerrno>
#include <poll.h>
#include <unistd.h>
#include <utility>

#include "comm/device_name_posix.h"
#include "comm/serial_native_posix.h"

namespace tessavo {

namespace {

// What a step answers when the line must be waited for; never leaves this file.
constexpr std::uint32_t pending = 997;

}  // namespace

SerialOverlapped::SerialOverlapped() : native_(std::make_unique<Native>()) {}
SerialOverlapped::~SerialOverlapped() = default;

std::uint32_t CSerial::Native::readStep(Operation& operation) const {
    while (operation.done < operation.size) {
        const ssize_t count =
            ::read(device.get(), operation.in + operation.done, operation.size - operation.done);
        if (count > 0) {
            operation.done += static_cast<std::size_t>(count);
        } else if (count == 0) {
            return serial_result::ioDevice;
        } else if (errno == EAGAIN) {
            return blockingReads ? pending : serial_result::success;
        } else if (errno != EINTR) {
            return tty::resultOf(errno);
        }
    }
    return serial_result::success;
}

std::uint32_t CSerial::Native::writeStep(Operation& operation) const {
    while (operation.done < operation.size) {
        const ssize_t count =
            ::write(device.get(), operation.out + operation.done, operation.size - operation.done);
        if (count > 0) {
            operation.done += static_cast<std::size_t>(count);
        } else if (count == 0) {
            return serial_result::ioDevice;
        } else if (errno == EAGAIN) {
            return pending;
        } else if (errno != EINTR) {
            return tty::resultOf(errno);
        }
    }
    return serial_result::success;
}

std::uint32_t CSerial::Native::eventStep(Operation& operation) const {
    pollfd watched{device.get(), POLLIN, 0};
    if (::poll(&watched, 1, 0) > 0) {
        if ((watched.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0) {
            return serial_result::ioDevice;
        }
        if ((operation.mask & serial_event::received) != 0) {
            operation.eventType = serial_event::received;
            return serial_result::success;
        }
    }
    return pending;
}

std::uint32_t CSerial::Native::step(Operation& operation) const {
    if (operation.kind == Kind::read) {
        return readStep(operation);
    }
    return operation.kind == Kind::write ? writeStep(operation) : eventStep(operation);
}

std::uint32_t CSerial::Native::finish(Operation& operation, std::uint32_t timeoutMs) {
    const tty::Deadline deadline(timeoutMs);
    short events = POLLIN;
    if (operation.kind == Kind::write) {
        events = POLLOUT;
    } else if (operation.kind == Kind::event && (operation.mask & serial_event::received) == 0) {
        events = 0;
    }
    bool hungUp = false;
    for (;;) {
        const std::uint32_t result = step(operation);
        if (result != pending) {
            return result;
        }
        if (hungUp) {
            return serial_result::ioDevice;
        }
        switch (tty::waitFor(device.get(), events, cancel.get(), deadline)) {
            case tty::Waited::ready:
                break;
            case tty::Waited::hungUp:
                // What arrived before is still read.
                hungUp = true;
                break;
            case tty::Waited::cancelled:
                return serial_result::operationAborted;
            case tty::Waited::timedOut:
                return serial_result::timeout;
            case tty::Waited::failed:
                return serial_result::generalFailure;
        }
    }
}

std::uint32_t CSerial::Native::start(Operation& operation, Operation& deferred) const {
    if (deferred.kind) {
        return serial_result::busy;
    }
    const std::uint32_t result = step(operation);
    if (result != pending && result != serial_result::success) {
        return result;
    }
    operation.port = this;
    operation.opening = opening;
    operation.finished = result == serial_result::success;
    deferred = operation;
    return serial_result::success;
}

std::uint32_t CSerial::Native::perform(Operation& operation, Operation* deferred, std::uint32_t timeoutMs) {
    if (deferred != nullptr) {
        return start(operation, *deferred);
    }
    if (operation.finished) {
        return serial_result::success;
    }
    const std::uint32_t result = finish(operation, timeoutMs);
    if (operation.kind == Kind::write) {
        outputStuck = result != serial_result::success;
    }
    return result;
}

CSerial::CSerial() : CSerial(std::make_unique<Native>()) {}

CSerial::CSerial(std::unique_ptr<Native> native) : native_(std::move(native)) {}

CSerial::~CSerial() {
    CSerial::Close();
}

bool CSerial::isOpen() const {
    return native_->device.valid();
}
bool CSerial::hasOverlapped() const {
    return native_->overlapped;
}
bool CSerial::isCancelled() const {
    return native_->cancelled();
}

std::uint32_t CSerial::Open(const std::wstring& deviceName, std::uint32_t /*inQueue*/,
                            std::uint32_t /*outQueue*/, bool overlapped) {
    if (isOpen()) {
        return lastError_ = serial_result::alreadyInitialised;
    }
    if (!native_->cancel.valid()) {
        return lastError_ = serial_result::tooManyOpenFiles;
    }
    const auto path = narrowDeviceName(deviceName);
    if (!path || path->find('\0') != std::string::npos) {
        return lastError_ = serial_result::fileNotFound;
    }
    lastError_ = tty::openDevice(*path, native_->device);
    if (lastError_ == serial_result::success) {
        ++native_->opening;
        native_->overlapped = overlapped;
        native_->blockingReads = false;
        native_->outputStuck = false;
        native_->eventChar = 0;
        eventMask_ = serial_event::standard;
    }
    return lastError_;
}

std::uint32_t CSerial::Close() {
    if (isOpen()) {
        // Otherwise the system would wait for a line that takes nothing.
        tty::closeDevice(native_->device, native_->outputStuck || isCancelled());
        eventMask_ = 0;
    }
    return lastError_ = serial_result::success;
}

std::uint32_t CSerial::carryOut(const Transfer& transfer, SerialOverlapped* overlapped,
                                std::uint32_t timeoutMs, std::uint32_t& moved) {
    Native::Operation operation;
    operation.kind = transfer.kind;
    operation.in = static_cast<std::uint8_t*>(transfer.into);
    operation.out = static_cast<const std::uint8_t*>(transfer.from);
    operation.size = transfer.size;
    operation.mask = eventMask_;
    const std::uint32_t result =
        native_->perform(operation, overlapped == nullptr ? nullptr : overlapped->native_.get(), timeoutMs);
    if (transfer.kind == TransferKind::event) {
        eventType_ = operation.eventType;
    }
    moved = static_cast<std::uint32_t>(operation.done);
    return result;
}

std::uint32_t CSerial::carryOn(SerialOverlapped& overlapped, std::uint32_t timeoutMs, std::uint32_t& moved) {
    Native::Operation& deferred = *overlapped.native_;
    if (!deferred.kind || deferred.port != native_.get() || deferred.opening != native_->opening) {
        return serial_result::invalidArgument;
    }
    Native::Operation operation = std::exchange(deferred, Native::Operation{});
    const std::uint32_t result =
        isCancelled() ? serial_result::operationAborted : native_->perform(operation, nullptr, timeoutMs);
    if (operation.kind == TransferKind::event) {
        eventType_ = operation.eventType;
    }
    moved = static_cast<std::uint32_t>(operation.done);
    return result;
}

void CSerial::Cancel() {
    if (native_->cancel.valid()) {
        ::eventfd_write(native_->cancel.get(), 1);
    }
}

}  // namespace tessavo
