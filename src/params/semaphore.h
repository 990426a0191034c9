#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace tessavo {

/// A binary semaphore, free at first: taken with a time limit and released by whoever is done, from any
/// thread; at most one holder.
///
/// Guards the store and the image while a set is exchanged, and, as a second object, every exchange with the
/// target.
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

}  // namespace tessavo
