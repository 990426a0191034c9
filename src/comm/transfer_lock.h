#pragma once

#include <condition_variable>
#include <mutex>

#include "comm/clock.h"

namespace tessavo {

/// Binary semaphore that every exchange with the target holds from before the opening to after the closing.
class TransferLock {
 public:
    virtual ~TransferLock() = default;
    /// \return false when it could not be had in time
    virtual bool acquire(Milliseconds timeout);
    virtual void release();

 private:
    std::mutex mutex_;
    std::condition_variable freed_;
    bool taken_ = false;
};

}  // namespace tessavo
