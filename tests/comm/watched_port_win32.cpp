#include <windows.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <utility>

#include "comm/serial_native_win32.h"
#include "comm/watched_port.h"

namespace tessavo::test {

namespace {

template <typename Condition>
bool until(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

}  // namespace

struct WatchedPort::Watch {
    std::atomic<bool> waiting = false;
    HANDLE file = nullptr;

    win32::SerialCalls calls() {
        win32::SerialCalls watched;
        watched.createFile = [this](LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                                    DWORD creation, DWORD flags, HANDLE pattern) {
            return file = CreateFileW(name, access, share, security, creation, flags, pattern);
        };
        watched.waitForMultipleObjects = [this](DWORD count, const HANDLE* handles, BOOL all,
                                                DWORD timeoutMs) {
            waiting = true;
            const DWORD ended = WaitForMultipleObjects(count, handles, all, timeoutMs);
            waiting = false;
            return ended;
        };
        return watched;
    }
};

WatchedPort::WatchedPort() : WatchedPort(std::make_unique<Watch>()) {}

WatchedPort::WatchedPort(std::unique_ptr<Watch> watch)
    : CSerial(std::make_unique<Native>(watch->calls())), watch_(std::move(watch)) {}

WatchedPort::~WatchedPort() {
    // Its calls use the watch.
    Close();
}

bool WatchedPort::untilWaiting() const {
    return until([this] { return watch_->waiting.load(); });
}

bool WatchedPort::untilReceived(std::size_t count) const {
    return until([&] {
        COMSTAT state{};
        return ClearCommError(watch_->file, nullptr, &state) != 0 && state.cbInQue >= count;
    });
}

}  // namespace tessavo::test
