#include <cerrno>
#include <cstdarg>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <iterator>
#include <optional>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

#include "base/raw_file.h"
#include "support/file_size_limit.h"
#include "support/ordinary_user.h"
#include "support/temporary_folder.h"

namespace {

/// What was flushed since the list was cleared: files and folders, in this order.
std::vector<bool> flushedFolders;
/// The flush with this number, counted from 1, fails; none when 0.
int failingFlush = 0;
/// So many bytes fit onto the disk; any number when not set.
std::optional<ssize_t> freeBytes;
/// Whether the disk can only be read.
bool isReadOnly = false;

}  // namespace

// These take the place of the C library's.
extern "C" int fsync(int fd) {
    struct stat status {};
    flushedFolders.push_back(fstat(fd, &status) == 0 && S_ISDIR(status.st_mode));
    if (failingFlush != 0 && --failingFlush == 0) {
        errno = EIO;
        return -1;
    }
    return static_cast<int>(syscall(SYS_fsync, fd));
}

extern "C" ssize_t write(int fd, const void* bytes, size_t count) {
    if (freeBytes && count > static_cast<size_t>(*freeBytes)) {
        count = static_cast<size_t>(*freeBytes);
        if (count == 0) {
            errno = ENOSPC;
            return -1;
        }
    }
    const ssize_t written = syscall(SYS_write, fd, bytes, count);
    if (freeBytes && written > 0) {
        *freeBytes -= written;
    }
    return written;
}

extern "C" int open(const char* path, int flags, ...) {
    if (isReadOnly && (flags & (O_WRONLY | O_RDWR | O_CREAT)) != 0) {
        errno = EROFS;
        return -1;
    }
    va_list rest;
    va_start(rest, flags);
    const unsigned mode = (flags & O_CREAT) != 0 ? va_arg(rest, unsigned) : 0;
    va_end(rest);
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

extern "C" int unlink(const char* path) noexcept {
    if (isReadOnly) {
        errno = EROFS;
        return -1;
    }
    return static_cast<int>(syscall(SYS_unlinkat, AT_FDCWD, path, 0));
}

namespace tessavo::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

class ReplacedFilePosix : public testing::Test {
 protected:
    ReplacedFilePosix() {
        flushedFolders.clear();
        EXPECT_FALSE(replaceFile(file_, old_));
        flushedFolders.clear();
    }
    ~ReplacedFilePosix() override {
        failingFlush = 0;
        freeBytes.reset();
        isReadOnly = false;
    }

    void expectTheOldFileAlone() const {
        EXPECT_EQ(readFile(file_), old_);
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 1);
    }
    [[nodiscard]] static mode_t modeOf(const std::filesystem::path& path) {
        struct stat status {};
        EXPECT_EQ(::stat(path.c_str(), &status), 0);
        return status.st_mode & 07777U;
    }

    TemporaryFolder folder_;
    std::filesystem::path file_ = folder_ / "state.bin";
    Bytes old_ = Bytes(5000, 0x42);
};

TEST_F(ReplacedFilePosix, IsForItsOwnerAlone) {
    EXPECT_EQ(modeOf(file_), 0600U);
    ASSERT_EQ(::chmod(file_.c_str(), 0666), 0);
    const mode_t former = ::umask(0);
    EXPECT_FALSE(replaceFile(file_, old_));
    ::umask(former);
    EXPECT_EQ(modeOf(file_), 0600U) << "whatever the old file was";
}

TEST_F(ReplacedFilePosix, IsOnTheDiskBeforeItTakesTheNameAndSoIsTheNameThen) {
    ASSERT_FALSE(replaceFile(file_, Bytes(10, 1)));
    EXPECT_EQ(flushedFolders, (std::vector<bool>{false, true}));
    flushedFolders.clear();
    ASSERT_FALSE(removeFile(file_));
    EXPECT_EQ(flushedFolders, std::vector<bool>{true});
}

TEST_F(ReplacedFilePosix, BytesThatDoNotReachTheDiskLeaveTheOldFile) {
    failingFlush = 1;
    EXPECT_EQ(replaceFile(file_, Bytes(10, 1)), std::errc::io_error);
    expectTheOldFileAlone();
}

TEST_F(ReplacedFilePosix, ANameThatDoesNotReachTheDiskIsTold) {
    failingFlush = 2;
    EXPECT_EQ(replaceFile(file_, Bytes(10, 1)), std::errc::io_error);
    EXPECT_EQ(readFile(file_), Bytes(10, 1));
    failingFlush = 1;
    EXPECT_EQ(removeFile(file_), std::errc::io_error);
}

TEST_F(ReplacedFilePosix, AnyFileThatGrowsTooLongLeavesTheOldOne) {
    for (const rlim_t limit : {0U, 1U, 4096U, 4999U}) {
        const FileSizeLimit nearlyFull(limit);
        EXPECT_EQ(replaceFile(file_, Bytes(5000, 1)), std::errc::file_too_large) << limit;
    }
    expectTheOldFileAlone();
    const FileSizeLimit justEnough(5000);
    EXPECT_FALSE(replaceFile(file_, Bytes(5000, 1)));
}

TEST_F(ReplacedFilePosix, AFullDiskLeavesTheOldFile) {
    for (const ssize_t room : {0, 1, 4096, 99999}) {
        freeBytes = room;
        EXPECT_EQ(replaceFile(file_, Bytes(100000, 1)), std::errc::no_space_on_device) << room;
        EXPECT_EQ(freeBytes, 0) << "all of it was used";
    }
    freeBytes.reset();
    expectTheOldFileAlone();
    freeBytes = 100000;
    EXPECT_FALSE(replaceFile(file_, Bytes(100000, 1)));
    EXPECT_EQ(readFile(file_), Bytes(100000, 1));
}

TEST_F(ReplacedFilePosix, AReadOnlyDiskLeavesTheOldFile) {
    isReadOnly = true;
    EXPECT_EQ(replaceFile(file_, Bytes(10, 1)), std::errc::read_only_file_system);
    EXPECT_EQ(removeFile(file_), std::errc::read_only_file_system);
    isReadOnly = false;
    expectTheOldFileAlone();
}

TEST_F(ReplacedFilePosix, AFolderWithoutPermissionLeavesTheOldFile) {
    ASSERT_EQ(::chmod(folder_.path().c_str(), 0555), 0);
    {
        const OrdinaryUser user;
        EXPECT_EQ(replaceFile(file_, Bytes(10, 1)), std::errc::permission_denied);
        EXPECT_EQ(removeFile(file_), std::errc::permission_denied);
    }
    ASSERT_EQ(::chmod(folder_.path().c_str(), 0755), 0);
    expectTheOldFileAlone();
}

TEST_F(ReplacedFilePosix, BelowAFileIsNoPlace) {
    EXPECT_EQ(replaceFile(file_ / "below", Bytes(10, 1)), std::errc::not_a_directory);
    EXPECT_FALSE(removeFile(file_ / "below")) << "there is none";
    expectTheOldFileAlone();
}

TEST_F(ReplacedFilePosix, ALinkIsReplacedAndNotFollowed) {
    const std::filesystem::path link = folder_ / "link.bin";
    std::filesystem::create_symlink(file_, link);
    EXPECT_FALSE(replaceFile(link, Bytes(10, 1)));
    EXPECT_FALSE(std::filesystem::is_symlink(link));
    EXPECT_EQ(readFile(file_), old_);
}

TEST_F(ReplacedFilePosix, WhatAKilledProgramLeftUnderTheNameOfTheBytesOnTheirWayIsNoHindrance) {
    const std::filesystem::path left = folder_ / ("state.bin.part-" + std::to_string(::getpid()));
    ASSERT_TRUE(writeFile(left, old_));
    EXPECT_FALSE(replaceFile(file_, Bytes(10, 1)));
    EXPECT_EQ(readFile(file_), Bytes(10, 1));
    EXPECT_FALSE(std::filesystem::exists(left));
}

TEST_F(ReplacedFilePosix, ANameWithoutFolderLiesInTheCurrentOne) {
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder_.path());
    EXPECT_FALSE(replaceFile("state.bin", Bytes(10, 1)));
    std::filesystem::current_path(before);
    EXPECT_EQ(readFile(file_), Bytes(10, 1));
}

}  // namespace
}  // namespace tessavo::test
