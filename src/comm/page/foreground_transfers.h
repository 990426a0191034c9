#pragma once

#include <QObject>
#include <atomic>
#include <functional>

#include "comm/transfers.h"
#include "controls/ui_calls.h"

namespace tessavo {

/// Exchanges of a command that a person started: each runs on a thread of its own while the caller, the
/// user-interface thread, keeps the window alive and further input waits.
///
/// The two operations return when their exchange is over. A second one asked for meanwhile fails at once.
class ForegroundTransfers : public QObject, public ITransfers {
    Q_OBJECT

 public:
    enum class Activity { none, sending, sendingSoftware, reading };

    /// \param transfers runs the exchanges, on any thread; outlives this object
    explicit ForegroundTransfers(ITransfers& transfers);

    bool SendToTarget(std::span<const std::uint8_t> data, MessageType type) override;
    bool ReceiveFromTarget(std::span<std::uint8_t> reply, std::span<const std::uint8_t> request) override;
    /// Waits in the same way for what a command needs before its exchange.
    /// \param wait returns whether it came; called on another thread
    bool waitFor(const std::function<bool()>& wait) { return run(Activity::sending, 0, wait); }

    /// What runs now. Any thread.
    [[nodiscard]] Activity activity() const { return activity_; }
    [[nodiscard]] bool running() const { return activity_ != Activity::none; }

 Q_SIGNALS:
    /// \param blocks that the exchange sends; 0 for one that reads, and for a wait
    void started(qulonglong blocks);
    /// running() is false by now.
    void ended(bool success);

 private:
    bool run(Activity activity, std::size_t blocks, const std::function<bool()>& exchange);

    ITransfers& transfers_;
    UiCalls calls_;
    std::atomic<Activity> activity_ = Activity::none;
};

}  // namespace tessavo
