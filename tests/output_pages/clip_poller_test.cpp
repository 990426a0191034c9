#include "pages/output/clip_poller.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

#include "output_pages/stepped_clock.h"
#include "target/waiting.h"

namespace tessavo::testing {
namespace {

using test::eventually;

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

TEST(PollerAndEdits, AnEditWaitsForOnePollAtMost) {
    // The line as the program shares it: polls and edits take turns through one lock, and some passes of the
    // poller go by before whoever sends the edit comes to look.
    constexpr int passesUntilTheLook = 5;
    CSemaphore line;
    SteppedClock clock;
    std::atomic<bool> editWaits = false;
    std::atomic<int> begun = 0;
    std::atomic<int> ended = 0;
    std::atomic<bool> holdThePoll = false;
    ClipPoller poller({[&]() -> std::optional<ClipState> {
                           if (!line.take(std::chrono::seconds(30))) {
                               return std::nullopt;
                           }
                           ++begun;
                           EXPECT_TRUE(eventually([&] { return !holdThePoll; }));
                           ++ended;
                           line.release();
                           return ClipState{};
                       },
                       [&] { return !editWaits; }, [](const ClipState&) {}},
                      &clock);
    clock.waitForPause();
    poller.setOn(true);
    for (int i = 0; i < 50 && !::testing::Test::HasFailure(); ++i) {
        // The edit is made while a poll holds the line.
        holdThePoll = true;
        const std::size_t pausesBefore = clock.pauses().size();
        clock.allow(1);
        EXPECT_TRUE(eventually([&] { return begun == ended + 1; }));
        const int endedBefore = ended;
        editWaits = true;
        holdThePoll = false;
        clock.allow(passesUntilTheLook);
        clock.waitForPauses(pausesBefore + 1 + passesUntilTheLook);
        EXPECT_TRUE(line.take(std::chrono::seconds(30)));
        EXPECT_EQ(ended - endedBefore, 1) << "the one that was under way, and no other";
        EXPECT_EQ(begun, ended);
        line.release();
        editWaits = false;
    }
    clock.end();
}

}  // namespace
}  // namespace tessavo::testing
