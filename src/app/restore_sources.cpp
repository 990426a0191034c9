#include "app/restore_sources.h"

#include <utility>

#include "copies/backup_folder.h"
#include "copies/copy_text.h"
#include "copies/known_backups.h"
#include "copies/written_sets.h"
#include "params/set_text.h"

namespace tessavo {

namespace {

// "/a/b/" names the same folder as "/a/b".
std::string folderName(const std::filesystem::path& folder) {
    return utf8FromPath(folder.has_filename() ? folder.filename() : folder.parent_path().filename());
}

std::string writtenTitle(std::uint8_t targetSet) {
    std::string title("Written by Tessavo: ");
    return title.append(targetSetText(targetSet));
}

}  // namespace

RestoreFolder readRestoreFolder(const std::filesystem::path& folder) {
    BackupRead read = readBackup(folder);
    if (!read.copy) {
        return {.source = std::nullopt, .trouble = std::move(read.trouble)};
    }
    RestoreSource source{.title = folderName(folder),
                         .place = utf8FromPath(folder),
                         .time = read.copy->time,
                         .port = read.copy->port,
                         .sets = {},
                         .troubles = {}};
    for (const SetCopy& set : read.copy->sets) {
        if (const auto image = set.image()) {
            source.sets.push_back({.targetSet = set.targetSet, .image = *image});
        } else {
            source.troubles.push_back(troubleText(set));
        }
    }
    return {.source = std::move(source), .trouble = {}};
}

std::vector<RestoreSource> restoreSources(const std::filesystem::path& dataFolder) {
    std::vector<RestoreSource> sources;
    for (const KnownBackup& backup : KnownBackups(knownBackupsFolder(dataFolder)).list()) {
        if (RestoreFolder read = readRestoreFolder(backup.folder); read.source) {
            sources.push_back(std::move(*read.source));
        }
    }
    const WrittenSets written(writtenSetsFolder(dataFolder));
    for (const WrittenSet& set : written.list().sets) {
        if (const auto image = written.read(set.id)) {
            sources.push_back({.title = writtenTitle(set.targetSet),
                               .place = {},
                               .time = set.time,
                               .port = set.port,
                               .sets = {{.targetSet = set.targetSet, .image = *image}},
                               .troubles = {}});
        }
    }
    return sources;
}

}  // namespace tessavo
