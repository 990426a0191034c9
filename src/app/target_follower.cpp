#include "app/target_follower.h"

namespace tessavo {

namespace {

using Activity = ForegroundTransfers::Activity;
using Light = TargetStatus::Light;

QString atTime(const char* words, QTime time) {
    return QLatin1String(words) + time.toString(QStringLiteral(" HH:mm:ss"));
}

}  // namespace

void TargetFollower::setPort(const QString& name) {
    if (name == port_) {
        return;
    }
    port_ = name;
    trouble_ = Trouble::none;
    confirmedAt_ = {};
    answeredAt_ = {};
}

void TargetFollower::liveModeChanged(bool /*on*/) {
    // What the target holds is asked anew by switching on, and no longer followed by switching off.
    if (trouble_ == Trouble::wrongSet) {
        trouble_ = Trouble::none;
    }
}

void TargetFollower::workerState(LiveWorker::State state, QTime at) {
    liveTransfer_ = state == LiveWorker::State::sending;
    switch (state) {
        case LiveWorker::State::confirmed:
            confirmedAt_ = at;
            answeredAt_ = at;
            [[fallthrough]];
        case LiveWorker::State::sending:
            trouble_ = Trouble::none;
            break;
        case LiveWorker::State::wrongSet:
            setTrouble(Trouble::wrongSet, at);
            break;
        case LiveWorker::State::noAnswer:
            // Why there was none is known already when the port was the reason.
            if (trouble_ != Trouble::portNotOpened) {
                setTrouble(Trouble::noAnswer, at);
            }
            break;
        case LiveWorker::State::idle:
            break;
    }
}

void TargetFollower::exchangeEnded(ExchangeEnd end, QTime at) {
    switch (end) {
        case ExchangeEnd::answered:
            answeredAt_ = at;
            // That the target holds another set is not mended by an answer to another question.
            if (trouble_ != Trouble::wrongSet) {
                trouble_ = Trouble::none;
            }
            break;
        case ExchangeEnd::noAnswer:
            setTrouble(Trouble::noAnswer, at);
            break;
        case ExchangeEnd::portNotOpened:
            setTrouble(Trouble::portNotOpened, at);
            break;
        case ExchangeEnd::lineBusy:
            break;
    }
}

void TargetFollower::commandStarted(Activity activity) {
    command_ = activity;
    blocksDone_ = 0;
    blocks_ = 0;
}

void TargetFollower::commandEnded() {
    command_ = Activity::none;
}

void TargetFollower::blockSent(std::size_t done, std::size_t all) {
    blocksDone_ = done;
    blocks_ = all;
}

TargetStatus TargetFollower::status(const Now& now) const {
    TargetStatus status;
    status.port = port_;
    status.liveMode = now.liveMode;
    const auto tell = [&status](Light light, const QString& words) {
        status.light = light;
        status.state = words;
    };
    if (command_ != Activity::none) {
        tell(Light::sending, commandWords());
    } else if (liveTransfer_ && trouble_ == Trouble::none) {
        tell(Light::sending, QStringLiteral("sending"));
    } else if (now.liveMode && now.updatePending) {
        tell(Light::sending, QStringLiteral("waiting"));
    } else if (trouble_ != Trouble::none) {
        tell(Light::trouble, troubleWords());
    } else if (!now.liveMode) {
        tell(Light::off, answeredAt_.isValid() ? atTime("last answer", answeredAt_) : QString());
    } else if (now.confirmedAsItStands) {
        tell(Light::confirmed, atTime("confirmed", confirmedAt_));
    } else {
        // A slider is being dragged, or another set was chosen: the next edit brings it to the target.
        tell(Light::sending, QStringLiteral("not sent"));
    }
    return status;
}

void TargetFollower::setTrouble(Trouble trouble, QTime at) {
    trouble_ = trouble;
    troubleAt_ = at;
}

QString TargetFollower::commandWords() const {
    switch (command_) {
        case Activity::reading:
            return QStringLiteral("reading");
        case Activity::sendingSoftware:
            return blocks_ == 0
                       ? QStringLiteral("sending image")
                       : QStringLiteral("sending image, block %1 of %2").arg(blocksDone_).arg(blocks_);
        default:
            return QStringLiteral("sending");
    }
}

QString TargetFollower::troubleWords() const {
    switch (trouble_) {
        case Trouble::portNotOpened:
            return atTime("port not opened", troubleAt_);
        case Trouble::wrongSet:
            return atTime("wrong set", troubleAt_);
        default:
            return atTime("no answer", troubleAt_);
    }
}

}  // namespace tessavo
