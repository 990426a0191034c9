#pragma once

#include <filesystem>
#include <system_error>

namespace tessavo {

/// Variable of the environment that names another data folder than the usual one.
inline constexpr const char* dataFolderVariable = "TESSAVO_DATA_FOLDER";

/// The folder in which the program keeps files of its own for this user, as the recovery file. It need not
/// exist yet.
///
/// What TESSAVO_DATA_FOLDER names; otherwise "tessavo" in $XDG_DATA_HOME or ~/.local/share, and on Windows
/// "Tessavo" in the user's local application data. Asked before other threads change the environment.
/// \return empty where the system tells no place
[[nodiscard]] std::filesystem::path dataFolder();

/// Makes a folder, and those above it that are missing, for this user alone. One that exists stays as it is.
/// \return why it could not be made; no error where it stands
std::error_code makePrivateFolder(const std::filesystem::path& folder);

}  // namespace tessavo
