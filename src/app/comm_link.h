#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <mutex>
#include <string>

#include "comm/clock.h"
#include "comm/comm_log.h"
#include "comm/live_worker.h"
#include "comm/serial.h"
#include "comm/target_commands.h"
#include "comm/transfer_engine.h"
#include "params/timed_lock.h"

namespace tessavo {

/// The line to the target: port, clock, lock, engine, commands and the live worker, tied together for the
/// program.
///
/// Lives on the user-interface thread. Log lines, progress and states of the worker come out as signals
/// there, in the order in which they happened, whichever thread caused them.
class CommLink : public QObject, private ICommLog {
    Q_OBJECT

 public:
    CommLink(TuningState& tuning, IMessageBox& boxes);
    ~CommLink() override;

    /// \return false when the worker's thread could not be created
    bool startWorker();
    /// Ends the worker and any exchange at once; called at exit.
    void shutDown();

    [[nodiscard]] std::string portName() const;
    void setPortName(const std::string& name);

    [[nodiscard]] TransferEngine& engine() { return engine_; }
    [[nodiscard]] TargetCommands& commands() { return commands_; }

 signals:
    void portNameChanged(const QString& name);
    void lineLogged(tessavo::LogKind kind, const QString& text);
    void blockSent(qulonglong done, qulonglong all);
    void workerState(tessavo::LiveWorker::State state);

 private:
    void log(LogKind kind, std::string_view text) override;

    mutable std::mutex portGuard_;
    std::string portName_;
    SystemClock clock_;
    CSerial port_;
    TimedLock transferLock_;
    TransferEngine engine_;
    TargetCommands commands_;
    LiveWorker worker_;
};

}  // namespace tessavo
