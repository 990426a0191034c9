#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <span>
#include <thread>

#include "base/message_box.h"
#include "comm/clock.h"
#include "comm/framing.h"
#include "comm/line_turns.h"
#include "comm/played_copy.h"
#include "comm/set_messages.h"
#include "comm/transfer_engine.h"
#include "params/tuning_state.h"

namespace tessavo {

/// What one live transfer came to.
struct LiveOutcome {
    bool sent = false;       ///< the target took the image
    bool answered = false;   ///< the target answered the confirmation request
    bool confirmed = false;  ///< the reply buffer reads as a confirmation
};

/// Sends an image with its digest and asks the target to confirm it.
///
/// The confirmation is asked for after a failed send too, but not when the pause in front of it is cut short.
/// `reply` is at least 4096 bytes and kept by the caller between calls: when no valid reply arrives it stays
/// as it was, and the verdict reads what it then holds.
LiveOutcome sendLiveImage(TransferEngine& engine, IClock& clock, const ParameterImage& image,
                          std::span<std::uint8_t> reply);

/// Text of the box shown when the target did not confirm.
inline constexpr std::string_view wrongSetText = "Target received wrong set";

/// The background thread that keeps the target in step while Live Mode is on.
///
/// Looks every 250 ms whether an update is pending, sends the image, and shows `wrongSetText` unless the
/// reply buffer then reads as a confirmation. The box is shown on the worker's thread, and not once the
/// program ends.
class LiveWorker {
 public:
    /// `idle` stands before the first transfer and is never told. `failed`: one of the two exchanges failed;
    /// the engine has told why.
    enum class State : std::uint8_t { idle, sending, confirmed, wrongSet, failed };
    /// Told `sending` and the result of each transfer, with the very copy of the image that it sends, on the
    /// worker's thread, before any box. May be empty.
    using Observer = std::function<void(State, const ParameterImage&)>;

    /// Everything outlives the worker.
    /// \param turns in which rounds are sent; null where nobody else asks for one
    /// \param played makes the copy that is sent; null where that is always the image itself
    LiveWorker(TuningState& tuning, TransferEngine& engine, IClock& clock, IMessageBox& boxes,
               Observer observer = {}, LineTurns* turns = nullptr, PlayedCopy* played = nullptr);
    /// Stops and joins.
    ~LiveWorker();
    LiveWorker(const LiveWorker&) = delete;
    LiveWorker& operator=(const LiveWorker&) = delete;

    /// Does nothing when the thread runs already.
    /// \return false when the thread could not be created
    bool start();

    /// Asks the thread to end and waits for it. Interrupt the clock and cancel the engine first, in this
    /// order, or a running exchange is waited for, and a box may be shown for it.
    void stop();

    /// One look at the flags and, when an update is pending, one transfer. The thread calls it; tests may
    /// call it without a thread.
    void step();

 private:
    void progressThread();
    /// One transfer, with its box.
    void sendRound();
    void notify(State state, const ParameterImage& image);
    [[nodiscard]] bool takeTurn();
    void endTurn();
    [[nodiscard]] bool ending();

    TuningState& tuning_;
    TransferEngine& engine_;
    IClock& clock_;
    IMessageBox& boxes_;
    Observer observer_;
    LineTurns* turns_;
    PlayedCopy* played_;
    std::array<std::uint8_t, maximumFrameSize> reply_{};
    std::atomic<bool> stopping_ = false;
    std::thread thread_;
};

}  // namespace tessavo
