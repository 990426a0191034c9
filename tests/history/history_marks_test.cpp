#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "history/session.h"

namespace tessavo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> marksOf(const Session& session) {
    std::vector<std::string> marks;
    for (const HistoryMark& mark : session.history.marks()) {
        const char* const kind = mark.kind == MarkKind::saved       ? "saved "
                                 : mark.kind == MarkKind::confirmed ? "confirmed "
                                                                    : "notice ";
        marks.push_back(std::to_string(mark.number) + " " + kind + mark.text);
    }
    return marks;
}

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
