#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "history/marked_run.h"

namespace tessavo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Marks, StandBehindTheStepThatWasDoneLast) {
    Session session;
    session.history.markNotice("a");
    session.stepTo(1);
    session.history.markSaved("b");
    session.stepTo(2);
    session.stepTo(3);
    session.history.markNotice("c");
    EXPECT_THAT(marksOf(session), ElementsAre("0 notice a", "1 saved b", "3 notice c"));
    const auto& marks = session.history.marks();
    EXPECT_LT(marks[0].time, session.history.steps()[0]->time);
    EXPECT_GT(marks[1].time, session.history.steps()[0]->time);
    EXPECT_LT(marks[1].time, session.history.steps()[1]->time);
}

TEST(Marks, ASaveEndsTheStepInTheMaking) {
    Session session;
    session.state.setVolume(1, true);
    session.history.markSaved("car.eqs");
    EXPECT_EQ(session.history.position(), 1U);
    EXPECT_THAT(marksOf(session), ElementsAre("1 saved car.eqs"));
    session.state.setVolume(2, true);
    session.history.markNotice("told");
    EXPECT_EQ(session.history.position(), 1U) << "a notice ends nothing";
    EXPECT_THAT(marksOf(session), ElementsAre("1 saved car.eqs", "1 notice told"));
}

TEST(Marks, AConfirmationMarksTheStateAsItStandsOrTheLastStep) {
    Session session;
    const ParameterImage start = session.state.image();
    session.history.markConfirmed(start, "start");
    session.stepTo(1);
    const ParameterImage one = session.state.image();
    session.history.markConfirmed(one, "one");
    session.state.setVolume(2, true);
    session.history.markConfirmed(one, "one again");
    EXPECT_EQ(session.history.position(), 1U);
    session.history.markConfirmed(session.state.image(), "two");
    EXPECT_EQ(session.history.position(), 2U) << "as it stands, which is a step now";
    session.stepTo(3);
    session.history.markConfirmed(start, "long ago");
    EXPECT_THAT(marksOf(session),
                ElementsAre("0 confirmed start", "1 confirmed one again", "2 confirmed two"));
}

TEST(Marks, AConfirmationThatComesAgainReplacesTheOneBefore) {
    Session session;
    session.stepTo(1);
    session.history.markConfirmed(session.state.image(), "first");
    const WallTime first = session.history.marks()[0].time;
    session.history.markConfirmed(session.state.image(), "second");
    EXPECT_THAT(marksOf(session), ElementsAre("1 confirmed second"));
    EXPECT_GT(session.history.marks()[0].time, first);
    session.history.markSaved("a");
    session.history.markSaved("a");
    session.history.markConfirmed(session.state.image(), "third");
    EXPECT_THAT(marksOf(session),
                ElementsAre("1 confirmed second", "1 saved a", "1 saved a", "1 confirmed third"));
    session.stepTo(2);
    session.history.markConfirmed(session.state.image(), "fourth");
    EXPECT_EQ(session.history.marks().size(), 5U) << "of another step";
}

TEST(Marks, StandAmongThoseOfUndoneStepsAndGoWithThem) {
    Session session;
    for (const float volume : {1.0F, 2.0F, 3.0F}) {
        session.stepTo(volume);
        session.history.markSaved(std::to_string(static_cast<int>(volume)));
    }
    session.history.goTo(1);
    session.history.markNotice("back");
    EXPECT_THAT(marksOf(session), ElementsAre("1 saved 1", "1 notice back", "2 saved 2", "3 saved 3"));
    session.history.goTo(2);
    session.history.markNotice("forth");
    EXPECT_THAT(marksOf(session),
                ElementsAre("1 saved 1", "1 notice back", "2 saved 2", "2 notice forth", "3 saved 3"));
    session.stepTo(9);
    EXPECT_THAT(marksOf(session), ElementsAre("1 saved 1", "1 notice back", "2 saved 2", "2 notice forth"));
    session.history.goTo(0);
    session.stepTo(8);
    EXPECT_THAT(marksOf(session), IsEmpty());
}

TEST(Marks, AConfirmationAfterUndoMarksTheStepThatIsLastThen) {
    Session session;
    session.stepTo(1);
    const ParameterImage one = session.state.image();
    session.stepTo(2);
    session.history.undo();
    session.history.markConfirmed(one, "one");
    EXPECT_THAT(marksOf(session), ElementsAre("1 confirmed one"));
    EXPECT_TRUE(session.history.canRedo());
}

// ---- runs of keys or wheel in Live Mode, which go on while what they have sent is confirmed

class MarksInARun : public testing::Test, protected MarkedRun {};

TEST_F(MarksInARun, AConfirmationPartsItWhereItWasSentThoughTheSetsAreFurtherOn) {
    changeUpTo(5);
    session.takeEvents();
    confirm(2);
    EXPECT_THAT(session.texts(), ElementsAre("Channel 1, volume 2.0 dB"));
    EXPECT_THAT(marksOf(session), ElementsAre("1 confirmed 2"));
    EXPECT_THAT(session.takeEvents(), ElementsAre(HistoryEvent::stepsChanged, HistoryEvent::marksChanged));
    EXPECT_EQ(session.history.gesture(), Gesture::run);
    EXPECT_EQ(session.row(), rows[5]) << "nothing moves";
    changeUpTo(9);
    confirm(7);
    confirm(7);
    confirm(8);
    changeUpTo(10);
    session.history.endGesture();
    EXPECT_THAT(marksOf(session), ElementsAre("1 confirmed 2", "2 confirmed 7", "3 confirmed 8"));
    EXPECT_EQ(everyRow(), (std::vector<Bytes>{rows[0], rows[2], rows[7], rows[8], rows[10]}));
}

TEST_F(MarksInARun, TheRestGoesOnAlsoWhereTheConfirmedStateStandsStill) {
    changeUpTo(2);
    confirm(2);
    changeUpTo(4);
    confirm(3);
    session.history.endGesture();
    EXPECT_THAT(marksOf(session), ElementsAre("1 confirmed 2", "2 confirmed 3"));
    EXPECT_EQ(everyRow(), (std::vector<Bytes>{rows[0], rows[2], rows[3], rows[4]}));
}

TEST_F(MarksInARun, WhatWasThereBeforeItMarksTheStepBefore) {
    changeUpTo(2);
    session.history.beginGesture(Gesture::run);
    changeUpTo(4);
    confirm(2);
    EXPECT_THAT(marksOf(session), ElementsAre("1 confirmed 2"));
    session.history.endGesture();
    EXPECT_EQ(everyRow(), (std::vector<Bytes>{rows[0], rows[2], rows[4]}));
}

TEST_F(MarksInARun, OneThatComesBackToItsStartPartsNothing) {
    changeUpTo(1);
    session.state.setVolume(0, true);
    session.state.setVolume(1, true);
    confirm(0);
    EXPECT_THAT(session.texts(), IsEmpty());
    EXPECT_THAT(marksOf(session), ElementsAre("0 confirmed 0"));
    session.history.endGesture();
    EXPECT_EQ(everyRow(), (std::vector<Bytes>{rows[0], rows[1]}));
}

TEST_F(MarksInARun, AnotherSetThatIsChosenMeanwhileIsNoPartOfTheStep) {
    changeUpTo(2);
    session.state.selectSet(3);
    const Bytes chosen = session.row();
    changeUpTo(4);
    confirm(3);
    session.history.endGesture();
    EXPECT_THAT(marksOf(session), ElementsAre("2 confirmed 3"));
    EXPECT_EQ(everyRow(), (std::vector<Bytes>{rows[0], rows[2], rows[3], rows[4]}));
    session.history.goTo(1);
    EXPECT_EQ(session.row(), chosen);
}

TEST_F(MarksInARun, APressStaysOneStepAndSoDoesARunWithoutLiveMode) {
    session.history.beginGesture(Gesture::press);
    changeUpTo(3);
    confirm(2);
    confirm(3);
    session.history.beginGesture(Gesture::run);
    session.state.setLiveMode(false);
    changeUpTo(6);
    confirm(5);
    session.history.endGesture();
    EXPECT_THAT(marksOf(session), IsEmpty());
    EXPECT_EQ(everyRow(), (std::vector<Bytes>{rows[0], rows[3], rows[6]}));
}

// What is sent is confirmed before so many changes are made.
TEST_F(MarksInARun, TheLastFiveHundredAndTwelveStatesAreKnown) {
    for (std::uint16_t hertz = 1000; hertz < 1600; ++hertz) {
        session.state.setBandFrequency(0, hertz, true);
        images.push_back(session.state.image());
        rows.push_back(session.row());
    }
    confirm(600 - 512);
    EXPECT_THAT(session.texts(), IsEmpty());
    confirm(600 - 511);
    session.history.endGesture();
    EXPECT_THAT(marksOf(session), ElementsAre("1 confirmed 89"));
    EXPECT_EQ(everyRow(), (std::vector<Bytes>{rows[0], rows[89], rows[600]}));
}

TEST(Marks, AreNoMoreThanFortyThousand) {
    Session session;
    session.stepTo(1);
    for (int i = 0; i < 40010; ++i) {
        session.history.markNotice(std::to_string(i));
    }
    ASSERT_EQ(session.history.marks().size(), 40000U);
    EXPECT_EQ(session.history.marks().front().text, "10");
    EXPECT_EQ(session.history.marks().back().text, "40009");
}

}  // namespace
}  // namespace tessavo::test
