#pragma once

#include <filesystem>
#include <optional>

#include "history/notes_file.h"

namespace tessavo {

class KeptVersions;

/// What became of the notes when the settings were saved.
enum class NotesSaved : std::uint8_t {
    done,     ///< they stand beside the settings, or there are none to keep
    notKept,  ///< the same, but what stood there before could not be kept
    failed,   ///< they could not be written, or what stands there can be neither read nor kept
};

/// The notes that belong to the document, as the file beside it holds them. Used on the user-interface thread.
class DocumentNotes {
 public:
    /// A settings file was opened.
    /// \return its notes; empty ones where it has none or where they cannot be read
    FileNotes loaded(const std::filesystem::path& settings);
    /// Why the notes of the file that was opened last were not read; nothing where they were, or where there
    /// are none.
    [[nodiscard]] std::optional<NotesTrouble> trouble() const { return trouble_; }

    /// The settings were saved. Writes the notes beside them where there are any, or where other notes stand
    /// there. What stands there goes to the versions first. A file that cannot be read is written over only
    /// by notes that are not empty, and only once it is kept; so is one that was not there to be read, or could not
    /// be, when the settings were opened.
    NotesSaved saved(const std::filesystem::path& settings, const FileNotes& notes, KeptVersions& versions);

    /// The document of an earlier run goes on: what stands in its notes now counts as saved.
    /// \param settings empty where there is no document
    void resume(const std::filesystem::path& settings);

    /// Whether these are others than those that were read or saved. Never without a document.
    [[nodiscard]] bool differs(const FileNotes& notes) const { return saved_ && *saved_ != notes; }

 private:
    std::optional<FileNotes> saved_;  ///< nothing without a document
    std::filesystem::path
        unread_;  ///< notes that loaded() did not find or could not read, until others stand there
    std::optional<NotesTrouble> trouble_;
};

}  // namespace tessavo
