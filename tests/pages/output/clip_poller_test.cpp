#include "pages/output/clip_poller.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

#include "comm/line_turns.h"
#include "support/stepped_clock.h"
#include "support/waiting.h"

namespace tessavo::test {
namespace {

class Poller : public ::testing::Test {
 protected:
    ~Poller() override {
        clock.end();
        poller.reset();
    }
    void start() {
        poller = std::make_unique<ClipPoller>(
            ClipPoller::Dependencies{
                [this]() -> std::optional<ClipState> {
                    ++asked;
                    if (whileAsking) {
                        whileAsking();
                    }
                    return answers ? std::optional(ClipState{}) : std::nullopt;
                },
                [this](const std::function<bool()>& wanted) {
                    ++turns;
                    return takeTurn ? takeTurn(wanted) : true;
                },
                [this](const std::optional<ClipState>& state) { ++(state ? delivered : unanswered); }},
            &clock);
        clock.waitForPause();
    }

    SteppedClock clock;
    std::atomic<int> asked = 0;
    std::atomic<int> delivered = 0;
    std::atomic<bool> answers = true;
    std::atomic<int> unanswered = 0;
    std::atomic<int> turns = 0;
    std::function<bool(const std::function<bool()>&)> takeTurn;
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

TEST_F(Poller, TellsWhenNoAnswerComes) {
    start();
    answers = false;
    poller->setOn(true);
    clock.step();
    clock.step();
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(unanswered, 2);
    EXPECT_EQ(delivered, 0);
    answers = true;
    clock.step();
    EXPECT_EQ(delivered, 1);
}

TEST_F(Poller, AsksInItsTurnOnly) {
    std::atomic<bool> mine = false;
    takeTurn = [&](const auto&) { return mine.load(); };
    start();
    clock.step();
    EXPECT_EQ(turns, 0) << "switched off it takes none";
    poller->setOn(true);
    clock.step();
    clock.step();
    EXPECT_EQ(turns, 2);
    EXPECT_EQ(asked, 0);
    mine = true;
    clock.step();
    EXPECT_EQ(asked, 1);
}

TEST_F(Poller, GivesATurnUpWhenItIsSwitchedOffOrDestroyed) {
    std::atomic<bool> waits = false;
    takeTurn = [&](const std::function<bool()>& wanted) {
        waits = true;
        EXPECT_TRUE(eventually([&] { return !wanted(); }));
        return false;
    };
    start();
    poller->setOn(true);
    clock.allow(1);
    ASSERT_TRUE(eventually([&] { return waits.load(); }));
    poller->setOn(false);
    clock.waitForPauses(2);
    waits = false;
    poller->setOn(true);
    clock.allow(1);
    ASSERT_TRUE(eventually([&] { return waits.load(); }));
    clock.end();
    poller.reset();
    EXPECT_EQ(asked, 0);
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
        ClipPoller real({[] { return std::optional<ClipState>(); }, [](const auto&) { return true; },
                         [](const auto&) {}});
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(900));
}

TEST(PollerAndEdits, AnEditWaitsForOnePollAtMost) {
    // The line as the program shares it, and some passes of the poller go by before whoever sends the edit
    // comes to look.
    constexpr int passesUntilTheLook = 5;
    SteppedClock clock;
    std::atomic<bool> editWaits = false;
    std::atomic<int> begun = 0;
    std::atomic<int> ended = 0;
    std::atomic<bool> holdThePoll = false;
    LineTurns turns({[&] { return editWaits.load(); }, [] { return false; }});
    ClipPoller poller({[&]() -> std::optional<ClipState> {
                           ++begun;
                           EXPECT_TRUE(eventually([&] { return !holdThePoll; }));
                           ++ended;
                           turns.endQuestion();
                           return ClipState{};
                       },
                       [&](const LineTurns::Wanted& wanted) {
                           // A turn that does not come at once is left for the next pass.
                           int looks = 0;
                           return turns.takeQuestion([&] { return looks++ == 0 && wanted(); });
                       },
                       [](const auto&) {}},
                      &clock);
    clock.waitForPause();
    poller.setOn(true);
    for (int i = 0; i < 4 && !::testing::Test::HasFailure(); ++i) {
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
        EXPECT_TRUE(turns.takeRound([] { return true; }));
        EXPECT_EQ(ended - endedBefore, 1) << "the one that was under way, and no other";
        EXPECT_EQ(begun, ended);
        editWaits = false;
        turns.endRound();
    }
    clock.end();
}

}  // namespace
}  // namespace tessavo::test
