#include "base/semaphore.h"

#include <algorithm>

namespace tessavo {

namespace {

// Added to the clock's reading, the longest duration of all would overflow.
constexpr std::chrono::milliseconds longestWait = std::chrono::hours(24 * 365);

}  // namespace

bool CSemaphore::take(std::chrono::milliseconds limit) {
    std::unique_lock guard(mutex_);
    if (!freed_.wait_for(guard, std::min(limit, longestWait), [this] { return !taken_; })) {
        return false;
    }
    taken_ = true;
    return true;
}

void CSemaphore::release() {
    {
        const std::lock_guard guard(mutex_);
        taken_ = false;
    }
    freed_.notify_one();
}

}  // namespace tessavo
