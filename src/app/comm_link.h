#pragma once

#include <QObject>
#include <QString>
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "app/folded_boxes.h"
#include "base/semaphore.h"
#include "comm/clock.h"
#include "comm/comm_log.h"
#include "comm/line_turns.h"
#include "comm/live_record.h"
#include "comm/live_worker.h"
#include "comm/page/foreground_transfers.h"
#include "comm/plain_image_gate.h"
#include "comm/played_copy.h"
#include "comm/serial_port_line.h"
#include "comm/target_commands.h"
#include "comm/transfer_engine.h"
#include "controls/ui_calls.h"

namespace tessavo {

/// The line to the target: its maker, clock, lock, engines, commands and the live worker, tied together for
/// the program.
///
/// Lives on the user-interface thread. Log lines, progress and states of the worker come out as signals
/// there, in the order in which they happened, whichever thread caused them: each is emitted on that thread.
class CommLink : public QObject, private ICommLog {
    Q_OBJECT

 public:
    /// \param tuning, boxes outlive the link
    /// \param makeLine the line of each exchange; called on the exchange's thread
    CommLink(TuningState& tuning, IMessageBox& boxes, LineMaker makeLine = makeSerialPortLine);
    ~CommLink() override;

    /// \return false when the worker's thread could not be created
    bool startWorker();
    /// Ends the worker and any exchange at once; called at exit. Any number of times.
    void shutDown();
    /// Cuts short every running exchange and each later one; does not wait for their end. For a program that
    /// is about to end: the line is not usable afterwards.
    void cancelExchanges();

    /// The chosen port, as listPorts() gives it; empty for none. Any thread.
    [[nodiscard]] std::string portName() const;
    /// Every later exchange uses this port; one that runs goes on with its own.
    void setPortName(const std::string& name);

    /// Exchanges of the commands that a person starts.
    [[nodiscard]] ForegroundTransfers& foreground() { return foreground_; }
    /// Commands of a background thread, run on the caller's thread.
    [[nodiscard]] TargetCommands& background() { return background_; }

    /// Waits until the clip state may be asked for: no command and no live transfer needs the line, or a
    /// question is due between two of them. A question by background() has to follow. Any thread.
    /// \param wanted asked while it waits; false gives up
    /// \return false when it was given up
    bool takeTurnForPoll(const LineTurns::Wanted& wanted) { return turns_.takeQuestion(wanted); }
    /// True from the start of a live transfer until its result is told. Any thread.
    [[nodiscard]] bool liveTransferRuns() const { return liveTransferRuns_; }
    /// True while any exchange has the port, a background thread's included; exchangeEnded() is emitted once
    /// it is false again. Any thread.
    [[nodiscard]] bool exchangeRuns() const { return exchanges_ > 0; }
    /// What the copy that Live Mode sends is made with. Whoever changes its terms raises `updatePending`, where the copy
    /// is to be sent, and calls notePlayedCopy().
    [[nodiscard]] PlayedCopy& played() { return played_; }
    [[nodiscard]] const PlayedCopy& played() const { return played_; }
    /// The terms of the played copy have changed.
    void notePlayedCopy() { Q_EMIT playedCopyChanged(); }
    /// Sees to it that the target holds the image as it stands, and not a copy that plays otherwise: to be called
    /// before the target is told to save what it holds. Where neither the terms nor an earlier copy are in the way, or
    /// Live Mode is off, nothing happens. Otherwise the terms are taken away, the image is sent and its confirmation
    /// awaited, while the window lives and further input waits.
    /// \return false when the target has not confirmed it
    bool playPlainImage();

    /// The copy that the target has confirmed last; nothing before that and after a later exchange of any
    /// kind that failed: the target may have lost its memory meanwhile.
    [[nodiscard]] std::optional<ParameterImage> confirmedImage() const { return live_.confirmed(); }
    /// Whether the target has confirmed exactly the copy that belongs to this image now.
    [[nodiscard]] bool isConfirmed(const ParameterImage& image) const;
    /// The same for the program's image as it stands.
    [[nodiscard]] bool imageIsConfirmed() const { return isConfirmed(tuning_.image()); }
    /// From now on nothing counts as confirmed until the next confirmation.
    void forgetConfirmation() { live_.forget(); }
    /// The next box of a background command is shown, even if it repeats the one before. Another port and an
    /// exchange that gets further do the same.
    void forgetRepeatedBoxes() { backgroundBoxes_.forget(); }

 Q_SIGNALS:
    void portNameChanged(const QString& name);
    void lineLogged(tessavo::LogKind kind, const QString& text);
    /// \param atMs when the target took the block, by the exchange's clock
    void blockSent(tessavo::LineUser user, qulonglong done, qulonglong all, qlonglong atMs);
    /// An exchange has the line to itself; exchangeEnded() follows.
    void exchangeBegan(tessavo::LineUser user);
    /// Without exchangeBegan() where the line was busy. Before the box about a port that did not open.
    void exchangeEnded(tessavo::LineUser user, tessavo::ExchangeEnd end);
    /// The box about a port that did not open is closed.
    void portBoxClosed(tessavo::LineUser user);
    void workerState(tessavo::LiveWorker::State state);
    void playedCopyChanged();
    /// The terms of the played copy are taken away, because what the target holds is to be saved.
    void plainImageNeeded();
    /// What came of that.
    void plainImageEnded(bool confirmed);
    /// A box of a background command is not shown, because it repeats the one before.
    /// \param times it has come, the shown one included; 0 from when they are forgotten
    void boxRepeated(int times);
    /// What a person's command came to. Emitted by whoever runs the commands.
    void commandReported(const tessavo::CommandReport& report);

 private:
    void log(LogKind kind, std::string_view text) override;
    [[nodiscard]] TransferEngine::Dependencies dependenciesFor(LineUser user, IMessageBox& boxes);
    void noteWorkerState(LiveWorker::State state, const ParameterImage& image);
    void noteExchangeEnd(LineUser user, ExchangeEnd end);

    /// The live worker's box about what a round came to: while it is open nothing is sent, and the clip state
    /// is asked for as if no edit waited.
    class VerdictBoxes : public IMessageBox {
     public:
        VerdictBoxes(IMessageBox& boxes, LineTurns& turns) : boxes_(boxes), turns_(turns) {}
        BoxAnswer show(std::string_view text, BoxIcon icon, BoxButtons buttons) override;

     private:
        IMessageBox& boxes_;
        LineTurns& turns_;
    };

    UiCalls calls_;
    TuningState& tuning_;
    mutable std::mutex guard_;
    std::string portName_;
    LiveRecord live_;
    PlayedCopy played_;
    PlainImageGate gate_;
    std::atomic<bool> liveTransferRuns_ = false;
    std::atomic<int> exchanges_ = 0;  ///< one may begin before the end of the one before it is told
    SystemClock clock_;
    LineMaker makeLine_;
    CSemaphore transferLock_;
    FoldedBoxes backgroundBoxes_;
    LineTurns turns_;
    VerdictBoxes verdictBoxes_;
    // One engine for each user of the line, all under one lock: what an engine tells is known to be its
    // user's.
    TransferEngine commandEngine_;
    TransferEngine liveEngine_;
    TransferEngine pollEngine_;
    ForegroundTransfers foreground_;
    TargetCommands background_;
    LiveWorker worker_;
};

}  // namespace tessavo
