#include "comm/port_list_posix.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "comm/device_name_posix.h"
#include "comm/own_ports.h"
#include "comm/port_device_posix.h"
#include "comm/port_list.h"
#include "comm/port_names.h"
#include "comm/tty_device_posix.h"

namespace tessavo {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view devicePrefix = "/dev/";

}  // namespace

namespace ports {

namespace {

constexpr std::string_view entryPrefix = "port-";
constexpr std::size_t longestName = 255;

const char* variable(const char* name) {
    return std::getenv(name);  // NOLINT(concurrency-mt-unsafe): nothing here changes the environment
}

// A kernel has names for UARTs that a machine may have; type 0 says that it has not.
bool hasHardware(const fs::path& folder) {
    std::error_code error;
    if (!isUartName(folder.filename().string())) {
        return fs::exists(folder / "device", error);
    }
    int type = 0;
    std::ifstream(folder / "type") >> type;
    return type != 0;
}

// A folder in a place where others write is only trusted when nobody else could have made or filled it.
bool isPrivate(const fs::path& folder) {
    struct stat status {};
    return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
           (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

std::string firstLine(int entry) {
    std::array<char, longestName + 2> text{};
    const ssize_t count = ::pread(entry, text.data(), text.size(), 0);
    const std::string_view content(text.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    const std::size_t end = content.find('\n');
    return end == std::string_view::npos ? std::string() : std::string(content.substr(0, end));
}

bool isName(const std::string& name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), [](char character) {
        return character > ' ' && character <= '~' && character != ',';
    });
}

// Whoever announced a port keeps its entry locked for as long as it lives.
bool ownerLives(int entry) {
    return ::flock(entry, LOCK_SH | LOCK_NB) != 0;
}

}  // namespace

HardwarePorts hardwarePorts(const fs::path& ttyClass) {
    std::array<std::vector<std::string>, 3> kinds;
    std::error_code error;
    for (fs::directory_iterator entry(ttyClass, error), end; !error && entry != end; entry.increment(error)) {
        if (hasHardware(entry->path())) {
            std::string name = entry->path().filename().string();
            // The kernel's stand-in for a slash in a device's name.
            std::replace(name.begin(), name.end(), '!', '/');
            const Attachment attachment = terminalDevice(entry->path()).attachment;
            kinds[static_cast<std::size_t>(attachment)].push_back(std::move(name));
        }
    }
    for (std::vector<std::string>& names : kinds) {
        std::sort(names.begin(), names.end(), portNameLess);
    }
    auto& [usb, plugged, builtIn] = kinds;
    appendPortNames(plugged, builtIn);
    return {std::move(usb), std::move(plugged)};
}

std::vector<std::string> announcedPorts(const fs::path& runFolder, const fs::path& deviceFolder) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator at(runFolder, error), end; !error && at != end; at.increment(error)) {
        const std::string file = at->path().filename().string();
        if (!file.starts_with(entryPrefix)) {
            continue;
        }
        const Descriptor entry(::open(at->path().c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
        if (!entry.valid()) {
            continue;
        }
        const std::string name = firstLine(entry.get());
        std::error_code ignored;
        if (ownerLives(entry.get()) && isName(name) && fs::exists(deviceFolder / name, ignored)) {
            names.push_back(name);
        } else {
            fs::remove(at->path(), ignored);
        }
    }
    std::sort(names.begin(), names.end(), portNameLess);
    return names;
}

std::optional<fs::path> runFolder() {
    std::error_code error;
    fs::path folder;
    const char* const runtime = variable("XDG_RUNTIME_DIR");
    if (runtime != nullptr && fs::path(runtime).is_absolute() && fs::is_directory(runtime, error)) {
        folder = fs::path(runtime) / "tessavo";
    } else {
        folder = fs::temp_directory_path(error) / ("tessavo-" + std::to_string(::geteuid()));
        if (error) {
            return std::nullopt;
        }
    }
    ::mkdir(folder.c_str(), S_IRWXU);
    return isPrivate(folder) ? std::optional(folder) : std::nullopt;
}

std::vector<std::string> portsIn(const fs::path& ttyClass, const fs::path& deviceFolder,
                                 std::string_view listed) {
    HardwarePorts hardware = hardwarePorts(ttyClass);
    std::vector<std::string> names = std::move(hardware.usb);
    if (const auto folder = runFolder()) {
        appendPortNames(names, announcedPorts(*folder, deviceFolder));
    }
    appendPortNames(names, ownPorts());
    appendPortNames(names, hardware.others);
    for (const std::string& name : splitPortNames(listed)) {
        appendPortNames(names, {std::string(withoutPrefix(name, devicePrefix))});
    }
    return names;
}

}  // namespace ports

std::wstring devicePath(std::string_view portName) {
    return wideDeviceName(std::string(devicePrefix).append(withoutPrefix(portName, devicePrefix)));
}

std::vector<std::string> listPorts() {
    const char* const listed = ports::variable("TESSAVO_PORTS");
    return ports::portsIn("/sys/class/tty", devicePrefix, listed != nullptr ? listed : "");
}

AnnouncedPort::AnnouncedPort(const std::string& portName) {
    const auto folder = ports::runFolder();
    if (!folder) {
        return;
    }
    // Made and locked under a name that no reader looks at: none finds it unlocked.
    std::string draft = (*folder / ".draft-XXXXXX").string();
    Descriptor entry(::mkostemp(draft.data(), O_CLOEXEC));
    if (!entry.valid()) {
        return;
    }
    const std::string line = std::string(withoutPrefix(portName, devicePrefix)) + "\n";
    const std::string final =
        (*folder / (std::string(ports::entryPrefix) + draft.substr(draft.size() - 6))).string();
    if (::flock(entry.get(), LOCK_EX | LOCK_NB) != 0 ||
        ::write(entry.get(), line.data(), line.size()) != static_cast<ssize_t>(line.size()) ||
        ::rename(draft.c_str(), final.c_str()) != 0) {
        ::unlink(draft.c_str());
        return;
    }
    path_ = final;
    lock_ = entry.release();
}

AnnouncedPort::~AnnouncedPort() {
    if (lock_ >= 0) {
        ::unlink(path_.c_str());
        ::close(lock_);
    }
}

}  // namespace tessavo
