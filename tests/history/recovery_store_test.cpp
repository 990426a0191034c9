#include "history/recovery_store.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <string>

#include "base/md5.h"
#include "history/recovery_session.h"
#include "support/temporary_folder.h"

namespace tessavo::test {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

// 2026-11-22 10:21:07.123 UTC.
constexpr milliseconds someTime{1795342867123};

class RecoveryFolder : public testing::Test {
 protected:
    /// Leaves a file of the run before.
    void leave(WallTime time, bool isSaved = false, const std::string& name = "recovery.tsr") {
        RecoveryState state = session_.state();
        state.time = time;
        state.isSaved = isSaved;
        ASSERT_TRUE(writeFile(folder_ / name, encodeRecovery(state)));
    }
    void leaveDamaged(const std::string& name = "recovery.tsr") {
        Bytes file = encodeRecovery(session_.state());
        file[100] ^= 1;
        ASSERT_TRUE(writeFile(folder_ / name, file));
    }
    void leaveNewer(const std::string& name = "recovery.tsr") {
        Bytes file{'T', 'S', 'V', 'R', 'E', 'C', 'O', 'V', 9, 0, 0, 0};
        const Md5Digest digest = md5(file);
        file.insert(file.end(), digest.begin(), digest.end());
        ASSERT_TRUE(writeFile(folder_ / name, file));
    }
    /// Every file of the folder with what it holds.
    [[nodiscard]] std::map<std::string, Bytes> files() const {
        std::map<std::string, Bytes> all;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
            all[entry.path().filename().string()] = readFile(entry.path());
        }
        return all;
    }
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const auto& [name, bytes] : files()) {
            names.push_back(name);
        }
        return names;
    }
    static std::vector<std::string> namesOf(const RecoveryList& list) {
        std::vector<std::string> names;
        for (const WaitingRecovery& one : list.waiting) {
            names.push_back(one.file.filename().string());
        }
        return names;
    }

    TemporaryFolder folder_;
    RecoverySession session_;
    RecoveryStore store_{folder_.path()};
    WallTime then_{someTime};
    WallTime now_{someTime + std::chrono::hours(1)};
};

TEST_F(RecoveryFolder, HoldsNothingAtTheVeryFirstStart) {
    for (const RecoveryStore& none :
         {store_, RecoveryStore(folder_ / "missing"), RecoveryStore(std::filesystem::path())}) {
        const RecoveryStart start = none.beginRun(now_);
        EXPECT_THAT(start.list.waiting, IsEmpty());
        EXPECT_TRUE(start.isFree);
        EXPECT_THAT(none.look().waiting, IsEmpty());
    }
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(RecoveryFolder, ARunThatEndedWithoutSavingWaitsUnderItsOwnTime) {
    session_.edit(3);
    leave(then_);
    const Bytes before = readFile(store_.currentFile());
    const RecoveryStart start = store_.beginRun(now_);
    EXPECT_TRUE(start.isFree);
    EXPECT_THAT(names(), ElementsAre("ended-20261122-102107-123.tsr"));
    EXPECT_EQ(files().begin()->second, before);
    ASSERT_EQ(start.list.waiting.size(), 1U);
    const WaitingRecovery& one = start.list.waiting.front();
    EXPECT_EQ(one.time, then_);
    EXPECT_EQ(one.documentPath, session_.state().documentPath);
    EXPECT_EQ(one.process, 4711U);
    const auto state = RecoveryStore::take(one);
    ASSERT_TRUE(state.has_value());
    EXPECT_TRUE(isSame(state->trail->state, session_.state().trail->state));
    EXPECT_TRUE(std::filesystem::exists(one.file)) << "it goes when it is discarded";
    EXPECT_FALSE(RecoveryStore::discard(one));
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_FALSE(RecoveryStore::take(one).has_value());
    EXPECT_FALSE(RecoveryStore::discard(one)) << "once more is no error";
}

TEST_F(RecoveryFolder, ARunThatEndedSavedLeavesNothing) {
    leave(then_, true);
    leave(then_, true, "ended-20200101-000000-000.tsr");
    EXPECT_THAT(store_.look().waiting, IsEmpty());
    EXPECT_EQ(files().size(), 2U) << "looking changes nothing";
    EXPECT_THAT(store_.beginRun(now_).list.waiting, IsEmpty());
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(RecoveryFolder, RunsThatNobodyDecidedAboutWaitOnNewestFirst) {
    for (int run = 0; run < 5; ++run) {
        leave(then_ + std::chrono::minutes(run));
        const RecoveryStart start = store_.beginRun(now_);
        EXPECT_TRUE(start.isFree);
        ASSERT_EQ(start.list.waiting.size(), static_cast<std::size_t>(run) + 1);
        for (int i = 0; i <= run; ++i) {
            EXPECT_EQ(start.list.waiting[static_cast<std::size_t>(i)].time,
                      then_ + std::chrono::minutes(run - i));
        }
    }
    EXPECT_EQ(files().size(), 5U);
}

TEST_F(RecoveryFolder, RunsOfTheSameTimeDoNotReplaceEachOther) {
    std::vector<Bytes> left;
    for (int run = 0; run < 3; ++run) {
        session_.edit();
        leave(then_);
        left.push_back(readFile(store_.currentFile()));
        static_cast<void>(store_.beginRun(now_));
    }
    EXPECT_THAT(names(), ElementsAre("ended-20261122-102107-123-2.tsr", "ended-20261122-102107-123-3.tsr",
                                     "ended-20261122-102107-123.tsr"));
    for (const Bytes& bytes : left) {
        EXPECT_TRUE(std::ranges::any_of(files(), [&](const auto& file) { return file.second == bytes; }));
    }
}

TEST_F(RecoveryFolder, ADamagedFileIsSetAsideAndToldOnce) {
    leaveDamaged();
    const Bytes before = readFile(store_.currentFile());
    const RecoveryStart start = store_.beginRun(now_);
    EXPECT_TRUE(start.isFree);
    EXPECT_THAT(start.list.waiting, IsEmpty());
    EXPECT_THAT(names(), ElementsAre("damaged-20261122-112107-123.tsr"));
    EXPECT_THAT(start.list.damaged, ElementsAre(folder_ / "damaged-20261122-112107-123.tsr"));
    EXPECT_EQ(files().begin()->second, before);
    EXPECT_THAT(store_.beginRun(now_).list.damaged, IsEmpty());
    EXPECT_THAT(store_.look().damaged, ElementsAre(folder_ / "damaged-20261122-112107-123.tsr"));
}

TEST_F(RecoveryFolder, OneThatIsDamagedWhileItWaitsDoesNotHideTheOthers) {
    leave(then_, false, "ended-20261122-102107-123.tsr");
    leaveDamaged("ended-20261122-102200-000.tsr");
    leaveDamaged();
    const RecoveryStart start = store_.beginRun(now_);
    EXPECT_THAT(namesOf(start.list), ElementsAre("ended-20261122-102107-123.tsr"));
    EXPECT_EQ(start.list.damaged.size(), 2U);
    EXPECT_THAT(names(), ElementsAre("damaged-20261122-112107-123-2.tsr", "damaged-20261122-112107-123.tsr",
                                     "ended-20261122-102107-123.tsr"));
}

TEST_F(RecoveryFolder, OneOfALaterVersionWaitsForIt) {
    leaveNewer();
    const Bytes before = readFile(store_.currentFile());
    for (int run = 0; run < 3; ++run) {
        const RecoveryStart start = store_.beginRun(now_);
        EXPECT_TRUE(start.isFree);
        EXPECT_THAT(start.list.waiting, IsEmpty());
        EXPECT_THAT(start.list.damaged, IsEmpty());
        EXPECT_THAT(start.list.newer, ElementsAre(folder_ / "ended-20261122-112107-123.tsr"));
    }
    EXPECT_THAT(names(), ElementsAre("ended-20261122-112107-123.tsr"));
    EXPECT_EQ(files().begin()->second, before);
}

TEST_F(RecoveryFolder, WhatCannotBeReadIsMovedAndNotReplaced) {
    std::filesystem::create_directory(store_.currentFile());
    const RecoveryStart start = store_.beginRun(now_);
    EXPECT_TRUE(start.isFree);
    EXPECT_THAT(start.list.unreadable, ElementsAre(folder_ / "ended-20261122-112107-123.tsr"));
    EXPECT_FALSE(std::filesystem::exists(store_.currentFile()));
}

TEST_F(RecoveryFolder, TheLastTwentyOfEachKindStay) {
    for (int run = 0; run < 25; ++run) {
        leave(then_ + std::chrono::minutes(run));
        EXPECT_LE(store_.beginRun(now_).list.waiting.size(), 20U);
        leaveDamaged();
        static_cast<void>(store_.beginRun(now_ + std::chrono::minutes(run)));
    }
    const RecoveryList list = store_.look();
    EXPECT_EQ(store_.beginRun(now_).list.waiting.size(), 20U);
    ASSERT_EQ(list.waiting.size(), 20U);
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(list.waiting[static_cast<std::size_t>(i)].time, then_ + std::chrono::minutes(24 - i));
    }
    EXPECT_EQ(list.damaged.size(), 20U);
    EXPECT_EQ(list.damaged.front().filename(), "damaged-20261122-112607-123.tsr");
    EXPECT_EQ(files().size(), 40U);
}

TEST_F(RecoveryFolder, WhatAKilledWriteLeftIsClearedAway) {
    leave(then_);
    ASSERT_TRUE(writeFile(folder_ / "recovery.tsr.part-123", Bytes(50, 1)));
    static_cast<void>(store_.beginRun(now_));
    EXPECT_THAT(names(), ElementsAre("ended-20261122-102107-123.tsr"));
}

TEST_F(RecoveryFolder, FilesOfOthersStayAsTheyAre) {
    const std::vector<std::string> others{"car.eqs",          "ended-.txt", "endedx.tsr",
                                          "recovery.tsr.bak", "versions",   "myrecovery.tsr.part-1",
                                          "notes.tsr"};
    for (const std::string& name : others) {
        ASSERT_TRUE(writeFile(folder_ / name, Bytes(10, 3)));
    }
    const auto before = files();
    const RecoveryStart start = store_.beginRun(now_);
    EXPECT_THAT(start.list.waiting, IsEmpty());
    EXPECT_THAT(start.list.damaged, IsEmpty());
    EXPECT_EQ(files(), before);
}

TEST_F(RecoveryFolder, NamesThatAreNotPlainOrNotEvenTextAreNoHindrance) {
    const std::filesystem::path copy = folder_.path() / std::filesystem::path(u8"ended-K\u00e4fer.tsr");
    ASSERT_TRUE(writeFile(copy, encodeRecovery(session_.state())));
    // Not every disk can hold such a name.
    const std::filesystem::path odd = folder_.path() / nameThatIsNoText(".txt");
    const Bytes bytes(writeFile(odd, Bytes(10, 3)) ? 10 : 0, 3);
    const RecoveryStart start = store_.beginRun(now_);
    ASSERT_EQ(start.list.waiting.size(), 1U);
    EXPECT_EQ(start.list.waiting[0].file, copy);
    EXPECT_EQ(readFile(odd), bytes);
}

TEST_F(RecoveryFolder, LookingSeesTheRunInProgressAndChangesNothing) {
    leave(then_ + std::chrono::minutes(2));
    leave(then_, false, "ended-20261122-102107-123.tsr");
    leaveDamaged("ended-20261122-102200-000.tsr");
    leaveDamaged("damaged-20261122-102200-000.tsr");
    leaveNewer("ended-20261122-102300-000.tsr");
    ASSERT_TRUE(writeFile(folder_ / "recovery.tsr.part-123", Bytes(50, 1)));
    const auto before = files();
    const RecoveryList list = store_.look();
    EXPECT_THAT(namesOf(list), ElementsAre("recovery.tsr", "ended-20261122-102107-123.tsr"));
    EXPECT_THAT(list.damaged, ElementsAre(folder_ / "ended-20261122-102200-000.tsr",
                                          folder_ / "damaged-20261122-102200-000.tsr"));
    EXPECT_THAT(list.newer, ElementsAre(folder_ / "ended-20261122-102300-000.tsr"));
    EXPECT_EQ(files(), before);
}

}  // namespace
}  // namespace tessavo::test
