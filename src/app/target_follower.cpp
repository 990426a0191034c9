#include "app/target_follower.h"

#include <algorithm>
#include <array>

namespace tessavo {

namespace {

using Activity = ForegroundTransfers::Activity;
using Light = TargetStatus::Light;

QString atTime(const QString& words, QTime time) {
    return words + time.toString(QStringLiteral(" HH:mm:ss"));
}

QString reason(ExchangeEnd end) {
    switch (end) {
        case ExchangeEnd::refused:
            return QStringLiteral("refused");
        case ExchangeEnd::damagedAnswer:
            return QStringLiteral("damaged answer");
        case ExchangeEnd::notDisconnected:
            return QStringLiteral("not disconnected");
        case ExchangeEnd::portNotOpened:
            return QStringLiteral("port not opened");
        case ExchangeEnd::lineBusy:
            return QStringLiteral("line busy");
        case ExchangeEnd::noAnswer:
        case ExchangeEnd::answered:
            break;
    }
    return QStringLiteral("no answer");
}

// What the target was told before it fell silent it may have done all the same, and blocks that it took it
// has, though it refused a later one.
bool surelyWithoutEffect(ExchangeEnd end, std::size_t blocksTaken) {
    return blocksTaken == 0 &&
           (end == ExchangeEnd::lineBusy || end == ExchangeEnd::portNotOpened || end == ExchangeEnd::refused);
}

/// What the status line tells of a command. Those for a set begin with its name.
struct CommandWords {
    Command command;
    const char* subject;  ///< null for a command for a set
    const char* done;
    const char* failed;
    const char* uncertain;  ///< failed, but perhaps not without effect
};

constexpr auto commandWords = std::to_array<CommandWords>({
    {Command::saveSet, nullptr, " saved", " not saved", " may not be saved"},
    {Command::readSet, nullptr, " read", " not read", " not read"},
    {Command::readVersions, "versions", " read", " not read", " not read"},
    {Command::sendSoftware, "software image", " sent", " not sent", " may be incomplete"},
});

QString wordsOf(const CommandReport& report, const char* CommandWords::*outcome) {
    const CommandWords& words = commandWords.at(static_cast<std::size_t>(report.command));
    const QString subject = words.subject != nullptr ? QLatin1String(words.subject)
                            : report.targetSet == 0  ? QStringLiteral("default set")
                                                     : QStringLiteral("set %1").arg(report.targetSet);
    return subject + QLatin1String(words.*outcome);
}

constexpr bool everyCommandHasItsWords() {
    if (commandWords.size() != static_cast<std::size_t>(Command::count)) {
        return false;
    }
    for (std::size_t i = 0; i < commandWords.size(); ++i) {
        if (commandWords[i].command != static_cast<Command>(i)) {
            return false;
        }
    }
    return true;
}

static_assert(everyCommandHasItsWords());

}  // namespace

void TargetFollower::setPort(const QString& name) {
    if (name == port_) {
        return;
    }
    port_ = name;
    trouble_.reset();
    notice_.reset();
    presence_ = Presence::there;
    forgetSets();
    answeredAt_ = {};
}

void TargetFollower::liveModeChanged(bool /*on*/) {
    // What the target holds is asked anew by switching on, and no longer followed by switching off.
    wrongSetAt_ = {};
    notice_.reset();
}

void TargetFollower::workerState(LiveWorker::State state, QTime at) {
    liveTransfer_ = state == LiveWorker::State::sending;
    if (!liveTransfer_) {
        portIsOld();
    }
    switch (state) {
        case LiveWorker::State::sending:
            trouble_.reset();
            liveFailure_.reset();
            if (notice_ && !notice_->failed) {
                notice_.reset();
            }
            forgetSets();
            break;
        case LiveWorker::State::confirmed:
            trouble_.reset();
            forgetSets();
            confirmedAt_ = at;
            answeredAt_ = at;
            break;
        case LiveWorker::State::wrongSet:
            trouble_.reset();
            forgetSets();
            wrongSetAt_ = at;
            break;
        case LiveWorker::State::failed:
            // Of its two exchanges the second may have succeeded: that does not mend the first.
            setTrouble(liveFailure_.value_or(Failure{ExchangeEnd::noAnswer, at}));
            break;
        case LiveWorker::State::idle:
            break;
    }
}

void TargetFollower::exchangeBegan(LineUser user) {
    lineHeldBy_ = user;
}

void TargetFollower::exchangeEnded(LineUser user, ExchangeEnd end, QTime at) {
    if (end != ExchangeEnd::lineBusy) {
        lineHeldBy_.reset();
        if (end != ExchangeEnd::answered || presence_ == Presence::replaced) {
            portIsOld();
        }
    }
    if (user == LineUser::command) {
        commandEnd_ = end;
    }
    if (end == ExchangeEnd::answered) {
        // That the target holds another set is not mended by an answer to another question.
        answeredAt_ = at;
        trouble_.reset();
        return;
    }
    if (user == LineUser::liveMode) {
        liveFailure_ = Failure{end, at};
    }
    if (end == ExchangeEnd::portNotOpened) {
        ++portBoxes_;
        portNotOpenedAt_ = at;
    }
    if (end != ExchangeEnd::lineBusy) {
        setTrouble({end, at});
    }
}

void TargetFollower::portBoxClosed(LineUser /*user*/) {
    portBoxes_ = std::max(portBoxes_ - 1, 0);
}

void TargetFollower::commandStarted(Activity activity) {
    command_ = activity;
    commandEnd_.reset();
    notice_.reset();
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

void TargetFollower::commandReported(const CommandReport& report, QTime at) {
    if (!commandEnd_) {
        return;
    }
    const bool certain = surelyWithoutEffect(*commandEnd_, blocksDone_);
    const QString failed = wordsOf(report, certain ? &CommandWords::failed : &CommandWords::uncertain);
    switch (report.result) {
        case CommandReport::Result::done:
            notice_ = Notice{atTime(wordsOf(report, &CommandWords::done), at), false};
            return;
        case CommandReport::Result::wrongDigest:
            notice_ = Notice{atTime(QStringLiteral("checksum failed: ") + failed, at), true};
            return;
        case CommandReport::Result::exchangeFailed:
            break;
    }
    notice_ = Notice{atTime(reason(*commandEnd_) + QStringLiteral(": ") + failed, at), true};
    if (*commandEnd_ != ExchangeEnd::lineBusy) {
        // The notice tells it, and stays longer.
        trouble_.reset();
    }
}

void TargetFollower::blockSent(LineUser user, std::size_t done, std::size_t all) {
    if (user == LineUser::command) {
        blocksDone_ = done;
        blocks_ = all;
    }
}

void TargetFollower::portBack(QTime at) {
    setPresence(Presence::back, at);
    if (!liveTransfer_ && command_ == Activity::none) {
        // It was the port's. What runs still has to come to its end.
        trouble_.reset();
    }
}

TargetStatus TargetFollower::status(const Context& context) const {
    Telling told = telling(context);
    if (notice_ && notice_->failed) {
        const bool alone = told.light == Light::off || told.words.isEmpty();
        told.words = alone ? notice_->words : notice_->words + QStringLiteral(", ") + told.words;
        told.light = Light::trouble;
    } else if (notice_ && told.resting) {
        // Any answer since then tells no more than the command's own.
        const bool alone = told.light == Light::off || told.words.isEmpty();
        told.words = alone ? notice_->words : told.words + QStringLiteral(", ") + notice_->words;
    }
    TargetStatus status;
    status.port = port_;
    status.liveMode = context.liveMode;
    status.light = told.light;
    status.state = told.words;
    tellPort(status);
    return status;
}

void TargetFollower::tellPort(TargetStatus& status) const {
    if (presence_ == Presence::gone) {
        // Nothing that waits or runs can come to a good end.
        status.light = TargetStatus::Light::trouble;
        status.state = atTime(QStringLiteral("port gone"), presenceAt_);
    } else if (presence_ == Presence::back) {
        const QString back = atTime(QStringLiteral("port back"), presenceAt_);
        status.state = status.state.isEmpty() ? back : back + QStringLiteral(", ") + status.state;
    }
    if (status.light == TargetStatus::Light::trouble && boxTimes_ > 1) {
        status.state += QStringLiteral(", clip detection: \"%1\" %2 times")
                            .arg(QString::fromUtf8(cannotOpenPortText.data(),
                                                   static_cast<qsizetype>(cannotOpenPortText.size())))
                            .arg(boxTimes_);
    }
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

TargetFollower::Telling TargetFollower::telling(const Context& context) const {
    if (portBoxes_ > 0) {
        // Whoever has shown the box waits for its answer and is doing nothing.
        return {Light::trouble, atTime(reason(ExchangeEnd::portNotOpened), portNotOpenedAt_)};
    }
    // An answered command is told as running until its report, which says what it has done.
    if (command_ != Activity::none && commandEnd_.value_or(ExchangeEnd::answered) == ExchangeEnd::answered) {
        return commandTelling();
    }
    if (liveTransfer_ && !trouble_) {
        return {Light::sending, QStringLiteral("sending")};
    }
    if (context.liveMode && context.updatePending) {
        return {Light::sending, QStringLiteral("waiting")};
    }
    if (presence_ == Presence::replaced) {
        return {Light::trouble, atTime(QStringLiteral("another device"), presenceAt_), true};
    }
    if (trouble_) {
        // Only an edit that has waited in vain makes a busy line a trouble.
        const bool busy = trouble_->end == ExchangeEnd::lineBusy;
        return {
            Light::trouble,
            atTime(busy ? QStringLiteral("line busy: set not sent") : reason(trouble_->end), trouble_->at),
            true};
    }
    if (wrongSetAt_.isValid()) {
        return {Light::trouble, atTime(QStringLiteral("wrong set"), wrongSetAt_), true};
    }
    if (!context.liveMode) {
        return {Light::off,
                answeredAt_.isValid() ? atTime(QStringLiteral("last answer"), answeredAt_) : QString(), true};
    }
    if (context.confirmedAsItStands && confirmedAt_.isValid()) {
        return {Light::confirmed,
                atTime(context.levelMatched ? QStringLiteral("confirmed, level matched")
                                            : QStringLiteral("confirmed"),
                       confirmedAt_),
                true};
    }
    // A slider is being dragged, another set was chosen, or the target may have lost what it had: the next
    // edit brings it there.
    return {Light::sending, QStringLiteral("not sent"), true};
}

TargetFollower::Telling TargetFollower::commandTelling() const {
    if (!commandEnd_ && lineHeldBy_ == LineUser::liveMode) {
        return {Light::sending, QStringLiteral("sending")};
    }
    if (!commandEnd_ && lineHeldBy_ == LineUser::clipPoll) {
        return {Light::sending, QStringLiteral("waiting")};
    }
    switch (command_) {
        case Activity::reading:
            return {Light::sending, QStringLiteral("reading")};
        case Activity::sendingSoftware:
            return {Light::sending,
                    blocks_ == 0
                        ? QStringLiteral("sending image")
                        : QStringLiteral("sending image, block %1 of %2").arg(blocksDone_).arg(blocks_)};
        default:
            return {Light::sending, QStringLiteral("sending")};
    }
}

void TargetFollower::setTrouble(const Failure& failure) {
    trouble_ = failure;
    // A target that did not answer may have been without power: its memory is not what it was.
    if (failure.end != ExchangeEnd::lineBusy) {
        confirmedAt_ = {};
    }
}

void TargetFollower::forgetSets() {
    confirmedAt_ = {};
    wrongSetAt_ = {};
}

}  // namespace tessavo
