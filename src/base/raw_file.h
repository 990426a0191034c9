#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <vector>

namespace tessavo {

/// Start of a file and the file's whole length.
struct FileStart {
    std::vector<std::uint8_t> bytes;
    std::uintmax_t fileSize = 0;
};

/// Reads at most `limit` bytes from the start of an existing regular file, shared for reading. Never waits
/// for somebody at the other end. \return nothing when the file cannot be opened or read (a missing file, no
/// permission), and for whatever is no regular file: a folder, a pipe, a device, which is not even opened
/// where the system can tell before.
[[nodiscard]] std::optional<FileStart> readFileStart(const std::filesystem::path& path, std::size_t limit);

/// As readFileStart(), and from pipes and devices as well, whose end it waits for; they have no size.
[[nodiscard]] std::optional<FileStart> readStreamStart(const std::filesystem::path& path, std::size_t limit);

/// What became of a write.
struct FileWrite {
    bool opened = false;
    std::size_t written = 0;  ///< bytes that reached the file
};

/// Writes bytes to the start of a file, shared for reading.
///
/// An existing file is opened as it is and never truncated, so what lies behind the new bytes stays. A file
/// that does not exist appears whole or not at all. A folder or a pipe is not opened; a device takes what it
/// can take at once.
FileWrite writeFileStart(const std::filesystem::path& path, std::span<const std::uint8_t> bytes);

}  // namespace tessavo
