#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "base/descriptor_posix.h"
#include "base/raw_file.h"

namespace tessavo {

namespace {

constexpr std::size_t longestName = NAME_MAX;
// Links that a path may lead through; the system itself follows no more.
constexpr int mostLinks = 40;
// A pipe without another end, or a device that is not ready, must not keep the window waiting.
constexpr int withoutWaiting = O_NONBLOCK | O_NOCTTY;

// Opening a device may already do something to it, so what a path leads to is looked at before.
bool leadsToRegularFile(const std::filesystem::path& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool leadsToPipe(const std::filesystem::path& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISFIFO(status.st_mode);
}

bool isRegularFile(int fd) {
    struct stat status {};
    return ::fstat(fd, &status) == 0 && S_ISREG(status.st_mode);
}

bool isPipe(int fd) {
    struct stat status {};
    return ::fstat(fd, &status) == 0 && S_ISFIFO(status.st_mode);
}

std::size_t writeAll(int fd, std::span<const std::uint8_t> bytes) {
    std::size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t count = ::write(fd, bytes.data() + written, bytes.size() - written);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            break;
        }
        written += static_cast<std::size_t>(count);
    }
    return written;
}

// Network and full file systems report a failed write only here; files that cannot be synchronised are none
// of those.
bool flushToDevice(int fd) {
    return ::fsync(fd) == 0 || errno == EINVAL || errno == EROFS;
}

// A name in the file's own folder, so that renaming moves no bytes. A file name of the longest kind is cut to
// leave room for the suffix.
std::string temporaryName(const std::filesystem::path& path) {
    const std::string suffix = ".part-" + std::to_string(::getpid());
    std::string name = path.filename().string();
    name.resize(std::min(name.size(), longestName - suffix.size()));
    return (path.parent_path() / (name + suffix)).string();
}

// Where a path leads. It may end in links to a file that does not exist yet: that file is the one to be made.
std::filesystem::path behindLinks(std::filesystem::path path) {
    for (int links = 0; links < mostLinks; ++links) {
        std::error_code noLink;
        const std::filesystem::path next = std::filesystem::read_symlink(path, noLink);
        if (noLink) {
            break;
        }
        path = path.parent_path() / next;
    }
    return path;
}

FileWrite writeExistingFile(const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
    if (leadsToPipe(path)) {
        errno = ENXIO;
        return {};
    }
    Descriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC | withoutWaiting));
    if (!file.valid()) {
        return {};
    }
    if (isPipe(file.get())) {
        errno = ENXIO;
        return {};
    }
    FileWrite result{true, writeAll(file.get(), bytes)};
    const bool flushed = flushToDevice(file.get());
    if (!file.close() || !flushed) {
        result.written = 0;
    }
    return result;
}

enum class RenameResult { done, targetExists, failed };

// Renames a file, unless a file of the new name exists already: rename() alone would replace it.
RenameResult renameToNew(const std::string& temporary, const std::filesystem::path& path) {
    if (::link(temporary.c_str(), path.c_str()) == 0) {
        ::unlink(temporary.c_str());
        return RenameResult::done;
    }
    if (errno == EEXIST) {
        return RenameResult::targetExists;
    }
    // Not every file system gives a file two names.
    return std::rename(temporary.c_str(), path.c_str()) == 0 ? RenameResult::done : RenameResult::failed;
}

constexpr mode_t usualMode = 0666;  // less what the user's mask takes away
constexpr mode_t ownerOnly = 0600;

// Makes the temporary file. One that a killed program of the same number has left is removed first.
int makeTemporary(const std::string& name, mode_t mode) {
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW | withoutWaiting;
    const int fd = ::open(name.c_str(), flags, mode);
    if (fd >= 0 || errno != EEXIST || ::unlink(name.c_str()) != 0) {
        return fd;
    }
    return ::open(name.c_str(), flags, mode);
}

// Writes the temporary file down to the disk. The caller removes it where not every byte got there; errno says
// why then.
FileWrite writeTemporary(const std::string& name, std::span<const std::uint8_t> bytes, mode_t mode) {
    Descriptor file(makeTemporary(name, mode));
    if (!file.valid()) {
        return {};
    }
    errno = 0;
    FileWrite result{true, writeAll(file.get(), bytes)};
    const int shortReason = errno;
    const bool flushed = flushToDevice(file.get());
    const int flushReason = errno;
    if (result.written != bytes.size()) {
        errno = shortReason;
    } else if (!file.close()) {
        result.written = 0;
    } else if (!flushed) {
        result.written = 0;
        errno = flushReason;
    }
    return result;
}

std::error_code lastError() {
    return {errno != 0 ? errno : EIO, std::generic_category()};
}

// Puts the names in the folder of a path on the disk.
std::error_code flushFolder(const std::filesystem::path& path) {
    const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
    const Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return opened.valid() && flushToDevice(opened.get()) ? std::error_code() : lastError();
}

FileWrite writeNewFile(const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
    const std::string temporary = temporaryName(path);
    FileWrite result = writeTemporary(temporary, bytes, usualMode);
    if (!result.opened) {
        return result;
    }
    const RenameResult renamed =
        result.written == bytes.size() ? renameToNew(temporary, path) : RenameResult::failed;
    if (renamed != RenameResult::done) {
        ::unlink(temporary.c_str());
        result.written = 0;
    }
    return renamed == RenameResult::targetExists ? writeExistingFile(path, bytes) : result;
}

std::optional<FileStart> readFrom(int fd, std::size_t limit) {
    FileStart start;
    struct stat status {};
    if (::fstat(fd, &status) == 0 && S_ISREG(status.st_mode)) {
        start.fileSize = static_cast<std::uintmax_t>(status.st_size);
    }
    start.bytes.resize(limit);
    std::size_t size = 0;
    while (size < limit) {
        const ssize_t count = ::read(fd, start.bytes.data() + size, limit - size);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            break;
        }
        size += static_cast<std::size_t>(count);
    }
    start.bytes.resize(size);
    return start;
}

}  // namespace

std::optional<FileStart> readFileStart(const std::filesystem::path& path, std::size_t limit) {
    if (!leadsToRegularFile(path)) {
        return std::nullopt;
    }
    // The path may lead to another file by now, so the open one is looked at as well.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | withoutWaiting));
    return file.valid() && isRegularFile(file.get()) ? readFrom(file.get(), limit) : std::nullopt;
}

std::optional<FileStart> readStreamStart(const std::filesystem::path& path, std::size_t limit) {
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    return file.valid() ? readFrom(file.get(), limit) : std::nullopt;
}

FileWrite writeFileStart(const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
    const FileWrite result = writeExistingFile(path, bytes);
    return !result.opened && errno == ENOENT ? writeNewFile(behindLinks(path), bytes) : result;
}

std::error_code replaceFile(const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
    const std::string temporary = temporaryName(path);
    const FileWrite written = writeTemporary(temporary, bytes, ownerOnly);
    if (!written.opened) {
        return lastError();
    }
    if (written.written == bytes.size() && std::rename(temporary.c_str(), path.c_str()) == 0) {
        return flushFolder(path);
    }
    const std::error_code failed = lastError();
    ::unlink(temporary.c_str());
    return failed;
}

std::error_code removeFile(const std::filesystem::path& path) {
    if (::unlink(path.c_str()) != 0) {
        return errno == ENOENT || errno == ENOTDIR ? std::error_code() : lastError();
    }
    return flushFolder(path);
}

}  // namespace tessavo
