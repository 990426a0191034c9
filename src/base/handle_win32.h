#pragma once

#include <windows.h>

#include <utility>

namespace tessavo::win32 {

/// A handle that closes itself; null when there is none.
class Handle {
 public:
    /// Takes what the system gives for none, INVALID_HANDLE_VALUE, for null.
    explicit Handle(HANDLE handle = nullptr) : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
    ~Handle() { close(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    Handle(Handle&&) = delete;
    Handle& operator=(Handle&& other) noexcept {
        if (this != &other) {
            close();
            handle_ = std::exchange(other.handle_, nullptr);
        }
        return *this;
    }

    [[nodiscard]] HANDLE get() const { return handle_; }
    [[nodiscard]] bool valid() const { return handle_ != nullptr; }
    void close() {
        if (valid()) {
            CloseHandle(std::exchange(handle_, nullptr));
        }
    }

 private:
    HANDLE handle_;
};

}  // namespace tessavo::win32
