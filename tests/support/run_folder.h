#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace tessavo::test {

/// Announces and lists ports in a folder of its own while it lives, so that other targets on the machine,
/// which may get the same port once it is free, are out of sight. Made before any thread starts.
class OwnRunFolder {
 public:
    OwnRunFolder()
        : folder_(std::filesystem::temp_directory_path() / ("tessavo-run-" + std::to_string(getpid()))) {
        std::filesystem::create_directories(folder_);
        if (const char* before = std::getenv(variable)) {
            before_ = before;
        }
        setenv(variable, folder_.c_str(), 1);
    }
    ~OwnRunFolder() {
        if (before_.empty()) {
            unsetenv(variable);
        } else {
            setenv(variable, before_.c_str(), 1);
        }
        std::filesystem::remove_all(folder_);
    }
    OwnRunFolder(const OwnRunFolder&) = delete;
    OwnRunFolder& operator=(const OwnRunFolder&) = delete;

 private:
    static constexpr const char* variable = "XDG_RUNTIME_DIR";
    std::filesystem::path folder_;
    std::string before_;
};

}  // namespace tessavo::test
