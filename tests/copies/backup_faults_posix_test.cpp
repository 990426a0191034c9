#include <array>
#include <barrier>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>

#include "copies/backup_folder.h"
#include "copies/copy_target.h"
#include "copies/written_sets.h"
#include "support/file_size_limit.h"
#include "support/ordinary_user.h"
#include "support/temporary_folder.h"

// Disks that are full and folders that may not be written.

namespace tessavo::test {
namespace {

using ::testing::HasSubstr;

TargetCopy copyOfTarget() {
    CopyTarget target;
    return backUp(target.transfers()).copy;
}

TEST(BackupFaults, AFullDiskLeavesNothingBehind) {
    const TemporaryFolder folder;
    const TargetCopy copy = copyOfTarget();
    std::filesystem::create_directory(folder / "empty");
    const FileSizeLimit limit(4000);
    EXPECT_EQ(writeBackup(folder / "backup", copy), "set1.reply cannot be written");
    EXPECT_FALSE(std::filesystem::exists(folder / "backup"));
    EXPECT_EQ(writeBackup(folder / "empty", copy), "set1.reply cannot be written");
    EXPECT_TRUE(std::filesystem::is_empty(folder / "empty"));
}

TEST(BackupFaults, ADiskThatIsFullOnlyAtTheLastFileLeavesNothingBehindEither) {
    const TemporaryFolder folder;
    TargetCopy copy = copyOfTarget();
    // Makes backup.json larger than a reply.
    copy.port.assign(6000, 'x');
    {
        const FileSizeLimit limit(4500);
        EXPECT_EQ(writeBackup(folder / "backup", copy), "backup.json cannot be written");
    }
    EXPECT_FALSE(std::filesystem::exists(folder / "backup"));
    EXPECT_EQ(writeBackup(folder / "backup", copy), "");
    EXPECT_EQ(readBackup(folder / "backup").copy.value_or(TargetCopy()).port, copy.port);
}

TEST(BackupFaults, OfTwoThatWriteTheSameFolderAtTheSameTimeOneDoesAtMost) {
    const TemporaryFolder folder;
    CopyTarget first({}, memoryOf(10));
    CopyTarget second({}, memoryOf(100));
    const std::array<TargetCopy, 2> copies{backUp(first.transfers()).copy, backUp(second.transfers()).copy};
    for (int round = 0; round < 40; ++round) {
        const std::filesystem::path place = folder / std::to_string(round);
        if (round % 2 == 1) {
            std::filesystem::create_directory(place);
        }
        std::array<std::string, 2> troubles;
        std::barrier start(2);
        const auto write = [&](std::size_t who) {
            start.arrive_and_wait();
            troubles.at(who) = writeBackup(place, copies.at(who));
        };
        std::thread other(write, 1);
        write(0);
        other.join();
        ASSERT_FALSE(troubles[0].empty() && troubles[1].empty()) << "both say that it is theirs";
        if (troubles[0].empty() || troubles[1].empty()) {
            const BackupRead read = readBackup(place);
            ASSERT_TRUE(read.copy.has_value()) << read.trouble;
            for (const SetCopy& set : read.copy->sets) {
                EXPECT_EQ(set.reply, copies.at(troubles[0].empty() ? 0 : 1).set(set.targetSet).reply);
            }
        }
    }
}

TEST(BackupFaults, AFolderThatMayNotBeWrittenIsToldBeforeAnythingIsRead) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "empty");
    ASSERT_EQ(::chmod((folder / "empty").c_str(), 0555), 0);
    ASSERT_EQ(::chmod(folder.path().c_str(), 0555), 0);
    {
        const OrdinaryUser user;
        EXPECT_THAT(backupFolderTrouble(folder / "backup"), HasSubstr("cannot be made"));
        EXPECT_THAT(backupFolderTrouble(folder / "empty"), HasSubstr("nothing can be written"));
    }
    ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
}

TEST(BackupFaults, FilesOfItAreForTheirOwnerAlone) {
    const TemporaryFolder folder;
    ASSERT_EQ(writeBackup(folder / "backup", copyOfTarget()), "");
    WrittenSets written(folder / "data/written-sets");
    ASSERT_TRUE(written.keep(1, "ttyUSB0", parametersOf(imageOf(1))));
    for (const std::filesystem::path& in : {folder / "backup", folder / "data/written-sets"}) {
        for (const auto& entry : std::filesystem::directory_iterator(in)) {
            struct stat status {};
            ASSERT_EQ(::stat(entry.path().c_str(), &status), 0);
            EXPECT_EQ(status.st_mode & 0777, 0600U) << entry.path();
        }
    }
    struct stat status {};
    ASSERT_EQ(::stat((folder / "data/written-sets").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700U);
}

TEST(BackupFaults, LinksPipesDevicesAndHugeFilesNeitherHoldItUpNorCountForASet) {
    const TemporaryFolder folder;
    const std::filesystem::path backup = folder / "backup";
    const TargetCopy copy = copyOfTarget();
    ASSERT_EQ(writeBackup(backup, copy), "");
    const auto swap = [&backup](const char* name, auto make) {
        std::filesystem::remove(backup / name);
        make(backup / name);
    };
    swap("set1.reply", [](const auto& path) { ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0); });
    swap("set2.reply", [](const auto& path) { std::filesystem::create_symlink("/dev/zero", path); });
    std::filesystem::rename(backup / "set3.reply", folder / "elsewhere");
    swap("set3.reply", [](const auto& path) { std::filesystem::create_symlink("../elsewhere", path); });
    std::filesystem::resize_file(backup / "set4.reply", std::uintmax_t{1} << 40);
    swap("set5.reply", [](const auto& path) { std::filesystem::create_symlink("set5.reply", path); });
    ASSERT_TRUE(writeFile(backup / "set6.reply", {1, 2, 3}));
    const BackupRead read = readBackup(backup);
    ASSERT_TRUE(read.copy.has_value()) << read.trouble;
    EXPECT_EQ(read.copy->set(1).trouble, "set1.reply cannot be read");
    EXPECT_EQ(read.copy->set(2).trouble, "set2.reply cannot be read");
    // A link to the same bytes is as good as these: their digest tells.
    EXPECT_EQ(read.copy->set(3).state, SetState::sound);
    EXPECT_EQ(read.copy->set(3).reply, copy.set(3).reply);
    EXPECT_EQ(read.copy->set(4).trouble, "set4.reply is altered");
    EXPECT_EQ(read.copy->set(5).trouble, "set5.reply cannot be read");
    EXPECT_EQ(read.copy->set(0).state, SetState::sound);
    for (const std::uint8_t lost : std::to_array<std::uint8_t>({1, 2, 4, 5})) {
        EXPECT_EQ(read.copy->set(lost).state, SetState::lost);
        EXPECT_FALSE(read.copy->set(lost).image().has_value());
    }
    swap("backup.json", [](const auto& path) { ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0); });
    EXPECT_THAT(readBackup(backup).trouble, HasSubstr("backup.json cannot be used: it cannot be read"));
    swap("backup.json", [](const auto& path) { std::filesystem::create_symlink("/dev/zero", path); });
    EXPECT_THAT(readBackup(backup).trouble, HasSubstr("backup.json cannot be used: it cannot be read"));
    swap("backup.json", [](const auto& path) {
        ASSERT_TRUE(writeFile(path, {'{'}));
        std::filesystem::resize_file(path, std::uintmax_t{1} << 40);
    });
    EXPECT_THAT(readBackup(backup).trouble, HasSubstr("larger than one ever is"));
}

TEST(BackupFaults, WhatIsNoFolderIsNeverTakenForOne) {
    const TemporaryFolder folder;
    const TargetCopy copy = copyOfTarget();
    std::filesystem::create_directory(folder / "real");
    ASSERT_TRUE(writeFile(folder / "real/mine", {1}));
    std::filesystem::create_directory_symlink("real", folder / "link");
    std::filesystem::create_symlink("nowhere", folder / "dangling");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_THAT(writeBackup(folder / "link", copy), HasSubstr("not empty"));
    EXPECT_THAT(writeBackup(folder / "dangling", copy), HasSubstr("no folder"));
    EXPECT_THAT(writeBackup(folder / "pipe", copy), HasSubstr("no folder"));
    EXPECT_FALSE(std::filesystem::exists(folder / "nowhere"));
    EXPECT_FALSE(std::filesystem::exists(folder / "real/backup.json"));
    EXPECT_THAT(readBackup(folder / "pipe").trouble, HasSubstr("is missing"));
}

TEST(BackupFaults, AWrittenSetThatCannotBeKeptIsToldAndLeavesTheOthers) {
    const TemporaryFolder folder;
    WrittenSets written(folder / "data");
    ASSERT_TRUE(written.keep(1, "ttyUSB0", parametersOf(imageOf(1))));
    {
        const FileSizeLimit limit(1000);
        EXPECT_FALSE(written.keep(2, "ttyUSB0", parametersOf(imageOf(2))));
    }
    EXPECT_EQ(written.list().sets.size(), 1U);
    EXPECT_EQ(written.list().damaged, 0U);
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder / "data")) {
        files += entry.is_regular_file() ? 1U : 0U;
    }
    EXPECT_EQ(files, 2U);
}

}  // namespace
}  // namespace tessavo::test
