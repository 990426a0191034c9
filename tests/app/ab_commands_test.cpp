#include "app/ab_commands.h"

#include <QAction>
#include <algorithm>
#include <future>
#include <gmock/gmock.h>

#include "app/ab_fixture.h"
#include "app/target_follower.h"
#include "controls/skin_message_box.h"
#include "pages/rows/communication_rows.h"
#include "pages/rows/output_eq_rows.h"
#include "plot/chart/plot_dlg.h"

// A and B with the keyboard and the menu: what becomes of the sets, the target and what is told.

namespace tessavo::test {
namespace {

using ::testing::IsEmpty;

class AbSwitching : public AbTest {
 protected:
    QStringList toolTexts() { return itemsOf(QStringLiteral("Tools")).last(3); }
    static QStringList texts(const char* heard, const char* other) {
        return {QStringLiteral("Store ") + QLatin1String(heard),
                QStringLiteral("Switch to ") + QLatin1String(other), QStringLiteral("Level Matched")};
    }
};

TEST_F(AbSwitching, TheMenuNamesTheSideThatIsHeardAlsoAfterUndoAndRedo) {
    EXPECT_EQ(toolTexts(), texts("A", "B"));
    switchKey();
    EXPECT_EQ(toolTexts(), texts("B", "A"));
    undoKey();
    EXPECT_EQ(toolTexts(), texts("A", "B"));
    redoKey();
    EXPECT_EQ(toolTexts(), texts("B", "A"));
    choose(setSelector(), 2);
    EXPECT_EQ(toolTexts(), texts("A", "B"));
    choose(setSelector(), 0);
    EXPECT_EQ(toolTexts(), texts("B", "A"));
}

TEST_F(AbSwitching, TheKeysSwitchSetPagesAndImageAtOnceAsOneStep) {
    clickTab(static_cast<int>(Page::outputEqualizer));
    storeBoth(5.5F);
    view().refreshPages();
    const auto b = state();
    const QStringList shownB = shownValues();
    const std::size_t before = steps();
    switchKey();
    EXPECT_EQ(steps(), before + 1);
    EXPECT_EQ(history->undoText(), "Switched to A");
    EXPECT_EQ(tuning.currentParameterSet().channels[0].volumeDb, 3.0F);
    EXPECT_TRUE(pagesShowTheSet());
    const auto a = state();
    const QStringList shownA = shownValues();
    EXPECT_TRUE(shownA != shownB) << "the volume is on this page";
    switchKey();
    EXPECT_TRUE(same(*state(), *b));
    EXPECT_TRUE(shownValues() == shownB);
    undoKey();
    EXPECT_TRUE(same(*state(), *a));
    EXPECT_TRUE(shownValues() == shownA);
    expectRoundTrip();
}

TEST_F(AbSwitching, TheEntriesDoTheSame) {
    clickMenu(QStringLiteral("Tools"), QStringLiteral("Store A"));
    settleEvents();
    EXPECT_EQ(notice(), "Stored A");
    clickMenu(QStringLiteral("Tools"), QStringLiteral("Switch to B"));
    settleEvents();
    EXPECT_EQ(notice(), "B begins as a copy of A");
    clickMenu(QStringLiteral("Tools"), QStringLiteral("Switch to A"));
    settleEvents();
    EXPECT_EQ(notice(), "Switched to A");
    EXPECT_EQ(steps(), 3U) << "the volume and two switches";
}

TEST_F(AbSwitching, TheKeysWorkWhileThePlotIsInFront) {
    click(showPlot());
    view().plot().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view().plot()));
    QTest::keyClick(&view().plot(), Qt::Key_F9);
    settleEvents();
    EXPECT_EQ(sides().memories().heard(), AbSide::b);
}

TEST_F(AbSwitching, ChangesSinceTheLastStoreAreToldAndUndoBringsThemBack) {
    storeKey();
    setVolume(4.0F);
    switchKey();
    EXPECT_EQ(notice(), "B begins as a copy of A with the changes since F8; A stays as it was stored");
    EXPECT_EQ(tuning.currentParameterSet().channels[0].volumeDb, 4.0F);
    switchKey();
    EXPECT_EQ(notice(), "Switched to A");
    EXPECT_EQ(tuning.currentParameterSet().channels[0].volumeDb, 3.0F);
    setVolume(7.0F);
    switchKey();
    EXPECT_EQ(notice(), "Switched to B. Changes to A since F8 were left out; Undo brings them back");
    EXPECT_EQ(tuning.currentParameterSet().channels[0].volumeDb, 4.0F);
    undoKey();
    EXPECT_EQ(tuning.currentParameterSet().channels[0].volumeDb, 7.0F);
    EXPECT_EQ(toolTexts(), texts("A", "B"));
}

TEST_F(AbSwitching, ADragEndsFirst) {
    storeBoth(5.5F);
    auto& volume = on<CBitmapSlider>(Page::outputEqualizer, output_eq_id::volume.slider);
    hold(volume, 10);
    switchKey();
    EXPECT_EQ(history->undoText(), "Switched to A");
    EXPECT_THAT(notice(), ::testing::HasSubstr("Changes to B since F8 were left out"));
    moveOn(volume, 10);
    letGo(volume);
    EXPECT_EQ(history->undoText(), "Switched to A") << "the slider has let go";
    EXPECT_TRUE(pagesShowTheSet());
}

// ---- what stands in the way

TEST_F(AbSwitching, IsRefusedWithANoticeWhileAListOrABoxIsOpen) {
    storeBoth(5.5F);
    const auto before = state();
    const auto expectRefused = [&] {
        for (int entry = 0; entry < 2; ++entry) {
            frame->statusLine().showNotice({.text = QStringLiteral("older")});
            sideEntries().value(entry)->trigger();
            EXPECT_THAT(notice(), ::testing::StartsWith("A and B stay as they are"));
        }
        EXPECT_TRUE(same(*state(), *before));
        EXPECT_EQ(sides().memories().heard(), AbSide::b);
    };
    auto& type = on<SkinComboBox>(Page::outputEqualizer, output_eq_id::bands[0].type);
    type.showPopup();
    ASSERT_TRUE(QTest::qWaitFor([&] { return type.view()->isVisible(); }));
    expectRefused();
    type.hidePopup();
    SkinMessageBox box(QStringLiteral("Tessavo"), QStringLiteral("?"), SkinMessageBox::Icon::none,
                       SkinMessageBox::Buttons::okCancel, frame.get());
    bool tried = false;
    QTimer::singleShot(0, frame.get(), [&] {
        expectRefused();
        QTest::keyClick(&box, Qt::Key_F9);
        EXPECT_TRUE(same(*state(), *before));
        tried = true;
        box.reject();
    });
    box.ask();
    EXPECT_TRUE(tried);
    switchKey();
    EXPECT_EQ(sides().memories().heard(), AbSide::a);
}

TEST_F(AbSwitching, IsRefusedWhileACommandHasTheLine) {
    storeBoth(5.5F);
    const auto before = state();
    int tried = 0;
    QObject::connect(&line, &CommLink::exchangeBegan, frame.get(), [&] {
        switchKey();
        EXPECT_TRUE(same(*state(), *before)) << "the key";
        sides().switchSides();
        EXPECT_TRUE(same(*state(), *before)) << "the entry";
        EXPECT_THAT(notice(), ::testing::StartsWith("A and B stay as they are"));
        ++tried;
    });
    click(on<CxSkinButton>(Page::communication, comm_id::update));
    EXPECT_EQ(tried, 1);
}

// ---- level matched

TEST_F(AbSwitching, EachSwitchTellsTheLevel) {
    storeBoth(5.5F);
    clickLevelMatched();
    EXPECT_TRUE(levelMatched().isChecked());
    EXPECT_EQ(notice(), "B is heard, level matched: 2.5 dB lower");
    switchKey();
    EXPECT_EQ(notice(), "Switched to A, level matched: not lowered");
    switchKey();
    EXPECT_EQ(notice(), "Switched to B, level matched: 2.5 dB lower");
    setVolume(6.0F);
    storeKey();
    EXPECT_EQ(notice(), "Stored B, level matched: 3.0 dB lower");
    clickLevelMatched();
    EXPECT_FALSE(levelMatched().isChecked());
    EXPECT_EQ(notice(), "Not level matched any more: B plays as it is");
    switchKey();
    EXPECT_EQ(notice(), "Switched to A");
}

TEST_F(AbSwitching, WhatIsMissingIsToldWithTheChannelAsItsPageNumbersIt) {
    storeKey();
    switchKey();
    setVolume(6.5F);
    tuning.setSelectionMask(selectionBit({2}));
    setVolume(-4.0F);
    storeKey();
    clickLevelMatched();
    // Seven channels 3.5 dB louder and one that has become softer: 3 dB in all.
    EXPECT_EQ(
        notice(),
        "B is heard, level matched: 2.0 dB lower; 1.0 dB are missing, Channel 3 is at \u22126 dB already");
    EXPECT_EQ(line.played().terms().loweredSteps, 4U);
}

TEST_F(AbSwitching, WithoutTwoSidesToCompareNothingIsMatched) {
    clickLevelMatched();
    EXPECT_EQ(notice(), "Level matched as soon as A and B are both stored");
    storeKey();
    EXPECT_EQ(notice(), "Stored A");
    EXPECT_TRUE(line.played().isPlain());
    switchKey();
    EXPECT_EQ(notice(), "B begins as a copy of A, level matched: not lowered");
    for (std::uint8_t c = 0; c < channelCount; ++c) {
        tuning.setRouterSource({c}, 0);
    }
    storeKey();
    EXPECT_EQ(notice(), "Stored B, not level matched: one of both has no loudness");
    EXPECT_TRUE(line.played().isPlain());
}

TEST_F(AbSwitching, AChangeOfLevelIsToBeSentAndChoosingASetSendsNothing) {
    storeBoth(5.5F);
    FrameTest::settle();
    clickLevelMatched();
    EXPECT_TRUE(tuning.updatePending());
    FrameTest::settle();
    choose(setSelector(), 1);
    EXPECT_TRUE(line.played().isPlain()) << "that set has no sides";
    EXPECT_FALSE(tuning.updatePending());
    choose(setSelector(), 0);
    EXPECT_EQ(line.played().terms().loweredSteps, 5U);
    EXPECT_FALSE(tuning.updatePending());
    clickLevelMatched();
    EXPECT_TRUE(tuning.updatePending());
}

TEST_F(AbSwitching, InLiveModeEachSwitchIsOneSendOfTheCopyThatBelongsToIt) {
    storeBoth(5.5F);
    goLive();
    clickLevelMatched();
    ASSERT_TRUE(targetPlays(imageWith(3.0F)));
    settleEvents();
    EXPECT_THAT(targetWords(), ::testing::StartsWith("confirmed, level matched "));
    ASSERT_FALSE(history->marks().empty());
    const auto confirmedMark = [this] {
        std::string text;
        for (const HistoryMark& mark : history->marks()) {
            text = mark.kind == MarkKind::confirmed ? mark.text : text;
        }
        return text;
    };
    EXPECT_EQ(confirmedMark(), "confirmed, level matched");
    for (int i = 0; i < 2; ++i) {
        rounds = 0;
        switchKey();
        ASSERT_TRUE(targetPlays(tuning.image())) << "A";
        settleEvents();
        EXPECT_EQ(rounds, 1);
        EXPECT_THAT(targetWords(), ::testing::StartsWith("confirmed "));
        EXPECT_EQ(confirmedMark(), "confirmed");
        EXPECT_EQ(tuning.currentParameterSet().channels[0].volumeDb, 3.0F);
        switchKey();
        ASSERT_TRUE(targetPlays(imageWith(3.0F)));
        settleEvents();
        EXPECT_EQ(rounds, 2);
        EXPECT_EQ(tuning.currentParameterSet().channels[0].volumeDb, 5.5F) << "the sets stay";
    }
    undoKey();
    ASSERT_TRUE(targetPlays(tuning.image()));
    redoKey();
    ASSERT_TRUE(targetPlays(imageWith(3.0F)));
    EXPECT_THAT(shown, IsEmpty());
}

// The live worker may take its copy at any moment, also while the pages are being refreshed.
TEST_F(AbSwitching, NoCopyHasTheImageOfOneSideAndTheLevelOfTheOther) {
    storeBoth(5.5F);
    clickLevelMatched();
    std::vector<std::future<ParameterImage>> copies;
    QObject::connect(&view(), &CTessavoView::currentSetChanged, frame.get(), [&] {
        copies.push_back(std::async(std::launch::async, [this] { return line.played().take(tuning); }));
        // Either it has to wait for the end of the switch, or it is whole.
        copies.back().wait_for(std::chrono::milliseconds(100));
    });
    for (int i = 0; i < 3; ++i) {
        switchKey();
    }
    for (int i = 0; i < 3; ++i) {
        undoKey();
    }
    for (int i = 0; i < 3; ++i) {
        redoKey();
    }
    EXPECT_GE(copies.size(), 9U);
    for (std::future<ParameterImage>& copy : copies) {
        const ParameterImage taken = copy.get();
        EXPECT_TRUE(std::ranges::all_of(taken.channels, [](const ChannelImageBlock& channel) {
            return channel.gainWord == gainWordOf(3.0F, 0.0F);
        })) << "both sides play 3 dB";
    }
}

TEST_F(AbSwitching, WithoutMatchingTheTargetGetsTheImageToTheByte) {
    goLive();
    storeBoth(5.5F);
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(targetPlays(tuning.image()));
        settleEvents();
        EXPECT_THAT(targetWords(), ::testing::StartsWith("confirmed "));
        switchKey();
    }
    ASSERT_TRUE(targetPlays(tuning.image()));
}

// The copy of another level is not the one that is to play.
TEST_F(AbSwitching, AnotherLevelIsNotConfirmed) {
    storeBoth(5.5F);
    goLive();
    EXPECT_TRUE(line.imageIsConfirmed());
    line.played().setLoweredSteps(5);
    EXPECT_FALSE(line.imageIsConfirmed()) << "the target holds the image itself";
    line.played().setLoweredSteps(0);
    EXPECT_TRUE(line.imageIsConfirmed());
    clickLevelMatched();
    ASSERT_TRUE(targetPlays(imageWith(3.0F)));
    line.played().setLoweredSteps(4);
    EXPECT_FALSE(line.imageIsConfirmed());
    line.played().setLoweredSteps(0);
    EXPECT_FALSE(line.imageIsConfirmed()) << "the image itself it does not hold";
}

TEST(WordsOfALevelMatchedCopy, DoNotCallItTheImage) {
    const auto words = [](bool isConfirmed, bool isMatched) {
        TargetFollower follower;
        follower.workerState(LiveWorker::State::confirmed, {14, 32, 7});
        return follower
            .status({.liveMode = true, .confirmedAsItStands = isConfirmed, .levelMatched = isMatched})
            .state.toStdString();
    };
    EXPECT_EQ(words(true, true), "confirmed, level matched 14:32:07");
    EXPECT_EQ(words(false, true), "not sent");
    EXPECT_EQ(words(true, false), "confirmed 14:32:07");
}

}  // namespace
}  // namespace tessavo::test
