#include <array>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <memory>
#include <random>
#include <set>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "cli/target_fixture.h"
#include "copies/backup_folder.h"
#include "copies/target_sets.h"
#include "support/device_host.h"
#include "target/fault_names.h"

// `tessavoctl backup`, `restore` and `verify` of a target that fails or whose cable is pulled, judged by what the target
// holds then. All on pseudo-terminals, in real time.

namespace tessavo::test {
namespace {

using testing::HasSubstr;

const TargetMemory oldMemory = memoryOf(10);
const TargetMemory newMemory = memoryOf(100);

// Bytes of an exchange: request byte, block, answer, a reply where there is one, disconnect and its answer.
constexpr std::uint64_t bytesOfReading = 6158;
constexpr std::array<std::uint64_t, 4> bytesOfRestoring{4105, bytesOfReading, 137, bytesOfReading};

/// The program itself, with its standard output and standard error in a file.
class RunningProgram {
 public:
    RunningProgram(std::vector<std::string> words, std::string output) : output_(std::move(output)) {
        words.insert(words.begin(), TESSAVO_CTL);
        std::vector<char*> argv;
        argv.reserve(words.size() + 1);
        for (std::string& word : words) {
            argv.push_back(word.data());
        }
        argv.push_back(nullptr);
        posix_spawn_file_actions_t files;
        ::posix_spawn_file_actions_init(&files);
        ::posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, output_.c_str(),
                                           O_WRONLY | O_CREAT | O_TRUNC, 0600);
        ::posix_spawn_file_actions_adddup2(&files, STDOUT_FILENO, STDERR_FILENO);
        EXPECT_EQ(::posix_spawn(&process_, argv[0], &files, nullptr, argv.data(), environ), 0);
        ::posix_spawn_file_actions_destroy(&files);
    }
    /// Waits for its end.
    CommandResult result() {
        int status = 0;
        EXPECT_EQ(::waitpid(process_, &status, 0), process_);
        const Bytes text = readFile(output_);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, std::string(text.begin(), text.end()), ""};
    }

 private:
    std::string output_;
    pid_t process_ = 0;
};

class CopyFaults : public TargetExchange {
 protected:
    CopyFaults() {
        startTarget({}, newMemory);
        backup_ = path("backup");
        EXPECT_EQ(run({"backup", "--port", port(), "--output", backup_}).code, 0);
        target_.reset();
    }

    /// What a command of the program says of a target, and what that target holds then.
    struct Outcome {
        CommandResult result;
        TargetMemory memory;
    };
    /// A command for a target with each of several faults, all at the same time.
    class Round {
     public:
        void add(std::unique_ptr<PtyTarget> target, const std::vector<std::string>& words,
                 const std::string& output) {
            targets_.push_back(std::move(target));
            programs_.emplace_back(words, output);
        }
        /// Waits for their ends.
        std::vector<Outcome> outcomes() {
            std::vector<Outcome> all;
            for (std::size_t i = 0; i < targets_.size(); ++i) {
                all.push_back({programs_[i].result(), {}});
                all.back().memory = targets_[i]->memory();
            }
            return all;
        }

     private:
        std::vector<std::unique_ptr<PtyTarget>> targets_;
        std::vector<RunningProgram> programs_;
    };
    Round begin(const std::string& command, const std::vector<std::string>& faults,
                const TargetMemory& memory) {
        Round round;
        for (const std::string& fault : faults) {
            startTarget({fault}, memory);
            std::vector<std::string> words{command, "--quiet", "--port", port()};
            const auto more =
                command == "backup"    ? std::vector<std::string>{"--output", path("copy of " + fault)}
                : command == "restore" ? std::vector<std::string>{backup_, "--sets", "3", "--yes"}
                                       : std::vector<std::string>{backup_};
            words.insert(words.end(), more.begin(), more.end());
            round.add(std::move(target_), words, path(std::string(command).append(" with ").append(fault)));
        }
        return round;
    }
    void expectWholeBackup(const std::string& fault, const Outcome& outcome) const;

    std::string backup_;  ///< of newMemory
};

/// Each set is wholly old or wholly new, and what is said of the one that was restored is so.
void expectOldOrNew(const CommandResult& result, const TargetMemory& memory, const std::string& where) {
    const std::string said = result.out + result.err;
    for (std::size_t set = 0; set < memory.sets.size(); ++set) {
        const bool isNew = memory.sets.at(set) == newMemory.sets.at(set);
        EXPECT_TRUE(isNew || memory.sets.at(set) == oldMemory.sets.at(set)) << where << ", set " << set;
        EXPECT_TRUE(set == 3 || !isNew) << where << ", set " << set;
    }
    const bool isNew = memory.sets[3] == newMemory.sets[3];
    const auto says = [&said](const char* text) { return said.find(text) != std::string::npos; };
    const bool saysNew =
        says("set 3: restored, read back and compared") || says("set 3: saved, but not compared");
    const bool saysOld = says("set 3: unchanged");
    const bool saysNeither = says("set 3: not known, it holds what it held before or the whole copy");
    EXPECT_EQ(saysNew + saysOld + saysNeither, 1) << where << "\n" << said;
    EXPECT_TRUE(isNew ? !saysOld : !saysNew) << where << "\n" << said;
    EXPECT_EQ(result.code, says("set 3: restored, read back and compared") && !says("failed") ? 0 : 1)
        << where << "\n"
        << said;
    if (says("The target plays the copy of set 3 now.")) {
        EXPECT_EQ(memory.live, newMemory.sets[3]) << where;
    } else if (says("The target plays what it played before.")) {
        EXPECT_EQ(memory.live, oldMemory.live) << where;
    } else {
        EXPECT_THAT(said, HasSubstr("What the target plays now is not known.")) << where;
    }
}

const std::set<std::string> harmlessFaults{"wrong-confirmation", "junk=1", "late=500", "cable=100000"};

/// All six sets, or those that the target gave, or no folder at all.
void CopyFaults::expectWholeBackup(const std::string& fault, const Outcome& outcome) const {
    const std::string& said = outcome.result.out;
    const BackupRead read = readBackup(path("copy of " + fault));
    EXPECT_EQ(outcome.memory.sets, newMemory.sets) << fault;
    EXPECT_EQ(outcome.memory.live, newMemory.live) << fault;
    EXPECT_EQ(outcome.result.code, harmlessFaults.contains(fault) ? 0 : 1) << said;
    if (harmlessFaults.contains(fault)) {
        ASSERT_TRUE(read.copy.has_value()) << fault << read.trouble;
        EXPECT_TRUE(read.copy->everySetSound()) << fault;
    } else if (fault == "wrong-digest") {
        EXPECT_THAT(said, HasSubstr("set 5: the target sent it with a wrong digest"));
        ASSERT_TRUE(read.copy.has_value()) << read.trouble;
        EXPECT_EQ(read.copy->set(5).state, SetState::wrongDigest);
    } else {
        EXPECT_THAT(said, HasSubstr("no set of the target could be read; no folder was written")) << fault;
        EXPECT_FALSE(std::filesystem::exists(path("copy of " + fault))) << fault;
    }
}

void expectCompared(const std::string& fault, const CommandResult& result, const TargetMemory& memory) {
    const bool harmless = harmlessFaults.contains(fault);
    EXPECT_EQ(result.code, harmless ? 0 : 1) << fault;
    for (const std::uint8_t set : targetSetNumbers) {
        const std::string row =
            targetSetText(set) + (harmless                  ? ": equal\n"
                                  : fault == "wrong-digest" ? ": the target sent it with a wrong"
                                                            : ": it could not be read");
        EXPECT_THAT(result.out, HasSubstr(row)) << fault;
    }
    EXPECT_EQ(memory.sets, newMemory.sets) << fault;
    EXPECT_EQ(memory.live, newMemory.live) << fault;
}

TEST_F(CopyFaults, EveryFaultOfTheTargetIsToldByAllThreeCommandsAndLeavesNoHalfSet) {
    // Where each of seven replies takes its ten seconds there would be a minute and more: virtual time has those.
    const std::vector<std::string> quick{
        "no-request",   "wrong-request=5", "negative=1",       "silence=1",          "junk=5",
        "junk=1",       "damaged-reply",   "wrong-complement", "wrong-confirmation", "wrong-digest",
        "cable=100000", "no-disconnect",   "late=500"};
    std::vector<std::string> all = quick;
    all.insert(all.end(), {"truncated-reply", "late=10500"});
    Round backups = begin("backup", quick, newMemory);
    Round comparisons = begin("verify", quick, newMemory);
    Round restores = begin("restore", all, oldMemory);
    const auto backedUp = backups.outcomes();
    const auto compared = comparisons.outcomes();
    const auto restored = restores.outcomes();
    std::set<std::string> tried;
    for (std::size_t i = 0; i < all.size(); ++i) {
        tried.insert(faultName(all[i]));
        if (i < quick.size()) {
            expectWholeBackup(all[i], backedUp[i]);
            expectCompared(all[i], compared[i].result, compared[i].memory);
        }
        expectOldOrNew(restored[i].result, restored[i].memory, all[i]);
        const bool goesThrough = harmlessFaults.contains(all[i]) && all[i] != "wrong-confirmation";
        EXPECT_EQ(restored[i].result.code, goesThrough ? 0 : 1) << all[i];
    }
    for (const std::string& form : faultForms()) {
        EXPECT_TRUE(tried.contains(faultName(form))) << form << " has no row here";
    }
}

TEST_F(CopyFaults, TheCablePulledDuringARestoreLeavesTheSetOldOrNewAndTheReportSaysWhich) {
    std::mt19937 random(16);
    std::uint64_t before = 0;
    for (const std::uint64_t exchange : bytesOfRestoring) {
        for (int cut = 0; cut < 4; ++cut) {
            const std::uint64_t bytes =
                before + std::uniform_int_distribution<std::uint64_t>(1, exchange - 1)(random);
            const std::string fault = "cable=" + std::to_string(bytes);
            startTarget({fault}, oldMemory);
            const CommandResult result =
                run({"restore", backup_, "--port", port(), "--sets", "3", "--quiet", "--yes"});
            expectOldOrNew(result, target_->memory(), fault);
            EXPECT_EQ(result.code, 1) << fault;
        }
        before += exchange;
    }
}

TEST_F(CopyFaults, TheCablePulledDuringABackupLeavesWholeSetsAndNamesTheOthers) {
    std::mt19937 random(17);
    for (std::uint64_t exchange = 0; exchange < 7; ++exchange) {
        for (int cut = 0; cut < 20; ++cut) {
            const std::string fault = "cable=" + std::to_string(exchange * bytesOfReading +
                                                                std::uniform_int_distribution<std::uint64_t>(
                                                                    1, bytesOfReading - 1)(random));
            startTarget({fault}, newMemory);
            const std::string folder = path("copy" + std::to_string(exchange * 20) + std::to_string(cut));
            const CommandResult result = run({"backup", "--port", port(), "--output", folder, "--quiet"});
            EXPECT_EQ(result.code, 1) << fault;
            if (exchange == 0) {
                EXPECT_FALSE(std::filesystem::exists(folder)) << fault;
                continue;
            }
            const BackupRead read = readBackup(folder);
            ASSERT_TRUE(read.copy.has_value()) << fault << read.trouble;
            for (std::size_t i = 0; i < targetSetNumbers.size(); ++i) {
                const std::uint8_t set = targetSetNumbers.at(i);
                EXPECT_EQ(read.copy->set(set).state, i < exchange ? SetState::sound : SetState::notRead)
                    << fault;
                if (i < exchange) {
                    EXPECT_EQ(
                        bytesOf(newMemory.sets.at(set)),
                        Bytes(read.copy->set(set).reply.begin(), read.copy->set(set).reply.begin() + 3384));
                } else {
                    EXPECT_THAT(result.err, HasSubstr(targetSetText(set) + ": it could not be read"))
                        << fault;
                }
            }
            EXPECT_THAT(result.err, HasSubstr("the versions could not be read")) << fault;
        }
    }
}

TEST_F(CopyFaults, TheCablePulledDuringAComparisonIsToldOfEverySetFromThereOn) {
    std::mt19937 random(18);
    for (std::uint64_t exchange = 0; exchange < targetSetNumbers.size(); ++exchange) {
        for (int cut = 0; cut < 20; ++cut) {
            const std::string fault = "cable=" + std::to_string(exchange * bytesOfReading +
                                                                std::uniform_int_distribution<std::uint64_t>(
                                                                    1, bytesOfReading - 1)(random));
            startTarget({fault}, newMemory);
            const CommandResult result = run({"verify", backup_, "--port", port(), "--quiet"});
            EXPECT_EQ(result.code, 1) << fault;
            for (std::size_t i = 0; i < targetSetNumbers.size(); ++i) {
                const std::string row =
                    targetSetText(targetSetNumbers.at(i)) +
                    (i < exchange ? ": equal\n" : ": it could not be read from the target\n");
                EXPECT_THAT(result.out, HasSubstr(row)) << fault;
            }
        }
    }
}

}  // namespace
}  // namespace tessavo::test
