#include "copies/known_backups.h"

#include <utility>

namespace tessavo {

KnownBackups::KnownBackups(std::filesystem::path folder) : folder_(std::move(folder)) {}
bool KnownBackups::add(const std::filesystem::path& /*backup*/) {
    return false;
}
std::vector<KnownBackup> KnownBackups::list() const {
    return {};
}
bool KnownBackups::madeSince(WallTime /*moment*/, const std::string& /*port*/,
                             std::optional<std::uint32_t> /*hardware*/) const {
    return false;
}

std::filesystem::path knownBackupsFolder(const std::filesystem::path& dataFolder) {
    return dataFolder.empty() ? std::filesystem::path() : dataFolder / "backups";
}

}  // namespace tessavo
