#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "history/marked_run.h"

// Runs of keys or wheel in Live Mode that have become a step before what they have sent is confirmed.

namespace tessavo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Rows = std::vector<Bytes>;

class EndedRun : public testing::Test, protected MarkedRun {
 protected:
    /// A run through these volumes, from the one after the last, which is one step.
    void endedRunUpTo(int volumeDb) {
        session.history.beginGesture(Gesture::run);
        changeUpTo(volumeDb);
        session.history.endGesture();
    }
    [[nodiscard]] Rows rowsAt(const std::vector<std::size_t>& indices) const {
        Rows some;
        for (const std::size_t index : indices) {
            some.push_back(rows.at(index));
        }
        return some;
    }
};

TEST_F(EndedRun, IsPartedWhereTheTargetConfirmsAStateInItsMiddle) {
    endedRunUpTo(5);
    const WallTime ended = session.history.steps()[0]->time;
    session.takeEvents();
    confirm(2);
    EXPECT_THAT(session.texts(), ElementsAre("Channel 1, volume 2.0 dB", "Channel 1, volume 5.0 dB"));
    EXPECT_THAT(marksOf(session), ElementsAre("1 confirmed 2"));
    EXPECT_THAT(session.takeEvents(), ElementsAre(HistoryEvent::stepsChanged, HistoryEvent::marksChanged));
    EXPECT_EQ(session.history.position(), 2U);
    EXPECT_EQ(session.row(), rows[5]) << "nothing moves";
    EXPECT_EQ(session.refreshes, 0);
    for (const auto& step : session.history.steps()) {
        EXPECT_EQ(step->time, ended);
    }
    EXPECT_EQ(everyRow(), rowsAt({0, 2, 5}));
}

TEST_F(EndedRun, IsTheSameStepsAsOneThatWasPartedBeforeItsEnd) {
    endedRunUpTo(5);
    confirm(3);
    MarkedRun other;
    other.changeUpTo(5);
    other.confirm(3);
    other.session.history.endGesture();
    EXPECT_EQ(session.history.memory(), other.session.history.memory());
    EXPECT_EQ(session.texts(), other.session.texts());
    EXPECT_EQ(marksOf(session), marksOf(other.session));
    EXPECT_EQ(everyRow(), other.everyRow());
}

TEST_F(EndedRun, OnePartedWhileItWentOnIsPartedFurtherBehindItsEnd) {
    session.history.beginGesture(Gesture::run);
    changeUpTo(4);
    confirm(1);
    changeUpTo(6);
    session.history.endGesture();
    confirm(3);
    EXPECT_THAT(marksOf(session), ElementsAre("1 confirmed 1", "2 confirmed 3"));
    EXPECT_EQ(everyRow(), rowsAt({0, 1, 3, 6}));
}

TEST_F(EndedRun, IsPartedByEachStateThatIsConfirmedOneAfterAnother) {
    endedRunUpTo(6);
    for (const int volumeDb : {2, 2, 3, 5, 6}) {
        confirm(volumeDb);
    }
    EXPECT_THAT(session.texts(), ElementsAre("Channel 1, volume 2.0 dB", "Channel 1, volume 3.0 dB",
                                             "Channel 1, volume 5.0 dB", "Channel 1, volume 6.0 dB"));
    EXPECT_THAT(marksOf(session),
                ElementsAre("1 confirmed 2", "2 confirmed 3", "3 confirmed 5", "4 confirmed 6"));
    EXPECT_EQ(everyRow(), rowsAt({0, 2, 3, 5, 6}));
}

TEST_F(EndedRun, StaysOneStepWhereItsEndOrItsStartIsConfirmed) {
    session.stepTo(-1);
    images[0] = session.state.image();
    rows[0] = session.row();
    endedRunUpTo(3);
    confirm(3);
    EXPECT_THAT(marksOf(session), ElementsAre("2 confirmed 3"));
    confirm(0);
    EXPECT_EQ(session.history.steps().size(), 2U);
    EXPECT_THAT(marksOf(session), ElementsAre("2 confirmed 3"));
}

TEST_F(EndedRun, OneThatCameByItsStartMarksTheStepBefore) {
    session.history.beginGesture(Gesture::run);
    changeUpTo(1);
    session.state.setVolume(0, true);
    session.state.setVolume(1, true);
    session.state.setVolume(2, true);
    session.history.endGesture();
    confirm(0);
    EXPECT_THAT(session.texts(), ElementsAre("Channel 1, volume 2.0 dB"));
    EXPECT_THAT(marksOf(session), ElementsAre("0 confirmed 0"));
}

TEST_F(EndedRun, OneThatPassedAStateTwiceIsPartedAtTheLaterOne) {
    session.history.beginGesture(Gesture::run);
    changeUpTo(2);
    session.state.setVolume(1, true);
    session.state.setVolume(4, true);
    const Bytes end = session.row();
    session.history.endGesture();
    confirm(1);
    EXPECT_EQ(everyRow(), (Rows{rows[0], rows[1], end}));
    EXPECT_THAT(marksOf(session), ElementsAre("1 confirmed 1"));
    session.history.goTo(2);
    confirm(2);
    EXPECT_EQ(session.history.steps().size(), 2U) << "that was before what is confirmed since";
}

TEST_F(EndedRun, MarksOfItsEndStayWithItsEnd) {
    endedRunUpTo(5);
    session.history.markSaved("a");
    confirm(5);
    session.history.markNotice("b");
    confirm(2);
    EXPECT_THAT(marksOf(session), ElementsAre("1 confirmed 2", "2 saved a", "2 confirmed 5", "2 notice b"));
    EXPECT_EQ(everyRow(), rowsAt({0, 2, 5}));
}

TEST_F(EndedRun, BehindAnotherStepStaysOneStep) {
    endedRunUpTo(5);
    session.state.setDelay(1, true);
    session.commit();
    const Bytes last = session.row();
    confirm(2);
    EXPECT_THAT(marksOf(session), IsEmpty());
    session.history.undo();
    confirm(2);
    EXPECT_THAT(marksOf(session), IsEmpty()) << "nor when that is undone";
    EXPECT_EQ(everyRow(), (Rows{rows[0], rows[5], last}));
}

TEST_F(EndedRun, IsPartedWhileTheNextStepIsInTheMaking) {
    endedRunUpTo(3);
    for (const Gesture gesture : {Gesture::run, Gesture::press, Gesture::none}) {
        const std::size_t size = session.history.steps().size();
        const auto last = static_cast<int>(images.size()) - 1;
        session.history.beginGesture(gesture);
        changeUpTo(last + 2);
        confirm(last - 1);
        EXPECT_EQ(session.history.steps().size(), gesture == Gesture::run ? size + 1 : size);
        session.history.endGesture();
        if (gesture == Gesture::run) {
            EXPECT_EQ(everyRow(), rowsAt({0, 2, 3, 5}));
            endedRunUpTo(8);
            session.history.beginGesture(Gesture::press);
            changeUpTo(10);
            confirm(7);
            session.history.endGesture();
            EXPECT_EQ(everyRow(), rowsAt({0, 2, 3, 5, 7, 8, 10})) << "a press goes on as well";
        }
    }
    EXPECT_THAT(marksOf(session), ElementsAre("1 confirmed 2", "4 confirmed 7"));
}

TEST_F(EndedRun, APressThatComesByOneOfItsStatesIsNotTakenForIt) {
    endedRunUpTo(3);
    session.history.beginGesture(Gesture::press);
    session.state.setVolume(2, true);
    confirm(2);
    session.state.setVolume(9, true);
    session.history.endGesture();
    EXPECT_THAT(marksOf(session), IsEmpty());
    EXPECT_EQ(session.history.steps().size(), 2U);
}

TEST_F(EndedRun, WhatTurnsOutToBeNoStepLeavesItTheNewest) {
    endedRunUpTo(4);
    session.history.beginGesture(Gesture::run);
    session.state.setVolume(9, true);
    session.state.setVolume(4, true);
    session.history.endGesture();
    ASSERT_EQ(session.history.steps().size(), 1U);
    confirm(2);
    EXPECT_EQ(everyRow(), rowsAt({0, 2, 4}));
}

// ---- undone

TEST_F(EndedRun, IsPartedAlsoWhileItIsUndone) {
    endedRunUpTo(5);
    session.history.undo();
    session.history.markNotice("told");
    session.takeEvents();
    const int refreshes = session.refreshes;
    confirm(2);
    EXPECT_THAT(session.takeEvents(), ElementsAre(HistoryEvent::stepsChanged, HistoryEvent::marksChanged));
    EXPECT_EQ(session.history.position(), 0U);
    EXPECT_EQ(session.history.redoText(), "Channel 1, volume 2.0 dB");
    EXPECT_EQ(session.row(), rows[0]);
    EXPECT_EQ(session.refreshes, refreshes) << "nothing moves";
    confirm(4);
    confirm(5);
    EXPECT_THAT(marksOf(session),
                ElementsAre("0 notice told", "1 confirmed 2", "2 confirmed 4", "3 confirmed 5"));
    for (const std::size_t volume : {2U, 4U, 5U}) {
        ASSERT_TRUE(session.history.redo());
        EXPECT_EQ(session.row(), rows[volume]) << volume;
    }
    EXPECT_FALSE(session.history.redo());
    EXPECT_EQ(everyRow(), rowsAt({0, 2, 4, 5}));
}

TEST_F(EndedRun, IsPartedAlsoWhereStepsBeforeItAreUndoneToo) {
    session.stepTo(-3);
    const Bytes first = session.row();
    session.state.setDelay(1, true);
    session.commit();
    const Bytes second = session.row();
    endedRunUpTo(4);
    session.history.goTo(0);
    confirm(3);
    EXPECT_EQ(session.history.position(), 0U);
    EXPECT_THAT(marksOf(session), ElementsAre("3 confirmed 3"));
    EXPECT_EQ(everyRow(), (Rows{rows[0], first, second, rows[3], rows[4]}));
}

TEST_F(EndedRun, IsPartedWhenItIsRedone) {
    endedRunUpTo(5);
    session.history.undo();
    session.history.redo();
    confirm(3);
    EXPECT_EQ(session.history.position(), 2U);
    EXPECT_THAT(marksOf(session), ElementsAre("1 confirmed 3"));
    EXPECT_EQ(everyRow(), rowsAt({0, 3, 5}));
}

TEST_F(EndedRun, OneThatWasUndoneAndReplacedIsGone) {
    endedRunUpTo(5);
    session.history.undo();
    session.state.setDelay(1, true);
    session.commit();
    const Bytes other = session.row();
    confirm(3);
    EXPECT_THAT(marksOf(session), IsEmpty());
    EXPECT_EQ(everyRow(), (Rows{rows[0], other}));
}

TEST_F(EndedRun, IsPartedWhileItIsUndoneAndTheStepThatReplacesItIsInTheMaking) {
    endedRunUpTo(5);
    session.history.undo();
    session.state.setDelay(1, true);
    const Bytes other = session.row();
    confirm(3);
    EXPECT_EQ(session.row(), other);
    EXPECT_THAT(marksOf(session), ElementsAre("1 confirmed 3"));
    EXPECT_FALSE(session.history.canRedo());
    session.commit();
    EXPECT_THAT(marksOf(session), IsEmpty());
    EXPECT_EQ(everyRow(), (Rows{rows[0], other}));
}

TEST_F(EndedRun, WhatIsPartedGoesOnInAnotherRunOfTheProgram) {
    endedRunUpTo(5);
    session.history.undo();
    confirm(2);
    session.history.redo();
    confirm(4);
    Session later;
    ASSERT_TRUE(later.history.adopt(*session.history.trail(100), "Restored"));
    EXPECT_EQ(later.row(), rows[2]);
    const std::size_t position = later.history.position();
    ASSERT_EQ(later.history.steps().size(), position + 2);
    confirm(3);
    for (const std::size_t volume : {4U, 5U}) {
        ASSERT_TRUE(later.history.redo());
        EXPECT_EQ(later.row(), rows[volume]);
    }
    later.history.markConfirmed(images[3], "3");
    EXPECT_EQ(later.history.steps().size(), position + 2) << "the states it passed are not known there";
}

// ---- what belongs to the step

TEST_F(EndedRun, InAnotherSetThanTheOneBeforeKeepsTheWayThere) {
    endedRunUpTo(2);
    session.state.selectSet(3);
    endedRunUpTo(5);
    session.state.selectSet(1);
    const Bytes left = session.row();
    confirm(4);
    EXPECT_EQ(session.row(), left);
    EXPECT_THAT(marksOf(session), ElementsAre("2 confirmed 4"));
    EXPECT_EQ(session.history.steps()[1]->set, 3U);
    EXPECT_EQ(everyRow(), rowsAt({0, 2, 4, 5}));
    session.chosen.clear();
    session.history.goTo(1);
    EXPECT_THAT(session.chosen, IsEmpty()) << "in the set of the step that is undone";
    session.history.goTo(0);
    EXPECT_THAT(session.chosen, ElementsAre(0U));
    session.history.goTo(2);
    EXPECT_EQ(session.row(), rows[4]);
}

TEST_F(EndedRun, TheEndIsMarkedAlsoWhenAnotherSetHasBeenChosenSince) {
    endedRunUpTo(3);
    session.state.selectSet(2);
    confirm(3);
    EXPECT_THAT(marksOf(session), ElementsAre("1 confirmed 3"));
    EXPECT_EQ(session.history.steps().size(), 1U);
}

// One key moves every channel of a group, one after the other.
TEST_F(EndedRun, OfAGroupIsPartedBetweenTwoKeys) {
    session.state.setSelectionMask(0xFF);
    session.history.beginGesture(Gesture::run);
    for (int key = 1; key <= 4; ++key) {
        for (std::size_t channel = 0; channel < channelCount; ++channel) {
            session.state.setGroupGain(RecordChannel{static_cast<std::uint8_t>(channel)},
                                       static_cast<float>(key));
        }
        change(key);
    }
    session.history.endGesture();
    confirm(2);
    confirm(3);
    EXPECT_THAT(marksOf(session), ElementsAre("1 confirmed 2", "2 confirmed 3"));
    EXPECT_EQ(everyRow(), rowsAt({0, 2, 3, 4}));
}

TEST_F(EndedRun, WhatTheImageDoesNotHoldIsPartedWithIt) {
    session.history.beginGesture(Gesture::run);
    changeUpTo(2);
    session.state.setName(u"abc");
    const Bytes named = session.row();
    changeUpTo(4);
    session.history.endGesture();
    confirm(2);
    EXPECT_EQ(everyRow(), (Rows{rows[0], named, rows[4]})) << "as it was when the next key came";
}

TEST_F(EndedRun, WithoutLiveModeStaysOneStepAndEndsWhereItEndedWhenThatGoesOff) {
    session.state.setLiveMode(false);
    endedRunUpTo(2);
    confirm(1);
    EXPECT_EQ(session.history.steps().size(), 1U);
    session.state.setLiveMode(true);
    session.history.beginGesture(Gesture::run);
    changeUpTo(5);
    session.state.setLiveMode(false);
    changeUpTo(7);
    session.history.endGesture();
    confirm(6);
    confirm(4);
    EXPECT_THAT(marksOf(session), ElementsAre("2 confirmed 4"));
    EXPECT_EQ(everyRow(), rowsAt({0, 2, 4, 7}));
}

TEST_F(EndedRun, APressStaysOneStepAndSoDoesAStepThatWasGivenItsText) {
    session.history.beginGesture(Gesture::press);
    changeUpTo(3);
    session.history.endGesture();
    confirm(2);
    session.history.beginGesture(Gesture::run);
    changeUpTo(6);
    session.history.commit("Opened car.eqs");
    const auto step = session.history.steps()[1];
    confirm(5);
    EXPECT_EQ(session.history.steps()[1], step) << "others know it";
    EXPECT_THAT(marksOf(session), IsEmpty());
    EXPECT_EQ(everyRow(), rowsAt({0, 3, 6}));
}

TEST_F(EndedRun, KnowsTheLastFiveHundredAndTwelveStates) {
    session.history.beginGesture(Gesture::run);
    for (std::uint16_t hertz = 1000; hertz < 1600; ++hertz) {
        session.state.setBandFrequency(0, hertz, true);
        images.push_back(session.state.image());
        rows.push_back(session.row());
    }
    session.history.endGesture();
    confirm(600 - 512);
    EXPECT_EQ(session.history.steps().size(), 1U);
    confirm(600 - 511);
    EXPECT_THAT(marksOf(session), ElementsAre("1 confirmed 89"));
    EXPECT_EQ(everyRow(), rowsAt({0, 89, 600}));
}

TEST_F(EndedRun, IsNotPartedWhileAMoveShowsItsState) {
    endedRunUpTo(4);
    int calls = 0;
    session.history.setView({.chooseSet = {},
                             .refresh =
                                 [&] {
                                     ++calls;
                                     confirm(2);
                                     EXPECT_EQ(session.history.steps().size(), 1U);
                                 },
                             .commitSoon = {}});
    session.history.undo();
    ASSERT_EQ(calls, 1);
    session.history.setView({});
    confirm(2);
    EXPECT_EQ(everyRow(), rowsAt({0, 2, 4}));
}

}  // namespace
}  // namespace tessavo::test
