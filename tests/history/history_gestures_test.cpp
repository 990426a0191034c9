#include <gtest/gtest.h>

#include "history/session.h"

namespace tessavo::test {
namespace {

using Texts = std::vector<std::string>;

TEST(Gestures, WithoutOneEachChangeAsksToBecomeAStep) {
    Session session;
    session.state.setVolume(1, true);
    EXPECT_EQ(session.asked, 1);
    EXPECT_TRUE(session.history.steps().empty()) << "not within the edit";
    session.commit();
    session.state.setVolume(2, true);
    EXPECT_EQ(session.asked, 2);
    session.commit();
    EXPECT_EQ(session.texts(), (Texts{"Channel 1, volume 1.0 dB", "Channel 1, volume 2.0 dB"}));
}

// A button may make several edits before the event in hand is done.
TEST(Gestures, WhatOneEventDoesIsOneStep) {
    Session session;
    session.state.setBandOff(7, 0);
    session.state.setBandType(7, 0);
    session.commit();
    EXPECT_EQ(session.texts(), Texts{"Channel 1, Filter 8 type High Shelf, on"});
}

TEST(Gestures, OnePressIsOneStepHoweverManyChangesItMakes) {
    Session session;
    const Bytes before = session.row();
    session.history.beginGesture(Gesture::press);
    EXPECT_EQ(session.history.gesture(), Gesture::press);
    session.state.setVolume(5, true);  // the click
    for (int i = 0; i < 50; ++i) {
        session.state.setVolume(static_cast<float>(i) / 10, false);  // the drag
    }
    EXPECT_EQ(session.asked, 0);
    EXPECT_TRUE(session.history.steps().empty());
    session.history.endGesture();
    EXPECT_EQ(session.history.gesture(), Gesture::none);
    EXPECT_EQ(session.texts(), Texts{"Channel 1, volume 4.9 dB"});
    session.history.undo();
    EXPECT_SAME_BYTES(session.row(), before);
}

TEST(Gestures, APressThatEndsWhereItBeganIsNoStep) {
    Session session;
    session.history.beginGesture(Gesture::press);
    session.state.setVolume(5, false);
    session.state.setVolume(0, true);
    session.history.endGesture();
    EXPECT_FALSE(session.history.canUndo());
}

TEST(Gestures, TheNextGestureEndsTheOneBefore) {
    Session session;
    session.state.setVolume(1, true);  // a step that was not asked for yet
    session.history.beginGesture(Gesture::run);
    session.state.setVolume(2, true);
    session.state.setVolume(3, true);
    session.history.beginGesture(Gesture::run);
    session.state.setVolume(4, true);
    session.history.beginGesture(Gesture::press);
    session.history.endGesture();
    EXPECT_EQ(session.texts(),
              (Texts{"Channel 1, volume 1.0 dB", "Channel 1, volume 3.0 dB", "Channel 1, volume 4.0 dB"}));
}

TEST(Gestures, ACommitAmidARunEndsItsStepAndNotTheRun) {
    Session session;
    session.history.beginGesture(Gesture::run);
    session.state.setVolume(1, true);
    EXPECT_TRUE(session.history.commit("Typed"));
    session.state.setVolume(2, true);
    EXPECT_EQ(session.asked, 0) << "the run goes on";
    session.history.endGesture();
    EXPECT_EQ(session.texts(), (Texts{"Typed", "Channel 1, volume 2.0 dB"}));
}

TEST(Gestures, NothingMergesAcrossASave) {
    for (const Gesture gesture : {Gesture::press, Gesture::run}) {
        Session session;
        session.history.beginGesture(gesture);
        session.state.setVolume(1, true);
        session.history.markSaved("car.eqs");
        ASSERT_EQ(session.history.marks().size(), 1U);
        EXPECT_EQ(session.history.marks()[0].number, 1U);
        session.state.setVolume(2, true);
        session.history.endGesture();
        EXPECT_EQ(session.texts(), (Texts{"Channel 1, volume 1.0 dB", "Channel 1, volume 2.0 dB"}));
    }
}

TEST(Gestures, NothingMergesAcrossASendThatWasConfirmed) {
    Session session;
    session.history.beginGesture(Gesture::run);
    session.state.setVolume(1, true);
    session.history.markConfirmed(session.state.image(), "confirmed");
    session.state.setVolume(2, true);
    session.history.endGesture();
    EXPECT_EQ(session.texts(), (Texts{"Channel 1, volume 1.0 dB", "Channel 1, volume 2.0 dB"}));
    ASSERT_EQ(session.history.marks().size(), 1U);
    EXPECT_EQ(session.history.marks()[0].number, 1U);
}

// A slider that is held has sent nothing yet: what the target confirms is what was there before.
TEST(Gestures, APressMergesAcrossAConfirmationOfWhatWasThereBefore) {
    Session session;
    const ParameterImage before = session.state.image();
    session.history.beginGesture(Gesture::press);
    session.state.setVolume(1, false);
    session.history.markConfirmed(before, "confirmed");
    session.history.markConfirmed(session.state.image(), "of the image as it stands");
    session.state.setVolume(2, true);
    session.history.endGesture();
    EXPECT_EQ(session.texts(), Texts{"Channel 1, volume 2.0 dB"});
    ASSERT_EQ(session.history.marks().size(), 1U);
    EXPECT_EQ(session.history.marks()[0].number, 0U);
    EXPECT_EQ(session.history.marks()[0].text, "confirmed");
}

TEST(Gestures, UndoDuringADragEndsTheDragFirst) {
    Session session;
    session.stepTo(1);
    const Bytes one = session.row();
    session.history.beginGesture(Gesture::press);
    session.state.setVolume(2, false);
    EXPECT_TRUE(session.history.undo());
    EXPECT_EQ(session.history.gesture(), Gesture::none);
    EXPECT_SAME_BYTES(session.row(), one);
    EXPECT_EQ(session.history.redoText(), "Channel 1, volume 2.0 dB");
    session.history.beginGesture(Gesture::press);
    EXPECT_TRUE(session.history.redo());
    EXPECT_EQ(session.history.gesture(), Gesture::none);
    session.history.beginGesture(Gesture::press);
    EXPECT_TRUE(session.history.goTo(0));
    EXPECT_EQ(session.history.gesture(), Gesture::none);
}

TEST(Gestures, ASetThatIsReadIsOneStep) {
    Session session;
    Tuning other;
    other.state.setVolume(6, true);
    session.receive(other.image());
    EXPECT_EQ(session.texts(), Texts{"Read set"});
    EXPECT_EQ(session.asked, 0);
}

}  // namespace
}  // namespace tessavo::test
