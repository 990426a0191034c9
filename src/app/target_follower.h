#pragma once

#include <QString>
#include <QTime>
#include <cstddef>
#include <optional>

#include "app/status_line.h"
#include "comm/live_worker.h"
#include "comm/page/foreground_transfers.h"
#include "comm/transfer_engine.h"

namespace tessavo {

/// Follows everything that happens between the program and the target and tells in a few words whether what
/// is on the screen is what plays. Knows no widget and no clock.
class TargetFollower {
 public:
    /// What the words depend on besides the events.
    struct Now {
        bool liveMode = false;
        bool updatePending = false;
        bool confirmedAsItStands = false;  ///< the target's last confirmed image is the program's image
    };

    /// Another port starts without a past.
    void setPort(const QString& name);
    void liveModeChanged(bool on);
    void workerState(LiveWorker::State state, QTime at);
    void exchangeEnded(ExchangeEnd end, QTime at);
    void commandStarted(ForegroundTransfers::Activity activity);
    void commandEnded();
    void blockSent(std::size_t done, std::size_t all);
    void portGone(QTime at) { setPresence(Presence::gone, at); }
    /// The same device has come back.
    void portBack(QTime at);
    /// Another device has the port's name now.
    void portReplaced(QTime at) { setPresence(Presence::replaced, at); }
    /// The clip detection's box about the port has come as many times without being shown again; 0: it is
    /// over.
    void boxRepeated(int times) { boxTimes_ = times; }

    [[nodiscard]] TargetStatus status(const Now& now) const;

 private:
    /// How the last exchange failed; the next one that succeeds ends it.
    enum class Trouble { none, noAnswer, portNotOpened };

    /// What became of the port. That it has come is told until a transfer or a command has ended.
    enum class Presence { there, gone, back, replaced };

    void setPresence(Presence presence, QTime at);
    void portIsOld();
    void setTrouble(Trouble trouble, QTime at);
    void forgetSets();
    [[nodiscard]] TargetStatus statusOfTransfers(const Now& now) const;
    [[nodiscard]] QString commandWords() const;
    [[nodiscard]] QString troubleWords() const;

    QString port_;
    ForegroundTransfers::Activity command_ = ForegroundTransfers::Activity::none;
    std::size_t blocksDone_ = 0;
    std::size_t blocks_ = 0;
    bool liveTransfer_ = false;
    Trouble trouble_ = Trouble::none;
    QTime troubleAt_;
    Presence presence_ = Presence::there;
    QTime presenceAt_;
    int boxTimes_ = 0;
    // What the target is known to hold; at most one of the two is valid.
    QTime confirmedAt_;
    QTime wrongSetAt_;
    QTime answeredAt_;
};

}  // namespace tessavo
