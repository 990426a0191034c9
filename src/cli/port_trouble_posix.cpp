#include <array>
#include <fcntl.h>
#include <filesystem>
#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include "cli/port_trouble.h"

namespace tessavo::cli {

namespace {

constexpr const char* usualGroup = "dialout";

// The group that may use the device; serial ports that tell none belong to the usual one.
std::string groupOf(const std::string& path) {
    struct stat status {};
    struct group entry {};
    struct group* found = nullptr;
    std::array<char, 4096> buffer{};
    constexpr mode_t groupMayUse = S_IRGRP | S_IWGRP;
    const bool told = ::stat(path.c_str(), &status) == 0 && (status.st_mode & groupMayUse) == groupMayUse &&
                      ::getgrgid_r(status.st_gid, &entry, buffer.data(), buffer.size(), &found) == 0 &&
                      found != nullptr;
    return told ? entry.gr_name : usualGroup;
}

}  // namespace

std::string accessTrouble(const std::wstring& device) {
    const std::string path = std::filesystem::path(device).string();
    if (::faccessat(AT_FDCWD, path.c_str(), R_OK | W_OK, AT_EACCESS) == 0) {
        return "the port is in use by another program; close that and try again";
    }
    const std::string group = groupOf(path);
    return "no permission to use the port; join the group " + group + " with 'sudo usermod -aG " + group +
           " $USER', then log in again";
}

}  // namespace tessavo::cli
