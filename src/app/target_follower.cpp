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
    presence_ = Presence::there;
    forgetSets();
    answeredAt_ = {};
}

void TargetFollower::liveModeChanged(bool /*on*/) {
    // What the target holds is asked anew by switching on, and no longer followed by switching off.
    wrongSetAt_ = {};
}

void TargetFollower::workerState(LiveWorker::State state, QTime at) {
    liveTransfer_ = state == LiveWorker::State::sending;
    if (!liveTransfer_) {
        portIsOld();
    }
    switch (state) {
        case LiveWorker::State::sending:
            trouble_ = Trouble::none;
            forgetSets();
            break;
        case LiveWorker::State::confirmed:
            trouble_ = Trouble::none;
            forgetSets();
            confirmedAt_ = at;
            answeredAt_ = at;
            break;
        case LiveWorker::State::wrongSet:
            trouble_ = Trouble::none;
            forgetSets();
            wrongSetAt_ = at;
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
    const bool answered = end == ExchangeEnd::answered;
    if (end != ExchangeEnd::lineBusy && (!answered || presence_ == Presence::replaced)) {
        portIsOld();
    }
    switch (end) {
        case ExchangeEnd::answered:
            // That the target holds another set is not mended by an answer to another question.
            answeredAt_ = at;
            trouble_ = Trouble::none;
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
    if (activity == Activity::sendingSoftware) {
        // What the target plays after a new software is its own affair.
        forgetSets();
    }
}

void TargetFollower::commandEnded() {
    portIsOld();
    command_ = Activity::none;
}

void TargetFollower::blockSent(std::size_t done, std::size_t all) {
    blocksDone_ = done;
    blocks_ = all;
}

void TargetFollower::portBack(QTime at) {
    setPresence(Presence::back, at);
    if (!liveTransfer_ && command_ == Activity::none) {
        // It was the port's. What runs still has to come to its end.
        trouble_ = Trouble::none;
    }
}

TargetStatus TargetFollower::status(const Now& now) const {
    TargetStatus status = statusOfTransfers(now);
    if (presence_ == Presence::gone) {
        // Nothing that waits or runs can come to a good end.
        status.light = Light::trouble;
        status.state = atTime("port gone", presenceAt_);
    } else if (presence_ == Presence::back) {
        const QString back = atTime("port back", presenceAt_);
        status.state = status.state.isEmpty() ? back : back + QStringLiteral(", ") + status.state;
    }
    if (status.light == Light::trouble && boxTimes_ > 1) {
        status.state += QStringLiteral(", clip detection: \"%1\" %2 times")
                            .arg(QString::fromUtf8(cannotOpenPortText.data(),
                                                   static_cast<qsizetype>(cannotOpenPortText.size())))
                            .arg(boxTimes_);
    }
    return status;
}

TargetStatus TargetFollower::statusOfTransfers(const Now& now) const {
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
    } else if (presence_ == Presence::replaced) {
        tell(Light::trouble, atTime("another device", presenceAt_));
    } else if (trouble_ != Trouble::none) {
        tell(Light::trouble, troubleWords());
    } else if (wrongSetAt_.isValid()) {
        tell(Light::trouble, atTime("wrong set", wrongSetAt_));
    } else if (!now.liveMode) {
        tell(Light::off, answeredAt_.isValid() ? atTime("last answer", answeredAt_) : QString());
    } else if (now.confirmedAsItStands && confirmedAt_.isValid()) {
        tell(Light::confirmed, atTime("confirmed", confirmedAt_));
    } else {
        // A slider is being dragged, another set was chosen, or the target may have lost what it had: the
        // next edit brings it there.
        tell(Light::sending, QStringLiteral("not sent"));
    }
    return status;
}

// There is something newer to tell than that the port came.
void TargetFollower::portIsOld() {
    if (presence_ != Presence::gone) {
        presence_ = Presence::there;
    }
}

void TargetFollower::setPresence(Presence presence, QTime at) {
    presence_ = presence;
    presenceAt_ = at;
}

void TargetFollower::setTrouble(Trouble trouble, QTime at) {
    trouble_ = trouble;
    troubleAt_ = at;
    // A target that did not answer may have been without power: its memory is not what it was.
    confirmedAt_ = {};
}

void TargetFollower::forgetSets() {
    confirmedAt_ = {};
    wrongSetAt_ = {};
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
    return atTime(trouble_ == Trouble::portNotOpened ? "port not opened" : "no answer", troubleAt_);
}

}  // namespace tessavo
