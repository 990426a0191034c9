#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "base/md5.h"
#include "params/records.h"

namespace tessavo {

/// By which the content of a file is known again.
struct FileStamp {
    std::uintmax_t size = 0;
    Md5Digest digest{};  ///< of what wholeFileLimit lets see

    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

/// What is known of the file of a document from when it was loaded or saved.
struct DocumentMemory {
    std::optional<ParameterStore> store;  ///< what was loaded or saved; nothing where that is not known
    std::optional<FileStamp> stamp;       ///< nothing where the file held something else even then
    std::uintmax_t bytesInFile = parameterStoreSize;  ///< so many of them were read
};

/// The settings file that a person works on: the one that was loaded or saved last.
///
/// A file that was refused and an export change nothing here. Used on the user-interface thread; whole
/// documents may be copied.
class Document {
 public:
    /// The whole path; empty as long as there is no document.
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    /// Name of the file without its folder, in UTF-8; empty as long as there is no document.
    [[nodiscard]] std::string name() const;

    /// The sets were read from this file.
    /// \param store as it was read
    /// \param bytesInFile its length
    void loaded(const std::filesystem::path& path, const ParameterStore& store, std::uintmax_t bytesInFile);
    /// The sets stand in this file.
    /// \param store as it was written
    void saved(const std::filesystem::path& path, const ParameterStore& store);
    /// The sets could not be written, or not whole. Where this is the document's file, what it holds now is
    /// this program's doing and no change by another.
    void notSaved(const std::filesystem::path& path);
    /// What a later run needs beside the path to go on with the document.
    [[nodiscard]] const DocumentMemory& memory() const { return memory_; }
    /// The document of an earlier run goes on. Where its file holds these sets they count as saved, since that
    /// run may have ended before it could write down that it had saved them. Without a memory what the file
    /// holds now counts as what was saved; a file that cannot be read counts as changed then, and every set
    /// differs from it.
    /// \param path empty where that run had none, and then there is none
    /// \param store as that run has left them
    void resume(const std::filesystem::path& path, const std::optional<DocumentMemory>& memory,
                const ParameterStore& store);

    /// Whether these sets are others than those that were loaded or saved. Never without a document.
    [[nodiscard]] bool differs(const ParameterStore& store) const;
    /// Whether the file holds something else than when it was loaded or saved; so does a file that is gone or
    /// cannot be read. Reads the file. Never without a document.
    [[nodiscard]] bool changedOnDisk() const;

    /// What a person should know of a file that was too short: "car.eqs: 300 of 10600 bytes, the rest reads as
    /// zero". Empty for a file that was long enough, and once the sets are saved.
    [[nodiscard]] std::string shortFileText() const;

 private:
    void take(const std::filesystem::path& path, const ParameterStore& store, std::uintmax_t bytesInFile);

    std::filesystem::path path_;
    DocumentMemory memory_;
};

}  // namespace tessavo
