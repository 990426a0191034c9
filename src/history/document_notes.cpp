#include "history/document_notes.h"

#include <system_error>

#include "history/kept_versions.h"

namespace tessavo {

namespace {

bool isRegular(const std::filesystem::path& path) {
    std::error_code unknown;
    return std::filesystem::status(path, unknown).type() == std::filesystem::file_type::regular;
}

}  // namespace

FileNotes DocumentNotes::loaded(const std::filesystem::path& settings) {
    trouble_.reset();
    unread_.clear();
    const std::filesystem::path file = notesPathOf(settings);
    const auto found = readNotes(file);
    if (const auto* const trouble = std::get_if<NotesTrouble>(&found)) {
        if (*trouble != NotesTrouble::missing) {
            trouble_ = *trouble;
        }
        unread_ = file;
        saved_ = FileNotes{};
    } else {
        saved_ = std::get<FileNotes>(found);
    }
    return *saved_;
}

NotesSaved DocumentNotes::saved(const std::filesystem::path& settings, const FileNotes& notes,
                                KeptVersions& versions) {
    const std::filesystem::path file = notesPathOf(settings);
    const auto found = readNotes(file);
    const auto* const there = std::get_if<FileNotes>(&found);
    const bool hasFile = there != nullptr || std::get<NotesTrouble>(found) != NotesTrouble::missing;
    saved_ = there != nullptr ? *there : FileNotes{};
    // What nobody has seen here is not what nobody wants.
    const bool isUnread = isEmpty(notes) && file == unread_;
    // Nothing stands beside a device, and what cannot be read is left alone as long as nothing has to go there.
    if (!isRegular(settings) || isUnread || (there != nullptr ? *there == notes : isEmpty(notes))) {
        saved_ = notes;
        return NotesSaved::done;
    }
    const bool mayReplace = !hasFile || isRegular(file);
    const bool isKept = mayReplace && versions.keep(file, FileKind::notes);
    if (!mayReplace || (!isKept && there == nullptr) || !writeNotes(settings, notes)) {
        return NotesSaved::failed;
    }
    saved_ = notes;
    unread_.clear();
    return isKept ? NotesSaved::done : NotesSaved::notKept;
}

void DocumentNotes::resume(const std::filesystem::path& settings) {
    *this = DocumentNotes();
    if (!settings.empty()) {
        loaded(settings);
        trouble_.reset();
    }
}

}  // namespace tessavo
