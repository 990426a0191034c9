#include "pages/output/clip_poller.h"

#include <atomic>
#include <condition_variable>
#include <gtest/gtest.h>
#include <mutex>
#include <vector>

#include "target/waiting.h"

namespace tessavo::testing {
namespace {

using test::eventually;

/// A clock whose pauses end when the test says so.
class SteppedClock final : public IClock {
 public:
    Milliseconds now() override {
        const std::lock_guard guard(mutex_);
        return now_;
    }
    bool sleep(Milliseconds duration) override {
        std::unique_lock guard(mutex_);
        pauses_.push_back(duration);
        changed_.notify_all();
        changed_.wait(guard, [this] { return steps_ > 0 || ended_; });
        steps_ -= ended_ ? 0 : 1;
        now_ += duration;
        return !ended_;
    }
    /// Lets one pause pass and waits for the next one.
    void step() {
        std::unique_lock guard(mutex_);
        const std::size_t before = pauses_.size();
        ++steps_;
        changed_.notify_all();
        changed_.wait(guard, [&] { return pauses_.size() > before; });
    }
    void waitForPause() {
        std::unique_lock guard(mutex_);
        changed_.wait(guard, [this] { return !pauses_.empty(); });
    }
    void end() {
        const std::lock_guard guard(mutex_);
        ended_ = true;
        changed_.notify_all();
    }
    std::vector<Milliseconds> pauses() {
        const std::lock_guard guard(mutex_);
        return pauses_;
    }

 private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Milliseconds> pauses_;
    Milliseconds now_{0};
    int steps_ = 0;
    bool ended_ = false;
};

class Poller : public ::testing::Test {
 protected:
    ~Poller() override {
        clock.end();
        poller.reset();
    }
    void start() {
        poller = std::make_unique<ClipPoller>(
            ClipPoller::Outside{[this]() -> std::optional<ClipState> {
                                    ++asked;
                                    if (whileAsking) {
                                        whileAsking();
                                    }
                                    return answers ? std::optional(ClipState{}) : std::nullopt;
                                },
                                [this] { return lineIsFree.load(); },
                                [this](const ClipState&) { ++delivered; }},
            &clock);
        clock.waitForPause();
    }

    SteppedClock clock;
    std::atomic<int> asked = 0;
    std::atomic<int> delivered = 0;
    std::atomic<bool> answers = true;
    std::atomic<bool> lineIsFree = true;
    std::function<void()> whileAsking;
    std::unique_ptr<ClipPoller> poller;
};

TEST_F(Poller, OnlyPausesWhileItIsOff) {
    start();
    for (int i = 0; i < 5; ++i) {
        clock.step();
    }
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(clock.pauses(), std::vector<Milliseconds>(6, Milliseconds{1000}));
}

TEST_F(Poller, AsksOncePerPauseWhileItIsOn) {
    start();
    poller->setOn(true);
    for (int i = 1; i <= 5; ++i) {
        clock.step();
        EXPECT_EQ(asked, i);
        EXPECT_EQ(delivered, i);
    }
    EXPECT_EQ(clock.now(), Milliseconds{5000});
}

TEST_F(Poller, DeliversNothingWhenNoAnswerComes) {
    start();
    answers = false;
    poller->setOn(true);
    clock.step();
    clock.step();
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(delivered, 0);
    answers = true;
    clock.step();
    EXPECT_EQ(delivered, 1);
}

TEST_F(Poller, LeavesTheLineToWhateverNeedsItMore) {
    start();
    poller->setOn(true);
    lineIsFree = false;
    clock.step();
    clock.step();
    EXPECT_EQ(asked, 0);
    lineIsFree = true;
    clock.step();
    EXPECT_EQ(asked, 1);
}

TEST_F(Poller, AsksAndDeliversNothingFromSwitchingOffOn) {
    start();
    whileAsking = [this] { poller->setOn(false); };
    poller->setOn(true);
    clock.step();
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(delivered, 0) << "the answer to what was under way is dropped";
    clock.step();
    EXPECT_EQ(asked, 1);
}

TEST_F(Poller, EndsAtOnceInsideItsPauseWithTheMachinesClock) {
    const auto start = std::chrono::steady_clock::now();
    {
        ClipPoller real(
            {[] { return std::optional<ClipState>(); }, [] { return true; }, [](const ClipState&) {}});
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(900));
}

TEST_F(Poller, AnEditWaitsForOnePollAtMost) {
    // The line as the program shares it: polls and edits take turns through one lock.
    TimedLock line;
    std::atomic<bool> editWaits = false;
    std::atomic<int> pollsWhileAnEditWaited = 0;
    std::atomic<bool> polling = false;
    SystemClock fast;
    ClipPoller busy({[&]() -> std::optional<ClipState> {
                         line.take(std::chrono::seconds(5));
                         if (editWaits) {
                             ++pollsWhileAnEditWaited;
                         }
                         polling = true;
                         fast.sleep(Milliseconds{2});
                         line.release();
                         return ClipState{};
                     },
                     [&] { return !editWaits; }, [](const ClipState&) {}},
                    &clock);
    clock.waitForPause();
    busy.setOn(true);
    for (int i = 0; i < 50; ++i) {
        polling = false;
        std::thread stepper([&] { clock.step(); });
        ASSERT_TRUE(eventually([&] { return polling.load(); }));
        editWaits = true;
        const int before = pollsWhileAnEditWaited;
        ASSERT_TRUE(line.take(std::chrono::seconds(5)));
        EXPECT_LE(pollsWhileAnEditWaited - before, 1);
        line.release();
        editWaits = false;
        stepper.join();
    }
    clock.end();
}

}  // namespace
}  // namespace tessavo::testing
