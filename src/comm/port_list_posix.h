#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessavo {

/// Makes a simulated target's port known to listPorts() of every program of this user while it lives, also
/// when the program dies without a word.
class AnnouncedPort {
 public:
    /// \param portName as listPorts() is to give it; failing to announce is not an error
    explicit AnnouncedPort(const std::string& portName);
    ~AnnouncedPort();
    AnnouncedPort(const AnnouncedPort&) = delete;
    AnnouncedPort& operator=(const AnnouncedPort&) = delete;

 private:
    std::string path_;
    int lock_ = -1;
};

namespace ports {

/// Ports with hardware behind them, each kind sorted.
struct HardwarePorts {
    std::vector<std::string> usb;
    std::vector<std::string> others;  ///< with a plugged device; then the computer's own
};

/// \param ttyClass the kernel's folder of terminals, with one folder for each
[[nodiscard]] HardwarePorts hardwarePorts(const std::filesystem::path& ttyClass);

/// Ports that living programs announced, sorted. Entries of dead programs and of vanished devices are
/// removed.
/// \param runFolder see runFolder()
/// \param deviceFolder where the names' devices are, such as "/dev"
[[nodiscard]] std::vector<std::string> announcedPorts(const std::filesystem::path& runFolder,
                                                      const std::filesystem::path& deviceFolder);

/// The whole list, as listPorts() tells it.
/// \param ttyClass see hardwarePorts()
/// \param deviceFolder see announcedPorts()
/// \param listed names from the environment
[[nodiscard]] std::vector<std::string> portsIn(const std::filesystem::path& ttyClass,
                                               const std::filesystem::path& deviceFolder,
                                               std::string_view listed);

/// Folder of this user's running programs: a part of XDG_RUNTIME_DIR, or, without that, a folder in the
/// temporary directory. Created when it is missing.
/// \return nothing when it belongs to somebody else or others may enter it
[[nodiscard]] std::optional<std::filesystem::path> runFolder();

}  // namespace ports

}  // namespace tessavo
