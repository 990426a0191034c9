#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

#include "comm/serial.h"
#include "comm/serial_block_win32.h"
#include "comm/serial_calls_win32.h"
#include "comm/serial_overlapped.h"

namespace tessavo {

namespace win32 {

/// Of a system call that has just returned.
inline std::uint32_t resultOf(BOOL done) {
    return done != 0 ? serial_result::success : GetLastError();
}

/// One opening of a port.
struct Opening {
    explicit Opening(HANDLE handle) : file(handle) {}

    Handle file;
    // An operation did not end when it was cancelled: it may still take bytes of the line.
    bool stuck = false;
};

/// How long a cancelled operation may take to end; a healthy driver needs a few milliseconds.
inline constexpr DWORD cancelPatienceMs = 500;

}  // namespace win32

/// One transfer or wait: what its caller wants and the block in which the system does it.
struct SerialOverlapped::Native {
    std::optional<CSerial::TransferKind> kind;  ///< nothing while no operation is kept
    void* in = nullptr;
    const void* out = nullptr;
    DWORD size = 0;
    // Fewer bytes than wanted are no success.
    bool whole = false;
    DWORD moved = 0;
    DWORD eventType = 0;
    // The opening it belongs to, and the calls to end it with.
    std::weak_ptr<win32::Opening> opening;
    std::shared_ptr<const win32::SerialCalls> calls;
    std::unique_ptr<win32::Block> block;

    // Cancels it and waits for its end, but not for long.
    // \return whether it is over; otherwise its block stays behind
    bool end();
    // Takes what the system tells of an operation that is over.
    std::uint32_t fetch();
    void take();
    // The result of an operation that ended by itself, from the system's.
    [[nodiscard]] std::uint32_t judged(std::uint32_t result) const;
};

/// An open communications handle.
struct CSerial::Native {
    using Operation = SerialOverlapped::Native;
    using Kind = TransferKind;

    explicit Native(win32::SerialCalls with = {})
        : calls(std::make_shared<const win32::SerialCalls>(std::move(with))) {}

    std::shared_ptr<const win32::SerialCalls> calls;
    // Null while closed.
    std::shared_ptr<win32::Opening> opening;
    bool overlapped = false;
    bool blockingReads = false;
    // Of the operations that no caller's structure has; with an event exactly on ports for overlapped I/O.
    std::unique_ptr<win32::Block> ownBlock;
    win32::Handle stop{win32::newEvent()};

    [[nodiscard]] HANDLE handle() const { return opening == nullptr ? nullptr : opening->file.get(); }
    // What a transfer or wait must know of the port.
    [[nodiscard]] Operation operation(Kind kind, std::size_t size) const;

    // \param pending set when the system goes on with it
    std::uint32_t begin(Operation& operation, bool& pending) const;
    std::uint32_t await(Operation& operation, std::uint32_t timeoutMs) const;
    std::uint32_t perform(Operation& operation, std::uint32_t timeoutMs);
    // Begins an operation for its caller to complete.
    std::uint32_t hand(Operation& operation, Operation& deferred) const;
    std::uint32_t run(Operation& operation, Operation* deferred, std::uint32_t timeoutMs);
};

}  // namespace tessavo
