#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Names of files that are kept in a folder of the program's own, newest with the largest:
// "0000000017-5E1F00AB".
namespace tessavo::kept {

inline constexpr std::size_t idLength = 19;

/// The number in an id. Later ones have larger numbers, whatever the clock says.
/// \return nothing for what is no id
[[nodiscard]] std::optional<std::uint64_t> numberOf(std::string_view id);
/// The number of what is kept next. Where somebody has put a file with the largest number there, all that come
/// share it, and only their times tell which is later.
/// \param last largest number so far; 0 for none
[[nodiscard]] std::uint64_t numberBehind(std::uint64_t last);
/// An id that tells apart what two programs keep at the same time.
[[nodiscard]] std::string makeId(std::uint64_t number);

/// Everything that stands in a folder; nothing where there is none.
[[nodiscard]] std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder);
/// Makes a folder that only its owner can read, or makes one that stands such a folder.
/// \return false when there is none
bool makeFolder(const std::filesystem::path& folder);
/// Removes a file or not.
void drop(const std::filesystem::path& path);

}  // namespace tessavo::kept
