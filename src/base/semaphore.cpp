#include "base/semaphore.h"

#include <algorithm>

namespace tessavo {

namespace {

// The longest wait. milliseconds::max() would overflow when the library adds it to the present time.
constexpr std::chrono::milliseconds longestWait = std::chrono::hours(24 * 365);

}  // namespace

bool CSemaphore::take(std::chrono::milliseconds limit) {
    std::unique_lock guard(mutex_);
    if (!freed_.wait_for(guard, std::min(limit, longestWait), [this] { return !acquired_; })) {
        return false;
    }
    acquired_ = true;
    return true;
}

void CSemaphore::release() {
    {
        const std::lock_guard guard(mutex_);
        acquired_ = false;
    }
    freed_.notify_one();
}

}  // namespace tessavo
