#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <system_error>
#include <vector>

namespace tessavo {

/// The first bytes of a file.
struct FileStart {
    std::vector<std::uint8_t> bytes;  ///< as many as were asked for, or all where the file has fewer
    std::uintmax_t fileSize = 0;      ///< length of the whole file; 0 for what has no length
};

/// Reads the start of an existing regular file. Others may read the file at the same time.
///
/// Pipes and devices are refused, because reading one may wait for its other end for ever; where the system
/// tells what a path leads to, they are not even opened, since opening a device may already do something to
/// it.
/// \param limit most bytes to read
/// \return nothing when the file cannot be opened or read (it is missing, or there is no permission), and for
///     whatever is no regular file
[[nodiscard]] std::optional<FileStart> readFileStart(const std::filesystem::path& path, std::size_t limit);

/// Reads the start of a file, pipe or device. Waits until a pipe or device has given `limit` bytes or has
/// ended.
/// \return nothing when it cannot be opened or read
[[nodiscard]] std::optional<FileStart> readStreamStart(const std::filesystem::path& path, std::size_t limit);

/// What became of a write.
struct FileWrite {
    bool opened = false;  ///< whether the file could be opened for writing at all
    std::size_t written =
        0;  ///< bytes that reached the file; 0 also when the system could not keep what it took
};

/// Writes bytes to the start of a file. Others may read the file at the same time.
///
/// An existing file is never truncated: settings files may be longer than what is written, and what follows
/// stays. A file that does not exist appears whole or not at all, so that nobody finds half a file after a
/// crash. Folders and pipes are not opened. A device takes what it can take without waiting.
FileWrite writeFileStart(const std::filesystem::path& path, std::span<const std::uint8_t> bytes);

/// Puts a file of exactly these bytes in place of another, or makes it, readable by its owner alone.
///
/// The bytes are written beside it and are on the disk before they take the name, so that there is the whole
/// old file or the whole new one at every moment, also after a power cut. A link is replaced, not followed.
/// \return why it failed: the old file stands then and nothing is left beside it. Only where the system could
///     not put the change of names on the disk, the new file stands, and may be gone after a power cut.
[[nodiscard]] std::error_code replaceFile(const std::filesystem::path& path,
                                          std::span<const std::uint8_t> bytes);

/// Removes a file for good, also after a power cut.
/// \return why it failed; a file that is not there is no error
[[nodiscard]] std::error_code removeFile(const std::filesystem::path& path);

}  // namespace tessavo
