#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "history/session.h"

namespace tessavo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using enum HistoryEvent;

TEST(HistoryEvents, TellOfAChangeAndOfTheStepThatItBecomes) {
    Session session;
    session.state.setVolume(1, true);
    EXPECT_THAT(session.takeEvents(), ElementsAre(tuningChanged));
    session.commit();
    EXPECT_THAT(session.takeEvents(), ElementsAre(stepsChanged));
    session.commit();
    session.history.endGesture();
    EXPECT_THAT(session.takeEvents(), IsEmpty()) << "nothing has changed since";
    session.state.setName(u"abc");
    EXPECT_THAT(session.takeEvents(), ElementsAre(tuningChanged)) << "a name is a change, too";
}

// What can be undone and redone is asked for after each event.
TEST(HistoryEvents, TellThatAChangeTurnedOutToBeNone) {
    Session session;
    session.stepTo(1);
    session.history.undo();
    session.takeEvents();
    session.state.setVolume(0, true);
    EXPECT_THAT(session.takeEvents(), ElementsAre(tuningChanged));
    EXPECT_FALSE(session.history.canRedo());
    bool couldRedo = false;
    session.history.setListener([&](HistoryEvent event) {
        EXPECT_EQ(event, tuningChanged);
        couldRedo = session.history.canRedo() && !session.history.canUndo();
    });
    EXPECT_FALSE(session.commit());
    EXPECT_TRUE(couldRedo);
}

TEST(HistoryEvents, TellOfAChangeOfSet) {
    Session session;
    session.state.selectSet(2);
    EXPECT_THAT(session.takeEvents(), ElementsAre(tuningChanged));
    session.state.setVolume(1, true);
    session.takeEvents();
    session.state.selectSet(0);
    EXPECT_THAT(session.takeEvents(), ElementsAre(stepsChanged, tuningChanged));
}

TEST(HistoryEvents, TellOnceOfAMove) {
    Session session;
    session.stepTo(1);
    session.state.selectSet(2);
    session.stepTo(2);
    session.takeEvents();
    session.asked = 0;
    for (const std::size_t to : {0U, 2U, 1U}) {
        session.history.goTo(to);
        EXPECT_THAT(session.takeEvents(), ElementsAre(stepsChanged)) << to;
    }
    session.history.undo();
    EXPECT_THAT(session.takeEvents(), ElementsAre(stepsChanged));
    session.history.redo();
    EXPECT_THAT(session.takeEvents(), ElementsAre(stepsChanged));
    EXPECT_EQ(session.asked, 0) << "a move is no change to make a step of";
    session.history.goTo(session.history.position());
    session.history.goTo(99);
    EXPECT_THAT(session.takeEvents(), IsEmpty());
    session.state.setVolume(7, true);
    session.takeEvents();
    session.history.undo();
    EXPECT_THAT(session.takeEvents(), ElementsAre(stepsChanged, stepsChanged)) << "made, and undone";
}

TEST(HistoryEvents, ComeWhenWhatTheyTellHasHappened) {
    Session session;
    session.stepTo(1);
    session.history.setListener([&](HistoryEvent event) {
        EXPECT_EQ(event, stepsChanged);
        EXPECT_EQ(session.history.position(), 0U);
        EXPECT_EQ(session.state.currentParameterSet().channels[7].volumeDb, 0.0F);
        EXPECT_TRUE(session.history.canRedo());
        EXPECT_FALSE(session.state.changeRuns());
        EXPECT_EQ(session.refreshes, 1);
    });
    EXPECT_TRUE(session.history.undo());
}

TEST(HistoryEvents, TellOfMarks) {
    Session session;
    session.history.markNotice("told");
    EXPECT_THAT(session.takeEvents(), ElementsAre(marksChanged));
    session.history.markSaved("car.eqs");
    EXPECT_THAT(session.takeEvents(), ElementsAre(marksChanged));
    session.history.markConfirmed(session.state.image(), "");
    EXPECT_THAT(session.takeEvents(), ElementsAre(marksChanged));
    session.history.markConfirmed({}, "of something else");
    EXPECT_THAT(session.takeEvents(), IsEmpty());
    session.state.setVolume(1, true);
    session.takeEvents();
    session.history.markSaved("car.eqs");
    EXPECT_THAT(session.takeEvents(), ElementsAre(stepsChanged, marksChanged));
}

// Old steps go while a new one comes: the number of steps stays.
TEST(HistoryEvents, TellOfAStepThatPushesAnotherOut) {
    Session session;
    std::mt19937_64 random(1);
    const std::array stores{recordOf<ParameterStore>(randomStore(random)),
                            recordOf<ParameterStore>(randomStore(random))};
    std::size_t round = 0;
    for (; session.history.dropped() == 0; ++round) {
        session.state.replaceStore(stores.at(round % 2));
        ASSERT_TRUE(session.history.commit("Opened"));
        ASSERT_LT(round, 10000U);
    }
    for (int more = 0; more < 20; ++more, ++round) {
        session.state.replaceStore(stores.at(round % 2));
        session.takeEvents();
        EXPECT_TRUE(session.history.commit("Opened"));
        EXPECT_THAT(session.takeEvents(), ElementsAre(stepsChanged));
    }
}

TEST(HistoryEvents, MayBeHeardByNobody) {
    Tuning tuning;
    History history(tuning.state);
    tuning.state.setVolume(1, true);
    EXPECT_TRUE(history.commit());
    history.markSaved("");
    tuning.state.selectSet(1);
    EXPECT_TRUE(history.undo());
    EXPECT_TRUE(history.redo());
}

}  // namespace
}  // namespace tessavo::test
