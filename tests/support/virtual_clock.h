#pragma once

#include <cstddef>
#include <mutex>
#include <string>

#include "comm/clock.h"
#include "support/transcript.h"

namespace tessavo::test {

/// A clock whose pauses take no time. Each non-empty pause is noted in the transcript. Thread-safe.
class VirtualClock final : public IClock {
 public:
    explicit VirtualClock(Transcript& transcript) : transcript_(transcript) {}

    [[nodiscard]] Milliseconds now() override {
        const std::lock_guard guard(mutex_);
        return now_;
    }
    bool sleep(Milliseconds duration) override {
        const std::lock_guard guard(mutex_);
        if (duration.count() > 0) {
            if (notingPauses_) {
                transcript_.add("pause " + std::to_string(duration.count()));
            }
            if (pausesLeft_ == 0) {
                interrupted_ = true;
            } else {
                --pausesLeft_;
            }
        }
        if (!interrupted_) {
            now_ += duration;
        }
        return !interrupted_;
    }

    /// What a wait elsewhere costs.
    void advance(Milliseconds duration) {
        const std::lock_guard guard(mutex_);
        now_ += duration;
    }
    void interrupt() {
        const std::lock_guard guard(mutex_);
        interrupted_ = true;
    }
    /// Lets this many more pauses pass whole; the one after them is cut short.
    void interruptAfter(std::size_t pauses) {
        const std::lock_guard guard(mutex_);
        pausesLeft_ = pauses;
    }
    void notePauses(bool noting) {
        const std::lock_guard guard(mutex_);
        notingPauses_ = noting;
    }

 private:
    std::mutex mutex_;
    Transcript& transcript_;
    Milliseconds now_{0};
    std::size_t pausesLeft_ = static_cast<std::size_t>(-1);
    bool interrupted_ = false;
    bool notingPauses_ = true;
};

}  // namespace tessavo::test
