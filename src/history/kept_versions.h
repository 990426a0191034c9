#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "history/step.h"
#include "history/whole_file.h"
#include "params/file_watch.h"

namespace tessavo {

/// What a file held before it was written over.
struct KeptVersion {
    std::string id;                      ///< names this version; unlike that of every other one
    std::filesystem::path path;          ///< where it stood, whole; empty where that is no longer known
    FileKind kind = FileKind::settings;  ///< what it was written over with
    WallTime time;                       ///< when that was
    std::uintmax_t size = 0;             ///< in bytes
};

/// What became of bringing a version back.
enum class BroughtBack : std::uint8_t {
    done,          ///< the file is as it was
    alreadyThere,  ///< it was so anyway; nothing was written
    unknown,       ///< there is no such version
    damaged,       ///< the version can no longer be read, or its bytes are not those that were kept
    noPlace,       ///< where it stood is no longer known
    notKept,       ///< what stands there now could not be kept, so it was left alone
    notWritten,    ///< the file could not be written, or not whole; what stood there is kept
};

/// Keeps what files held before they are written over: the last 20 contents over all files.
///
/// Each version is two files of one folder: the bytes as they were, in a file that other programs can read
/// too ("0000000017-5E1F00AB.eqs"), and beside it a text that says where and when ("0000000017-5E1F00AB.txt").
/// Without the text, or with a damaged one, the bytes are listed still, by their own name and date. Only the
/// owner can read the folder.
///
/// Used on the user-interface thread.
class KeptVersions {
 public:
    static constexpr std::size_t mostVersions = 20;
    static constexpr std::size_t largestFile = wholeFileLimit - 1;  ///< in bytes

    /// \param folder made when it is needed; empty for none, and then nothing can be kept
    /// \param now the clock that dates the versions; the system's when empty
    explicit KeptVersions(std::filesystem::path folder, std::function<WallTime()> now = {});

    /// Keeps what a file holds now. There is nothing to do where there is no file, where a folder, a pipe or a
    /// device stands, and where the newest version of this path holds the same bytes.
    /// \return whether the file may be written over without a loss
    bool keep(const std::filesystem::path& path, FileKind kind);

    /// Newest first.
    [[nodiscard]] std::vector<KeptVersion> list() const;
    /// \return nothing when there is no such version, or when it is damaged
    [[nodiscard]] std::optional<std::vector<std::uint8_t>> read(std::string_view id) const;

    /// Makes a file hold what this version does, and nothing else. What stands there before is kept first,
    /// so that this can be taken back in the same way.
    /// \param to the file; the one that the version was kept from when empty
    BroughtBack bringBack(std::string_view id, const std::filesystem::path& to = {});

 private:
    bool keepBeside(std::string_view spared, const std::filesystem::path& path, FileKind kind);
    void dropOldest(std::string_view spared) const;
    [[nodiscard]] std::optional<KeptVersion> find(std::string_view id) const;

    std::filesystem::path folder_;
    std::function<WallTime()> now_;
};

}  // namespace tessavo
