#include "comm/page/foreground_transfers.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEventLoop>
#include <atomic>
#include <system_error>
#include <thread>

#include "comm/page/input_hold.h"

namespace tessavo {

ForegroundTransfers::ForegroundTransfers(ITransfers& transfers) : transfers_(transfers) {}

bool ForegroundTransfers::SendToTarget(std::span<const std::uint8_t> data, MessageType type) {
    const bool software = type == MessageType::blocks1kWithCrc;
    return run(software ? Activity::sendingSoftware : Activity::sending, blockCount(data.size(), type),
               [&] { return transfers_.SendToTarget(data, type); });
}

bool ForegroundTransfers::ReceiveFromTarget(std::span<std::uint8_t> reply,
                                            std::span<const std::uint8_t> request) {
    return run(Activity::reading, 0, [&] { return transfers_.ReceiveFromTarget(reply, request); });
}

bool ForegroundTransfers::run(Activity activity, std::size_t blocks, const std::function<bool()>& exchange) {
    if (running()) {
        return false;
    }
    activity_ = activity;
    bool success = false;
    {
        const InputHold hold;
        Q_EMIT started(blocks);
        std::atomic<bool> over = false;
        std::thread thread;
        try {
            thread = std::thread([&] {
                success = exchange();
                // Before the loop below is woken: it may answer that and wait again in one go.
                over = true;
                calls_.call([] {});
            });
        } catch (const std::system_error&) {
            // A window that stands still for a while is better than no exchange.
            success = exchange();
            over = true;
        }
        // Not an event loop: one that runs while the program quits would return too early.
        while (!over) {
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        }
        if (thread.joinable()) {
            thread.join();
        }
        // The lines logged before the end.
        QCoreApplication::sendPostedEvents();
        // The loop that runs around this command may have been told to end, and the one above took the
        // notice: it looks again instead of waiting for the next event.
        QAbstractEventDispatcher::instance()->wakeUp();
    }
    activity_ = Activity::none;
    Q_EMIT ended(success);
    return success;
}

}  // namespace tessavo
