#pragma once

#include <QObject>
#include <filesystem>
#include <vector>

#include "app/compare_source.h"
#include "app/disk_jobs.h"
#include "comm/transfers.h"
#include "controls/ui_calls.h"
#include "copies/known_backups.h"

class QWidget;

namespace tessavo {

class IFileDialogs;
class TuningState;
struct RestoreSource;

/// The sets of the target and of its copies, as the lists of a comparison offer them: an entry for the target, one for
/// each of the newest backups, and one each that asks for another backup and for what the program itself has written.
/// Which set of it is meant is asked once an entry is chosen, and only then is it read.
///
/// User-interface thread; disks are read on another, so that no list waits for one.
class CompareCopies : public QObject {
    Q_OBJECT

 public:
    static constexpr std::size_t listedBackups = 3;

    /// All outlives this object.
    struct Dependencies {
        const TuningState& tuning;
        ITransfers& transfers;
        IFileDialogs& dialogs;
        QWidget& window;                   ///< in front of which questions stand if no window is active
        std::filesystem::path dataFolder;  ///< where copies are known from; empty for none
    };

    explicit CompareCopies(Dependencies dependencies, QObject* parent = nullptr);

    /// Has the backups looked for that the entries offer. Returns at once.
    void look();
    /// The entries, with the backups that were found by then; looks for them anew, for the next time.
    [[nodiscard]] std::vector<CompareSource> sources();

 private:
    [[nodiscard]] CompareReading readTarget(const ParameterSet& base);
    [[nodiscard]] CompareReading readBackupIn(const std::filesystem::path& folder, const ParameterSet& base);
    [[nodiscard]] CompareReading otherBackup(const ParameterSet& base);
    [[nodiscard]] CompareReading backupOfAFolder(const ParameterSet& base);
    [[nodiscard]] CompareReading writtenByProgram(const ParameterSet& base);
    [[nodiscard]] CompareReading chooseSet(const RestoreSource& backup, const ParameterSet& base);
    [[nodiscard]] QWidget* front() const;

    Dependencies dependencies_;
    std::vector<KnownBackup> known_;  ///< newest first
    bool looking_ = false;
    UiCalls calls_;
    DiskJobs jobs_;  ///< last: its jobs call what stands above
};

}  // namespace tessavo
