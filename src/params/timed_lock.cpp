#include "params/timed_lock.h"

namespace tessavo {

bool TimedLock::take(std::chrono::milliseconds limit) {
    std::unique_lock guard(mutex_);
    if (!freed_.wait_for(guard, limit, [this] { return !taken_; })) {
        return false;
    }
    taken_ = true;
    return true;
}

void TimedLock::release() {
    {
        const std::lock_guard guard(mutex_);
        taken_ = false;
    }
    freed_.notify_one();
}

}  // namespace tessavo
