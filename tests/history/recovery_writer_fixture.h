#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <variant>
#include <vector>

#include "history/recovery_writer.h"
#include "support/waiting.h"

namespace tessavo::test {

/// A clock that stands until the test moves it.
class HandClock final : public IRecoveryClock {
 public:
    Time now() override {
        const std::lock_guard guard(mutex_);
        return now_;
    }
    void waitUntil(std::condition_variable& changed, std::unique_lock<std::mutex>& lock, Time end) override {
        {
            const std::lock_guard guard(mutex_);
            waiting_ = {&changed, lock.mutex()};
            waitEnd_ = end;
        }
        changed.wait(lock);
    }
    void advance(std::chrono::milliseconds duration) {
        Waiting waiting;
        {
            const std::lock_guard guard(mutex_);
            now_ += duration;
            waiting = waiting_;
        }
        if (waiting.mutex != nullptr) {
            // Whoever has looked at the clock waits by now.
            { const std::lock_guard guard(*waiting.mutex); }
            waiting.changed->notify_all();
        }
    }
    /// Waits until somebody waits for this time from now on.
    [[nodiscard]] bool untilWaitingFor(std::chrono::milliseconds duration) {
        return eventually([&] {
            const std::lock_guard guard(mutex_);
            return waitEnd_ == now_ + duration;
        });
    }

 private:
    struct Waiting {
        std::condition_variable* changed = nullptr;
        std::mutex* mutex = nullptr;
    };
    std::mutex mutex_;
    Time now_{std::chrono::hours(1)};
    Time waitEnd_{};
    Waiting waiting_;
};

/// A disk that does what the test says. A state is known by the number of its process.
class HandDisk {
 public:
    static constexpr std::uint64_t removed = 0;  ///< what stands for a removed file

    explicit HandDisk(HandClock& clock) : clock_(clock) {}

    [[nodiscard]] RecoveryWriter::Dependencies dependencies() {
        return {&clock_, std::chrono::minutes(1),
                [this](const std::filesystem::path&, std::span<const std::uint8_t> bytes) {
                    const auto state = decodeRecovery(bytes);
                    return act(std::get<RecoveryState>(state).process);
                },
                [this](const std::filesystem::path&) { return act(removed); }};
    }
    /// What has begun to be written, in this order.
    [[nodiscard]] std::vector<std::uint64_t> begun() {
        const std::lock_guard guard(mutex_);
        return begun_;
    }
    [[nodiscard]] std::vector<IRecoveryClock::Time> times() {
        const std::lock_guard guard(mutex_);
        return times_;
    }
    [[nodiscard]] bool untilBegun(std::size_t count) {
        return eventually([&] { return begun().size() >= count; });
    }
    /// What the next writes end with.
    void fail(std::error_code error) {
        const std::lock_guard guard(mutex_);
        error_ = error;
    }
    void throwOnce() {
        const std::lock_guard guard(mutex_);
        throws_ = true;
    }
    /// Writes do not end until release().
    void hold() {
        const std::lock_guard guard(mutex_);
        isHeld_ = true;
    }
    void release() {
        {
            const std::lock_guard guard(mutex_);
            isHeld_ = false;
        }
        released_.notify_all();
    }

 private:
    std::error_code act(std::uint64_t what) {
        const auto now = clock_.now();
        std::unique_lock lock(mutex_);
        begun_.push_back(what);
        times_.push_back(now);
        released_.wait(lock, [this] { return !isHeld_; });
        if (std::exchange(throws_, false)) {
            throw std::bad_alloc();
        }
        return error_;
    }

    HandClock& clock_;
    std::mutex mutex_;
    std::condition_variable released_;
    std::vector<std::uint64_t> begun_;
    std::vector<IRecoveryClock::Time> times_;
    std::error_code error_;
    bool isHeld_ = false;
    bool throws_ = false;
};

}  // namespace tessavo::test
