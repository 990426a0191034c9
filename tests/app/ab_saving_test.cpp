#include <gmock/gmock.h>
#include <mutex>
#include <thread>

#include "app/ab_fixture.h"
#include "pages/rows/communication_rows.h"

// Saving in the target while a level matched copy plays.

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SavingWhileMatched : public AbTest {
 protected:
    SavingWhileMatched() {
        QObject::connect(&line, &CommLink::exchangeBegan, frame.get(),
                         [this](LineUser user) { users.push_back(user); });
    }
    void playMatched() {
        storeBoth(5.5F);
        goLive();
        clickLevelMatched();
        ASSERT_TRUE(targetPlays(imageWith(3.0F)));
        settleEvents();
        users.clear();
    }
    void save(int set) { click(on<CxSkinButton>(Page::communication, comm_id::firstSave + set)); }

    std::vector<LineUser> users;  ///< of the exchanges that began
};

TEST_F(SavingWhileMatched, SendsTheImageItselfFirstAndSavesItOnceItIsConfirmed) {
    playMatched();
    save(3);
    EXPECT_THAT(users, ElementsAre(LineUser::liveMode, LineUser::liveMode, LineUser::command));
    EXPECT_TRUE(holds(target.memory().live, tuning.image()));
    EXPECT_TRUE(holds(target.memory().sets[3], tuning.image()));
    EXPECT_EQ(tuning.currentParameterSet().channels[0].volumeDb, 5.5F);
    EXPECT_EQ(notice(), "Level matching is off, so that the set is saved as it is");
    EXPECT_FALSE(levelMatched().isChecked());
    EXPECT_FALSE(sides().isLevelMatched());
    EXPECT_THAT(targetWords(), ::testing::HasSubstr("set 3 saved"));
    EXPECT_THAT(targetWords(), ::testing::Not(::testing::HasSubstr("matched")));
    switchKey();
    ASSERT_TRUE(targetPlays(tuning.image())) << "and it stays off";
    EXPECT_THAT(shown, IsEmpty());
}

// The copy may be in the target still although matching is off, or the softer side is heard.
TEST_F(SavingWhileMatched, ACopyThatStillPlaysIsReplacedFirstToo) {
    playMatched();
    switchKey();
    ASSERT_TRUE(line.played().isPlain());
    save(1);
    EXPECT_TRUE(holds(target.memory().sets[1], tuning.image()));
    EXPECT_EQ(tuning.currentParameterSet().channels[0].volumeDb, 3.0F);
}

TEST_F(SavingWhileMatched, OnceTheImageItselfIsConfirmedSavingIsOneExchange) {
    playMatched();
    clickLevelMatched();
    ASSERT_TRUE(targetPlays(tuning.image()));
    settleEvents();
    users.clear();
    const std::string before = notice();
    save(2);
    EXPECT_THAT(users, ElementsAre(LineUser::command));
    EXPECT_EQ(notice(), before) << "nothing was in the way";
    EXPECT_TRUE(holds(target.memory().sets[2], tuning.image()));
}

TEST_F(SavingWhileMatched, WithoutMatchingSavingIsOneExchange) {
    storeBoth(5.5F);
    goLive();
    users.clear();
    save(0);
    EXPECT_THAT(users, ElementsAre(LineUser::command));
    EXPECT_TRUE(holds(target.memory().sets[0], tuning.image()));
}

TEST_F(SavingWhileMatched, WithLiveModeOffTheCommandRefusesItselfAndMatchingStays) {
    storeBoth(5.5F);
    clickLevelMatched();
    save(1);
    ASSERT_EQ(shown.size(), 1U);
    EXPECT_EQ(shown[0].text, turnOnLiveModeText);
    EXPECT_TRUE(sides().isLevelMatched());
    EXPECT_THAT(users, IsEmpty());
}

TEST_F(SavingWhileMatched, WithoutAConfirmationNothingIsSaved) {
    playMatched();
    const TargetMemory before = target.memory();
    line.setPortName("nowhere");
    users.clear();
    save(4);
    EXPECT_THAT(users, ::testing::Not(::testing::Contains(LineUser::command)));
    EXPECT_EQ(target.memory().sets, before.sets);
    EXPECT_THAT(notice(), ::testing::StartsWith("Not saved: the target has not confirmed the set"));
    EXPECT_FALSE(sides().isLevelMatched());
    // The target may hold the copy still: the next time it is replaced before all else.
    line.setPortName(target.portName());
    users.clear();
    save(4);
    EXPECT_THAT(users, ElementsAre(LineUser::liveMode, LineUser::liveMode, LineUser::command));
    EXPECT_TRUE(holds(target.memory().sets[4], tuning.image()));
}

TEST_F(SavingWhileMatched, TheEndOfTheProgramEndsTheWaitAndNothingIsSaved) {
    playMatched();
    const TargetMemory before = target.memory();
    bool asked = false;
    QObject::connect(&line.foreground(), &ForegroundTransfers::started, frame.get(), [&] {
        asked = true;
        line.cancelExchanges();
    });
    save(5);
    EXPECT_TRUE(asked);
    EXPECT_EQ(target.memory().sets, before.sets);
}

TEST_F(SavingWhileMatched, TheWindowLivesAndNothingElseBeginsMeanwhile) {
    playMatched();
    int looked = 0;
    QObject::connect(&line, &CommLink::workerState, frame.get(), [&](LiveWorker::State state) {
        if (state == LiveWorker::State::sending) {
            ++looked;
            EXPECT_TRUE(line.foreground().running());
            const std::size_t before = steps();
            switchKey();
            EXPECT_EQ(steps(), before);
            save(2);
        }
    });
    save(1);
    EXPECT_EQ(looked, 1);
    EXPECT_TRUE(holds(target.memory().sets[1], tuning.image()));
    EXPECT_FALSE(holds(target.memory().sets[2], tuning.image()));
}

}  // namespace
}  // namespace tessavo::test
