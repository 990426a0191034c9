#include <QDateTime>
#include <QTest>
#include <array>
#include <cstring>
#include <random>

#include "app/back_up_dialog.h"
#include "app/copies_commands.h"
#include "app/copies_fixture.h"
#include "app/status_line.h"
#include "controls/skin_button.h"
#include "copies/backup_folder.h"
#include "copies/known_backups.h"
#include "params/tuning_snapshot.h"

// "Back Up Target...", from the menu to the folder.

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

const QString backUpItem = QStringLiteral("Back Up Target...");
const QString dialogName = QStringLiteral("backUp");

class BackUpTarget : public CopiesTest {
 protected:
    BackUpTarget() { dialogs.folderAnswer = place; }

    void backUpNow() { clickTool(backUpItem); }
    [[nodiscard]] bool isBackedUp() {
        return becomes([this] { return !notice().isEmpty(); });
    }
    [[nodiscard]] TargetCopy written() {
        const BackupRead read = readBackup(place);
        EXPECT_EQ(read.trouble, "");
        return read.copy.value_or(TargetCopy());
    }
    static void expectFirstImage(const SetCopy& set) {
        const auto image = set.image();
        ASSERT_TRUE(image) << int{set.targetSet};
        EXPECT_TRUE(equalBytes(*image, imageOf(firstImage(set.targetSet)))) << int{set.targetSet};
    }

    std::filesystem::path place = folder / "copy";
};

TEST_F(BackUpTarget, WritesAllSixSetsAndTouchesNeitherSetsNorImageOfTheProgram) {
    const auto before = state();
    backUpNow();
    ASSERT_TRUE(isBackedUp());
    EXPECT_EQ(notice(), QStringLiteral("Backed up to copy."));
    const TargetCopy copy = written();
    for (const SetCopy& set : copy.sets) {
        expectFirstImage(set);
    }
    EXPECT_TRUE(copy.versions.has_value());
    EXPECT_EQ(copy.port, "inside");
    EXPECT_EQ(exchanges(), 7);
    EXPECT_EQ(std::memcmp(before.get(), state().get(), sizeof(TuningSnapshot)), 0);
    EXPECT_EQ(dialog(dialogName), nullptr) << "there is nothing to read in it";
    EXPECT_THAT(shown, IsEmpty());
    EXPECT_EQ(words().rfind("last answer ", 0), 0U) << words();
    EXPECT_EQ(light(), TargetStatus::Light::off);
    for (std::size_t set = 0; set < targetSetCount; ++set) {
        EXPECT_EQ(memory().sets.at(set), firstImage(set)) << set;
    }
    EXPECT_THAT(KnownBackups(knownBackupsFolder(data)).list(), SizeIs(1));
}

TEST_F(BackUpTarget, ProposesANameOfDateAndTime) {
    dialogs.folderAnswer.reset();
    backUpNow();
    ASSERT_TRUE(becomes([this] { return !dialogs.proposedNames.empty(); }));
    const QString name = QString::fromStdString(dialogs.proposedNames[0]);
    EXPECT_TRUE(QDateTime::fromString(name, QStringLiteral("'target' yyyy-MM-dd HH-mm-ss")).isValid())
        << dialogs.proposedNames[0];
    EXPECT_EQ(dialogs.localeResets, 1);
    EXPECT_EQ(exchanges(), 0) << "the dialog was cancelled";
    EXPECT_EQ(notice(), QString());
}

TEST_F(BackUpTarget, NeedsLiveModeOff) {
    goLive();
    const int before = exchanges();
    backUpNow();
    ASSERT_TRUE(becomes([this] { return !shown.empty(); }));
    EXPECT_THAT(shownTexts(), ElementsAre("Please turn off Live Mode"));
    EXPECT_THAT(dialogs.proposedNames, IsEmpty());
    EXPECT_EQ(exchanges(), before);
}

TEST_F(BackUpTarget, RefusesAFolderThatHoldsSomethingAndReadsNothing) {
    std::filesystem::create_directory(place);
    writeFile(place / "mine.txt", std::vector<std::uint8_t>{1});
    backUpNow();
    ASSERT_TRUE(becomes([this] { return !shown.empty(); }));
    ASSERT_THAT(shown, SizeIs(1));
    EXPECT_NE(shown[0].text.find("copy: "), std::string::npos) << shown[0].text;
    EXPECT_EQ(exchanges(), 0);
    EXPECT_EQ(notice(), QString());
}

TEST_F(BackUpTarget, NamesADamagedSetAndReadsTheOthers) {
    breakExchange(3, "wrong-digest");
    breakExchange(6, "damaged-reply");
    QString told;
    whenOpen(dialogName, [&](QDialog& open) {
        if (!dynamic_cast<BackUpDialog&>(open).finished()) {
            return false;
        }
        told = textsOf(open);
        click(open, QStringLiteral("Close"));
        return true;
    });
    backUpNow();
    ASSERT_TRUE(becomes([&] { return !told.isEmpty() && dialog(dialogName) == nullptr; }));
    EXPECT_TRUE(told.contains(
        QStringLiteral("Set 3: the target sent it with a wrong digest, so it cannot be restored.")))
        << told.toStdString();
    EXPECT_TRUE(told.contains(QStringLiteral("The default set: it could not be read from the target.")))
        << told.toStdString();
    EXPECT_EQ(notice(), QStringLiteral("Backed up to copy, but not set 3, the default set."));
    const TargetCopy copy = written();
    for (const std::uint8_t set : std::to_array<std::uint8_t>({1, 2, 4, 5})) {
        expectFirstImage(copy.set(set));
    }
    EXPECT_EQ(copy.set(3).state, SetState::wrongDigest);
    EXPECT_EQ(copy.set(0).state, SetState::notRead);
    EXPECT_EQ(words().rfind("last answer ", 0), 0U) << "the versions were read last: " << words();
}

TEST_F(BackUpTarget, TellsWhenOnlyTheVersionsAreMissing) {
    breakExchange(7, "damaged-reply");
    whenOpen(dialogName, [](QDialog& open) {
        const bool finished = dynamic_cast<BackUpDialog&>(open).finished();
        if (finished) {
            QTest::keyClick(&open, Qt::Key_Escape);
        }
        return finished;
    });
    backUpNow();
    ASSERT_TRUE(isBackedUp());
    EXPECT_EQ(notice(), QStringLiteral("Backed up to copy, but not the versions."));
    EXPECT_TRUE(written().everySetSound());
    EXPECT_EQ(light(), TargetStatus::Light::trouble) << words();
}

TEST_F(BackUpTarget, CancelEndsItBetweenTwoExchangesAndWritesNothing) {
    breakExchange(2, "late=300");
    int seen = 0;
    whenOpen(dialogName, [&](QDialog& open) {
        // The label is there a moment before the exchange.
        if (exchanges() < 2 || !textsOf(open).contains(QStringLiteral("Reading set 2, exchange 2 of 7"))) {
            return false;
        }
        click(open, QStringLiteral("Cancel"));
        seen = exchanges();
        EXPECT_TRUE(link.foreground().running()) << "the exchange goes on to its end";
        return true;
    });
    backUpNow();
    ASSERT_TRUE(isBackedUp());
    EXPECT_EQ(seen, 2);
    EXPECT_EQ(exchanges(), 2);
    EXPECT_EQ(notice(), QStringLiteral("The backup was cancelled; nothing was written."));
    EXPECT_FALSE(std::filesystem::exists(place));
    EXPECT_EQ(words().rfind("last answer ", 0), 0U) << words();
}

TEST_F(BackUpTarget, EscapeCancelsToo) {
    breakExchange(1, "late=300");
    whenOpen(dialogName, [&](QDialog& open) {
        if (!link.foreground().running()) {
            return false;
        }
        QTest::keyClick(&open, Qt::Key_Escape);
        EXPECT_TRUE(open.isVisible());
        return true;
    });
    backUpNow();
    ASSERT_TRUE(isBackedUp());
    EXPECT_EQ(exchanges(), 1);
    EXPECT_FALSE(std::filesystem::exists(place));
}

TEST_F(BackUpTarget, APortThatDoesNotOpenIsToldOnce) {
    unplug();
    backUpNow();
    ASSERT_TRUE(isBackedUp());
    EXPECT_THAT(shownTexts(), ElementsAre("Cannot open COM port!"));
    EXPECT_EQ(notice(), QStringLiteral("Not backed up: the target gave none of its sets."));
    EXPECT_FALSE(std::filesystem::exists(place));
    EXPECT_EQ(light(), TargetStatus::Light::trouble);
}

TEST_F(BackUpTarget, ACutCableLeavesWhatWasReadAndNamesTheRest) {
    // In the middle of the third reply; from then on the port is gone.
    breakExchange(3, "cable=4000");
    QString told;
    QObject::connect(&link, &CommLink::exchangeEnded, frame.get(), [this](LineUser, ExchangeEnd end) {
        if (end != ExchangeEnd::answered) {
            unplug();
        }
    });
    whenOpen(dialogName, [&](QDialog& open) {
        if (!dynamic_cast<BackUpDialog&>(open).finished()) {
            return false;
        }
        told = textsOf(open);
        click(open, QStringLiteral("Close"));
        return true;
    });
    backUpNow();
    ASSERT_TRUE(isBackedUp());
    EXPECT_THAT(shownTexts(), ElementsAre("Cannot open COM port!")) << "not once for each set that is left";
    EXPECT_EQ(
        notice(),
        QStringLiteral("Backed up to copy, but not set 3, set 4, set 5, the default set, the versions."));
    const TargetCopy copy = written();
    expectFirstImage(copy.set(1));
    expectFirstImage(copy.set(2));
    for (const std::uint8_t set : std::to_array<std::uint8_t>({3, 4, 5, 0})) {
        EXPECT_EQ(copy.set(set).state, SetState::notRead) << int{set};
    }
}

TEST_F(BackUpTarget, EveryFaultLeavesTheOtherSixExchangesWhole) {
    int round = 0;
    for (const std::string fault :
         {"wrong-digest", "damaged-reply", "truncated-reply=100", "wrong-complement", "no-request",
          "wrong-request=9", "negative=1", "silence=1", "junk=5", "no-disconnect"}) {
        place = folder / ("copy" + std::to_string(++round));
        dialogs.folderAnswer = place;
        breakExchange(exchanges() + 4, fault);
        whenOpen(dialogName, [](QDialog& open) {
            const bool finished = dynamic_cast<BackUpDialog&>(open).finished();
            if (finished) {
                click(open, QStringLiteral("Close"));
            }
            return finished;
        });
        const QString expected = QStringLiteral("Backed up to copy%1, but not set 4.").arg(round);
        backUpNow();
        ASSERT_TRUE(becomes([&] { return notice() == expected && dialog(dialogName) == nullptr; }))
            << fault << ": " << notice().toStdString();
        const TargetCopy copy = written();
        EXPECT_NE(copy.set(4).state, SetState::sound) << fault;
        for (const std::uint8_t set : std::to_array<std::uint8_t>({1, 2, 3, 5, 0})) {
            expectFirstImage(copy.set(set));
        }
    }
}

TEST_F(BackUpTarget, ACableThatIsOutDuringOneExchangeCostsThatOneAlone) {
    // Request byte, request, answer, reply, disconnect; without the answer to that it is no exchange.
    constexpr unsigned bytesOfExchange = 1 + 2053 + 1 + 4101 + 1;
    std::mt19937 random(16);
    for (int cut = 0; cut < 40; ++cut) {
        const auto broken = static_cast<std::size_t>(cut) % targetSetNumbers.size();
        place = folder / ("copy" + std::to_string(cut));
        dialogs.folderAnswer = place;
        const std::string fault = "cable=" + std::to_string(1 + random() % bytesOfExchange);
        breakExchange(exchanges() + 1 + static_cast<int>(broken), fault);
        whenOpen(dialogName, [](QDialog& open) {
            const bool finished = dynamic_cast<BackUpDialog&>(open).finished();
            if (finished) {
                click(open, QStringLiteral("Close"));
            }
            return finished;
        });
        const std::string lost = targetSetText(targetSetNumbers.at(broken));
        const QString expected = QStringLiteral("Backed up to copy%1, but not ").arg(cut) +
                                 QString::fromStdString(lost) + QLatin1Char('.');
        backUpNow();
        ASSERT_TRUE(becomes([&] { return notice() == expected && dialog(dialogName) == nullptr; }))
            << fault << ": " << notice().toStdString();
        const TargetCopy copy = written();
        for (std::size_t i = 0; i < copy.sets.size(); ++i) {
            if (i == broken) {
                EXPECT_EQ(copy.sets.at(i).state, SetState::notRead) << fault;
            } else {
                expectFirstImage(copy.sets.at(i));
            }
        }
    }
}

TEST_F(BackUpTarget, ClosingTheWindowMeanwhileAsksFirst) {
    breakExchange(2, "late=400");
    frame->setNothingToLose([] { return true; });
    answers = {BoxAnswer::cancel};
    whenOpen(dialogName, [&](QDialog& open) {
        if (!textsOf(open).contains(QStringLiteral("exchange 2 of 7"))) {
            return false;
        }
        EXPECT_FALSE(frame->close());
        return true;
    });
    backUpNow();
    ASSERT_TRUE(isBackedUp());
    EXPECT_THAT(shownTexts(), ElementsAre(std::string(breakCopyQuestion)));
    EXPECT_EQ(notice(), QStringLiteral("Backed up to copy.")) << "it went on";
    EXPECT_TRUE(frame->isVisible());
}

TEST_F(BackUpTarget, ClosingTheWindowCancelsItOnNoAndThenCloses) {
    breakExchange(2, "late=400");
    frame->setNothingToLose([] { return true; });
    answers = {BoxAnswer::no};
    whenOpen(dialogName, [&](QDialog& open) {
        if (!textsOf(open).contains(QStringLiteral("exchange 2 of 7"))) {
            return false;
        }
        EXPECT_FALSE(frame->close());
        EXPECT_TRUE(frame->isVisible());
        return true;
    });
    backUpNow();
    ASSERT_TRUE(becomes([this] { return !frame->isVisible(); }));
    EXPECT_EQ(exchanges(), 2) << "the one that ran came to its end";
    EXPECT_FALSE(std::filesystem::exists(place));
}

TEST_F(BackUpTarget, ClosingTheWindowWaitsForItOnYes) {
    breakExchange(2, "late=400");
    frame->setNothingToLose([] { return true; });
    answers = {BoxAnswer::yes};
    whenOpen(dialogName, [&](QDialog& open) {
        if (!textsOf(open).contains(QStringLiteral("exchange 2 of 7"))) {
            return false;
        }
        EXPECT_FALSE(frame->close());
        return true;
    });
    backUpNow();
    ASSERT_TRUE(becomes([this] { return !frame->isVisible(); }));
    EXPECT_TRUE(written().everySetSound());
}

}  // namespace
}  // namespace tessavo::test
