#include "copies/backup_folder.h"

#include <array>
#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "copies/copy_target.h"
#include "support/temporary_folder.h"

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr WallTime time(std::chrono::seconds(1'790'000'000));

/// A backup of a target with a different image in each set.
TargetCopy copyOf(const std::vector<std::string>& faults = {}) {
    CopyTarget target(faults);
    TargetCopy copy = backUp(target.transfers()).copy;
    copy.port = "ttyUSB0";
    copy.time = time;
    return copy;
}

class BackupFolder : public ::testing::Test {
 protected:
    [[nodiscard]] std::filesystem::path backup() const { return folder_ / "backup"; }
    [[nodiscard]] std::filesystem::path file(const std::string& name) const { return backup() / name; }
    void writeCopy(const TargetCopy& copy) const { ASSERT_EQ(writeBackup(backup(), copy), ""); }
    [[nodiscard]] static std::vector<std::string> namesIn(const std::filesystem::path& folder) {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            names.push_back(entry.path().filename().string());
        }
        std::ranges::sort(names);
        return names;
    }

    TemporaryFolder folder_;
};

TEST_F(BackupFolder, HoldsEachReplyAsItArrivedAndComesBackWhole) {
    const TargetCopy copy = copyOf();
    writeCopy(copy);
    EXPECT_THAT(namesIn(backup()), ElementsAre("backup.json", "default.reply", "set1.reply", "set2.reply",
                                               "set3.reply", "set4.reply", "set5.reply"));
    const BackupRead read = readBackup(backup());
    ASSERT_TRUE(read.copy.has_value()) << read.trouble;
    EXPECT_EQ(read.copy->port, "ttyUSB0");
    EXPECT_EQ(read.copy->time, time);
    ASSERT_TRUE(read.copy->versions.has_value());
    EXPECT_EQ(read.copy->versions->software, 0x00010006U);
    for (const SetCopy& set : copy.sets) {
        const std::string name = set.targetSet == 0 ? "default" : "set" + std::to_string(set.targetSet);
        EXPECT_EQ(readFile(file(name + ".reply")), Bytes(set.reply.begin(), set.reply.end()));
        EXPECT_EQ(read.copy->set(set.targetSet).reply, set.reply);
        EXPECT_EQ(read.copy->set(set.targetSet).state, SetState::sound);
    }
}

TEST_F(BackupFolder, TakesAnEmptyFolderAndANameThatEndsInASeparator) {
    std::filesystem::create_directory(backup());
    EXPECT_EQ(backupFolderTrouble(backup()), "");
    writeCopy(copyOf());
    const std::filesystem::path other = folder_ / "other/";
    EXPECT_EQ(writeBackup(other, copyOf()), "");
    EXPECT_TRUE(readBackup(other).copy.has_value());
}

TEST_F(BackupFolder, IsNeverWrittenOver) {
    writeCopy(copyOf());
    const auto before = readFile(file("backup.json"));
    for (const auto& folder : {backup(), backup() / ""}) {
        EXPECT_THAT(backupFolderTrouble(folder), HasSubstr("not empty"));
        EXPECT_THAT(writeBackup(folder, copyOf({"wrong-digest"})), HasSubstr("not empty"));
    }
    EXPECT_EQ(readFile(file("backup.json")), before);
    ASSERT_TRUE(writeFile(folder_ / "file", {1}));
    EXPECT_THAT(writeBackup(folder_ / "file", copyOf()), HasSubstr("no folder"));
    EXPECT_THAT(backupFolderTrouble(folder_ / "missing/backup"), HasSubstr("cannot be made"));
    EXPECT_THAT(backupFolderTrouble({}), HasSubstr("no name"));
    EXPECT_THAT(namesIn(folder_.path()), ElementsAre("backup", "file"));
}

TEST_F(BackupFolder, LookingWhetherItCanBeWrittenLeavesNothing) {
    EXPECT_EQ(backupFolderTrouble(backup()), "");
    EXPECT_THAT(namesIn(folder_.path()), IsEmpty());
    std::filesystem::create_directory(backup());
    EXPECT_EQ(backupFolderTrouble(backup()), "");
    EXPECT_THAT(namesIn(backup()), IsEmpty());
}

TEST_F(BackupFolder, ADamagedSetIsKeptButNotRestorableAndOneThatWasNotReadHasNoFile) {
    TargetCopy copy = copyOf();
    copy.sets[1].reply[7] ^= 1;
    copy.sets[1].state = SetState::wrongDigest;
    copy.sets[3] = {.targetSet = 4, .state = SetState::failed, .reply = {}, .trouble = {}};
    copy.versions.reset();
    writeCopy(copy);
    EXPECT_FALSE(std::filesystem::exists(file("set4.reply")));
    const BackupRead read = readBackup(backup());
    ASSERT_TRUE(read.copy.has_value()) << read.trouble;
    EXPECT_EQ(read.copy->set(2).state, SetState::wrongDigest);
    EXPECT_EQ(read.copy->set(2).reply, copy.sets[1].reply);
    EXPECT_FALSE(read.copy->set(2).image().has_value());
    EXPECT_EQ(read.copy->set(4).state, SetState::notRead);
    EXPECT_FALSE(read.copy->versions.has_value());
    for (const std::uint8_t sound : std::to_array<std::uint8_t>({1, 3, 5, 0})) {
        EXPECT_EQ(read.copy->set(sound).state, SetState::sound);
    }
}

TEST_F(BackupFolder, AMissingTruncatedOrAlteredFileLosesItsSetAndNoOther) {
    const TargetCopy copy = copyOf();
    writeCopy(copy);
    struct Case {
        std::string reason;
        std::function<void(const std::filesystem::path&, Bytes)> damage;
    };
    const std::vector<Case> cases{
        {"is missing", [](const auto& path, const Bytes&) { std::filesystem::remove(path); }},
        {"is cut short", [](const auto& path, const Bytes&) { std::filesystem::resize_file(path, 4095); }},
        {"is cut short", [](const auto& path, const Bytes&) { std::filesystem::resize_file(path, 0); }},
        {"is altered", [](const auto& path, const Bytes&) { std::filesystem::resize_file(path, 4097); }},
        {"is altered",
         [](const auto& path, Bytes bytes) {
             bytes[3390] ^= 1;  // where not even the image's digest reaches
             ASSERT_TRUE(writeFile(path, bytes));
         }},
        {"cannot be read",
         [](const auto& path, const Bytes&) {
             std::filesystem::remove(path);
             std::filesystem::create_directory(path);
         }},
    };
    for (const std::uint8_t number : targetSetNumbers) {
        const std::filesystem::path path = file(targetSetWord(number) + ".reply");
        const Bytes bytes = readFile(path);
        for (const Case& each : cases) {
            each.damage(path, bytes);
            const BackupRead read = readBackup(backup());
            ASSERT_TRUE(read.copy.has_value()) << read.trouble;
            for (const SetCopy& set : read.copy->sets) {
                const bool hit = set.targetSet == number;
                EXPECT_EQ(set.state, hit ? SetState::lost : SetState::sound);
                EXPECT_EQ(set.image().has_value(), !hit);
                EXPECT_EQ(set.trouble, hit ? targetSetWord(number) + ".reply " + each.reason : "");
            }
            std::filesystem::remove(path);
            ASSERT_TRUE(writeFile(path, bytes));
        }
    }
    EXPECT_TRUE(readBackup(backup()).copy->everySetSound());
}

TEST_F(BackupFolder, AFileThatDisagreesWithTheNoteIsLostEvenWithItsDigest) {
    TargetCopy copy = copyOf();
    copy.sets[2].state = SetState::wrongDigest;  // although its digest is right
    writeCopy(copy);
    const BackupRead read = readBackup(backup());
    ASSERT_TRUE(read.copy.has_value());
    EXPECT_EQ(read.copy->set(3).state, SetState::lost);
    EXPECT_THAT(read.copy->set(3).trouble, HasSubstr("something else"));
}

TEST_F(BackupFolder, WithoutItsNoteItIsNone) {
    writeCopy(copyOf());
    std::filesystem::remove(file("backup.json"));
    EXPECT_FALSE(readBackup(backup()).copy.has_value());
    EXPECT_EQ(readBackup(backup()).trouble, "backup.json is missing, so it is no backup");
    EXPECT_THAT(readBackup(folder_ / "nowhere").trouble, HasSubstr("is missing"));
    std::filesystem::create_directory(file("backup.json"));
    EXPECT_THAT(readBackup(backup()).trouble, HasSubstr("cannot be read"));
    std::filesystem::remove(file("backup.json"));
    ASSERT_TRUE(writeFile(file("backup.json"), Bytes(70000, ' ')));
    EXPECT_EQ(readBackup(backup()).trouble, "backup.json cannot be used: it is larger than one ever is");
    ASSERT_TRUE(writeFile(file("backup.json"), {'{', '}'}));
    EXPECT_EQ(readBackup(backup()).trouble, "backup.json cannot be used: it is not that of a backup");
}

}  // namespace
}  // namespace tessavo::test
