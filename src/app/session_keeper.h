#pragma once

#include <QObject>
#include <QTimer>
#include <filesystem>
#include <functional>
#include <memory>

#include "app/file_news_display.h"
#include "app/status_line.h"
#include "app/undo_commands.h"
#include "controls/ui_calls.h"
#include "history/recovery_store.h"
#include "history/recovery_writer.h"

namespace tessavo {

class CTessavoView;

/// Keeps what is being tuned through any end of the program: writes the recovery file after each change, and
/// offers what an earlier run has left unsaved.
///
/// User-interface thread; the file is written on a thread of its own.
class SessionKeeper : public QObject {
    Q_OBJECT

 public:
    struct Dependencies {
        TuningState& tuning;
        History& history;
        UndoCommands& undo;
        FileNewsDisplay& files;
        CTessavoView& view;
        StatusLine& status;
        std::filesystem::path folder;        ///< of the recovery files; nothing is kept when empty
        std::function<WallTime()> now = {};  ///< the system's when empty
    };

    /// Longest time from a change until it is handed to the writer.
    static constexpr std::chrono::milliseconds delay{150};

    /// Moves the file of the run before this one aside and offers what waits.
    /// \param dependencies outlive this object
    explicit SessionKeeper(Dependencies dependencies);
    ~SessionKeeper() override;

    /// The system or a person ends the program: what there is to restore is on the disk when this returns,
    /// as far as the disk can do that within two seconds.
    void finish();

 private:
    void noteHistory(HistoryEvent event);
    void noteOpened();
    void noteSaved();
    void scheduleWrite();
    void write();
    [[nodiscard]] bool isNothingToRestore() const;
    /// Writes at once.
    /// \return whether the recovery file of this run holds the state as it stands
    bool isWritten();
    void tellTroubles(const RecoveryList& list);
    void offerNext();
    void restore();
    void discard();
    void tell(const QString& text, Notice::Kind kind);

    Dependencies dependencies_;
    RecoveryStore store_;
    bool isUnsaved_ = false;  ///< after the last step there was something to restore
    bool isBuried_ = false;   ///< the steps lead back to sets that no file holds, whatever the sets are now
    std::vector<WaitingRecovery> waiting_;  ///< newest first
    UiCalls calls_;
    QTimer soon_;
    std::unique_ptr<RecoveryWriter> writer_;  ///< none where nothing is kept
};

}  // namespace tessavo
