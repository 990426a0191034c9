#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tessavo::ports {

/// Ports with hardware behind them, sorted.
/// \param ttyClass the kernel's folder of terminals, with one folder for each
[[nodiscard]] std::vector<std::string> hardwarePorts(const std::filesystem::path& ttyClass);

/// Ports that living programs announced, sorted. Entries of dead programs and of vanished devices are
/// removed. \param runFolder see runFolder() \param deviceFolder where the names' devices are
[[nodiscard]] std::vector<std::string> announcedPorts(const std::filesystem::path& runFolder,
                                                      const std::filesystem::path& deviceFolder);

/// Folder of this user's running programs: a part of XDG_RUNTIME_DIR, or, without that, a folder in the
/// temporary directory. Created when it is missing.
/// \return nothing when it belongs to somebody else or others may enter it
[[nodiscard]] std::optional<std::filesystem::path> runFolder();

}  // namespace tessavo::ports
