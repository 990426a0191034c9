#include <array>
#include <cerrno>
#include <cstdlib>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/data_folder.h"

namespace tessavo {

namespace {

namespace fs = std::filesystem;

// Empty where the variable is not there.
fs::path variable(const char* name) {
    const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): nothing changes the environment
    return value == nullptr ? "" : value;
}

fs::path home() {
    fs::path named = variable("HOME");
    if (named.is_absolute()) {
        return named;
    }
    std::array<char, 16384> texts{};
    passwd entry{};
    passwd* found = nullptr;
    return ::getpwuid_r(::getuid(), &entry, texts.data(), texts.size(), &found) == 0 && found != nullptr &&
                   found->pw_dir != nullptr
               ? found->pw_dir
               : "";
}

}  // namespace

fs::path dataFolder() {
    if (fs::path named = variable(dataFolderVariable); !named.empty()) {
        return named;
    }
    // The rules for this variable say that a relative path in it counts as none.
    if (const fs::path shared = variable("XDG_DATA_HOME"); shared.is_absolute()) {
        return shared / "tessavo";
    }
    const fs::path own = home();
    return own.is_absolute() ? own / ".local" / "share" / "tessavo" : fs::path();
}

std::error_code makePrivateFolder(const fs::path& folder) {
    std::error_code error;
    if (fs::is_directory(folder, error)) {
        return {};
    }
    if (folder.has_parent_path() && folder.parent_path() != folder) {
        if (const std::error_code above = makePrivateFolder(folder.parent_path())) {
            return above;
        }
    }
    constexpr mode_t ownerOnly = 0700;
    if (::mkdir(folder.c_str(), ownerOnly) == 0) {
        return {};
    }
    const std::error_code failed(errno, std::generic_category());
    // Somebody else may have made it meanwhile.
    return fs::is_directory(folder, error) ? std::error_code() : failed;
}

}  // namespace tessavo
