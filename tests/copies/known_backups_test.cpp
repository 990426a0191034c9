#include "copies/known_backups.h"

#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "copies/backup_folder.h"
#include "copies/copy_target.h"
#include "support/temporary_folder.h"

namespace tessavo::test {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr WallTime morning(std::chrono::seconds(1'790'000'000));

class Known : public ::testing::Test {
 protected:
    /// Backs a simulated target up into a folder of this name and remembers it.
    void make(const std::string& name, WallTime time, const std::string& port = "ttyUSB0",
              const std::vector<std::string>& faults = {}) {
        CopyTarget target(faults);
        TargetCopy copy = backUp(target.transfers()).copy;
        copy.time = time;
        copy.port = port;
        ASSERT_EQ(writeBackup(folder_ / name, copy), "");
        ASSERT_TRUE(known_.add(folder_ / name));
    }

    TemporaryFolder folder_;
    KnownBackups known_{folder_ / "data"};
};

TEST_F(Known, AreListedNewestFirstWithWhatTheyTell) {
    make("one", morning);
    make("two", morning + std::chrono::hours(1), "COM3");
    ASSERT_TRUE(known_.add(folder_ / "./one/"));
    const auto list = known_.list();
    ASSERT_THAT(list, SizeIs(2));
    EXPECT_EQ(list[0].folder, folder_ / "one");
    EXPECT_EQ(list[0].time, morning);
    EXPECT_EQ(list[0].port, "ttyUSB0");
    EXPECT_TRUE(list[0].everySetRead);
    ASSERT_TRUE(list[0].versions.has_value());
    EXPECT_EQ(list[0].versions->hardware, 0x102U);
    EXPECT_EQ(list[1].folder, folder_ / "two");
    EXPECT_EQ(list[1].port, "COM3");
}

TEST_F(Known, ABackupThatWasRemovedOrWhoseNoteIsDamagedIsKnownNoMore) {
    make("one", morning);
    make("two", morning);
    std::filesystem::remove_all(folder_ / "two");
    ASSERT_THAT(known_.list(), SizeIs(1));
    for (const auto& entry : std::filesystem::directory_iterator(folder_ / "data")) {
        Bytes bytes = readFile(entry.path());
        bytes.back() ^= 1;
        ASSERT_TRUE(writeFile(entry.path(), bytes));
    }
    EXPECT_THAT(known_.list(), IsEmpty());
    ASSERT_TRUE(known_.add(folder_ / "one"));
    EXPECT_THAT(known_.list(), SizeIs(1));
}

TEST_F(Known, OneMadeSinceAMomentIsOfTheSamePortAndHardwareAndLacksNoSet) {
    make("one", morning);
    const auto second = std::chrono::seconds(1);
    EXPECT_TRUE(known_.madeSince(morning, "ttyUSB0", 0x102));
    EXPECT_TRUE(known_.madeSince(morning, "ttyUSB0", std::nullopt));
    EXPECT_FALSE(known_.madeSince(morning + second, "ttyUSB0", 0x102));
    EXPECT_FALSE(known_.madeSince(morning, "ttyUSB1", 0x102));
    EXPECT_FALSE(known_.madeSince(morning, "ttyUSB0", 0x103));
    std::filesystem::remove(folder_ / "one" / "set2.reply");
    EXPECT_FALSE(known_.madeSince(morning, "ttyUSB0", 0x102));
    // The target has damaged sets, but all that it has was read.
    make("damaged", morning, "ttyUSB0", {"wrong-digest"});
    EXPECT_TRUE(known_.madeSince(morning, "ttyUSB0", 0x102));
}

TEST_F(Known, TheLastFiftyStay) {
    for (std::size_t i = 0; i < 55; ++i) {
        ASSERT_TRUE(known_.add(folder_ / std::to_string(i)));
    }
    const std::filesystem::directory_iterator files(folder_ / "data");
    EXPECT_EQ(std::distance(files, std::filesystem::directory_iterator()), 50);
    EXPECT_THAT(known_.list(), IsEmpty());
}

TEST_F(Known, WithoutAFolderNothingIsRemembered) {
    KnownBackups nowhere({});
    EXPECT_FALSE(nowhere.add(folder_ / "one"));
    EXPECT_THAT(nowhere.list(), IsEmpty());
    EXPECT_TRUE(knownBackupsFolder({}).empty());
}

}  // namespace
}  // namespace tessavo::test
