#include "copies/copy_text.h"

#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

namespace tessavo::test {
namespace {

using ::testing::HasSubstr;

TEST(CopyText, NamesWhatEachExchangeIsFor) {
    EXPECT_EQ(copyActText(CopyAct::readSet, 3), "reading set 3");
    EXPECT_EQ(copyActText(CopyAct::readVersions, 0), "reading the versions");
    EXPECT_EQ(copyActText(CopyAct::sendLive, 0), "sending the copy of the default set live");
    EXPECT_EQ(copyActText(CopyAct::confirm, 1), "asking the target to confirm the copy of set 1");
    EXPECT_EQ(copyActText(CopyAct::save, 1), "saving set 1");
    EXPECT_EQ(copyActText(CopyAct::readBack, 1), "reading set 1 back");
}

TEST(CopyText, NamesEachSetThatIsNotSound) {
    SetCopy set{.targetSet = 0, .state = SetState::sound, .reply = {}, .trouble = {}};
    EXPECT_EQ(troubleText(set), "");
    for (const SetState state : {SetState::notRead, SetState::wrongDigest, SetState::failed}) {
        set.state = state;
        EXPECT_TRUE(troubleText(set).starts_with("the default set: ")) << troubleText(set);
    }
    set.state = SetState::lost;
    set.trouble = "default.reply is missing";
    EXPECT_EQ(troubleText(set), "the default set: default.reply is missing");
}

TEST(CopyText, SaysWhatIsPlayed) {
    EXPECT_EQ(playsNowText({PlaysNow::Kind::asBefore, 0}), "The target plays what it played before.");
    EXPECT_EQ(playsNowText({PlaysNow::Kind::image, 0}), "The target plays the copy of the default set now.");
    EXPECT_EQ(playsNowText({PlaysNow::Kind::unknown, 0}), "What the target plays now is not known.");
    EXPECT_THAT(std::string(playsInTurnText), HasSubstr("plays each set in turn"));
}

TEST(CopyText, SaysOfEverySetWhatItHolds) {
    std::set<std::string> texts;
    for (const RestoredState state :
         {RestoredState::untouched, RestoredState::oldOrNew, RestoredState::notCompared,
          RestoredState::differs, RestoredState::done}) {
        const std::string text = restoredText({.targetSet = 4, .state = state});
        EXPECT_TRUE(text.starts_with("set 4: ")) << text;
        texts.insert(text);
    }
    EXPECT_EQ(texts.size(), 5U);
}

TEST(CopyText, SaysWhyARestoreEnded) {
    RestoreReport report;
    EXPECT_EQ(restoreEndText(report), "");
    report.sets = {{.targetSet = 2, .state = RestoredState::notCompared}};
    report.end = RestoreReport::End::cancelled;
    report.place = {.targetSet = 2, .act = CopyAct::save, .answered = false};
    EXPECT_EQ(restoreEndText(report), "it was cancelled before saving set 2");
    report.end = RestoreReport::End::failed;
    std::set<std::string> texts;
    for (const CopyAct act : {CopyAct::sendLive, CopyAct::confirm, CopyAct::save, CopyAct::readBack}) {
        report.place->act = act;
        texts.insert(restoreEndText(report));
    }
    report.place->answered = true;
    texts.insert(restoreEndText(report));
    report.sets[0].state = RestoredState::differs;
    texts.insert(restoreEndText(report));
    report.place->act = CopyAct::confirm;
    texts.insert(restoreEndText(report));
    EXPECT_EQ(texts.size(), 7U);
    for (const std::string& text : texts) {
        EXPECT_THAT(text, HasSubstr("set 2"));
    }
}

TEST(CopyText, SaysHowASetCompares) {
    using Result = Comparison::Result;
    EXPECT_EQ(comparisonText({.targetSet = 1, .result = Result::equal, .differingBytes = 0}), "set 1: equal");
    EXPECT_EQ(comparisonText({.targetSet = 0, .result = Result::differs, .differingBytes = 12}),
              "the default set: differs in 12 of 3384 bytes");
    std::set<std::string> texts;
    for (const Result result : {Result::notRead, Result::failed, Result::wrongDigest}) {
        texts.insert(comparisonText({.targetSet = 5, .result = result, .differingBytes = 0}));
    }
    EXPECT_EQ(texts.size(), 3U);
}

}  // namespace
}  // namespace tessavo::test
