#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <system_error>
#include <vector>

#include "history/recovery_file.h"

namespace tessavo {

/// A recovery file that holds something to restore.
struct WaitingRecovery {
    std::filesystem::path file;
    WallTime time;                       ///< when the sets were like this
    std::filesystem::path documentPath;  ///< settings file that they belong to; empty for none
    std::uint64_t process = 0;           ///< number of the process that wrote it
};

/// The recovery files in a folder.
struct RecoveryList {
    std::vector<WaitingRecovery> waiting;        ///< newest first
    std::vector<std::filesystem::path> damaged;  ///< not whole
    std::vector<std::filesystem::path> newer;    ///< a later version of the program wrote them; left alone
    std::vector<std::filesystem::path> unreadable;
};

/// What the start of a run has found.
struct RecoveryStart {
    RecoveryList list;  ///< `damaged`: under the names under which they were set aside
    /// The name of this run's own file is free. Where it is not, because a file cannot be moved, this run must
    /// not write one: it would replace what waits there.
    bool isFree = true;
};

/// The folder with recovery files: that of the run in progress, "recovery.tsr", those of runs that ended
/// without saving, "ended-TIME.tsr", and what is no whole file any more, "damaged-TIME.tsr". Times are in UTC.
///
/// One run at a time may begin here. Any number may look meanwhile.
class RecoveryStore {
 public:
    /// Most files of each kind that are kept; the oldest go first.
    static constexpr std::size_t keptFiles = 20;

    /// \param folder need not exist; one that is empty holds nothing
    explicit RecoveryStore(std::filesystem::path folder);

    /// The file of the run in progress.
    [[nodiscard]] std::filesystem::path currentFile() const;

    /// Looks at every recovery file, that of the run in progress included, and changes none.
    [[nodiscard]] RecoveryList look() const;

    /// Moves the file of the run before this one aside, before this run writes its own, and clears away what
    /// has nothing to restore. Nobody has to decide about what waits; it waits for the next run, too.
    /// \param now names files whose own time is not known
    [[nodiscard]] RecoveryStart beginRun(WallTime now) const;

    /// What a file holds. It stays until discard(): what was restored from it is safe only when this run has
    /// written a recovery file of its own.
    /// \return nothing when it is gone or no whole file any more
    [[nodiscard]] static std::optional<RecoveryState> take(const WaitingRecovery& one);

    /// Removes a file for good.
    /// \return why it failed; a file that is gone is no error
    static std::error_code discard(const WaitingRecovery& one);

 private:
    std::filesystem::path folder_;
};

}  // namespace tessavo
