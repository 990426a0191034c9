#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace tessavo {

/// A binary semaphore, free at first. At most one holder at a time; any thread may take it, and any thread
/// may release it, also one that did not take it.
///
/// The program has four: one guards the store and the image while a whole set changes, the second guards the
/// image while an edit writes it, the third guards the line during an exchange with the target, the fourth
/// keeps image and played terms together. A holder that takes its semaphore again waits for itself.
class CSemaphore {
 public:
    CSemaphore() = default;
    virtual ~CSemaphore() = default;
    CSemaphore(const CSemaphore&) = delete;
    CSemaphore& operator=(const CSemaphore&) = delete;

    /// Waits until the semaphore is free, and takes it.
    /// \param limit longest wait; zero or less only tries
    /// \return false when it was not free in time
    virtual bool take(std::chrono::milliseconds limit);
    /// Frees the semaphore and wakes one thread that waits for it.
    virtual void release();

 private:
    std::mutex mutex_;
    std::condition_variable freed_;
    bool acquired_ = false;
};

/// Takes a semaphore for the length of a block. When it is not free in time the block runs without it:
/// showing an old value for a moment is better than a window that hangs.
class SemaphoreHold {
 public:
    explicit SemaphoreHold(CSemaphore& semaphore,
                           std::chrono::milliseconds limit = std::chrono::milliseconds::max())
        : semaphore_(semaphore), acquired_(semaphore.take(limit)) {}
    ~SemaphoreHold() {
        if (acquired_) {
            semaphore_.release();
        }
    }
    SemaphoreHold(const SemaphoreHold&) = delete;
    SemaphoreHold& operator=(const SemaphoreHold&) = delete;

 private:
    CSemaphore& semaphore_;
    bool acquired_;
};

}  // namespace tessavo
