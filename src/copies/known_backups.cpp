#include "copies/known_backups.h"

#include <algorithm>
#include <utility>

#include "base/raw_file.h"
#include "copies/backup_folder.h"
#include "history/kept_names.h"
#include "history/note_lines.h"
#include "history/whole_file.h"
#include "params/set_text.h"

namespace tessavo {

namespace {

constexpr std::string_view noteSuffix = ".txt";
constexpr std::string_view firstLine = "Tessavo backup made 1\n";
constexpr std::string_view pathLabel = "path: ";

// Files of notes, newest first.
std::vector<std::filesystem::path> notesIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> notes;
    for (const std::filesystem::path& path : kept::filesIn(folder)) {
        if (kept::numberOf(utf8FromPath(path.stem())) && utf8FromPath(path.extension()) == noteSuffix) {
            notes.push_back(path);
        }
    }
    std::ranges::sort(notes, std::ranges::greater{});
    return notes;
}

// Empty for a damaged note.
std::filesystem::path backupOf(const std::filesystem::path& note) {
    const auto file = readWholeFile(note);
    const auto lines =
        file ? note::unsealed({reinterpret_cast<const char*>(file->bytes.data()), file->bytes.size()},
                              firstLine)
             : std::nullopt;
    if (!lines) {
        return {};
    }
    std::string_view rest = *lines;
    return note::pathFrom(note::takeLine(rest, pathLabel));
}

}  // namespace

KnownBackups::KnownBackups(std::filesystem::path folder) : folder_(std::move(folder)) {}

bool KnownBackups::add(const std::filesystem::path& backup) {
    if (folder_.empty() || !kept::makeFolder(folder_)) {
        return false;
    }
    std::vector<std::filesystem::path> notes = notesIn(folder_);
    const std::uint64_t number = kept::numberBehind(
        notes.empty() ? 0 : kept::numberOf(utf8FromPath(notes.front().stem())).value_or(0));
    std::string text(firstLine);
    // A name that ends in a separator names the same folder.
    const std::filesystem::path whole = wholePath(backup).lexically_normal();
    text.append(pathLabel)
        .append(note::pathText(whole.has_filename() ? whole : whole.parent_path()))
        .append("\n");
    text = note::sealed(std::move(text));
    if (replaceFile(folder_ / kept::makeId(number).append(noteSuffix),
                    {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()})) {
        return false;
    }
    notes = notesIn(folder_);
    for (std::size_t i = mostBackups; i < notes.size(); ++i) {
        kept::drop(notes[i]);
    }
    return true;
}

std::vector<KnownBackup> KnownBackups::list() const {
    std::vector<KnownBackup> backups;
    for (const std::filesystem::path& note : notesIn(folder_)) {
        std::filesystem::path folder = backupOf(note);
        if (folder.empty() || std::ranges::count(backups, folder, &KnownBackup::folder) > 0) {
            continue;
        }
        if (const BackupRead read = readBackup(folder); read.copy) {
            backups.push_back({.folder = std::move(folder),
                               .time = read.copy->time,
                               .port = read.copy->port,
                               .versions = read.copy->versions,
                               .everySetRead = read.copy->everySetRead()});
        }
    }
    return backups;
}

bool KnownBackups::madeSince(WallTime moment, const std::string& port,
                             std::optional<std::uint32_t> hardware) const {
    const std::vector<KnownBackup> backups = list();
    return std::ranges::any_of(backups, [&](const KnownBackup& backup) {
        const bool sameHardware =
            !hardware || (backup.versions.has_value() && backup.versions->hardware == *hardware);
        return backup.time >= moment && backup.port == port && sameHardware && backup.everySetRead;
    });
}

std::filesystem::path knownBackupsFolder(const std::filesystem::path& dataFolder) {
    return dataFolder.empty() ? std::filesystem::path() : dataFolder / "backups";
}

}  // namespace tessavo
