#include "comm/live_worker.h"

#include <system_error>

#include "comm/set_messages.h"
#include "comm/target_commands.h"
#include "comm/transfer_timing.h"

namespace tessavo {

LiveOutcome sendLiveImage(TransferEngine& engine, IClock& clock, const ParameterImage& image,
                          std::span<std::uint8_t> reply) {
    LiveOutcome outcome;
    outcome.sent = engine.SendToTarget(liveMessage(image), MessageType::blocks4k);
    if (!clock.sleep(timing::pauseBeforeConfirmation)) {
        return outcome;
    }
    outcome.answered =
        engine.ReceiveFromTarget(reply, std::span(&command_code::confirmLiveSet, std::size_t{1}));
    outcome.confirmed = isConfirmation(reply);
    return outcome;
}

LiveWorker::LiveWorker(TuningState& tuning, TransferEngine& engine, IClock& clock, IMessageBox& boxes,
                       Observer observer, LineTurns* turns, PlayedCopy* played)
    : tuning_(tuning),
      engine_(engine),
      clock_(clock),
      boxes_(boxes),
      observer_(std::move(observer)),
      turns_(turns),
      played_(played) {}

LiveWorker::~LiveWorker() {
    stop();
}

bool LiveWorker::start() {
    if (thread_.joinable()) {
        return true;
    }
    stopping_ = false;
    try {
        thread_ = std::thread(&LiveWorker::progressThread, this);
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

void LiveWorker::stop() {
    stopping_ = true;
    if (thread_.joinable()) {
        thread_.join();
    }
}

void LiveWorker::step() {
    const bool due = tuning_.liveTransferEnabled() && tuning_.updatePending();
    if (!due || !takeTurn()) {
        return;
    }
    // The flag is cleared first: an edit made from here on raises it again and is sent next time.
    if (tuning_.takeUpdate()) {
        sendRound();
    }
    endTurn();
}

void LiveWorker::sendRound() {
    // What is sent and what is told of it must be one copy: the image goes on changing.
    const ParameterImage image = played_ != nullptr ? played_->take(tuning_) : tuning_.imageCopy();
    notify(State::sending, image);
    const LiveOutcome outcome = sendLiveImage(engine_, clock_, image, reply_);
    if (ending()) {
        return;
    }
    if (!outcome.sent || !outcome.answered) {
        notify(State::failed, image);
    } else {
        notify(outcome.confirmed ? State::confirmed : State::wrongSet, image);
    }
    // While a box waits for a person the line is free for others.
    endTurn();
    if (!outcome.confirmed) {
        boxes_.showPlain(wrongSetText);
    }
}

void LiveWorker::progressThread() {
    while (!stopping_ && clock_.sleep(timing::workerPeriod)) {
        if (!stopping_) {
            step();
        }
    }
}

void LiveWorker::notify(State state, const ParameterImage& image) {
    if (observer_) {
        observer_(state, image);
    }
}

bool LiveWorker::takeTurn() {
    return turns_ == nullptr || turns_->takeRound([this] { return !ending(); });
}

void LiveWorker::endTurn() {
    if (turns_ != nullptr) {
        turns_->endRound();
    }
}

// At the program's end nobody is left to answer a box about an exchange that was cut short.
bool LiveWorker::ending() {
    return stopping_ || !clock_.sleep(Milliseconds{0});
}

}  // namespace tessavo
