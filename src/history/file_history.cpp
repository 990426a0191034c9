#include "history/file_history.h"

#include <algorithm>
#include <utility>

namespace tessavo {

FileHistory::FileHistory(TuningState& tuning, SettingsCommands& commands, std::filesystem::path folder,
                         std::function<WallTime()> now)
    : tuning_(tuning), commands_(commands), versions_(std::move(folder), std::move(now)) {
    commands_.watchFiles(this);
}

FileHistory::~FileHistory() {
    commands_.watchFiles(nullptr);
}

SaveAgain FileHistory::saveAgain() {
    return document_.changedOnDisk() ? SaveAgain::changedOnDisk : overwrite();
}

SaveAgain FileHistory::overwrite() {
    if (document_.path().empty()) {
        return SaveAgain::noDocument;
    }
    // The save replaces the document, its path included.
    const std::filesystem::path path = document_.path();
    return commands_.saveSettingsTo(path) ? SaveAgain::saved : SaveAgain::failed;
}

BroughtBack FileHistory::bringBack(std::string_view id, const std::filesystem::path& to) {
    const std::filesystem::path path = to.empty() ? pathOf(id) : to;
    const BroughtBack result = versions_.bringBack(id, to);
    if (result == BroughtBack::done) {
        tell(FileNews::broughtBack, path);
    }
    return result;
}

OpenedVersion FileHistory::open(std::string_view id) {
    const std::filesystem::path path = pathOf(id);
    const auto bytes = versions_.read(id);
    if (!bytes) {
        return OpenedVersion::damaged;
    }
    if (!commands_.takeSettings(*bytes)) {
        return OpenedVersion::refused;
    }
    tell(FileNews::opened, path);
    return OpenedVersion::done;
}

void FileHistory::willWrite(const std::filesystem::path& path, FileKind kind) {
    if (!versions_.keep(path, kind)) {
        tell(FileNews::notKept, path);
    }
}

void FileHistory::saved(const std::filesystem::path& path) {
    document_.saved(path, tuning_.store());
    const NotesSaved notes = notes_.saved(path, tuning_.notes(), versions_);
    tell(FileNews::saved, path);
    if (notes == NotesSaved::failed) {
        tell(FileNews::notesNotSaved, notesPathOf(path));
    } else if (notes == NotesSaved::notKept) {
        tell(FileNews::notKept, notesPathOf(path));
    }
}

void FileHistory::notSaved(const std::filesystem::path& path) {
    document_.notSaved(path);
    tell(FileNews::notSaved, path);
}

void FileHistory::loaded(const std::filesystem::path& path, std::uintmax_t bytesInFile) {
    document_.loaded(path, tuning_.store(), bytesInFile);
    tuning_.setNotes(notes_.loaded(path));
    tell(FileNews::loaded, path);
    tellNotesTrouble(path);
}

void FileHistory::tellNotesTrouble(const std::filesystem::path& path) const {
    if (const auto trouble = notes_.trouble()) {
        tell(*trouble == NotesTrouble::damaged ? FileNews::notesDamaged
             : *trouble == NotesTrouble::newer ? FileNews::notesNewer
                                               : FileNews::notesUnreadable,
             notesPathOf(path));
    }
}

void FileHistory::tell(FileNews news, const std::filesystem::path& path) const {
    if (listener_) {
        listener_(news, path);
    }
}

std::filesystem::path FileHistory::pathOf(std::string_view id) const {
    const std::vector<KeptVersion> versions = versions_.list();
    const auto found = std::ranges::find(versions, id, &KeptVersion::id);
    return found != versions.end() ? found->path : std::filesystem::path();
}

}  // namespace tessavo
