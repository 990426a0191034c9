#pragma once

#include <condition_variable>
#include <mutex>
#include <vector>

#include "comm/clock.h"

namespace tessavo::test {

/// A clock whose pauses end when the test says so.
class SteppedClock final : public IClock {
 public:
    Milliseconds now() override {
        const std::lock_guard guard(mutex_);
        return now_;
    }
    bool sleep(Milliseconds duration) override {
        std::unique_lock guard(mutex_);
        pauses_.push_back(duration);
        changed_.notify_all();
        changed_.wait(guard, [this] { return steps_ > 0 || ended_; });
        steps_ -= ended_ ? 0 : 1;
        now_ += duration;
        return !ended_;
    }
    /// Lets this many pauses pass, now or when they come.
    void allow(int steps) {
        const std::lock_guard guard(mutex_);
        steps_ += steps;
        changed_.notify_all();
    }
    /// Waits until this many pauses in all have begun.
    void waitForPauses(std::size_t count) {
        std::unique_lock guard(mutex_);
        changed_.wait(guard, [&] { return pauses_.size() >= count; });
    }
    void waitForPause() { waitForPauses(1); }
    /// Lets one pause pass and waits for the next one.
    void step() {
        const std::size_t before = pauses().size();
        allow(1);
        waitForPauses(before + 1);
    }
    void end() {
        const std::lock_guard guard(mutex_);
        ended_ = true;
        changed_.notify_all();
    }
    std::vector<Milliseconds> pauses() {
        const std::lock_guard guard(mutex_);
        return pauses_;
    }

 private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Milliseconds> pauses_;
    Milliseconds now_{0};
    int steps_ = 0;
    bool ended_ = false;
};

}  // namespace tessavo::test
