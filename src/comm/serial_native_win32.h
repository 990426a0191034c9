#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <utility>

#include "comm/serial.h"
#include "comm/serial_overlapped.h"

namespace tessavo {

namespace win32 {

/// A handle that closes itself; null when there is none.
class Handle {
 public:
    explicit Handle(HANDLE handle = nullptr) : handle_(handle) {}
    ~Handle() { reset(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    Handle(Handle&&) = delete;
    Handle& operator=(Handle&& other) noexcept {
        if (this != &other) {
            reset();
            handle_ = std::exchange(other.handle_, nullptr);
        }
        return *this;
    }

    [[nodiscard]] HANDLE get() const { return handle_; }
    [[nodiscard]] bool valid() const { return handle_ != nullptr; }
    void reset() {
        if (valid()) {
            CloseHandle(std::exchange(handle_, nullptr));
        }
    }

 private:
    HANDLE handle_;
};

/// Manual-reset, not signalled; null on failure.
inline HANDLE newEvent() {
    return CreateEventW(nullptr, TRUE, FALSE, nullptr);
}

/// Of a system call that has just returned.
inline std::uint32_t resultOf(BOOL done) {
    return done != 0 ? serial_result::success : GetLastError();
}

}  // namespace win32

/// One transfer or wait on its way.
struct SerialOverlapped::Native {
    win32::Handle event{win32::newEvent()};
    OVERLAPPED io{};
    // The opening it belongs to; no file when it holds no operation.
    HANDLE file = nullptr;
    std::uint64_t opening = 0;
    DWORD size = 0;
    bool isEvent = false;
    DWORD eventType = 0;
};

/// An open communications handle.
struct CSerial::Native {
    using Operation = SerialOverlapped::Native;

    win32::Handle file;
    win32::Handle event;
    win32::Handle stop{win32::newEvent()};
    std::uint64_t opening = 0;

    // Ends an operation that runs; bytes that it moved count.
    bool abandon(OVERLAPPED& io, DWORD size, DWORD& count) const;
    std::uint32_t await(OVERLAPPED& io, DWORD size, std::uint32_t timeoutMs, DWORD& count) const;
    // \param start begins the operation, with a structure on ports for overlapped I/O
    template <typename Start>
    std::uint32_t perform(Start start, DWORD size, std::uint32_t timeoutMs, DWORD& count) const;
    template <typename Start>
    std::uint32_t hand(Start start, DWORD size, bool isEvent, Operation& kept, DWORD& count) const;
    template <typename Start>
    std::uint32_t transfer(Start start, std::size_t size, Operation* kept, std::uint32_t timeoutMs,
                           std::uint32_t& moved) const;
};

}  // namespace tessavo
