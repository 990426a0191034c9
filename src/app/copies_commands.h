#pragma once

#include <QAction>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/disk_jobs.h"
#include "app/restore_sources.h"
#include "app/window_clock.h"
#include "base/file_dialogs.h"
#include "base/message_box.h"
#include "comm/target_commands.h"
#include "controls/ui_calls.h"
#include "copies/target_copy.h"

namespace tessavo {

class BackUpDialog;
class CCommunication;
class CommLink;
class CTessavoView;
class RestoreDialog;
class StatusLine;

/// Asked when the window is to close while a backup or a restore runs.
inline constexpr std::string_view breakCopyQuestion =
    "The target is still being backed up or restored.\r\nDo you want to wait until it is done?";
/// The notice, once in a run, when what was written into a set could not be kept.
inline constexpr std::string_view writtenNotKeptText =
    "What was written into the target could not be kept in the data folder.";

/// "Back Up Target..." and "Restore Target...", and what the program itself writes into sets of the target.
///
/// Both commands run their exchanges one by one in the foreground, with a modal dialog in front: image and
/// sets of the program stay as they are, and the status bar follows each exchange as that of any command.
/// User-interface thread; disks are read and written on another.
class CopiesCommands : public QObject {
    Q_OBJECT

 public:
    /// All outlives this object.
    struct Dependencies {
        TuningState& tuning;
        CommLink& link;
        IMessageBox& boxes;
        IFileDialogs& dialogs;
        CTessavoView& view;
        StatusLine& status;
        QWidget& window;                     ///< in front of which the dialogs stand
        std::filesystem::path dataFolder;    ///< where copies are known from; nothing is kept when empty
        std::function<WallTime()> now = {};  ///< the system's when empty
    };

    explicit CopiesCommands(Dependencies dependencies, QObject* parent = nullptr);
    ~CopiesCommands() override;

    [[nodiscard]] QAction& backUpAction() { return *backUp_; }
    [[nodiscard]] QAction& restoreAction() { return *restore_; }

    /// Asks for a folder and reads the target into it. A box refuses while Live Mode is on.
    void backUpTarget();
    /// Opens the dialog in which sets are restored. A box refuses while Live Mode is on.
    void restoreTarget();

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    /// A backup of this run, for when it could not be written down in the data folder.
    struct MadeBackup {
        WallTime time;
        std::string port;
        std::optional<std::uint32_t> hardware;
        bool everySetRead = false;
    };
    class Run;

    [[nodiscard]] WallTime now() const;
    [[nodiscard]] bool mayBegin();
    [[nodiscard]] BackUp readTarget(BackUpDialog& dialog);
    void writeCopy(BackUpDialog& dialog, const std::filesystem::path& folder, TargetCopy copy);
    void tellFolderTrouble(const std::filesystem::path& folder, const std::string& trouble);
    [[nodiscard]] std::optional<RestoreSource> askFolder();
    [[nodiscard]] RestoreReport restoreSets(std::span<const SetToWrite> sets, const CopyWatch& watch);
    void keepWritten(std::uint8_t targetSet, const ParameterImage& image);
    void noteReport(const CommandReport& report);
    void awaitLiveRound();
    void askBeforeClosing();
    void ended();
    void meetPage();
    void offerBackUp();
    [[nodiscard]] bool madeInThisRun(WallTime since) const;
    void tellNotice(const QString& text, bool isWarning);

    Dependencies dependencies_;
    QAction* backUp_;
    QAction* restore_;
    QPointer<CCommunication> page_;
    QPointer<BackUpDialog> backUpDialog_;
    QPointer<RestoreDialog> restoreDialog_;
    WindowClock clock_;
    bool running_ = false;        ///< one of the two commands is under way
    bool asking_ = false;         ///< whether to wait for it
    bool closeAfter_ = false;     ///< the window closes once it has ended
    bool portNotOpened_ = false;  ///< the exchange that ended last
    bool toldNotKept_ = false;
    std::optional<std::uint32_t> hardware_;  ///< of the target behind the chosen port, once it has told it
    std::vector<MadeBackup> made_;
    QTimer midnight_;           ///< another day begins, for which there is no backup yet
    quint64 lastQuestion_ = 0;  ///< whether to offer a backup; answers to older ones are out of date
    UiCalls calls_;
    DiskJobs jobs_;  ///< last: its jobs call what stands above
};

}  // namespace tessavo
