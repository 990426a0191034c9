#include <csignal>
#include <gmock/gmock.h>
#include <unistd.h>

#include "cli/target_fixture.h"
#include "copies/backup_folder.h"
#include "copies/known_backups.h"
#include "copies/written_sets.h"
#include "support/device_host.h"

// Backing up, restoring and comparing against the simulated target on a pseudo-terminal, in real time.

namespace tessavo::test {
namespace {

using testing::AllOf;
using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class CopyCommands : public TargetExchange {
 protected:
    /// A backup of a target that holds memoryOf(seed).
    [[nodiscard]] std::string backupOf(std::uint8_t seed) {
        startTarget({}, memoryOf(seed));
        const CommandResult result = run({"backup", "--port", port(), "--output", path("backup")});
        EXPECT_EQ(result.code, 0) << result.err;
        target_.reset();
        return path("backup");
    }
    [[nodiscard]] CommandResult restore(const std::string& backup,
                                        const std::vector<std::string>& more) const {
        std::vector<std::string> words{"restore", backup, "--port", port()};
        words.insert(words.end(), more.begin(), more.end());
        return run(words);
    }
};

TEST_F(CopyCommands, BackupReadsAllSetsAndTheVersions) {
    startTarget({}, memoryOf(10));
    const CommandResult result = run({"backup", "--port", port(), "--output", path("backup")});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.out, "6 of 6 sets of the target were read into " + path("backup") + "\n");
    EXPECT_THAT(result.err,
                AllOf(HasSubstr("reading set 1 (1 of 7)"), HasSubstr("reading the versions (7 of 7)")));
    const BackupRead read = readBackup(path("backup"));
    ASSERT_TRUE(read.copy.has_value()) << read.trouble;
    EXPECT_TRUE(read.copy->everySetSound());
    EXPECT_EQ(read.copy->port, port());
    EXPECT_EQ(read.copy->versions->hardware, 0xABCDU);
    for (const SetCopy& set : read.copy->sets) {
        const ImageBytes image = memoryOf(10).sets.at(set.targetSet);
        EXPECT_TRUE(std::equal(image.begin(), image.end(), set.reply.begin()));
    }
    EXPECT_TRUE(KnownBackups(knownBackupsFolder(data_.path()))
                    .madeSince(std::chrono::system_clock::now() - std::chrono::minutes(5), port(), 0xABCD));
    EXPECT_EQ(target_->memory().live, memoryOf(10).live);
}

TEST_F(CopyCommands, BackupLooksAtTheFolderFirstAndNeverWritesOverOne) {
    startTarget();
    write(path("file"), {1});
    std::filesystem::create_directory(path("full"));
    write(path("full/x"), {1});
    for (const std::string name : {"file", "full", "missing/backup"}) {
        const CommandResult result = run({"backup", "--port", port(), "--output", path(name)});
        EXPECT_EQ(result.code, 1) << name;
        EXPECT_THAT(result.err,
                    AllOf(HasSubstr("tessavoctl: " + path(name) + ": it"), Not(HasSubstr("XModem"))));
    }
    EXPECT_THAT(files(), ElementsAre("file", "full"));
}

TEST_F(CopyCommands, BackupNamesDamagedSetsAndWritesTheRest) {
    startTarget({"wrong-digest"});
    const CommandResult result = run({"backup", "--quiet", "--port", port(), "--output", path("backup")});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.out, "0 of 6 sets of the target were read into " + path("backup") + "\n");
    EXPECT_THAT(result.err, AllOf(HasSubstr("set 1: the target sent it with a wrong digest"),
                                  HasSubstr("the default set: the target sent it with a wrong digest")));
    EXPECT_TRUE(readBackup(path("backup")).copy.has_value());
    const CommandResult restored = restore(path("backup"), {"--yes"});
    EXPECT_EQ(restored.code, 1);
    EXPECT_THAT(restored.err, AllOf(HasSubstr("nothing was sent"), Not(HasSubstr("XModem"))));
}

TEST_F(CopyCommands, BackupOfATargetThatGivesNothingWritesNoFolder) {
    startTarget({"damaged-reply"});
    const CommandResult result = run({"backup", "--port", port(), "--output", path("backup")});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err,
                HasSubstr(port() + ": no set of the target could be read; no folder was written"));
    EXPECT_THAT(files(), IsEmpty());
    EXPECT_THAT(KnownBackups(knownBackupsFolder(data_.path())).list(), IsEmpty());
}

TEST_F(CopyCommands, ATargetThatGoesAwayLeavesABackupOfWhatWasRead) {
    startTarget({}, memoryOf(10));
    const CommandResult result = runWatched({"backup", "--port", port(), "--output", path("backup")},
                                            "reading set 3", [this] { target_->stop(); });
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.out, "2 of 6 sets of the target were read into " + path("backup") + "\n");
    EXPECT_THAT(result.err, AllOf(HasSubstr("set 3: it could not be read"),
                                  HasSubstr("the default set: it could not be read"),
                                  HasSubstr("the versions could not be read")));
    const BackupRead read = readBackup(path("backup"));
    ASSERT_TRUE(read.copy.has_value()) << read.trouble;
    EXPECT_EQ(read.copy->set(2).state, SetState::sound);
    EXPECT_EQ(read.copy->set(3).state, SetState::notRead);
    EXPECT_FALSE(KnownBackups(knownBackupsFolder(data_.path())).madeSince({}, port(), std::nullopt));
}

TEST_F(CopyCommands, CtrlCEndsABackupWithoutAFolder) {
    startTarget();
    const CommandResult result = runWatched({"backup", "--port", port(), "--output", path("backup")},
                                            "reading set 3", [] { ::kill(::getpid(), SIGINT); });
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, AllOf(HasSubstr(port() + ": interrupted; no folder was written"),
                                  Not(HasSubstr("reading set 5"))));
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(CopyCommands, RestoreWithoutYesSaysWhatItWouldDoAndSendsNothing) {
    const std::string backup = backupOf(100);
    startTarget({}, memoryOf(10));
    const CommandResult result = restore(backup, {});
    EXPECT_EQ(result.code, 2);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err,
                AllOf(HasSubstr("nothing was sent"), HasSubstr("set 1, set 2, set 3, set 4 and set 5"),
                      HasSubstr("The target plays each set in turn"),
                      HasSubstr("Turn the amplifiers off or down"), Not(HasSubstr("XModem"))));
    EXPECT_EQ(target_->memory().sets, memoryOf(10).sets);
    EXPECT_EQ(target_->memory().live, memoryOf(10).live);
}

TEST_F(CopyCommands, RestorePutsSetsBackAndTheDefaultSetOnlyWhereItIsNamed) {
    const std::string backup = backupOf(100);
    startTarget({}, memoryOf(10));
    CommandResult result = restore(backup, {"--yes"});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_LT(result.err.find("The target plays each set in turn"),
              result.err.find("sending the copy of set 1 live"));
    EXPECT_THAT(result.out, AllOf(HasSubstr("set 1: restored, read back and compared\n"),
                                  HasSubstr("The target plays the copy of set 5 now.\n")));
    TargetMemory expected = memoryOf(100);
    expected.sets[0] = memoryOf(10).sets[0];
    EXPECT_EQ(target_->memory().sets, expected.sets);
    EXPECT_EQ(WrittenSets(writtenSetsFolder(data_.path())).list().sets.size(), 5U);
    result = restore(backup, {"--sets", "default,2", "--yes"});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(target_->memory().sets, memoryOf(100).sets);
    EXPECT_THAT(result.out, HasSubstr("The target plays the copy of the default set now.\n"));
}

TEST_F(CopyCommands, RestoreRefusesWhatIsNoListOfSets) {
    const std::string backup = backupOf(100);
    startTarget();
    for (const char* sets : {"6", "0", "1,1", "", "all"}) {
        const CommandResult result = restore(backup, {"--yes", "--sets", sets});
        EXPECT_EQ(result.code, 2) << sets;
        EXPECT_THAT(result.err, Not(HasSubstr("XModem"))) << sets;
    }
}

TEST_F(CopyCommands, RestoreOfADamagedBackupNamesWhatIsLost) {
    const std::string backup = backupOf(100);
    std::filesystem::resize_file(backup + "/set2.reply", 100);
    startTarget({}, memoryOf(10));
    CommandResult result = restore(backup, {"--sets", "1,2", "--yes"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err,
                AllOf(HasSubstr("set 2: set2.reply is cut short"), HasSubstr("nothing was sent")));
    EXPECT_EQ(target_->memory().sets, memoryOf(10).sets);
    // All that are there, and a code that says that not all were.
    result = restore(backup, {"--yes"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, Not(HasSubstr("set 2")));
    EXPECT_EQ(target_->memory().sets[2], memoryOf(10).sets[2]);
    EXPECT_EQ(target_->memory().sets[5], memoryOf(100).sets[5]);
    result = restore(path("nowhere"), {"--yes"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("backup.json is missing, so it is no backup"));
}

TEST_F(CopyCommands, AFailedRestoreSaysWhatEachSetHoldsAndWhatIsPlayed) {
    const std::string backup = backupOf(100);
    startTarget({"wrong-confirmation"}, memoryOf(10));
    const CommandResult result = restore(backup, {"--quiet", "--sets", "3,4", "--yes"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(result.err, "tessavoctl: " + port() +
                              ": the target did not confirm the copy of set 3; 0 of 2 sets are restored\n"
                              "tessavoctl: set 3: unchanged\ntessavoctl: set 4: unchanged\n"
                              "tessavoctl: What the target plays now is not known.\n");
    EXPECT_EQ(target_->memory().sets, memoryOf(10).sets);
}

TEST_F(CopyCommands, CtrlCEndsARestoreAndSaysWhatIsPlayed) {
    const std::string backup = backupOf(100);
    startTarget({}, memoryOf(10));
    const CommandResult result =
        runWatched({"restore", backup, "--port", port(), "--sets", "1,2,3", "--yes"},
                   "sending the copy of set 2 live", [] { ::kill(::getpid(), SIGINT); });
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, AllOf(HasSubstr(port() + ": interrupted; 1 of 3 sets are restored"),
                                  HasSubstr("set 1: restored"), HasSubstr("set 2: unchanged"),
                                  HasSubstr("set 3: unchanged"),
                                  AnyOf(HasSubstr("What the target plays now is not known."),
                                        HasSubstr("The target plays the copy of set 1 now."))));
    EXPECT_EQ(target_->memory().sets[1], memoryOf(100).sets[1]);
    EXPECT_EQ(target_->memory().sets[2], memoryOf(10).sets[2]);
}

TEST_F(CopyCommands, VerifyNamesTheSetsThatDiffer) {
    const std::string backup = backupOf(100);
    startTarget({}, memoryOf(100));
    CommandResult result = run({"verify", backup, "--port", port()});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(result.out,
              "set 1: equal\nset 2: equal\nset 3: equal\nset 4: equal\nset 5: equal\n"
              "the default set: equal\n");
    target_.reset();
    TargetMemory memory = memoryOf(100);
    memory.sets[0][1] ^= 1;
    memory.sets[4][0] ^= 1;
    memory.sets[4][3383] ^= 1;
    startTarget({}, memory);
    result = run({"verify", backup, "--port", port()});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, AllOf(HasSubstr("set 3: equal\nset 4: differs in 2 of 3384 bytes\n"),
                                  HasSubstr("the default set: differs in 1 of 3384 bytes\n")));
    EXPECT_EQ(target_->memory().sets, memory.sets);
    EXPECT_EQ(target_->memory().live, memory.live);
}

TEST_F(CopyCommands, WriteSetKeepsWhatItWrote) {
    startTarget();
    const std::string file = tuned();
    ASSERT_EQ(run({"write-set", "3", file, "--set", "2", "--port", port()}).code, 0);
    const WrittenSets written(writtenSetsFolder(data_.path()));
    const WrittenSetList list = written.list();
    ASSERT_EQ(list.sets.size(), 1U);
    EXPECT_EQ(list.sets[0].targetSet, 3);
    EXPECT_EQ(list.sets[0].port, port());
    const auto image = written.read(list.sets[0].id);
    ASSERT_TRUE(image.has_value());
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(&*image);
    EXPECT_EQ(Bytes(bytes, bytes + sizeof *image), read(path("tuned.bin")));
}

}  // namespace
}  // namespace tessavo::test
