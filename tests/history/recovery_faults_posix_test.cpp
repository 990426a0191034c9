#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "base/raw_file.h"
#include "history/recovery_session.h"
#include "history/recovery_store.h"
#include "history/recovery_writer.h"
#include "support/file_size_limit.h"
#include "support/ordinary_user.h"
#include "support/temporary_folder.h"
#include "support/waiting.h"

// What happens to recovery files when the disk is full or read-only, and when the program is killed.

namespace tessavo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::chrono::milliseconds patience = std::chrono::minutes(1);

mode_t modeOf(const std::filesystem::path& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777U;
}

class RecoveryFaults : public testing::Test {
 protected:
    [[nodiscard]] std::vector<std::error_code> told() {
        const std::lock_guard guard(mutex_);
        return told_;
    }
    [[nodiscard]] std::function<void(const std::error_code&)> noting() {
        return [this](const std::error_code& failed) {
            const std::lock_guard guard(mutex_);
            told_.push_back(failed);
        };
    }

    TemporaryFolder place_;
    std::filesystem::path folder_ = place_ / "tessavo";
    RecoveryStore store_{folder_};
    RecoverySession session_;

 private:
    std::mutex mutex_;
    std::vector<std::error_code> told_;
};

TEST_F(RecoveryFaults, FolderAndFilesAreForTheOwnerAlone) {
    const mode_t former = ::umask(0);
    {
        RecoveryWriter writer(store_.currentFile());
        writer.put(session_.shared());
        EXPECT_TRUE(writer.flush(patience));
    }
    EXPECT_EQ(modeOf(folder_), 0700U);
    EXPECT_EQ(modeOf(store_.currentFile()), 0600U);
    const RecoveryStart start = store_.beginRun(session_.now);
    ::umask(former);
    ASSERT_THAT(start.list.waiting, SizeIs(1));
    EXPECT_EQ(modeOf(start.list.waiting[0].file), 0600U);
}

TEST_F(RecoveryFaults, AFullDiskLosesNothingThatWasThereAndIsToldOnce) {
    RecoveryWriter writer(store_.currentFile(), noting());
    writer.put(session_.shared());
    ASSERT_TRUE(writer.flush(patience));
    const Bytes before = readFile(store_.currentFile());
    {
        const FileSizeLimit nearlyFull(10000);
        for (int i = 0; i < 5; ++i) {
            session_.edit();
            writer.put(session_.shared());
            EXPECT_FALSE(writer.flush(patience));
            EXPECT_SAME_BYTES(readFile(store_.currentFile()), before);
            EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_), {}), 1);
        }
    }
    EXPECT_THAT(told(), ElementsAre(std::make_error_code(std::errc::file_too_large)));
    EXPECT_TRUE(writer.flush(patience)) << "there is room again";
    EXPECT_SAME_BYTES(readFile(store_.currentFile()), encodeRecovery(session_.state()));
}

TEST_F(RecoveryFaults, AFileInPlaceOfTheFolderIsToldAndStays) {
    ASSERT_TRUE(writeFile(folder_, {1, 2, 3}));
    EXPECT_THAT(store_.beginRun(session_.now).list.waiting, IsEmpty());
    RecoveryWriter writer(store_.currentFile(), noting());
    writer.put(session_.shared());
    EXPECT_FALSE(writer.flush(patience));
    ASSERT_THAT(told(), SizeIs(1));
    EXPECT_TRUE(told()[0]);
    EXPECT_EQ(readFile(folder_), (Bytes{1, 2, 3}));
    writer.remove();
    EXPECT_TRUE(writer.flush(patience)) << "there is no file, as was asked for";
}

TEST_F(RecoveryFaults, AFolderThatCannotBeWrittenKeepsWhatWaitsThere) {
    {
        RecoveryWriter writer(store_.currentFile());
        writer.put(session_.shared());
    }
    const Bytes before = readFile(store_.currentFile());
    // The file may be read by whoever the test becomes.
    ASSERT_EQ(::chmod(place_.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(folder_.c_str(), 0555), 0);
    ASSERT_EQ(::chmod(store_.currentFile().c_str(), 0644), 0);
    {
        const OrdinaryUser user;
        const RecoveryStart start = store_.beginRun(session_.now);
        EXPECT_FALSE(start.isFree) << "this run would write over it";
        EXPECT_THAT(start.list.waiting, SizeIs(1));
    }
    ASSERT_EQ(::chmod(folder_.c_str(), 0755), 0);
    EXPECT_SAME_BYTES(readFile(store_.currentFile()), before);
    EXPECT_TRUE(store_.beginRun(session_.now).isFree);
}

TEST_F(RecoveryFaults, APipeInPlaceOfTheFileHoldsNobodyUp) {
    std::filesystem::create_directory(folder_);
    ASSERT_EQ(::mkfifo(store_.currentFile().c_str(), 0600), 0);
    EXPECT_TRUE(isTrouble(readRecovery(store_.currentFile()), RecoveryTrouble::unreadable));
    EXPECT_THAT(store_.look().unreadable, SizeIs(1));
    const RecoveryStart start = store_.beginRun(session_.now);
    EXPECT_TRUE(start.isFree);
    EXPECT_THAT(start.list.unreadable, SizeIs(1));
}

/// A number that a child process tells its parent, also after it was killed.
class SharedNumber {
 public:
    SharedNumber()
        : place_(::mmap(nullptr, sizeof(std::uint64_t), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS,
                        -1, 0)) {
        EXPECT_NE(place_, MAP_FAILED);
    }
    ~SharedNumber() { ::munmap(place_, sizeof(std::uint64_t)); }
    SharedNumber(const SharedNumber&) = delete;
    SharedNumber& operator=(const SharedNumber&) = delete;
    [[nodiscard]] std::atomic_ref<std::uint64_t> value() const {
        return std::atomic_ref(*static_cast<std::uint64_t*>(place_));
    }

 private:
    void* place_;
};

/// Edits and has every state written without pause, until it is killed.
[[noreturn]] void tuneForEver(const std::filesystem::path& file, const SharedNumber& written) {
    // A test that was given up must not leave it running.
    constexpr unsigned longestLife = 60;
    ::alarm(longestLife);
    RecoverySession session;
    RecoveryWriter writer(file);
    for (std::uint64_t number = 1;; ++number) {
        session.edit();
        RecoveryState state = session.state();
        state.process = number;
        writer.put(std::make_shared<const RecoveryState>(std::move(state)));
        if (!writer.flush(patience)) {
            ::_exit(1);
        }
        written.value() = number;
    }
}

TEST_F(RecoveryFaults, AKillAtAnyMomentLeavesAWholeFileOfTheLastMoment) {
    std::filesystem::create_directory(folder_);
    std::mt19937 random(7);
    std::size_t left = 0;
    for (int kill = 0; kill < 50; ++kill) {
        const SharedNumber written;
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            tuneForEver(store_.currentFile(), written);
        }
        const bool wrote = eventually([&] { return written.value() >= 1; });
        // Any moment of a write, however long one takes on this disk.
        const auto moment = std::chrono::microseconds(random() % 20000);
        const auto end = std::chrono::steady_clock::now() + moment;
        while (std::chrono::steady_clock::now() < end) {
        }
        EXPECT_EQ(::kill(child, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(wrote);
        ASSERT_TRUE(WIFSIGNALED(status)) << "it ended by itself";
        const std::uint64_t last = written.value();
        const auto read = readRecovery(store_.currentFile());
        ASSERT_TRUE(std::holds_alternative<RecoveryState>(read)) << "kill " << kill;
        const auto& state = std::get<RecoveryState>(read);
        EXPECT_GE(state.process, last) << "what was flushed is there";
        EXPECT_LE(state.process, last + 1);
        EXPECT_EQ(state.trail->done.size(), std::min<std::uint64_t>(state.process, recoveryStepLimit));
        left += static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder_), {})) - 1;
        const RecoveryStart start = store_.beginRun(session_.now);
        ASSERT_TRUE(start.isFree);
        EXPECT_EQ(start.list.waiting.size(), std::min<std::size_t>(static_cast<std::size_t>(kill) + 1, 20));
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_), {}),
                  static_cast<std::ptrdiff_t>(start.list.waiting.size()))
            << "what was half written is gone";
    }
    EXPECT_GT(left, 0U) << "no kill struck in the middle of a write";
}

}  // namespace
}  // namespace tessavo::test
