#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

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
