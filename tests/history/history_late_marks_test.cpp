#include <algorithm>
#include <deque>
#include <gtest/gtest.h>
#include <random>

#include "history/marked_run.h"

// Any way back and forth while confirmations come late.

namespace tessavo::test {
namespace {

using Rows = std::vector<Bytes>;

/// The bytes of every state, without a move.
Rows statesOf(const History& history) {
    const auto trail = history.trail(history.steps().size());
    TuningSnapshot state = trail->settled;
    Rows states{rowOf(state)};
    std::for_each(trail->done.rbegin(), trail->done.rend(), [&](const auto& step) {
        step->change.applyTo(bytesOf(state));
        step->lead.applyTo(bytesOf(state));
        states.insert(states.begin(), rowOf(state));
    });
    state = trail->settled;
    for (const auto& step : trail->undone) {
        step->lead.applyTo(bytesOf(state));
        step->change.applyTo(bytesOf(state));
        states.push_back(rowOf(state));
    }
    return states;
}

class EndedRuns : public testing::Test, protected MarkedRun {};

TEST_F(EndedRuns, RandomConfirmationsThatComeLateAddStatesAndChangeNone) {
    std::mt19937_64 random(80);
    std::deque<ParameterImage> underWay;
    int parted = 0;
    const auto confirmNext = [&] {
        Rows before = statesOf(session.history);
        const Bytes now = session.row();
        if (!session.history.canRedo()) {
            // A step in the making may become one, in place of those that are undone.
            before.resize(session.history.position() + 1);
        }
        session.history.markConfirmed(underWay.front(), "confirmed");
        underWay.pop_front();
        const Rows after = statesOf(session.history);
        parted += after.size() > before.size() ? 1 : 0;
        ASSERT_EQ(session.row(), now);
        // Each state of before in its place, with new ones in between.
        auto place = after.begin();
        for (const Bytes& state : before) {
            place = std::find(place, after.end(), state);
            ASSERT_TRUE(place != after.end());
            ++place;
        }
    };
    for (int round = 0; round < 3000; ++round) {
        switch (random() % 12) {
            case 0:
                session.history.undo();
                break;
            case 1:
                session.history.redo();
                break;
            case 2:
                session.state.selectSet(static_cast<std::uint32_t>(random() % setCount));
                break;
            case 3:
                session.history.endGesture();
                break;
            case 4:
                session.history.beginGesture(random() % 5 == 0 ? Gesture::press : Gesture::run);
                break;
            default:
                session.state.setVolume(static_cast<float>(random() % 40), true);
        }
        if (random() % 3 == 0) {
            underWay.push_back(session.state.image());
        }
        if (underWay.size() > random() % 6) {
            ASSERT_NO_FATAL_FAILURE(confirmNext()) << round;
        }
    }
    session.history.endGesture();
    EXPECT_GT(parted, 100);
    const Rows states = statesOf(session.history);
    for (int way = 0; way < 20; ++way) {
        const std::size_t position = random() % states.size();
        session.history.goTo(position);
        EXPECT_EQ(statesOf(session.history), states);
    }
}

}  // namespace
}  // namespace tessavo::test
