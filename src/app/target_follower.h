#pragma once

#include <QString>
#include <QTime>
#include <cstddef>
#include <optional>

#include "app/status_line.h"
#include "comm/line_turns.h"
#include "comm/live_worker.h"
#include "comm/page/foreground_transfers.h"
#include "comm/target_commands.h"
#include "comm/transfer_engine.h"

namespace tessavo {

/// Follows everything that happens between the program and the target and tells in a few words whether what
/// is on the screen is what plays. Knows no widget and no clock.
class TargetFollower {
 public:
    /// What the words depend on besides the events.
    struct Context {
        bool liveMode = false;
        bool updatePending = false;
        bool confirmedAsItStands =
            false;                  ///< the target's last confirmed image is the one that is to play now
        bool levelMatched = false;  ///< that is a level matched copy and not the program's image
    };

    /// Another port starts without a past.
    void setPort(const QString& name);
    void liveModeChanged(bool on);
    void workerState(LiveWorker::State state, QTime at);
    void exchangeBegan(LineUser user);
    void exchangeEnded(LineUser user, ExchangeEnd end, QTime at);
    void portBoxClosed(LineUser user);
    void commandStarted(ForegroundTransfers::Activity activity);
    void commandEnded();
    /// Follows the end of the command's exchange.
    void commandReported(const CommandReport& report, QTime at);
    void blockSent(LineUser user, std::size_t done, std::size_t all);
    void portGone(QTime at) { setPresence(Presence::gone, at); }
    /// The same device has come back.
    void portBack(QTime at);
    /// Another device has the port's name now.
    void portReplaced(QTime at) { setPresence(Presence::replaced, at); }
    /// The clip detection's box about the port has come as many times without being shown again; 0: it is
    /// over.
    void boxRepeated(int times) { boxTimes_ = times; }

    [[nodiscard]] TargetStatus status(const Context& context) const;

 private:
    /// How an exchange failed, and when.
    struct Failure {
        ExchangeEnd end;
        QTime at;
    };
    /// What a person's last command came to. It stays until the person does something else with the target:
    /// polls and edits that go on beside it say nothing about it.
    struct Notice {
        QString words;
        bool failed = false;
    };
    /// What would be told without a notice.
    struct Telling {
        TargetStatus::Light light;
        QString words;
        bool resting = false;  ///< nothing is under way
    };

    /// What became of the port. That it has come is told until a transfer or a command has ended.
    enum class Presence { there, gone, back, replaced };

    void setPresence(Presence presence, QTime at);
    void portIsOld();
    /// Puts what became of the port before, or in the place of, what is told without it.
    void tellPort(TargetStatus& status) const;
    void setTrouble(const Failure& failure);
    void forgetSets();
    [[nodiscard]] Telling telling(const Context& context) const;
    [[nodiscard]] Telling commandTelling() const;

    QString port_;
    ForegroundTransfers::Activity command_ = ForegroundTransfers::Activity::none;
    std::optional<LineUser> lineHeldBy_;
    std::optional<ExchangeEnd> commandEnd_;
    std::size_t blocksDone_ = 0;
    std::size_t blocks_ = 0;
    bool liveTransfer_ = false;
    std::optional<Failure> liveFailure_;  ///< of the live transfer under way
    std::optional<Failure> trouble_;      ///< of the last exchange; the next one that succeeds ends it
    std::optional<Notice> notice_;
    int portBoxes_ = 0;  ///< open ones about a port that did not open
    QTime portNotOpenedAt_;
    Presence presence_ = Presence::there;
    QTime presenceAt_;
    int boxTimes_ = 0;
    // What the target is known to hold; at most one of the two is valid.
    QTime confirmedAt_;
    QTime wrongSetAt_;
    QTime answeredAt_;
};

}  // namespace tessavo
