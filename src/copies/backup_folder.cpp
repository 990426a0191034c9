#include "copies/backup_folder.h"

namespace tessavo {

std::string backupFolderTrouble(const std::filesystem::path& /*folder*/) {
    return {};
}
std::string writeBackup(const std::filesystem::path& /*folder*/, const TargetCopy& /*copy*/) {
    return {};
}
BackupRead readBackup(const std::filesystem::path& /*folder*/) {
    return {};
}

}  // namespace tessavo
