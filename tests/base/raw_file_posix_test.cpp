#include <fcntl.h>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/mount.h>
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

}  // namespace

// Takes the place of the C library's.
extern "C" int fsync(int fd) {
    struct stat status {};
    flushedFolders.push_back(fstat(fd, &status) == 0 && S_ISDIR(status.st_mode));
    if (failingFlush != 0 && --failingFlush == 0) {
        errno = EIO;
        return -1;
    }
    return static_cast<int>(syscall(SYS_fsync, fd));
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
    ~ReplacedFilePosix() override { failingFlush = 0; }

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
    const std::filesystem::path disk = folder_ / "disk";
    std::filesystem::create_directory(disk);
    if (::mount("tessavo", disk.c_str(), "tmpfs", 0, "size=64k") != 0) {
        GTEST_SKIP() << "no small disk can be mounted here";
    }
    const std::filesystem::path file = disk / "state.bin";
    EXPECT_FALSE(replaceFile(file, old_));
    EXPECT_EQ(replaceFile(file, Bytes(100000, 1)), std::errc::no_space_on_device);
    EXPECT_EQ(readFile(file), old_);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(disk), {}), 1);
    EXPECT_EQ(::mount(nullptr, disk.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    EXPECT_EQ(replaceFile(file, Bytes(10, 1)), std::errc::read_only_file_system);
    EXPECT_EQ(removeFile(file), std::errc::read_only_file_system);
    EXPECT_EQ(readFile(file), old_);
    EXPECT_EQ(::umount(disk.c_str()), 0);
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
