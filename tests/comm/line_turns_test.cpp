#include "comm/line_turns.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

#include "support/exchange_fixture.h"

// Who may use the line next, while live rounds and questions for the clip state both want it.

namespace tessavo::test {
namespace {

class Turns : public testing::Test {
 protected:
    /// One look: a turn that cannot be had at once is given up.
    bool mayAsk() {
        int looks = 0;
        return turns.takeQuestion([&] { return looks++ == 0; });
    }
    bool maySend() {
        int looks = 0;
        return turns.takeRound([&] { return looks++ == 0; });
    }
    /// A question that waits on a thread of its own.
    class WaitingQuestion {
     public:
        explicit WaitingQuestion(LineTurns& turns, std::function<void()> asking = {})
            : thread_([this, &turns, asking = std::move(asking)] {
                  taken = turns.takeQuestion([this] {
                      ++looks;
                      return true;
                  });
                  if (taken) {
                      if (asking) {
                          asking();
                      }
                      turns.endQuestion();
                  }
                  over = true;
              }) {}
        ~WaitingQuestion() { thread_.join(); }
        WaitingQuestion(const WaitingQuestion&) = delete;
        WaitingQuestion& operator=(const WaitingQuestion&) = delete;

        std::atomic<int> looks = 0;
        std::atomic<bool> taken = false;
        std::atomic<bool> over = false;

     private:
        std::thread thread_;
    };

    std::atomic<bool> editWaits = false;
    std::atomic<bool> commandRuns = false;
    LineTurns turns{{[this] { return editWaits.load(); }, [this] { return commandRuns.load(); }}};
};

TEST_F(Turns, AQuietLineIsAnybodys) {
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(mayAsk());
        turns.endQuestion();
        EXPECT_TRUE(maySend());
        turns.endRound();
    }
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(mayAsk()) << "without edits there are only questions";
        turns.endQuestion();
    }
}

TEST_F(Turns, ARoundIsNotInterrupted) {
    ASSERT_TRUE(maySend());
    EXPECT_FALSE(mayAsk());
    turns.endQuestion();
    EXPECT_FALSE(mayAsk()) << "the end of a question that there was not changes nothing";
    turns.endRound();
    EXPECT_TRUE(mayAsk());
}

TEST_F(Turns, ACommandComesInFrontOfAQuestion) {
    commandRuns = true;
    EXPECT_FALSE(mayAsk());
    commandRuns = false;
    EXPECT_TRUE(mayAsk());
}

TEST_F(Turns, AnEditThatWaitsLetsOneQuestionPass) {
    editWaits = true;
    for (int round = 0; round < 3; ++round) {
        EXPECT_TRUE(mayAsk()) << "due since the last round";
        turns.endQuestion();
        EXPECT_FALSE(mayAsk()) << "the edit has waited for one";
        EXPECT_FALSE(mayAsk());
        EXPECT_TRUE(maySend());
        turns.endRound();
        turns.endRound();
    }
    editWaits = false;
    EXPECT_TRUE(mayAsk());
    turns.endQuestion();
    EXPECT_TRUE(mayAsk()) << "nothing waits any more";
    turns.endQuestion();
    editWaits = true;
    EXPECT_FALSE(mayAsk()) << "the edit was made since the last question";
}

TEST_F(Turns, ARoundWaitsForTheQuestionThatRuns) {
    std::atomic<bool> mayEnd = false;
    std::atomic<bool> asked = false;
    const WaitingQuestion question(turns, [&] {
        EXPECT_TRUE(eventually([&] { return mayEnd.load(); }));
        asked = true;
    });
    ASSERT_TRUE(eventually([&] { return question.taken.load(); }));
    int looks = 0;
    EXPECT_TRUE(turns.takeRound([&] {
        mayEnd = ++looks > 2;
        return true;
    }));
    EXPECT_TRUE(asked);
}

TEST_F(Turns, ARoundLetsTheQuestionThatIsDuePassFirst) {
    editWaits = true;
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(maySend());
        std::atomic<bool> asked = false;
        const WaitingQuestion question(turns, [&] { asked = true; });
        ASSERT_TRUE(eventually([&] { return question.looks > 0; }));
        turns.endRound();
        ASSERT_TRUE(turns.takeRound([] { return true; }));
        EXPECT_TRUE(asked);
        turns.endRound();
    }
}

TEST_F(Turns, ARoundDoesNotWaitForAQuestionThatACommandHoldsUp) {
    commandRuns = true;
    const WaitingQuestion question(turns);
    ASSERT_TRUE(eventually([&] { return question.looks > 0; }));
    EXPECT_TRUE(maySend());
    turns.endRound();
    commandRuns = false;
    EXPECT_TRUE(eventually([&] { return question.over.load(); }))
        << "nobody tells it that the command is over";
    EXPECT_TRUE(question.taken);
}

TEST_F(Turns, NeitherARoundNorAnEditHoldsUpQuestionsWhileRoundsRest) {
    editWaits = true;
    ASSERT_TRUE(maySend());
    EXPECT_FALSE(mayAsk());
    turns.setRoundsRest(true);
    for (int question = 0; question < 3; ++question) {
        EXPECT_TRUE(mayAsk()) << question;
        turns.endQuestion();
    }
    commandRuns = true;
    EXPECT_FALSE(mayAsk()) << "a command comes in front all the same";
    commandRuns = false;
    turns.setRoundsRest(false);
    EXPECT_FALSE(mayAsk()) << "the round goes on";
    turns.endRound();
    EXPECT_TRUE(mayAsk());
    turns.endQuestion();
    EXPECT_FALSE(mayAsk()) << "the edit waits again";
}

TEST_F(Turns, AQuestionThatWaitsIsLetInWhenRoundsRest) {
    ASSERT_TRUE(maySend());
    const WaitingQuestion question(turns);
    ASSERT_TRUE(eventually([&] { return question.looks > 0; }));
    turns.setRoundsRest(true);
    EXPECT_TRUE(eventually([&] { return question.over.load(); }));
    EXPECT_TRUE(question.taken);
}

TEST_F(Turns, TheEndOfTheProgramGivesUpWhoeverWaits) {
    ASSERT_TRUE(maySend());
    const WaitingQuestion question(turns);
    ASSERT_TRUE(eventually([&] { return question.looks > 0; }));
    turns.end();
    EXPECT_TRUE(eventually([&] { return question.over.load(); }));
    EXPECT_FALSE(question.taken);
    EXPECT_FALSE(turns.takeRound([] { return true; }));
    EXPECT_FALSE(turns.takeQuestion([] { return true; }));
}

TEST_F(Turns, AlternateUnderAStorm) {
    // Both want the line all the time, each as the program does: the question is there again long before a
    // round ends.
    editWaits = true;
    std::atomic<bool> stop = false;
    std::atomic<int> asked = 0;
    std::atomic<int> users = 0;
    std::atomic<bool> waits = false;
    std::thread asking([&] {
        while (turns.takeQuestion([&] {
            waits = true;
            return !stop;
        })) {
            waits = false;
            EXPECT_EQ(++users, 1);
            ++asked;
            --users;
            turns.endQuestion();
        }
    });
    int askedInRound = 0;
    for (int round = 0; round < 500; ++round) {
        ASSERT_TRUE(turns.takeRound([] { return true; }));
        EXPECT_EQ(++users, 1);
        if (round > 0) {
            EXPECT_EQ(asked, askedInRound + 1) << "one fits between two rounds, and no more";
        }
        askedInRound = asked;
        ASSERT_TRUE(eventually([&] { return waits.load(); }));
        --users;
        turns.endRound();
    }
    stop = true;
    asking.join();
}

}  // namespace
}  // namespace tessavo::test
