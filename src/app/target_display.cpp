#include "app/target_display.h"

#include <QTime>

#include "app/comm_link.h"
#include "app/status_line.h"
#include "app/tessavo_view.h"

namespace tessavo {

TargetDisplay::TargetDisplay(const Dependencies& dependencies)
    : dependencies_(dependencies), portFollower_(dependencies.tuning, dependencies.link, dependencies.ports) {
    follow(&dependencies_.view, &CTessavoView::liveModeChanged,
           [this](bool on) { follower_.liveModeChanged(on); });
    followLine();
    followPort();
    followCommands();
    dependencies_.tuning.setChangeListener([this] {
        show();
        dependencies_.view.tuningChanged();
    });
    follower_.setPort(QString::fromStdString(dependencies_.link.portName()));
    show();
}

TargetDisplay::~TargetDisplay() {
    dependencies_.tuning.setChangeListener({});
}

/// Every event is told to the follower, and then the pane shows what it makes of it.
template <typename Sender, typename Signal, typename Tell>
void TargetDisplay::follow(Sender* sender, Signal signal, Tell tell) {
    connect(sender, signal, this, [this, tell](auto... values) {
        tell(values...);
        show();
    });
}

void TargetDisplay::followLine() {
    CommLink* const link = &dependencies_.link;
    follow(link, &CommLink::portNameChanged, [this](const QString& name) { follower_.setPort(name); });
    follow(link, &CommLink::workerState,
           [this](LiveWorker::State state) { follower_.workerState(state, QTime::currentTime()); });
    follow(link, &CommLink::playedCopyChanged, [] {});
    follow(link, &CommLink::exchangeBegan, [this](LineUser user) { follower_.exchangeBegan(user); });
    follow(link, &CommLink::exchangeEnded, [this](LineUser user, ExchangeEnd end) {
        follower_.exchangeEnded(user, end, QTime::currentTime());
    });
    follow(link, &CommLink::boxRepeated, [this](int times) { follower_.boxRepeated(times); });
    follow(link, &CommLink::portBoxClosed, [this](LineUser user) { follower_.portBoxClosed(user); });
    follow(link, &CommLink::commandReported,
           [this](const CommandReport& report) { follower_.commandReported(report, QTime::currentTime()); });
    follow(link, &CommLink::blockSent, [this](LineUser user, qulonglong done, qulonglong all, qlonglong) {
        follower_.blockSent(user, done, all);
    });
}

void TargetDisplay::followPort() {
    connect(&dependencies_.link, &CommLink::exchangeEnded, &portFollower_,
            [this](LineUser /*user*/, ExchangeEnd end) { portFollower_.exchangeEnded(end); });
    follow(&portFollower_, &PortFollower::portGone, [this] { follower_.portGone(QTime::currentTime()); });
    follow(&portFollower_, &PortFollower::portBack, [this] { follower_.portBack(QTime::currentTime()); });
    follow(&portFollower_, &PortFollower::portReplaced,
           [this] { follower_.portReplaced(QTime::currentTime()); });
}

void TargetDisplay::followCommands() {
    ForegroundTransfers* const commands = &dependencies_.link.foreground();
    follow(commands, &ForegroundTransfers::started, [this, commands](qulonglong) {
        if (commands->activity() == ForegroundTransfers::Activity::sendingSoftware) {
            dependencies_.link.forgetConfirmation();
        }
        follower_.commandStarted(commands->activity());
    });
    follow(commands, &ForegroundTransfers::ended, [this](bool) { follower_.commandEnded(); });
}

void TargetDisplay::show() {
    const TuningState& tuning = dependencies_.tuning;
    dependencies_.status.setTarget(
        follower_.status({.liveMode = tuning.liveMode(),
                          .updatePending = tuning.updatePending(),
                          .confirmedAsItStands = dependencies_.link.imageIsConfirmed(),
                          .levelMatched = !dependencies_.link.played().isPlain()}));
}

}  // namespace tessavo
