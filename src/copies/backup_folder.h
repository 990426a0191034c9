#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "copies/target_copy.h"

namespace tessavo {

/// The file of a backup's folder that tells what is in it. It is written last: a folder without it is no
/// backup.
inline constexpr const char* backupFileName = "backup.json";

/// Whether a backup can be written to a folder: there must be nothing of this name, or an empty folder.
/// \return why not, as what follows the folder's name and a colon; empty when it can
[[nodiscard]] std::string backupFolderTrouble(const std::filesystem::path& folder);

/// Writes a backup: a file of 4096 bytes for each set that was read, "set1.reply" to "set5.reply" and
/// "default.reply", and then backup.json. All of them are on the disk before backup.json is there, so that
/// half a backup is never taken for a whole one. Nothing that exists is written over.
/// \return why it failed, as what follows the folder's name and a colon; empty when it is written whole
[[nodiscard]] std::string writeBackup(const std::filesystem::path& folder, const TargetCopy& copy);

/// A backup that was read from its folder.
struct BackupRead {
    /// Nothing when there is no backup. A set whose file is missing, cut short or altered is `lost`; the
    /// others are as they were read from the target.
    std::optional<TargetCopy> copy;
    std::string trouble;  ///< why there is none, as what follows the folder's name and a colon
};
[[nodiscard]] BackupRead readBackup(const std::filesystem::path& folder);

}  // namespace tessavo
