#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>

#include "base/raw_file.h"

namespace tessavo {

/// Bytes of a file that are looked at, at most: far more than a settings file or an image ever has.
inline constexpr std::size_t wholeFileLimit = std::size_t{16} * 1024 * 1024;

/// Reads an existing regular file from its start to its end, or to wholeFileLimit.
/// \return nothing when there is no regular file, or when it cannot be read
[[nodiscard]] std::optional<FileStart> readWholeFile(const std::filesystem::path& path);

/// The path as it stands for the same file whatever folder the program goes to. Links stay.
[[nodiscard]] std::filesystem::path wholePath(const std::filesystem::path& path);

}  // namespace tessavo
