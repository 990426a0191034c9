#include "app/session_keeper.h"

#include <QMenu>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include "app/file_news_display.h"
#include "app/session_fixture.h"
#include "app/ui_file_dialogs.h"
#include "base/md5.h"
#include "controls/skin_message_box.h"
#include "pages/rows/communication_rows.h"
#include "pages/rows/output_eq_rows.h"
#include "params/settings_file.h"

// What is in the recovery file at every moment, and what the next start makes of it.

namespace tessavo::test {
namespace {

using ::testing::IsEmpty;

static_assert(SessionKeeper::delay + RecoveryWriter::pace < std::chrono::milliseconds(1000),
              "never more than a second behind, and the disk needs some of it");

const QString restoreLabel = QStringLiteral("Restore");
const QString discardLabel = QStringLiteral("Discard");

class Keeping : public Sessions {
 protected:
    static bool isOffer(const QString& text) {
        static const QRegularExpression offer(
            QStringLiteral("^Tessavo ended without saving at \\d\\d:\\d\\d"
                           "( on \\d{4}-\\d\\d-\\d\\d)?$"));
        return offer.match(text).hasMatch();
    }
    CBitmapSlider& volume() {
        return run->on<CBitmapSlider>(Page::outputEqualizer, output_eq_id::volume.slider);
    }
    void rename(const QString& name) { run->typeInto(run->setName(), name); }
    /// Sets, a document, steps in two sets, one of them undone, and a filter method of its own.
    void work() {
        SessionRun& now = *run;
        ASSERT_TRUE(now.frame->openFile(textOf(carFile())));
        rename(QStringLiteral("First"));
        now.drag(volume(), 40);
        now.choose(now.setSelector(), 3);
        rename(QStringLiteral("Fourth"));
        now.click(now.flag(2));
        now.click(now.flag(5));
        now.drag(volume(), -30);
        now.choose(now.filterModes(), 2);
        now.undoKey();
        ASSERT_GT(now.history->position(), 5U);
        ASSERT_LT(now.history->position(), now.steps());
        ASSERT_TRUE(now.becomesKept());
    }
    [[nodiscard]] std::filesystem::path carFile() {
        const std::filesystem::path path = folder / "car.eqs";
        if (!std::filesystem::exists(path)) {
            std::filesystem::copy(pathOf(run->settingsFileNamed("car.eqs", u"Car")), path);
        }
        return path;
    }
};

// ---- what is kept

TEST_F(Keeping, EachKindOfChangeIsInTheFileToTheByte) {
    SessionRun& now = start();
    const QString file = textOf(carFile());
    const std::vector<std::pair<const char*, std::function<void()>>> changes{
        {"a slider", [&] { now.drag(volume(), 40); }},
        {"a slider that is still held", [&] { now.hold(volume(), -20); }},
        {"and let go", [&] { now.letGo(volume()); }},
        {"a name", [&] { rename(QStringLiteral("Street")); }},
        {"a flag", [&] { now.click(now.flag(3)); }},
        {"undo", [&] { now.undoKey(); }},
        {"redo", [&] { now.redoKey(); }},
        {"another set", [&] { now.choose(now.setSelector(), 2); }},
        {"a flag there", [&] { now.click(now.flag(7)); }},
        {"undo in another set",
         [&] {
             now.choose(now.setSelector(), 4);
             now.undoKey();
         }},
        {"a filter method", [&] { now.choose(now.filterModes(), 1); }},
        {"a set of the target",
         [&] { now.click(now.on<CxSkinButton>(Page::communication, comm_id::firstLoad + 1)); }},
        {"a change after a file",
         [&] {
             ASSERT_TRUE(now.frame->openFile(file));
             now.click(now.flag(1));
         }},
        {"another filter method with a document", [&] { now.choose(now.filterModes(), 2); }},
    };
    for (const auto& [what, change] : changes) {
        change();
        SessionRun::settleEvents();
        ASSERT_TRUE(now.becomesKept()) << what;
    }
    EXPECT_EQ(now.recovered()->documentPath, carFile());
    EXPECT_EQ(now.recovered()->filterMode, 2U);
    EXPECT_THAT(now.shown, IsEmpty());
}

TEST_F(Keeping, TheLast100StepsAreInTheFile) {
    SessionRun& now = start();
    for (int i = 0; i < 120; ++i) {
        now.click(now.flag(1 + i % 8));
    }
    for (int i = 0; i < 5; ++i) {
        now.undoKey();
    }
    ASSERT_EQ(now.steps(), 120U);
    ASSERT_TRUE(now.becomesKept());
    const auto kept = now.recovered();
    EXPECT_EQ(kept->trail->done.size(), 100U);
    EXPECT_EQ(kept->trail->undone.size(), 5U);
}

TEST_F(Keeping, ACleanCloseAfterASaveLeavesNothing) {
    SessionRun& now = start();
    now.drag(volume(), 40);
    ASSERT_TRUE(now.becomesKept());
    now.dialogs.answer = folder / "saved.eqs";
    now.close({BoxAnswer::yes});
    EXPECT_TRUE(std::filesystem::exists(folder / "saved.eqs"));
    EXPECT_EQ(filesNamed("recovery"), 0U);
    EXPECT_EQ(start().notice(), QString());
}

TEST_F(Keeping, ASessionWithoutAChangeLeavesNothing) {
    start().close({BoxAnswer::no});
    EXPECT_EQ(start().notice(), QString());
}

TEST_F(Keeping, OpeningAFileAloneLeavesNothing) {
    SessionRun& now = start();
    ASSERT_TRUE(now.frame->openFile(textOf(carFile())));
    now.close({BoxAnswer::no});
    EXPECT_EQ(start().notice(), QString());
}

TEST_F(Keeping, ClosingWithNoLeavesTheSets) {
    SessionRun& now = start();
    now.drag(volume(), 40);
    const auto ended = now.state();
    now.close({BoxAnswer::no});
    SessionRun& next = start();
    EXPECT_TRUE(isOffer(next.notice())) << next.notice().toStdString();
    next.answerNotice(restoreLabel);
    EXPECT_TRUE(next.same(*ended, *next.state()));
}

TEST_F(Keeping, ClosingWithYesAndACancelledDialogLeavesTheSets) {
    SessionRun& now = start();
    now.drag(volume(), 40);
    const auto ended = now.state();
    now.dialogs.answer.reset();
    now.close({BoxAnswer::yes});
    EXPECT_FALSE(now.dialogs.asked.empty());
    SessionRun& next = start();
    EXPECT_TRUE(isOffer(next.notice())) << next.notice().toStdString();
    next.answerNotice(restoreLabel);
    EXPECT_TRUE(next.same(*ended, *next.state()));
}

TEST_F(Keeping, WhatAnOpenedFileHasReplacedUnasked) {
    SessionRun& now = start();
    const QString file = textOf(carFile());
    now.drag(volume(), 40);
    const auto replaced = now.state();
    ASSERT_TRUE(now.frame->openFile(file));
    ASSERT_FALSE(now.frame->fileNews().files().documentDiffers());
    ASSERT_TRUE(now.becomesKept());
    cutPower();
    SessionRun& next = start();
    ASSERT_TRUE(isOffer(next.notice()));
    next.answerNotice(restoreLabel);
    ASSERT_TRUE(next.becomesKept()) << "it is still in no file";
    next.undoKey();
    EXPECT_TRUE(next.same(*replaced, *next.state()));
    next.redoKey();
    next.dialogs.answer = folder / "other.eqs";
    next.frame->action(QStringLiteral("Save"))->trigger();
    EXPECT_TRUE(next.becomesEmpty()) << "saved";
}

TEST_F(Keeping, TheEndOfTheSystemsSessionWritesAtOnce) {
    SessionRun& now = start();
    now.hold(volume(), 30);
    now.click(now.flag(4));
    // Only the system makes a session manager; nobody here looks into it.
    alignas(QObject) std::array<std::byte, sizeof(QObject)> manager{};
    Q_EMIT qApp->commitDataRequest(reinterpret_cast<QSessionManager&>(manager));
    EXPECT_TRUE(now.isKept());
    now.letGo(volume());
}

// ---- what the next start offers

TEST_F(Keeping, TheOfferIsANoticeAndNothingElse) {
    start().drag(volume(), 40);
    ASSERT_TRUE(run->becomesKept());
    cutPower();
    SessionRun& next = start();
    EXPECT_TRUE(isOffer(next.notice())) << next.notice().toStdString();
    EXPECT_EQ(next.noticeButtons(), (QStringList{restoreLabel, discardLabel}));
    EXPECT_THAT(next.shown, IsEmpty());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_FALSE(next.status().noticeLine().holdsFocus());
    EXPECT_EQ(next.toldNotices(), QStringList{next.notice()});
    EXPECT_EQ(next.steps(), 0U) << "nothing is restored unasked";
}

TEST_F(Keeping, RestoreBringsBackEverythingAndItsStepsCanBeUndone) {
    start();
    work();
    const auto ended = run->state();
    const auto states = run->everyState();
    const std::size_t position = run->history->position();
    ASSERT_TRUE(run->becomesKept());
    cutPower();

    SessionRun& next = start();
    const auto fresh = next.state();
    next.answerNotice(restoreLabel);
    EXPECT_TRUE(next.notice().startsWith(QStringLiteral("Restored the tuning of ")));
    EXPECT_TRUE(next.same(*ended, *next.state()));
    EXPECT_EQ(next.tuning.filterMode(), 2U);
    EXPECT_EQ(next.filterModes().currentIndex(), 2);
    EXPECT_EQ(next.setSelector().currentIndex(), 3);
    EXPECT_EQ(next.setName().text(), QStringLiteral("Fourth"));
    EXPECT_EQ(next.status().document().name, QStringLiteral("car.eqs"));
    EXPECT_TRUE(next.status().document().modified);
    EXPECT_TRUE(next.pagesShowTheSet());
    EXPECT_THAT(next.shown, IsEmpty());
    EXPECT_TRUE(next.becomesKept());
    EXPECT_EQ(filesNamed("ended"), 0U) << "this run keeps it itself now";

    // Both runs began with the same sets, so that no step is needed between them.
    ASSERT_EQ(next.steps() + 1, states.size());
    ASSERT_EQ(next.history->position(), position);
    for (std::size_t i = position; i-- > 0;) {
        next.undoKey();
        ASSERT_TRUE(next.same(*states[i], *next.state())) << i;
    }
    EXPECT_TRUE(next.same(*fresh, *next.state())) << "undo of Restore";
    EXPECT_EQ(next.history->position(), 0U);
    ASSERT_TRUE(next.commands().goTo(position));
    EXPECT_TRUE(next.same(*ended, *next.state()));
    next.redoKey();
    EXPECT_TRUE(next.same(*states[position + 1], *next.state())) << "what was undone then";
}

TEST_F(Keeping, AFileThatChangedBeforeRestoreIsWrittenOnlyAfterOverwrite) {
    start();
    const auto car = carFile();
    const auto saveAgain = [&] { run->press(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier); };
    for (const bool isChanged : {true, false}) {
        ASSERT_TRUE(run->frame->openFile(textOf(car)));
        const auto opened = run->state();
        run->drag(volume(), 40);
        const auto ended = run->state();
        ASSERT_TRUE(run->becomesKept());
        cutPower();
        Bytes foreign = readFile(car);
        foreign[5000] ^= isChanged ? 1U : 0U;
        ASSERT_TRUE(writeFile(car, foreign));
        SessionRun& next = start();
        next.answerNotice(restoreLabel);
        ASSERT_TRUE(next.same(*ended, *next.state()));
        ASSERT_TRUE(next.becomesKept());
        EXPECT_TRUE(next.status().document().modified);
        next.undoKey();
        ASSERT_EQ(std::memcmp(&next.state()->store, &opened->store, parameterStoreSize), 0);
        EXPECT_FALSE(next.status().document().modified) << "what was opened then";
        next.redoKey();
        saveAgain();
        if (!isChanged) {
            EXPECT_EQ(std::memcmp(readFile(car).data(), &ended->store, parameterStoreSize), 0);
            break;
        }
        EXPECT_EQ(next.notice(), QStringLiteral("car.eqs has changed on the disk"));
        EXPECT_EQ(next.noticeButtons(), QStringList{QStringLiteral("Overwrite")});
        EXPECT_EQ(readFile(car), foreign);
        next.answerNotice(QStringLiteral("Overwrite"));
        EXPECT_EQ(std::memcmp(readFile(car).data(), &ended->store, parameterStoreSize), 0);
    }
    EXPECT_THAT(run->shown, IsEmpty());
}

TEST_F(Keeping, AShortFileIsToldAgainAfterRestoreUntilItsStepIsUndone) {
    start();
    const auto car = carFile();
    std::filesystem::resize_file(car, 300);
    const auto before = run->state();
    ASSERT_TRUE(run->frame->openFile(textOf(car)));
    const QString text = QStringLiteral("car.eqs: 300 of 10600 bytes, the rest reads as zero");
    ASSERT_EQ(run->notice(), text);
    run->drag(volume(), 40);
    ASSERT_TRUE(run->becomesKept());
    cutPower();
    SessionRun& next = start();
    next.answerNotice(restoreLabel);
    ASSERT_TRUE(next.notice().startsWith(QStringLiteral("Restored the tuning of ")));
    next.press(Qt::Key_F6, {});
    next.press(Qt::Key_Escape, {});
    EXPECT_EQ(next.notice(), text);
    ASSERT_EQ(next.noticeButtons(), QStringList{QStringLiteral("Undo")});
    next.answerNotice(QStringLiteral("Undo"));
    EXPECT_TRUE(next.same(*before, *next.state()));
    EXPECT_NE(next.notice(), text);
    EXPECT_EQ(next.toldNotices().filter(text).size(), 1);
}

TEST_F(Keeping, EditsBeforeRestoreAreOneUndoAway) {
    start();
    work();
    const auto ended = run->state();
    cutPower();
    SessionRun& next = start();
    next.drag(volume(), 25);
    next.click(next.flag(6));
    const auto edited = next.state();
    next.answerNotice(restoreLabel);
    ASSERT_TRUE(next.same(*ended, *next.state()));
    const auto& all = next.history->steps();
    const auto restoring = std::ranges::find_if(
        all, [](const auto& step) { return step->text.starts_with("Restored the tuning of "); });
    ASSERT_NE(restoring, all.end());
    ASSERT_TRUE(next.commands().goTo(static_cast<std::size_t>(restoring - all.begin())));
    EXPECT_TRUE(next.same(*edited, *next.state()));
    EXPECT_TRUE(next.becomesKept());
}

TEST_F(Keeping, DiscardRemovesForGood) {
    start().drag(volume(), 40);
    ASSERT_TRUE(run->becomesKept());
    cutPower();
    SessionRun& next = start();
    const auto fresh = next.state();
    next.answerNotice(discardLabel);
    EXPECT_TRUE(next.same(*fresh, *next.state()));
    EXPECT_EQ(next.notice(), QString());
    EXPECT_EQ(filesNamed("ended"), 0U);
    EXPECT_EQ(start().notice(), QString());
}

TEST_F(Keeping, WhatNobodyAnsweredIsOfferedAgain) {
    start().drag(volume(), 40);
    const auto ended = run->state();
    ASSERT_TRUE(run->becomesKept());
    cutPower();
    for (int i = 0; i < 3; ++i) {
        start();
        ASSERT_TRUE(isOffer(run->notice())) << i;
        if (i == 1) {
            run->close({BoxAnswer::no});
        }
    }
    run->answerNotice(restoreLabel);
    EXPECT_TRUE(run->same(*ended, *run->state()));
}

TEST_F(Keeping, TwoEndsWithoutAnAnswerLoseNeither) {
    start();
    rename(QStringLiteral("Earlier"));
    const auto earlier = run->state();
    ASSERT_TRUE(run->becomesKept());
    cutPower();
    start();
    rename(QStringLiteral("Later"));
    const auto later = run->state();
    ASSERT_TRUE(run->becomesKept());
    cutPower();
    SessionRun& next = start();
    EXPECT_EQ(filesNamed("ended"), 2U);
    next.answerNotice(restoreLabel);
    EXPECT_TRUE(next.same(*later, *next.state())) << "the newest first";
    EXPECT_TRUE(next.notice().startsWith(QStringLiteral("Restored")));
    next.press(Qt::Key_F6, {});
    next.press(Qt::Key_Escape, {});
    ASSERT_TRUE(isOffer(next.notice())) << next.notice().toStdString();
    next.answerNotice(restoreLabel);
    EXPECT_TRUE(next.same(*earlier, *next.state()));
    EXPECT_EQ(filesNamed("ended"), 0U);
    EXPECT_TRUE(next.becomesKept());
}

TEST_F(Keeping, ADamagedFileIsSetAsideAndTold) {
    start().drag(volume(), 40);
    ASSERT_TRUE(run->becomesKept());
    cutPower();
    Bytes bytes = readFile(data() / "recovery.tsr");
    bytes[bytes.size() / 2] ^= 1U;
    ASSERT_TRUE(writeFile(data() / "recovery.tsr", bytes));
    SessionRun& next = start();
    EXPECT_TRUE(next.notice().startsWith(QStringLiteral("A damaged recovery file was set aside: damaged-")))
        << next.notice().toStdString();
    EXPECT_EQ(next.toldNotices(), QStringList{next.notice()});
    EXPECT_EQ(next.noticeButtons(), QStringList());
    EXPECT_EQ(next.steps(), 0U);
    EXPECT_EQ(filesNamed("damaged"), 1U);
    EXPECT_EQ(filesNamed("ended"), 0U);
    next.drag(volume(), 30);
    EXPECT_TRUE(next.becomesKept()) << "this run is kept";
    EXPECT_EQ(filesNamed("damaged"), 1U);
}

TEST_F(Keeping, FilesOfALaterVersionAndUnreadableOnesAreToldAndLeft) {
    std::filesystem::create_directory(data());
    Bytes newer{'T', 'S', 'V', 'R', 'E', 'C', 'O', 'V', 3, 0, 0, 0};
    const auto digest = md5(newer);
    newer.insert(newer.end(), digest.begin(), digest.end());
    const QString newerText = QStringLiteral(
        "A later version of Tessavo wrote and restores this recovery file: ended-20261122-102107-123.tsr");
    const QString unreadableText =
        QStringLiteral("A recovery file cannot be read: ended-20261122-102200-000.tsr");
    ASSERT_TRUE(writeFile(data() / "ended-20261122-102107-123.tsr", newer));
    EXPECT_EQ(start().notice(), newerText);
    std::filesystem::create_directory(data() / "ended-20261122-102200-000.tsr");
    for (int i = 0; i < 2; ++i) {
        SessionRun& next = start();
        EXPECT_EQ(next.notice(), newerText);
        EXPECT_EQ(next.toldNotices(), (QStringList{unreadableText, newerText}));
        EXPECT_EQ(next.noticeButtons(), QStringList());
    }
    EXPECT_EQ(readFile(data() / "ended-20261122-102107-123.tsr"), newer);
    std::filesystem::remove(data() / "ended-20261122-102107-123.tsr");
    EXPECT_EQ(start().notice(), unreadableText);
    run->drag(volume(), 40);
    EXPECT_TRUE(run->becomesKept()) << "this run is kept";
}

TEST_F(Keeping, AFileDamagedWhileItWaitsIsToldAndNotTakenHalf) {
    start().drag(volume(), 40);
    ASSERT_TRUE(run->becomesKept());
    cutPower();
    SessionRun& next = start();
    const auto fresh = next.state();
    for (const auto& entry : std::filesystem::directory_iterator(data())) {
        if (entry.path().filename().string().starts_with("ended")) {
            std::filesystem::resize_file(entry.path(), 1000);
        }
    }
    next.answerNotice(restoreLabel);
    EXPECT_TRUE(next.notice().startsWith(QStringLiteral("The recovery file is damaged or gone: ended-")));
    EXPECT_TRUE(next.same(*fresh, *next.state()));
    EXPECT_EQ(next.steps(), 0U);
}

TEST_F(Keeping, RestoreIsRefusedWhileABoxIsOpenAndOfferedAgain) {
    start().drag(volume(), 40);
    const auto ended = run->state();
    ASSERT_TRUE(run->becomesKept());
    cutPower();
    SessionRun& next = start();
    const auto fresh = next.state();
    bool looked = false;
    QTimer::singleShot(0, next.frame.get(), [&] {
        QWidget* const box = QApplication::activeModalWidget();
        ASSERT_NE(box, nullptr);
        // As a screen reader presses it, whatever is in front.
        const Notice notice = *next.status().noticeLine().standing();
        notice.buttons.front().act();
        EXPECT_TRUE(isOffer(next.notice()));
        EXPECT_TRUE(next.same(*fresh, *next.state()));
        looked = true;
        box->close();
    });
    SkinMessageBox(QStringLiteral("Tessavo"), QStringLiteral("Wait."), SkinMessageBox::Icon::none,
                   SkinMessageBox::Buttons::ok, next.frame.get())
        .ask();
    ASSERT_TRUE(looked);
    EXPECT_EQ(filesNamed("ended"), 1U);
    next.answerNotice(restoreLabel);
    EXPECT_TRUE(next.same(*ended, *next.state()));
}

}  // namespace
}  // namespace tessavo::test
