#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <poll.h>
#include <sys/eventfd.h>
#include <utility>

#include "comm/serial.h"
#include "comm/serial_overlapped.h"
#include "comm/tty_device_posix.h"

namespace tessavo {

/// One transfer or wait on its way.
struct SerialOverlapped::Native {
    std::optional<CSerial::TransferKind> kind;  ///< nothing while no operation is kept
    // The opening it belongs to.
    const void* port = nullptr;
    std::uint64_t opening = 0;
    std::uint8_t* in = nullptr;
    const std::uint8_t* out = nullptr;
    std::size_t size = 0;
    std::size_t done = 0;
    bool finished = false;
    std::uint32_t mask = 0;
    std::uint32_t eventType = 0;
};

/// An open terminal device.
struct CSerial::Native {
    using Operation = SerialOverlapped::Native;
    using Kind = TransferKind;

    explicit Native(tty::LineControl control = tty::systemLineControl()) : lineControl(std::move(control)) {}

    tty::LineControl lineControl;
    Descriptor device;
    // Readable while cancelled: flag and wake-up in one.
    Descriptor cancel{::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)};
    std::uint64_t opening = 0;
    bool overlapped = false;
    bool blockingReads = false;
    bool outputStuck = false;
    std::uint8_t eventChar = 0;

    [[nodiscard]] bool cancelled() const {
        pollfd watched{cancel.get(), POLLIN, 0};
        return ::poll(&watched, 1, 0) > 0;
    }

    // Each moves what can be moved now: `success` when that was all of it.
    std::uint32_t readStep(Operation& operation) const;
    std::uint32_t writeStep(Operation& operation) const;
    std::uint32_t eventStep(Operation& operation) const;
    std::uint32_t step(Operation& operation) const;
    std::uint32_t finish(Operation& operation, std::uint32_t timeoutMs);
    // Starts an operation for its caller to complete.
    std::uint32_t start(Operation& operation, Operation& deferred) const;
    std::uint32_t perform(Operation& operation, Operation* deferred, std::uint32_t timeoutMs);
};

}  // namespace tessavo
