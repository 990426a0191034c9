#include <QTest>
#include <fstream>

#include "app/file_news_display.h"
#include "app/session_fixture.h"
#include "app/ui_file_dialogs.h"
#include "pages/rows/output_eq_rows.h"
#include "params/settings_file.h"
#include "support/file_size_limit.h"
#include "support/ordinary_user.h"

// A disk that gets full, and a folder that cannot be written, in the middle of a session.

namespace tessavo::test {
namespace {

constexpr int patienceMs = 30000;
constexpr rlim_t nearlyNothing = 100;

class NoRoom : public Sessions {
 protected:
    CBitmapSlider& volume() {
        return run->on<CBitmapSlider>(Page::outputEqualizer, output_eq_id::volume.slider);
    }
    [[nodiscard]] bool isTold(const QString& start) const {
        return !run->toldNotices().filter(start).isEmpty();
    }
    bool becomesTold(const QString& start) {
        return QTest::qWaitFor([&] { return isTold(start); }, patienceMs);
    }
    /// Whether files can be made in the data folder, by whoever it is.
    void letWrite(bool mayWrite) {
        using std::filesystem::perms;
        const auto reading = static_cast<perms>(0555);
        std::filesystem::permissions(folder.path(), perms::all);
        for (const auto& entry : std::filesystem::directory_iterator(data())) {
            std::filesystem::permissions(entry.path(), perms::all);
        }
        std::filesystem::permissions(data(), mayWrite ? perms::all : reading);
    }
    const QString cannotWrite = QStringLiteral("The recovery file cannot be written: ");
};

TEST_F(NoRoom, AFullDiskIsToldOnceAndTheFileOfBeforeStaysWhole) {
    start().drag(volume(), 20);
    ASSERT_TRUE(run->becomesKept());
    const Bytes before = readFile(run->recoveryFile());
    {
        const FileSizeLimit full(nearlyNothing);
        run->drag(volume(), 30);
        ASSERT_TRUE(becomesTold(cannotWrite));
        run->click(run->flag(2));
        run->click(run->flag(3));
        // It is tried once more before this returns.
        run->close({BoxAnswer::no});
        EXPECT_EQ(readFile(run->recoveryFile()), before);
        EXPECT_EQ(run->steps(), 4U) << "edits go on";
    }
    EXPECT_EQ(run->toldNotices().filter(cannotWrite).size(), 1);
    EXPECT_TRUE(run->becomesKept()) << "by itself, once there is room";
}

TEST_F(NoRoom, AFullDiskCostsNoSettingsFile) {
    start();
    const auto file = pathOf(run->settingsFileNamed("car.eqs", u"Car"));
    ASSERT_TRUE(run->frame->openFile(textOf(file)));
    const Bytes before = readFile(file);
    run->drag(volume(), 30);
    const auto edited = run->state();
    run->press(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    const Bytes saved = readFile(file);
    ASSERT_NE(saved, before);
    run->drag(volume(), -20);
    {
        const FileSizeLimit full(nearlyNothing);
        run->press(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    }
    EXPECT_TRUE(isTold(QStringLiteral("What car.eqs held before could not be kept")));
    EXPECT_TRUE(run->status().document().modified);
    EXPECT_TRUE(run->becomesKept()) << "the sets themselves are not lost";
    // What could not be kept came from this session, and its steps lead back to it.
    run->undoKey();
    EXPECT_TRUE(run->same(*edited, *run->state()));
    run->press(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(readFile(file), saved);
}

TEST_F(NoRoom, WhatAFailedSaveHasReplacedIsAmongTheEarlierVersions) {
    start().drag(volume(), 30);
    constexpr rlim_t halfASettingsFile = 6000;
    const Bytes before(5000, 0x5A);
    const auto file = folder / "other.eqs";
    ASSERT_TRUE(writeFile(file, before));
    run->dialogs.answer = file;
    {
        const FileSizeLimit full(halfASettingsFile);
        run->frame->action(QStringLiteral("Save"))->trigger();
    }
    EXPECT_EQ(run->shown.size(), 1U) << "the box about the data";
    EXPECT_NE(readFile(file), before);
    EXPECT_EQ(run->notice(), QStringLiteral("other.eqs was not saved; what it held is kept"));
    EXPECT_EQ(run->noticeButtons(), QStringList{QStringLiteral("Earlier Versions...")});
    EXPECT_EQ(run->status().document().name, QString()) << "nothing was saved";
    const KeptVersions& versions = run->frame->fileNews().files().versions();
    ASSERT_EQ(versions.list().size(), 1U);
    EXPECT_EQ(versions.read(versions.list().front().id), before);
    EXPECT_TRUE(run->becomesKept());
}

TEST_F(NoRoom, AReadOnlyDataFolderIsToldOnceAndLosesNothing) {
    start().drag(volume(), 20);
    ASSERT_TRUE(run->becomesKept());
    const Bytes before = readFile(run->recoveryFile());
    letWrite(false);
    {
        const OrdinaryUser user;
        run->drag(volume(), 30);
        EXPECT_TRUE(becomesTold(cannotWrite));
        run->click(run->flag(2));
        run->click(run->flag(3));
        run->close({BoxAnswer::no});
        EXPECT_EQ(readFile(run->recoveryFile()), before);
    }
    EXPECT_EQ(run->steps(), 4U) << "edits go on";
    EXPECT_EQ(run->toldNotices().filter(cannotWrite).size(), 1);
    letWrite(true);
    EXPECT_TRUE(run->becomesKept());
}

TEST_F(NoRoom, WhatWaitsInAReadOnlyFolderIsOffered) {
    start().drag(volume(), 20);
    const auto ended = run->state();
    ASSERT_TRUE(run->becomesKept());
    cutPower();
    const Bytes before = readFile(data() / "recovery.tsr");
    letWrite(false);
    {
        const OrdinaryUser user;
        start();
        EXPECT_TRUE(isTold(QStringLiteral("Tessavo ended without saving at ")));
        EXPECT_TRUE(
            isTold(QStringLiteral("The recovery file of an earlier run cannot be moved: nothing is kept")));
        // What came last goes, and the offer stands behind it.
        run->press(Qt::Key_F6, {});
        run->press(Qt::Key_Escape, {});
        run->answerNotice(QStringLiteral("Restore"));
        EXPECT_TRUE(run->same(*ended, *run->state()));
        run->close({BoxAnswer::no});
    }
    EXPECT_EQ(readFile(data() / "recovery.tsr"), before);
    letWrite(true);
}

}  // namespace
}  // namespace tessavo::test
