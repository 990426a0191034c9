#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <limits>
#include <utility>

#include "app/copies_commands.h"
#include "app/restore_dialog.h"
#include "app/restore_fixture.h"
#include "app/status_line.h"
#include "copies/written_sets.h"
#include "params/tuning_snapshot.h"

// "Restore Target...", from the menu to the target's memory.

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

TEST_F(RestoreTarget, SaysFirstWhatTheTargetPlaysAndStartsOnlyWithTheAmplifiersOff) {
    restore([this](QDialog& open) {
        EXPECT_TRUE(textsOf(open).contains(
            QStringLiteral("The target plays each set in turn while it is restored. Turn the amplifiers off "
                           "or down first.")));
        QPushButton& start = buttonOf(open, QStringLiteral("Restore"));
        EXPECT_FALSE(start.isEnabled());
        clickCheck(open, QStringLiteral("The amplifiers are off or turned down"));
        EXPECT_TRUE(start.isEnabled());
        onlySets(open, {});
        EXPECT_FALSE(start.isEnabled()) << "nothing is chosen";
        clickCheck(open, QStringLiteral("Set 2"));
        EXPECT_TRUE(start.isEnabled());
        clickCheck(open, QStringLiteral("The amplifiers are off or turned down"));
        EXPECT_FALSE(start.isEnabled());
        EXPECT_FALSE(buttonOf(open, QStringLiteral("Send Current Set")).isVisible());
        EXPECT_EQ(exchanges(), 0);
        close(open);
    });
    EXPECT_EQ(exchanges(), 0);
}

TEST_F(RestoreTarget, WritesTheFiveSetsAndNotTheDefaultSet) {
    const auto before = state();
    restore([](QDialog& open) {
        EXPECT_FALSE(check(open, QStringLiteral("Default Set")).isChecked());
        EXPECT_TRUE(check(open, QStringLiteral("Default Set")).isEnabled());
        start(open);
        EXPECT_TRUE(textsOf(open).contains(QStringLiteral("All of it is restored and compared.")));
        EXPECT_EQ(textsOf(open).count(QStringLiteral("Restored, read back and compared")), 5);
        expectRed(open, QStringLiteral("The target plays the copy of set 5 now."));
        close(open);
    });
    EXPECT_THAT(restoredSets(), ElementsAre(1, 2, 3, 4, 5));
    EXPECT_EQ(memory().live, backedUp(5));
    EXPECT_EQ(exchanges(), 20);
    EXPECT_THAT(shown, IsEmpty());
    EXPECT_EQ(std::memcmp(before.get(), state().get(), sizeof(TuningSnapshot)), 0);
    EXPECT_EQ(words().rfind("last answer ", 0), 0U) << words();
    EXPECT_FALSE(tuning.liveMode());
}

TEST_F(RestoreTarget, AsksForTheDefaultSetByItself) {
    const auto attempt = [this](BoxAnswer answer, bool goesOn) {
        answers = {answer};
        shown.clear();
        restore([&](QDialog& open) {
            onlySets(open, {2, 0});
            start(open);
            EXPECT_EQ(buttonOf(open, QStringLiteral("Send Current Set")).isVisible(), goesOn);
            close(open);
        });
        EXPECT_THAT(shownTexts(), ElementsAre(std::string(restoreDefaultText)));
    };
    attempt(BoxAnswer::cancel, false);
    EXPECT_THAT(restoredSets(), IsEmpty());
    attempt(BoxAnswer::no, true);
    EXPECT_THAT(restoredSets(), ElementsAre(2));
    attempt(BoxAnswer::yes, true);
    EXPECT_THAT(restoredSets(), ElementsAre(0, 2));
}

TEST_F(RestoreTarget, NeedsLiveModeOff) {
    goLive();
    const int before = exchanges();
    clickTool(QStringLiteral("Restore Target..."));
    EXPECT_THAT(shownTexts(), ElementsAre("Please turn off Live Mode"));
    EXPECT_EQ(exchanges(), before);
    EXPECT_EQ(dialog(dialogName), nullptr);
}

TEST_F(RestoreTarget, NothingThatWasConfirmedBeforeCountsAsConfirmedAfterwards) {
    goLive();
    toggleLiveMode();
    ASSERT_TRUE(link.confirmedImage().has_value());
    ASSERT_TRUE(link.imageIsConfirmed());
    restore([this](QDialog& open) {
        onlySets(open, {1});
        start(open);
        EXPECT_FALSE(link.confirmedImage().has_value());
        close(open);
    });
    EXPECT_FALSE(link.imageIsConfirmed());
    EXPECT_EQ(light(), TargetStatus::Light::off);
}

TEST_F(RestoreTarget, SendCurrentSetSwitchesLiveModeOnAndTheTargetPlaysTheProgramsImage) {
    ASSERT_TRUE(link.startWorker());
    restore([](QDialog& open) {
        onlySets(open, {3});
        start(open);
        expectRed(open, QStringLiteral("The target plays the copy of set 3 now."));
        click(open, QStringLiteral("Send Current Set"));
        EXPECT_FALSE(open.isVisible());
    });
    EXPECT_TRUE(tuning.liveMode());
    ASSERT_TRUE(becomes([this] { return light() == TargetStatus::Light::confirmed; }));
    const ImageBytes live = memory().live;
    EXPECT_EQ(std::memcmp(live.data(), &tuning.image(), live.size()), 0);
    EXPECT_THAT(restoredSets(), ElementsAre(3));
}

TEST_F(RestoreTarget, CancelDuringAnExchangeWaitsForItsEndAndSaysWhatPlays) {
    // Image and confirmation of set 2; only the confirmation has a reply.
    breakExchange(5, "late=300");
    breakExchange(6, "late=300");
    restore([this](QDialog& open) {
        onlySets(open, {1, 2, 3});
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &open, [&] {
            if (textsOf(open).contains(QStringLiteral("Asking the target to confirm the copy of set 2"))) {
                timer.stop();
                EXPECT_TRUE(link.foreground().running());
                click(open, QStringLiteral("Cancel"));
                EXPECT_TRUE(open.isVisible());
            }
        });
        timer.start(2);
        start(open);
        EXPECT_EQ(exchanges(), 6) << "the confirmation came to its end, and nothing was saved after it";
        EXPECT_TRUE(textsOf(open).contains(QStringLiteral("It was cancelled before saving set 2.")))
            << textsOf(open).toStdString();
        expectRed(open, QLatin1String(twoPlays));
        EXPECT_TRUE(buttonOf(open, QStringLiteral("Send Current Set")).isVisible());
        close(open);
    });
    EXPECT_THAT(restoredSets(), ElementsAre(1));
}

TEST_F(RestoreTarget, EscapeInThePauseBeforeTheConfirmationEndsItAtOnce) {
    // Less than the pause. A machine that is held up for a moment is not held up every time.
    constexpr qint64 soonMs = 800;
    constexpr int attempts = 5;
    qint64 quickestMs = std::numeric_limits<qint64>::max();
    for (int attempt = 0; attempt < attempts && quickestMs >= soonMs; ++attempt) {
        const auto before = exchanges();
        restore([&](QDialog& open) {
            onlySets(open, {1});
            QElapsedTimer sinceEscape;
            QObject::connect(
                &link, &CommLink::exchangeEnded, &open,
                [&] {
                    if (!sinceEscape.isValid()) {
                        sinceEscape.start();
                        QTest::keyClick(&open, Qt::Key_Escape);
                        EXPECT_TRUE(open.isVisible());
                    }
                },
                Qt::QueuedConnection);
            start(open);
            quickestMs = std::min(quickestMs, sinceEscape.elapsed());
            expectRed(open, QLatin1String(unknownPlays));
            close(open);
        });
        EXPECT_EQ(exchanges(), before + 1);
        EXPECT_THAT(restoredSets(), IsEmpty());
    }
    EXPECT_LT(quickestMs, soonMs) << "not the rest of the pause";
}

TEST_F(RestoreTarget, ClosingTheWindowMeanwhileCancelsBetweenExchangesOnNo) {
    breakExchange(1, "late=300");
    breakExchange(2, "late=300");
    frame->setNothingToLose([] { return true; });
    answers = {BoxAnswer::no};
    restore([this](QDialog& open) {
        onlySets(open, {1});
        startAndCloseTheWindow(open);
        EXPECT_TRUE(frame->isVisible()) << "what the target plays is read first";
        expectRed(open, QStringLiteral("The target plays the copy of set 1 now."));
        close(open);
    });
    EXPECT_THAT(shownTexts(), ElementsAre(std::string(breakCopyQuestion)));
    ASSERT_TRUE(becomes([this] { return !frame->isVisible(); }));
    EXPECT_THAT(restoredSets(), IsEmpty());
}

TEST_F(RestoreTarget, ClosingTheWindowWaitsForItOnYesAndClosesBehindTheDialog) {
    frame->setNothingToLose([] { return true; });
    answers = {BoxAnswer::yes};
    restore([this](QDialog& open) {
        onlySets(open, {1, 2});
        startAndCloseTheWindow(open);
        EXPECT_TRUE(frame->isVisible()) << "what the target plays is read first";
        expectRed(open, QLatin1String(twoPlays));
        close(open);
    });
    EXPECT_THAT(shownTexts(), ElementsAre(std::string(breakCopyQuestion)));
    ASSERT_TRUE(becomes([this] { return !frame->isVisible(); }));
    EXPECT_THAT(restoredSets(), ElementsAre(1, 2));
}

TEST_F(RestoreTarget, TheCurrentSetIsSentAlthoughTheWindowWasToCloseMeanwhile) {
    ASSERT_TRUE(link.startWorker());
    frame->setNothingToLose([] { return true; });
    answers = {BoxAnswer::no};
    restore([this](QDialog& open) {
        onlySets(open, {1});
        startAndCloseTheWindow(open);
        click(open, QStringLiteral("Send Current Set"));
    });
    ASSERT_TRUE(becomes([this] { return light() == TargetStatus::Light::confirmed; }));
    EXPECT_TRUE(frame->isVisible());
    const ImageBytes live = memory().live;
    EXPECT_EQ(std::memcmp(live.data(), &tuning.image(), live.size()), 0);
}

TEST_F(RestoreTarget, ARoundOfLiveModeThatIsUnderWayEndsFirst) {
    ASSERT_TRUE(link.startWorker());
    bool isPaused = false;
    QObject::connect(
        &link, &CommLink::exchangeEnded, frame.get(),
        [&] {
            // In the pause between its image and its confirmation.
            if (!std::exchange(isPaused, true)) {
                toggleLiveMode();
            }
        },
        Qt::QueuedConnection);
    toggleLiveMode();
    ASSERT_TRUE(becomes([&] { return isPaused; }));
    EXPECT_EQ(exchanges(), 1);
    std::vector<LineUser> users;
    QObject::connect(&link, &CommLink::exchangeBegan, frame.get(),
                     [&](LineUser user) { users.push_back(user); });
    restore([](QDialog& open) {
        onlySets(open, {1});
        start(open);
        expectRed(open, QStringLiteral("The target plays the copy of set 1 now."));
        close(open);
    });
    EXPECT_THAT(users, ElementsAre(LineUser::liveMode, LineUser::command, LineUser::command,
                                   LineUser::command, LineUser::command))
        << "the confirmation belongs to the round";
    EXPECT_EQ(exchanges(), 6);
    EXPECT_EQ(memory().live, backedUp(1));
    EXPECT_THAT(restoredSets(), ElementsAre(1));
}

TEST_F(RestoreTarget, ClosingTheWindowBeforeItStartedClosesBoth) {
    frame->setNothingToLose([] { return true; });
    restore([this](QDialog& open) {
        EXPECT_FALSE(frame->close());
        EXPECT_FALSE(open.isVisible());
    });
    ASSERT_TRUE(becomes([this] { return !frame->isVisible(); }));
    EXPECT_EQ(exchanges(), 0);
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(RestoreTarget, TakesAnyFolderAndTellsOneThatIsNoBackup) {
    const auto other = folder / "other";
    makeBackup(other, 4);
    restore([&](QDialog& open) {
        dialogs.folderAnswer = folder / "nothing";
        click(open, QStringLiteral("Other Folder..."));
        EXPECT_THAT(shown, SizeIs(1));
        EXPECT_EQ(listOf(open).topLevelItemCount(), 1);
        dialogs.folderAnswer = other;
        click(open, QStringLiteral("Other Folder..."));
        ASSERT_EQ(listOf(open).topLevelItemCount(), 2);
        EXPECT_EQ(listOf(open).currentItem()->text(0), QStringLiteral("other"));
        EXPECT_FALSE(check(open, QStringLiteral("Set 4")).isEnabled());
        EXPECT_FALSE(check(open, QStringLiteral("Set 4")).isChecked());
        EXPECT_TRUE(textsOf(open).contains(
            QStringLiteral("The target sent it with a wrong digest, so it cannot be restored")));
        onlySets(open, {5});
        start(open);
        close(open);
    });
    EXPECT_THAT(restoredSets(), ElementsAre(5));
    EXPECT_EQ(dialogs.localeResets, 2);
}

TEST_F(RestoreTarget, OffersWhatTheProgramWroteItself) {
    std::filesystem::remove_all(place);
    WrittenSets written(writtenSetsFolder(data));
    ASSERT_TRUE(written.keep(3, "inside", imageOf(backedUp(3))));
    restore([](QDialog& open) {
        ASSERT_EQ(listOf(open).topLevelItemCount(), 1);
        EXPECT_EQ(listOf(open).topLevelItem(0)->text(0), QStringLiteral("Written by Tessavo: set 3"));
        for (int set = 0; set <= 5; ++set) {
            EXPECT_EQ(check(open, setText(set)).isEnabled(), set == 3) << set;
            EXPECT_EQ(check(open, setText(set)).isChecked(), set == 3) << set;
        }
        start(open);
        close(open);
    });
    EXPECT_THAT(restoredSets(), ElementsAre(3));
}

TEST_F(RestoreTarget, KeepsWhatItWritesToo) {
    restore([](QDialog& open) {
        onlySets(open, {2, 5});
        start(open);
        close(open);
    });
    const WrittenSets written(writtenSetsFolder(data));
    ASSERT_TRUE(becomes([&] { return written.list().sets.size() == 2; }));
    const auto sets = written.list().sets;
    EXPECT_EQ(sets[0].targetSet, 5);
    EXPECT_EQ(sets[1].targetSet, 2);
    EXPECT_TRUE(equalBytes(written.read(sets[1].id).value_or(ParameterImage{}), imageOf(backedUp(2))));
}

TEST_F(RestoreTarget, APortThatDoesNotOpenLeavesTheTargetAsItWas) {
    unplug();
    restore([](QDialog& open) {
        start(open);
        EXPECT_TRUE(textsOf(open).contains(QStringLiteral("The target did not take the copy of set 1.")));
        close(open);
    });
    EXPECT_THAT(shownTexts(), ElementsAre("Cannot open COM port!"));
    EXPECT_THAT(restoredSets(), IsEmpty());
    EXPECT_EQ(light(), TargetStatus::Light::trouble);
}

}  // namespace
}  // namespace tessavo::test
