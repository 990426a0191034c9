#include <sys/ioctl.h>
#include <thread>
#include <unistd.h>
#include <utility>

#include "comm/serial_native_posix.h"
#include "comm/watched_port.h"
#include "support/asleep.h"

namespace tessavo::test {

struct WatchedPort::Watch {
    pid_t thread = ::gettid();
    Native* native = nullptr;

    std::unique_ptr<Native> makeNative() {
        auto made = std::make_unique<Native>();
        native = made.get();
        return made;
    }
};

WatchedPort::WatchedPort() : WatchedPort(std::make_unique<Watch>()) {}

WatchedPort::WatchedPort(std::unique_ptr<Watch> watch)
    : CSerial(watch->makeNative()), watch_(std::move(watch)) {}

WatchedPort::~WatchedPort() = default;

bool WatchedPort::untilWaiting() const {
    return untilAsleep(watch_->thread);
}

bool WatchedPort::untilReceived(std::size_t count) const {
    const tty::Deadline deadline(20000);
    int waiting = 0;
    while (::ioctl(watch_->native->device.get(), FIONREAD, &waiting) == 0) {
        if (waiting >= 0 && static_cast<std::size_t>(waiting) >= count) {
            return true;
        }
        if (deadline.remaining() == 0) {
            break;
        }
        std::this_thread::yield();
    }
    return false;
}

}  // namespace tessavo::test
