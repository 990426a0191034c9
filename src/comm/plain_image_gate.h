#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "comm/clock.h"
#include "comm/live_worker.h"

namespace tessavo {

/// Knows whether the target may hold a played copy that is not the program's image, and waits until it holds the
/// image itself: what is saved in the target is what it holds. Any thread.
class PlainImageGate {
 public:
    /// Follows the live worker.
    /// \param isPlain whether the copy that it sends is the image itself; read when it begins to send
    void note(LiveWorker::State state, bool isPlain);
    /// Gives up every wait, now and later; called when the program ends.
    void end();

    /// True from the moment at which another copy than the image is sent until the target has confirmed an image that
    /// was sent as it is.
    [[nodiscard]] bool isNeeded() const;
    /// Rounds that have begun.
    [[nodiscard]] std::uint64_t rounds() const;
    /// Waits for the result of the first round behind this many that sends the image itself.
    /// \return whether the target has confirmed it; false as well after `limit` and after end()
    [[nodiscard]] bool wait(std::uint64_t rounds, Milliseconds limit);

 private:
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::uint64_t rounds_ = 0;
    std::uint64_t plainResult_ = 0;  ///< number of the round with the image itself whose result came last
    bool plainIsConfirmed_ = false;  ///< that result
    bool isPlain_ = true;            ///< of the round that began last
    bool isNeeded_ = false;
    bool ended_ = false;
};

}  // namespace tessavo
