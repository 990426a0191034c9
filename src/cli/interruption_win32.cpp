#include <windows.h>

#include <atomic>
#include <mutex>
#include <utility>

#include "cli/interruption.h"

namespace tessavo::cli {

struct Interruption::Native {
    std::atomic<bool> happened = false;
    std::function<void()> stop;
};

namespace {

// The handler's thread is the system's own and may still run while the object goes.
std::mutex guard;
std::function<bool()> onEvent;

BOOL WINAPI handleEvent(DWORD event) {
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT && event != CTRL_CLOSE_EVENT) {
        return FALSE;
    }
    const std::lock_guard hold(guard);
    return onEvent && onEvent() ? TRUE : FALSE;
}

}  // namespace

Interruption::Interruption(std::function<void()> stop) : native_(std::make_unique<Native>()) {
    native_->stop = std::move(stop);
    {
        const std::lock_guard hold(guard);
        onEvent = [native = native_.get()] {
            if (native->happened.exchange(true)) {
                return false;
            }
            native->stop();
            return true;
        };
    }
    SetConsoleCtrlHandler(handleEvent, TRUE);
}

Interruption::~Interruption() {
    SetConsoleCtrlHandler(handleEvent, FALSE);
    const std::lock_guard hold(guard);
    onEvent = nullptr;
}

bool Interruption::happened() const {
    return native_->happened;
}

}  // namespace tessavo::cli
