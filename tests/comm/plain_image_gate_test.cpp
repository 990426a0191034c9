#include "comm/plain_image_gate.h"

#include <future>
#include <gtest/gtest.h>

namespace tessavo::test {
namespace {

using State = LiveWorker::State;

constexpr Milliseconds atOnce{0};
constexpr Milliseconds patience{60000};

class Gate : public ::testing::Test {
 protected:
    void round(State result, bool isPlain) {
        gate.note(State::sending, isPlain);
        // The terms may change while a round is under way.
        gate.note(result, !isPlain);
    }
    PlainImageGate gate;
};

TEST_F(Gate, IsNotNeededAsLongAsEveryCopyIsTheImage) {
    EXPECT_FALSE(gate.isNeeded());
    for (const State result : {State::confirmed, State::wrongSet, State::failed}) {
        round(result, true);
        EXPECT_FALSE(gate.isNeeded());
    }
}

TEST_F(Gate, IsNeededFromTheFirstByteOfAnotherCopyToAConfirmedImage) {
    gate.note(State::sending, false);
    EXPECT_TRUE(gate.isNeeded());
    gate.note(State::failed, false);
    EXPECT_TRUE(gate.isNeeded()) << "the target may have taken it all the same";
    round(State::confirmed, false);
    round(State::failed, true);
    round(State::wrongSet, true);
    EXPECT_TRUE(gate.isNeeded());
    gate.note(State::sending, true);
    EXPECT_TRUE(gate.isNeeded());
    gate.note(State::confirmed, true);
    EXPECT_FALSE(gate.isNeeded());
}

TEST_F(Gate, WaitsForTheResultOfARoundThatBeginsLater) {
    round(State::confirmed, true);
    const std::uint64_t before = gate.rounds();
    EXPECT_FALSE(gate.wait(before, atOnce)) << "that one came too early";
    gate.note(State::sending, true);
    EXPECT_FALSE(gate.wait(before, atOnce));
    gate.note(State::confirmed, true);
    EXPECT_TRUE(gate.wait(before, atOnce));
}

TEST_F(Gate, RoundsWithAnotherCopyAreNoAnswer) {
    const std::uint64_t before = gate.rounds();
    round(State::confirmed, false);
    EXPECT_FALSE(gate.wait(before, atOnce));
    round(State::confirmed, true);
    EXPECT_TRUE(gate.wait(before, atOnce));
}

TEST_F(Gate, ARoundThatIsNotConfirmedEndsTheWaitAtOnce) {
    for (const State result : {State::wrongSet, State::failed}) {
        const std::uint64_t before = gate.rounds();
        auto waiting = std::async(std::launch::async, [&] { return gate.wait(before, patience); });
        round(result, true);
        ASSERT_EQ(waiting.wait_for(patience / 2), std::future_status::ready);
        EXPECT_FALSE(waiting.get());
    }
}

TEST_F(Gate, AConfirmationWakesWhoWaitsOnAnotherThread) {
    round(State::confirmed, true);
    // Whoever comes first.
    for (int i = 0; i < 50; ++i) {
        const std::uint64_t before = gate.rounds();
        auto live = std::async(std::launch::async, [&] { round(State::confirmed, true); });
        EXPECT_TRUE(gate.wait(before, patience)) << "the round before is no answer";
        live.get();
    }
}

TEST_F(Gate, TheEndOfTheProgramGivesEveryWaitUp) {
    auto waiting = std::async(std::launch::async, [&] { return gate.wait(0, patience); });
    gate.end();
    ASSERT_EQ(waiting.wait_for(patience / 2), std::future_status::ready);
    EXPECT_FALSE(waiting.get());
    round(State::confirmed, true);
    EXPECT_FALSE(gate.wait(0, patience)) << "and every later one";
}

}  // namespace
}  // namespace tessavo::test
