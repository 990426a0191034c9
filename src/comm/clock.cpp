#include "comm/clock.h"

#include <algorithm>

namespace tessavo {

namespace {

// Added to the clock's reading, the longest duration of all would overflow.
constexpr Milliseconds longestPause = std::chrono::hours(24 * 365);

}  // namespace

Milliseconds SystemClock::now() {
    return std::chrono::duration_cast<Milliseconds>(std::chrono::steady_clock::now().time_since_epoch());
}

bool SystemClock::sleep(Milliseconds duration) {
    const auto end = std::chrono::steady_clock::now() + std::min(duration, longestPause);
    std::unique_lock guard(mutex_);
    return !wake_.wait_until(guard, end, [this] { return interrupted_; });
}

void SystemClock::interrupt() {
    {
        const std::lock_guard guard(mutex_);
        interrupted_ = true;
    }
    wake_.notify_all();
}

}  // namespace tessavo
