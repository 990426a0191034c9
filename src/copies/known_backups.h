#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "copies/target_copy.h"
#include "history/step.h"

namespace tessavo {

/// A backup that was made and whose folder is still there.
struct KnownBackup {
    std::filesystem::path folder;  ///< whole
    WallTime time;                 ///< when it was made
    std::string port;
    std::optional<TargetVersions> versions;
    bool everySetRead = false;  ///< the target gave all six sets
};

/// Remembers in the data folder where backups were made: the last 50.
///
/// Each is a text of its own that holds the folder's path. What it tells is read from the backup itself, so
/// that a backup that was removed or moved is no longer known. Used on one thread; two programs may use one
/// folder.
class KnownBackups {
 public:
    static constexpr std::size_t mostBackups = 50;

    /// \param folder made when it is needed; empty for none, and then nothing is remembered
    explicit KnownBackups(std::filesystem::path folder);

    /// Remembers a backup that has just been written.
    /// \return false when that could not be written down; the backup itself is none the worse
    bool add(const std::filesystem::path& backup);

    /// Newest first, each folder once.
    [[nodiscard]] std::vector<KnownBackup> list() const;

    /// Whether a target was backed up since a moment, say since midnight: a backup that still reads, for
    /// which the target gave all six sets, through the same port and with the same hardware version.
    /// \param hardware nothing while it is not known; the port alone tells then
    [[nodiscard]] bool madeSince(WallTime moment, const std::string& port,
                                 std::optional<std::uint32_t> hardware) const;

 private:
    std::filesystem::path folder_;
};

/// The folder for them within the data folder; empty where there is none.
[[nodiscard]] std::filesystem::path knownBackupsFolder(const std::filesystem::path& dataFolder);

}  // namespace tessavo
