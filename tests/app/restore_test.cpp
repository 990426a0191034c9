#include <QElapsedTimer>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <algorithm>
#include <cstring>

#include "app/copies_commands.h"
#include "app/copies_fixture.h"
#include "app/restore_dialog.h"
#include "app/status_line.h"
#include "controls/color_control.h"
#include "controls/skin_check_box.h"
#include "controls/theme.h"
#include "copies/backup_folder.h"
#include "copies/copy_text.h"
#include "copies/known_backups.h"
#include "copies/written_sets.h"
#include "params/image_digest.h"
#include "params/tuning_snapshot.h"

// "Restore Target...", from the menu to the target's memory.

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

const QString dialogName = QStringLiteral("restore");

/// What the backup holds, which differs from what the target holds.
ImageBytes backedUp(std::size_t set) {
    ImageBytes bytes = factoryImage();
    bytes.at(parameterImageSize - 1) = static_cast<std::uint8_t>(0x90 + set);
    return bytes;
}

class RestoreTarget : public CopiesTest {
 protected:
    RestoreTarget() {
        place = folder / "car";
        makeBackup(place);
        KnownBackups(knownBackupsFolder(data)).add(place);
    }

    /// \param damaged a set that came with a wrong digest; 9 for none
    static void makeBackup(const std::filesystem::path& place, std::size_t damaged = 9) {
        TargetCopy copy;
        for (SetCopy& set : copy.sets) {
            const ImageBytes bytes = backedUp(set.targetSet);
            const Md5Digest digest = md5Image(imageOf(bytes));
            std::memcpy(set.reply.data(), bytes.data(), bytes.size());
            std::memcpy(set.reply.data() + reply_layout::imageDigest, digest.data(), digest.size());
            set.reply[reply_layout::imageDigest] ^= set.targetSet == damaged ? 1 : 0;
            set.state = set.targetSet == damaged ? SetState::wrongDigest : SetState::sound;
        }
        copy.versions = TargetVersions{};
        copy.port = "inside";
        copy.time = WallTime(std::chrono::seconds(1'790'000'000));
        ASSERT_EQ(writeBackup(place, copy), "");
    }

    /// Opens the dialog from the menu and does this once the copies are listed. Returns when it is closed.
    void restore(const std::function<void(QDialog&)>& act) {
        bool acted = false;
        whenOpen(dialogName, [&](QDialog& open) {
            if (listOf(open).topLevelItemCount() == 0) {
                return false;
            }
            acted = true;
            act(open);
            return true;
        });
        clickTool(QStringLiteral("Restore Target..."));
        EXPECT_TRUE(acted);
    }
    /// Ticks that the amplifiers are off, and restores. Returns at the end; the dialog stays open.
    static void start(QDialog& open) {
        clickCheck(open, QStringLiteral("The amplifiers are off or turned down"));
        click(open, QStringLiteral("Restore"));
    }
    static void close(QDialog& open) { click(open, QStringLiteral("Close")); }

    static QTreeWidget& listOf(QDialog& open) { return *open.findChild<QTreeWidget*>(); }
    static SkinCheckBox& check(QDialog& open, const QString& text) {
        for (auto* each : open.findChildren<SkinCheckBox*>()) {
            if (each->text() == text) {
                return *each;
            }
        }
        throw std::logic_error("no check box " + text.toStdString());
    }
    static void clickCheck(QDialog& open, const QString& text) {
        SkinCheckBox& box = check(open, text);
        QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(10, box.height() / 2));
    }
    static QString setText(int set) {
        return set == 0 ? QStringLiteral("Default Set") : QStringLiteral("Set %1").arg(set);
    }
    static void onlySets(QDialog& open, const std::vector<int>& wanted) {
        for (int set = 0; set <= 5; ++set) {
            const bool isWanted = std::ranges::count(wanted, set) > 0;
            if (check(open, setText(set)).isChecked() != isWanted) {
                clickCheck(open, setText(set));
            }
        }
    }
    static const CColorControl& message(const QDialog& open) {
        return *open.findChild<CColorControl*>(QStringLiteral("message"));
    }
    static void expectRed(const QDialog& open, const QString& text) {
        EXPECT_EQ(message(open).text(), text);
        EXPECT_TRUE(message(open).isVisible());
        EXPECT_EQ(message(open).textColor(), QColor::fromRgb(theme::trouble));
    }
    /// Which sets of the target hold the backup's image; the others hold what they held at first.
    [[nodiscard]] std::vector<int> restoredSets() {
        std::vector<int> restored;
        const TargetMemory now = memory();
        for (int set = 0; set <= 5; ++set) {
            const auto index = static_cast<std::size_t>(set);
            if (now.sets.at(index) == backedUp(index)) {
                restored.push_back(set);
            } else {
                EXPECT_EQ(now.sets.at(index), firstImage(index))
                    << "half of one and half of the other " << set;
            }
        }
        return restored;
    }

    std::filesystem::path place;
};

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
    restore([this](QDialog& open) {
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

/// A fault of one of the four exchanges of set 2, with set 1 done before it and set 3 behind it.
struct FaultCase {
    int exchange;
    const char* fault;
    bool setTwoIsWritten;
    const char* plays;
    const char* state;  ///< of set 2
};

class RestoreFault : public RestoreTarget, public ::testing::WithParamInterface<FaultCase> {};

TEST_P(RestoreFault, StopsThereAndSaysWhatIsDoneAndWhatPlays) {
    const FaultCase& wanted = GetParam();
    breakExchange(4 + wanted.exchange, wanted.fault);
    restore([&](QDialog& open) {
        onlySets(open, {1, 2, 3});
        start(open);
        const QString texts = textsOf(open);
        EXPECT_EQ(texts.count(QStringLiteral("Restored, read back and compared")),
                  QByteArray(wanted.state).startsWith("Restored") ? 2 : 1)
            << texts.toStdString();
        EXPECT_TRUE(texts.contains(QLatin1String(wanted.state))) << texts.toStdString();
        EXPECT_TRUE(texts.contains(QStringLiteral("Unchanged"))) << "set 3";
        expectRed(open, QLatin1String(wanted.plays));
        EXPECT_TRUE(buttonOf(open, QStringLiteral("Send Current Set")).isVisible());
        close(open);
    });
    if (wanted.setTwoIsWritten) {
        EXPECT_THAT(restoredSets(), ElementsAre(1, 2));
    } else {
        EXPECT_THAT(restoredSets(), ElementsAre(1));
    }
    EXPECT_FALSE(link.confirmedImage().has_value());
}

constexpr const char* unknownPlays = "What the target plays now is not known.";
constexpr const char* twoPlays = "The target plays the copy of set 2 now.";

INSTANTIATE_TEST_SUITE_P(
    All, RestoreFault,
    ::testing::Values(FaultCase{1, "negative=1", false, unknownPlays, "Unchanged"},
                      FaultCase{1, "silence=1", false, unknownPlays, "Unchanged"},
                      FaultCase{1, "no-request", false, unknownPlays, "Unchanged"},
                      FaultCase{1, "wrong-request=9", false, unknownPlays, "Unchanged"},
                      FaultCase{1, "no-disconnect", false, unknownPlays, "Unchanged"},
                      FaultCase{1, "cable=2000", false, unknownPlays, "Unchanged"},
                      FaultCase{2, "wrong-confirmation", false, unknownPlays, "Unchanged"},
                      FaultCase{2, "damaged-reply", false, unknownPlays, "Unchanged"},
                      FaultCase{2, "wrong-complement", false, unknownPlays, "Unchanged"},
                      FaultCase{3, "negative=1", false, twoPlays, "Unchanged"},
                      FaultCase{3, "no-disconnect", true, twoPlays, "Restored, read back and compared"},
                      FaultCase{4, "damaged-reply", true, twoPlays, "Saved, but not compared with the copy"},
                      FaultCase{4, "wrong-digest", true, twoPlays, "Saved, but not compared with the copy"},
                      FaultCase{4, "cable=3000", true, twoPlays, "Saved, but not compared with the copy"}));

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
    restore([this](QDialog& open) {
        onlySets(open, {1});
        QTimer timer;
        QElapsedTimer sinceEscape;
        QObject::connect(&timer, &QTimer::timeout, &open, [&] {
            if (exchanges() == 1 && !link.foreground().running()) {
                timer.stop();
                sinceEscape.start();
                QTest::keyClick(&open, Qt::Key_Escape);
                EXPECT_TRUE(open.isVisible());
            }
        });
        timer.start(2);
        start(open);
        EXPECT_LT(sinceEscape.elapsed(), 800) << "not the rest of the pause";
        expectRed(open, QLatin1String(unknownPlays));
        close(open);
    });
    EXPECT_EQ(exchanges(), 1);
    EXPECT_THAT(restoredSets(), IsEmpty());
}

TEST_F(RestoreTarget, ClosingTheWindowMeanwhileCancelsBetweenExchangesOnNo) {
    breakExchange(1, "late=300");
    breakExchange(2, "late=300");
    frame->setNothingToLose([] { return true; });
    answers = {BoxAnswer::no};
    restore([this](QDialog& open) {
        onlySets(open, {1});
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &open, [&] {
            if (exchanges() == 2) {
                timer.stop();
                EXPECT_FALSE(frame->close());
            }
        });
        timer.start(2);
        start(open);
        EXPECT_TRUE(frame->isVisible()) << "what the target plays is read first";
        expectRed(open, QStringLiteral("The target plays the copy of set 1 now."));
        close(open);
    });
    EXPECT_THAT(shownTexts(), ElementsAre(std::string(breakCopyQuestion)));
    ASSERT_TRUE(becomes([this] { return !frame->isVisible(); }));
    EXPECT_THAT(restoredSets(), IsEmpty());
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
