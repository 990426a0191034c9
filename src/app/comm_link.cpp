#include "app/comm_link.h"

#include <algorithm>
#include <span>
#include <utility>

namespace tessavo {

namespace {

// Twice what two rounds take, one of which may have begun, with a question for the clip state between them.
constexpr Milliseconds plainImageWait{15000};

}  // namespace

CommLink::CommLink(TuningState& tuning, IMessageBox& boxes, LineMaker makeLine)
    : tuning_(tuning),
      makeLine_(std::move(makeLine)),
      backgroundBoxes_(boxes,
                       [this](int times) { calls_.call([this, times] { Q_EMIT boxRepeated(times); }); }),
      turns_({[&tuning] { return tuning.liveTransferEnabled() && tuning.updatePending(); },
              [this] { return foreground_.running(); }}),
      verdictBoxes_(boxes, turns_),
      commandEngine_(dependenciesFor(LineUser::command, boxes)),
      liveEngine_(dependenciesFor(LineUser::liveMode, boxes)),
      pollEngine_(dependenciesFor(LineUser::clipPoll, backgroundBoxes_)),
      foreground_(commandEngine_),
      background_(tuning, pollEngine_, backgroundBoxes_),
      worker_(
          tuning, liveEngine_, clock_, verdictBoxes_,
          [this](LiveWorker::State state, const ParameterImage& image) { noteWorkerState(state, image); },
          &turns_, &played_) {}

TransferEngine::Dependencies CommLink::dependenciesFor(LineUser user, IMessageBox& boxes) {
    return {.makeLine = makeLine_,
            .clock = clock_,
            .log = *this,
            .boxes = boxes,
            .lock = transferLock_,
            .portName = [this] { return portName(); },
            .progress =
                [this, user](std::size_t done, std::size_t all) {
                    calls_.call([this, user, done, all, at = clock_.now().count()] {
                        Q_EMIT blockSent(user, done, all, at);
                    });
                },
            .ended = [this, user](ExchangeEnd end) { noteExchangeEnd(user, end); },
            .began =
                [this, user] {
                    ++exchanges_;
                    calls_.call([this, user] { Q_EMIT exchangeBegan(user); });
                },
            .portBoxClosed = [this, user] { calls_.call([this, user] { Q_EMIT portBoxClosed(user); }); }};
}

BoxAnswer CommLink::VerdictBoxes::show(std::string_view text, BoxIcon icon, BoxButtons buttons) {
    turns_.setRoundsRest(true);
    const BoxAnswer answer = boxes_.show(text, icon, buttons);
    turns_.setRoundsRest(false);
    return answer;
}

CommLink::~CommLink() {
    shutDown();
}

bool CommLink::startWorker() {
    return worker_.start();
}

void CommLink::shutDown() {
    cancelExchanges();
    worker_.stop();
}

void CommLink::cancelExchanges() {
    turns_.end();
    gate_.end();
    clock_.interrupt();
    for (TransferEngine* engine : {&commandEngine_, &liveEngine_, &pollEngine_}) {
        engine->cancel();
    }
}

std::string CommLink::portName() const {
    const std::lock_guard guard(guard_);
    return portName_;
}

void CommLink::setPortName(const std::string& name) {
    {
        const std::lock_guard guard(guard_);
        if (portName_ == name) {
            return;
        }
        portName_ = name;
    }
    // What another port confirmed says nothing about this one, nor does a transfer that is under way.
    forgetConfirmation();
    forgetRepeatedBoxes();
    Q_EMIT portNameChanged(QString::fromStdString(name));
}

bool CommLink::isConfirmed(const ParameterImage& image) const {
    const auto confirmed = confirmedImage();
    const auto bytesOf = [](const ParameterImage& each) { return std::as_bytes(std::span(&each, 1)); };
    return confirmed && std::ranges::equal(bytesOf(*confirmed), bytesOf(played_.of(image)));
}

bool CommLink::playPlainImage() {
    if (!tuning_.liveMode() || (played_.isPlain() && !gate_.isNeeded())) {
        return true;
    }
    if (foreground_.running()) {
        return false;
    }
    Q_EMIT plainImageNeeded();
    played_.setLoweredSteps(0);
    notePlayedCopy();
    const std::uint64_t rounds = gate_.rounds();
    tuning_.raiseUpdatePending();
    const bool confirmed =
        foreground_.waitFor([&] { return gate_.wait(rounds, plainImageWait); }) && imageIsConfirmed();
    Q_EMIT plainImageEnded(confirmed);
    return confirmed;
}

void CommLink::noteWorkerState(LiveWorker::State state, const ParameterImage& image) {
    live_.note(state, image);
    gate_.note(state, played_.tookPlain());
    liveTransferRuns_ = state == LiveWorker::State::sending;
    calls_.call([this, state] { Q_EMIT workerState(state); });
}

void CommLink::noteExchangeEnd(LineUser user, ExchangeEnd end) {
    if (end != ExchangeEnd::lineBusy) {
        --exchanges_;
    }
    if (end != ExchangeEnd::portNotOpened && end != ExchangeEnd::lineBusy) {
        forgetRepeatedBoxes();
    }
    live_.noteEnd(end);
    if (user == LineUser::clipPoll) {
        // Not when its caller goes on: a box may keep that for a while.
        turns_.endQuestion();
    }
    calls_.call([this, user, end] { Q_EMIT exchangeEnded(user, end); });
}

void CommLink::log(LogKind kind, std::string_view text) {
    calls_.call(
        [this, kind, line = std::string(text)] { Q_EMIT lineLogged(kind, QString::fromStdString(line)); });
}

}  // namespace tessavo
