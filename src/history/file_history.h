#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>

#include "history/document.h"
#include "history/document_notes.h"
#include "history/kept_versions.h"
#include "params/file_watch.h"
#include "params/settings_commands.h"
#include "params/tuning_state.h"

namespace tessavo {

/// What became of saving without a dialog.
enum class SaveAgain : std::uint8_t {
    saved,
    noDocument,     ///< no settings file was loaded or saved yet; nothing happened
    changedOnDisk,  ///< another program has changed the file since, or it is gone; nothing happened
    failed,         ///< the file could not be written, or not whole; boxes have told so
};

/// What became of taking the sets of an earlier version.
enum class OpenedVersion : std::uint8_t {
    done,
    damaged,  ///< the version is gone or damaged
    refused,  ///< its bytes are no settings; a box has told so
};

/// What the listener is told of a file.
enum class FileNews : std::uint8_t {
    loaded,       ///< the sets were read from it, and it is the document
    saved,        ///< the sets stand in it, and it is the document
    notSaved,     ///< the sets could not be written to it, or not whole; boxes have told so
    notKept,      ///< it is about to be written over although what it holds could not be kept
    broughtBack,  ///< it holds an earlier version again
    opened,       ///< the sets are those of an earlier version of it; the document is what it was
    // Of the notes beside the document, whose file is told; these come after `loaded` and `saved`.
    notesUnreadable,  ///< they could not be read: the file is there, but not for this program
    notesDamaged,     ///< they were not read: the file is damaged
    notesNewer,       ///< they were not read: a later version of the program wrote the file
    notesNotSaved,    ///< they do not stand beside the settings, which were saved
};

/// What the program knows of the files of the File menu: the document with its notes, and the earlier versions
/// of all of them. Watches the commands, so that nothing is written over before it is kept, and so that the
/// notes are read and written together with the sets.
///
/// Used on the user-interface thread.
class FileHistory : public IFileWatch {
 public:
    using Listener = std::function<void(FileNews, const std::filesystem::path&)>;

    /// \param tuning, commands outlive this object
    /// \param folder of the earlier versions; see KeptVersions
    /// \param now the clock that dates the versions; the system's when empty
    FileHistory(TuningState& tuning, SettingsCommands& commands, std::filesystem::path folder,
                std::function<WallTime()> now = {});
    ~FileHistory() override;
    FileHistory(const FileHistory&) = delete;
    FileHistory& operator=(const FileHistory&) = delete;

    /// Called when document and versions know of it already; but `notKept` comes before a settings file or an
    /// image is written.
    void setListener(Listener listener) { listener_ = std::move(listener); }

    [[nodiscard]] const Document& document() const { return document_; }
    /// Whether the sets or the notes are others than those of the document.
    [[nodiscard]] bool documentDiffers() const {
        return document_.differs(tuning_.store()) || notes_.differs(tuning_.notes());
    }
    /// The document of an earlier run goes on, whose sets are there again; see Document::resume().
    void resumeDocument(const std::filesystem::path& path, const std::optional<DocumentMemory>& memory) {
        document_.resume(path, memory, tuning_.store());
        notes_.resume(path);
    }

    /// Writes the sets to the document.
    SaveAgain saveAgain();
    /// The same, also where another program has changed the file.
    SaveAgain overwrite();

    [[nodiscard]] const KeptVersions& versions() const { return versions_; }
    /// As KeptVersions::bringBack(). The sets stay as they are, and so does what is known of the document: it
    /// has changed on the disk where it was brought back.
    BroughtBack bringBack(std::string_view id, const std::filesystem::path& to = {});
    /// Takes the sets of an earlier version of a settings file, without touching any file.
    OpenedVersion open(std::string_view id);

    void willWrite(const std::filesystem::path& path, FileKind kind) override;
    void saved(const std::filesystem::path& path) override;
    void notSaved(const std::filesystem::path& path) override;
    void loaded(const std::filesystem::path& path, std::uintmax_t bytesInFile) override;

 private:
    void tellNotesTrouble(const std::filesystem::path& path) const;
    void tell(FileNews news, const std::filesystem::path& path) const;
    [[nodiscard]] std::filesystem::path pathOf(std::string_view id) const;

    TuningState& tuning_;
    SettingsCommands& commands_;
    KeptVersions versions_;
    Document document_;
    DocumentNotes notes_;
    Listener listener_;
};

}  // namespace tessavo
