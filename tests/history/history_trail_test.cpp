#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "history/session.h"

// What one run of the program leaves to the next.

namespace tessavo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Undoes everything and redoes everything, and gives each state on the way.
std::vector<Bytes> wayBackAndForth(Session& session) {
    std::vector<Bytes> rows{session.row()};
    while (session.history.undo()) {
        rows.push_back(session.row());
    }
    while (session.history.redo()) {
        rows.push_back(session.row());
    }
    return rows;
}

/// A session with steps in several sets, with a received set among them.
void play(Session& session) {
    session.stepTo(1);
    session.state.selectSet(2);
    session.stepTo(2);
    Tuning other;
    other.state.setVolume(6, true);
    session.receive(other.image());
    session.stepTo(3);
    session.state.selectSet(1);
    session.state.setName(u"abc");
    session.commit();
    session.stepTo(4);
}

TEST(Trail, GoesOnInAnotherRunByteByByte) {
    for (const std::size_t undone : {0U, 1U, 3U, 6U}) {
        Session first;
        play(first);
        first.history.goTo(6 - undone);
        const auto trail = first.history.trail(100);
        EXPECT_EQ(trail->done.size(), 6 - undone);
        EXPECT_EQ(trail->undone.size(), undone);
        EXPECT_SAME_BYTES(rowOf(trail->state), first.row());

        Session second;
        const Bytes start = second.row();
        ASSERT_TRUE(second.history.adopt(*trail, "Restored"));
        EXPECT_SAME_BYTES(second.row(), first.row());
        std::vector<Bytes> expected = wayBackAndForth(first);
        std::vector<Bytes> found = wayBackAndForth(second);
        // The first state of the trail is the start of this run, as nothing has happened before.
        EXPECT_EQ(found, expected) << undone;
        EXPECT_SAME_BYTES(found[6 - undone], start);
    }
}

TEST(Trail, ComesBehindTheStepsOfThisRun) {
    Session first;
    play(first);
    const auto trail = first.history.trail(3);
    ASSERT_EQ(trail->done.size(), 3U);

    Session second;
    second.state.setSelectionMask(1);
    second.stepTo(-1);
    second.state.setVolume(-2, true);  // in the making
    const Bytes before = second.row();
    second.takeEvents();
    second.refreshes = 0;
    ASSERT_TRUE(second.history.adopt(*trail, "Restored"));
    EXPECT_THAT(
        second.texts(),
        ElementsAre("Channel 8, volume \u22121.0 dB", "Channel 8, volume \u22122.0 dB", "Restored",
                    "Channel 1, volume 3.0 dB", "Set 2 named \u201Cabc\u201D", "Channel 1, volume 4.0 dB"));
    EXPECT_EQ(second.refreshes, 1);
    EXPECT_EQ(second.state.currentSet(), 1U);
    EXPECT_EQ(second.events.back(), HistoryEvent::stepsChanged);
    EXPECT_SAME_BYTES(second.row(), first.row());
    EXPECT_TRUE(second.history.goTo(3));
    EXPECT_TRUE(first.history.goTo(3));
    EXPECT_SAME_BYTES(second.row(), first.row());
    EXPECT_TRUE(second.history.undo());
    EXPECT_SAME_BYTES(second.row(), before);
    EXPECT_TRUE(second.history.undo());
    EXPECT_TRUE(second.history.goTo(6));
    first.history.goTo(6);
    EXPECT_SAME_BYTES(second.row(), first.row());
}

TEST(Trail, HasTheLastStepsOfEachDirection) {
    Session session;
    for (int i = 1; i <= 9; ++i) {
        session.stepTo(static_cast<float>(i));
    }
    session.history.goTo(5);
    const auto trail = session.history.trail(2);
    ASSERT_EQ(trail->done.size(), 2U);
    ASSERT_EQ(trail->undone.size(), 2U);
    EXPECT_EQ(trail->done[0], session.history.steps()[3]);
    EXPECT_EQ(trail->done[1], session.history.steps()[4]);
    EXPECT_EQ(trail->undone[0], session.history.steps()[5]);
    EXPECT_EQ(trail->undone[1], session.history.steps()[6]);
    const auto none = session.history.trail(0);
    EXPECT_THAT(none->done, IsEmpty());
    EXPECT_THAT(none->undone, IsEmpty());
    Session second;
    ASSERT_TRUE(second.history.adopt(*none, "Restored"));
    EXPECT_THAT(second.texts(), ElementsAre("Restored"));
    EXPECT_SAME_BYTES(second.row(), session.row());
}

TEST(Trail, HasWhatWasNotFinishedAsAStepOfItsOwn) {
    Session first;
    first.stepTo(1);
    first.stepTo(2);
    first.history.undo();
    const Bytes finished = first.row();
    first.history.beginGesture(Gesture::press);
    first.state.setVolume(7, false);
    const auto trail = first.history.trail(100);
    EXPECT_SAME_BYTES(rowOf(trail->begun), finished);
    EXPECT_THAT(trail->undone, testing::SizeIs(1)) << "still there while the slider is held";

    Session second;
    ASSERT_TRUE(second.history.adopt(*trail, "Restored"));
    EXPECT_THAT(second.texts(), ElementsAre("Channel 1, volume 1.0 dB", "Channel 1, volume 7.0 dB"));
    EXPECT_SAME_BYTES(second.row(), first.row());
    EXPECT_TRUE(second.history.undo());
    EXPECT_SAME_BYTES(second.row(), finished);
}

TEST(Trail, RemembersASetThatWasChosenLast) {
    Session first;
    first.stepTo(1);
    first.state.selectSet(3);
    const auto trail = first.history.trail(100);
    Session second;
    ASSERT_TRUE(second.history.adopt(*trail, "Restored"));
    EXPECT_EQ(second.state.currentSet(), 3U);
    EXPECT_THAT(second.texts(), ElementsAre("Channel 1, volume 1.0 dB"));
    EXPECT_SAME_BYTES(second.row(), first.row());
    EXPECT_TRUE(second.history.undo());
    first.history.undo();
    EXPECT_SAME_BYTES(second.row(), first.row());
    EXPECT_EQ(second.state.currentSet(), 0U);
}

// The trail begins in the very state at hand, but a set was chosen since the last step of this run.
TEST(Trail, LeadsBackAlsoWhereOnlyAChosenSetLiesBetweenTheRuns) {
    Session session;
    const Bytes start = session.row();
    session.stepTo(1);
    const Bytes afterOne = session.row();
    session.state.selectSet(2);
    const Bytes chosen = session.row();

    Tuning other;
    other.state.setVolume(1, true);
    other.state.selectSet(2);
    ASSERT_SAME_BYTES(rowOf(*snapshotOf(other.state)), chosen);
    History otherHistory(other.state);
    other.state.setVolume(5, true);
    otherHistory.commit();

    ASSERT_TRUE(session.history.adopt(*otherHistory.trail(100), "Restored"));
    EXPECT_SAME_BYTES(session.row(), rowOf(*snapshotOf(other.state)));
    EXPECT_THAT(session.texts(),
                ElementsAre("Channel 1, volume 1.0 dB", "Restored", "Channel 1, volume 5.0 dB"));
    EXPECT_TRUE(session.history.goTo(2));
    EXPECT_SAME_BYTES(session.row(), chosen);
    EXPECT_TRUE(session.history.goTo(0));
    EXPECT_SAME_BYTES(session.row(), start);
    EXPECT_TRUE(session.history.goTo(1));
    EXPECT_SAME_BYTES(session.row(), afterOne);
}

TEST(Trail, TakesThePlaceOfWhatWasUndone) {
    Session first;
    first.stepTo(5);
    const auto trail = first.history.trail(100);
    Session second;
    second.stepTo(1);
    second.history.undo();
    ASSERT_TRUE(second.history.adopt(*trail, "Restored"));
    EXPECT_THAT(second.texts(), ElementsAre("Channel 1, volume 5.0 dB")) << "it begins where this run stands";
    EXPECT_SAME_BYTES(second.row(), first.row());
    EXPECT_FALSE(second.history.canRedo());
}

TEST(Trail, WithACurrentSetThatIsNoneIsNotTaken) {
    Session first;
    play(first);
    first.history.goTo(4);
    const auto whole = first.history.trail(100);
    const auto isRefused = [](const History::Trail& trail) {
        Session second;
        second.stepTo(9);
        second.state.setVolume(8, true);
        second.takeEvents();
        const Bytes before = second.row();
        const bool refused = !second.history.adopt(trail, "Restored");
        if (refused) {
            EXPECT_SAME_BYTES(second.row(), before);
            EXPECT_THAT(second.texts(), ElementsAre("Channel 1, volume 9.0 dB"));
            EXPECT_THAT(second.events, IsEmpty());
            EXPECT_EQ(second.refreshes, 0);
        }
        return refused;
    };
    EXPECT_FALSE(isRefused(*whole));
    for (TuningSnapshot History::Trail::*state :
         {&History::Trail::state, &History::Trail::begun, &History::Trail::settled}) {
        for (const std::uint32_t set : {5U, 0xFFFFFFFFU}) {
            auto trail = std::make_unique<History::Trail>(*whole);
            ((*trail).*state).currentSet = set;
            EXPECT_TRUE(isRefused(*trail));
        }
    }
    // And a step, done or undone, that leads to such a set.
    TuningSnapshot good{};
    TuningSnapshot bad{};
    bad.currentSet = 8;
    for (const bool inLead : {false, true}) {
        auto step = std::make_shared<Step>();
        (inLead ? step->lead : step->change) =
            ByteDiff::between(tessavo::bytesOf(std::as_const(good)), tessavo::bytesOf(std::as_const(bad)));
        for (Steps History::Trail::*steps : {&History::Trail::done, &History::Trail::undone}) {
            auto trail = std::make_unique<History::Trail>(*whole);
            ((*trail).*steps).push_back(step);
            ((*trail).*steps).push_back(step);  // leads back again
            EXPECT_TRUE(isRefused(*trail));
        }
    }
}

}  // namespace
}  // namespace tessavo::test
