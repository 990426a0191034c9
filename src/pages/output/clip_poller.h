#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <thread>

#include "comm/clock.h"
#include "comm/target_commands.h"

namespace tessavo {

/// The background thread that asks the target for its clip state once a second while it is switched on.
///
/// It asks in its turn: when that comes, somebody else decides.
class ClipPoller {
 public:
    struct Dependencies {
        /// One exchange, run on the poller's thread; nothing when it failed.
        std::function<std::optional<ClipState>()> ask;
        /// Waits, on the poller's thread, until an exchange may begin; gives up once what it is handed
        /// answers false, and then returns false.
        std::function<bool(const std::function<bool()>& wanted)> takeTurn;
        /// Takes what each exchange came to, on the poller's thread.
        std::function<void(const std::optional<ClipState>&)> deliver;
    };

    /// Starts the thread, at the lowest priority that the system gives.
    /// \param clock for the pause between two polls; outlives the poller. When empty the machine's own, whose
    /// pause ends at once when the poller is destroyed.
    explicit ClipPoller(Dependencies dependencies, IClock* clock = nullptr);
    /// Ends the thread. Waits for an exchange that runs, not for a turn.
    ~ClipPoller();
    ClipPoller(const ClipPoller&) = delete;
    ClipPoller& operator=(const ClipPoller&) = delete;

    /// Switched off, no further exchange begins; the answer to one under way is dropped.
    void setOn(bool on);
    [[nodiscard]] bool isOn() const { return on_; }

 private:
    void run();
    void poll();

    Dependencies dependencies_;
    SystemClock ownClock_;
    IClock& clock_;
    std::atomic<bool> on_ = false;
    std::atomic<bool> stopping_ = false;
    std::thread thread_;
};

}  // namespace tessavo
