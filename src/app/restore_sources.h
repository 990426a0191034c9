#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "copies/restore.h"
#include "history/step.h"

namespace tessavo {

/// A copy from which sets of the target can be restored, with everything that is in it.
struct RestoreSource {
    std::string title;  ///< as a list shows it, in UTF-8
    std::string place;  ///< the whole path of a backup's folder, in UTF-8; empty for a set that was written
    WallTime time;      ///< when it was made
    std::string port;
    std::vector<SetToWrite> sets;       ///< what can be restored, in the order of targetSetNumbers
    std::vector<std::string> troubles;  ///< why the other sets cannot, each as troubleText() tells it
};

/// All that the data folder knows of: the backups and then what the program itself has written into sets,
/// each newest first. Reads disks; any thread.
[[nodiscard]] std::vector<RestoreSource> restoreSources(const std::filesystem::path& dataFolder);

/// Title of the dialog that asks for such a folder.
inline constexpr std::string_view openBackupTitle = "Folder of a Backup";

/// A backup in any folder.
struct RestoreFolder {
    std::optional<RestoreSource> source;
    std::string trouble;  ///< why there is none, as what follows the folder's name and a colon
};
/// Reads a disk; any thread.
[[nodiscard]] RestoreFolder readRestoreFolder(const std::filesystem::path& folder);

}  // namespace tessavo
