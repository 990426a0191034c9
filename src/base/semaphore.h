#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace tessavo {

/// A binary semaphore, free at first: taken with a time limit and released by whoever is done, from any
/// thread; at most one holder.
///
/// One guards the store and the image while a whole set changes, another the image while an edit writes it, a
/// third every exchange with the target. Whoever holds one must not take it again.
class CSemaphore {
 public:
    CSemaphore() = default;
    virtual ~CSemaphore() = default;
    CSemaphore(const CSemaphore&) = delete;
    CSemaphore& operator=(const CSemaphore&) = delete;

    /// \return false when it could not be had in time
    virtual bool take(std::chrono::milliseconds limit);
    virtual void release();

 private:
    std::mutex mutex_;
    std::condition_variable freed_;
    bool taken_ = false;
};

/// Takes a semaphore for the length of a block and goes on without it when it cannot be had in time.
class SemaphoreHold {
 public:
    explicit SemaphoreHold(CSemaphore& semaphore,
                           std::chrono::milliseconds limit = std::chrono::milliseconds::max())
        : semaphore_(semaphore), taken_(semaphore.take(limit)) {}
    ~SemaphoreHold() {
        if (taken_) {
            semaphore_.release();
        }
    }
    SemaphoreHold(const SemaphoreHold&) = delete;
    SemaphoreHold& operator=(const SemaphoreHold&) = delete;

 private:
    CSemaphore& semaphore_;
    bool taken_;
};

}  // namespace tessavo
