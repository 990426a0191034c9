#include "history/recovery_writer.h"

#include <atomic>
#include <condition_variable>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>

#include "history/recovery_store.h"
#include "history/recovery_writer_fixture.h"
#include "support/temporary_folder.h"

namespace tessavo::test {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr milliseconds pace = RecoveryWriter::pace;
constexpr milliseconds patience = std::chrono::minutes(1);

std::shared_ptr<const RecoveryState> numbered(std::uint64_t number) {
    auto state = std::make_shared<RecoveryState>();
    state->trail = std::make_unique<const History::Trail>();
    state->process = number;
    return state;
}

class RecoveryKeeping : public testing::Test {
 protected:
    ~RecoveryKeeping() override { disk_.release(); }

    void put(std::uint64_t number) { writer_.put(numbered(number)); }
    [[nodiscard]] std::vector<std::error_code> told() {
        const std::lock_guard guard(toldMutex_);
        return told_;
    }
    [[nodiscard]] bool untilTold(std::size_t count) {
        return eventually([&] { return told().size() >= count; });
    }

    HandClock clock_;
    HandDisk disk_{clock_};
    std::mutex toldMutex_;
    std::vector<std::error_code> told_;
    RecoveryWriter writer_{"/nowhere/recovery.tsr",
                           [this](const std::error_code& failed) {
                               const std::lock_guard guard(toldMutex_);
                               told_.push_back(failed);
                           },
                           disk_.dependencies()};
};

const std::error_code full = std::make_error_code(std::errc::no_space_on_device);

TEST_F(RecoveryKeeping, WritesAtOnceWhenItHasBeenIdle) {
    put(1);
    ASSERT_TRUE(disk_.untilBegun(1));
    ASSERT_TRUE(writer_.flush(patience));
    clock_.advance(pace);
    put(2);
    ASSERT_TRUE(disk_.untilBegun(2));
    EXPECT_THAT(disk_.begun(), ElementsAre(1, 2));
    const auto times = disk_.times();
    EXPECT_EQ(times[1] - times[0], pace) << "no time passed between handing over and writing";
}

TEST_F(RecoveryKeeping, WhatComesWithinTheQuarterOfASecondIsPassedOverButTheLast) {
    put(1);
    ASSERT_TRUE(disk_.untilBegun(1));
    put(2);
    put(3);
    put(4);
    ASSERT_TRUE(clock_.untilWaitingFor(pace));
    clock_.advance(pace - milliseconds(1));
    ASSERT_TRUE(clock_.untilWaitingFor(milliseconds(1)));
    put(5);
    EXPECT_THAT(disk_.begun(), ElementsAre(1));
    clock_.advance(milliseconds(1));
    ASSERT_TRUE(disk_.untilBegun(2));
    EXPECT_THAT(disk_.begun(), ElementsAre(1, 5));
}

TEST_F(RecoveryKeeping, UnderSteadyEditsItIsNeverMoreThanAQuarterOfASecondBehind) {
    constexpr milliseconds step{10};
    const auto start = clock_.now();
    for (std::uint64_t number = 1; number <= 500; ++number) {
        put(number);
        const auto now = clock_.now();
        // The writer has what is due before time goes on.
        ASSERT_TRUE(eventually([&] {
            const auto times = disk_.times();
            return !times.empty() && now - times.back() < pace;
        })) << number;
        if (number < 500) {
            clock_.advance(step);
        }
    }
    const auto times = disk_.times();
    EXPECT_EQ(times.size(), 20U) << "5 seconds at four a second";
    for (std::size_t i = 1; i < times.size(); ++i) {
        EXPECT_EQ(times[i] - times[i - 1], pace) << i;
    }
    for (std::size_t i = 0; i < times.size(); ++i) {
        const auto due = static_cast<std::uint64_t>((times[i] - start) / step) + 1;
        EXPECT_LE(due - disk_.begun()[i], 1U) << "the newest, or the one that was due when it came";
    }
}

TEST_F(RecoveryKeeping, HandingOverDoesNotWaitForTheDisk) {
    disk_.hold();
    put(1);
    ASSERT_TRUE(disk_.untilBegun(1));
    for (std::uint64_t number = 2; number < 1000; ++number) {
        put(number);
    }
    writer_.remove();
    put(1000);
    EXPECT_FALSE(writer_.flush(milliseconds(20))) << "the disk still holds the first";
    EXPECT_THAT(disk_.begun(), ElementsAre(1));
    disk_.release();
    EXPECT_TRUE(writer_.flush(patience));
    EXPECT_THAT(disk_.begun(), ElementsAre(1, 1000));
}

TEST_F(RecoveryKeeping, FlushingDoesNotWaitForThePace) {
    put(1);
    ASSERT_TRUE(disk_.untilBegun(1));
    put(2);
    clock_.advance(milliseconds(10));
    EXPECT_TRUE(writer_.flush(patience));
    EXPECT_THAT(disk_.begun(), ElementsAre(1, 2)) << "the clock stands";
    EXPECT_TRUE(writer_.flush(milliseconds(0))) << "nothing is left to write";
    EXPECT_TRUE(writer_.flush(milliseconds::max()));
    put(3);
    ASSERT_TRUE(clock_.untilWaitingFor(pace)) << "the pace holds again";
    EXPECT_THAT(disk_.begun(), SizeIs(2));
}

TEST_F(RecoveryKeeping, AFlushThatComesDuringAWriteWaitsForWhatCameMeanwhile) {
    disk_.hold();
    put(1);
    ASSERT_TRUE(disk_.untilBegun(1));
    put(2);
    std::thread other([&] {
        // Once it is held no more.
        std::this_thread::yield();
        disk_.release();
    });
    EXPECT_TRUE(writer_.flush(patience));
    other.join();
    EXPECT_THAT(disk_.begun(), ElementsAre(1, 2));
}

TEST_F(RecoveryKeeping, AFailureIsToldOnceAndAgainOnlyAfterASuccess) {
    disk_.fail(full);
    put(1);
    ASSERT_TRUE(untilTold(1));
    for (std::uint64_t number = 2; number < 6; ++number) {
        put(number);
        EXPECT_FALSE(writer_.flush(patience));
    }
    EXPECT_THAT(told(), ElementsAre(full));
    disk_.fail({});
    EXPECT_TRUE(writer_.flush(patience)) << "what failed is tried again";
    EXPECT_THAT(disk_.begun(), ElementsAre(1, 2, 3, 4, 5, 5));
    const auto readOnly = std::make_error_code(std::errc::read_only_file_system);
    disk_.fail(readOnly);
    put(7);
    EXPECT_FALSE(writer_.flush(patience));
    EXPECT_THAT(told(), ElementsAre(full, readOnly));
}

TEST_F(RecoveryKeeping, AFailedWriteIsTriedAgainWithoutAnybodyAsking) {
    disk_.fail(full);
    put(1);
    ASSERT_TRUE(clock_.untilWaitingFor(RecoveryWriter::retryPause));
    clock_.advance(RecoveryWriter::retryPause);
    ASSERT_TRUE(disk_.untilBegun(2));
    ASSERT_TRUE(clock_.untilWaitingFor(RecoveryWriter::retryPause));
    disk_.fail({});
    clock_.advance(RecoveryWriter::retryPause);
    ASSERT_TRUE(disk_.untilBegun(3));
    EXPECT_TRUE(writer_.flush(patience));
    EXPECT_THAT(disk_.begun(), ElementsAre(1, 1, 1));
    EXPECT_THAT(told(), ElementsAre(full));
}

TEST_F(RecoveryKeeping, AfterAFailureWhatIsNewWaitsNoLongerThanElse) {
    disk_.fail(full);
    put(1);
    ASSERT_TRUE(clock_.untilWaitingFor(RecoveryWriter::retryPause));
    put(2);
    ASSERT_TRUE(clock_.untilWaitingFor(pace));
    clock_.advance(pace);
    ASSERT_TRUE(disk_.untilBegun(2));
    EXPECT_THAT(disk_.begun(), ElementsAre(1, 2));
}

TEST_F(RecoveryKeeping, MissingMemoryIsAFailureLikeOthers) {
    disk_.throwOnce();
    put(1);
    ASSERT_TRUE(clock_.untilWaitingFor(RecoveryWriter::retryPause));
    EXPECT_THAT(told(), ElementsAre(std::make_error_code(std::errc::not_enough_memory)));
    EXPECT_TRUE(writer_.flush(patience));
    EXPECT_THAT(disk_.begun(), ElementsAre(1, 1));
}

TEST_F(RecoveryKeeping, TheFileGoesWhenThereIsNothingToRestore) {
    put(1);
    ASSERT_TRUE(disk_.untilBegun(1));
    put(2);
    writer_.remove();
    EXPECT_TRUE(writer_.flush(patience));
    EXPECT_THAT(disk_.begun(), ElementsAre(1, HandDisk::removed));
    writer_.remove();
    put(3);
    EXPECT_TRUE(writer_.flush(patience));
    EXPECT_THAT(disk_.begun(), ElementsAre(1, HandDisk::removed, 3));
}

TEST_F(RecoveryKeeping, NothingIsWrittenBeforeAnythingIsHandedOver) {
    EXPECT_TRUE(writer_.flush(patience));
    clock_.advance(std::chrono::hours(1));
    EXPECT_TRUE(writer_.flush(patience));
    EXPECT_THAT(disk_.begun(), IsEmpty());
}

TEST_F(RecoveryKeeping, AStateThatIsOnTheDiskIsNotKept) {
    auto state = numbered(1);
    const std::weak_ptr<const RecoveryState> watched = state;
    writer_.put(std::move(state));
    ASSERT_TRUE(writer_.flush(patience));
    EXPECT_TRUE(watched.expired());
}

TEST(RecoveryKeepingEnd, WritesWhatIsLeftOnceAndDoesNotWaitForThePace) {
    HandClock clock;
    HandDisk disk(clock);
    {
        RecoveryWriter writer("/nowhere/recovery.tsr", {}, disk.dependencies());
        writer.put(numbered(1));
        ASSERT_TRUE(disk.untilBegun(1));
        writer.put(numbered(2));
    }
    EXPECT_THAT(disk.begun(), ElementsAre(1, 2));
    disk.fail(full);
    {
        RecoveryWriter writer("/nowhere/recovery.tsr", {}, disk.dependencies());
        writer.put(numbered(3));
        ASSERT_TRUE(clock.untilWaitingFor(RecoveryWriter::retryPause)) << "it has failed";
    }
    EXPECT_THAT(disk.begun(), ElementsAre(1, 2, 3, 3)) << "once more, and then it ends";
    { const RecoveryWriter idle("/nowhere/recovery.tsr", {}, disk.dependencies()); }
    EXPECT_THAT(disk.begun(), SizeIs(4));
}

/// A disk whose first write hangs until the test lets go, and fails then.
struct HangingDisk {
    std::mutex mutex;
    std::condition_variable changed;
    bool isLetGo = false;
    int begun = 0;

    std::error_code act() {
        std::unique_lock lock(mutex);
        ++begun;
        changed.notify_all();
        changed.wait(lock, [this] { return isLetGo; });
        return full;
    }
    [[nodiscard]] int writes() {
        const std::lock_guard lock(mutex);
        return begun;
    }
    void letGo() {
        const std::lock_guard lock(mutex);
        isLetGo = true;
        changed.notify_all();
    }
};

TEST(RecoveryKeepingEnd, DoesNotWaitForADiskThatHangs) {
    const auto disk = std::make_shared<HangingDisk>();
    auto clock = std::make_unique<HandClock>();
    auto told = std::make_unique<std::atomic<int>>(0);
    auto state = numbered(1);
    const std::weak_ptr<const RecoveryState> watched = state;
    {
        RecoveryWriter writer(
            "/nowhere/recovery.tsr", [&told](const std::error_code&) { ++*told; },
            {clock.get(), milliseconds(30), [disk](const auto&, auto) { return disk->act(); },
             [disk](const auto&) { return disk->act(); }});
        writer.put(std::move(state));
        ASSERT_TRUE(eventually([&] { return disk->writes() == 1; }));
        writer.put(numbered(2));
    }
    // What the left thread must not touch is gone; the sanitizers would see it.
    EXPECT_EQ(*told, 0);
    told.reset();
    clock.reset();
    EXPECT_FALSE(watched.expired()) << "it is still being written";
    disk->letGo();
    EXPECT_TRUE(eventually([&] { return disk.use_count() == 1; })) << "the thread takes all of it along";
    EXPECT_EQ(disk->writes(), 1) << "what waited is not begun any more";
    EXPECT_TRUE(watched.expired());
}

TEST(RecoveryKeepingOnDisk, MakesItsFolderWhenItIsMissingAndWhenItGoes) {
    const TemporaryFolder place;
    const RecoveryStore store(place / "data" / "tessavo");
    RecoveryWriter writer(store.currentFile());
    writer.put(numbered(1));
    ASSERT_TRUE(writer.flush(patience));
    ASSERT_THAT(store.look().waiting, SizeIs(1));
    EXPECT_EQ(store.look().waiting[0].process, 1U);
    std::filesystem::remove_all(place / "data");
    writer.put(numbered(2));
    ASSERT_TRUE(writer.flush(patience));
    ASSERT_THAT(store.look().waiting, SizeIs(1));
    EXPECT_EQ(store.look().waiting[0].process, 2U);
    writer.remove();
    ASSERT_TRUE(writer.flush(patience));
    EXPECT_TRUE(std::filesystem::is_empty(place / "data" / "tessavo"));
}

}  // namespace
}  // namespace tessavo::test
