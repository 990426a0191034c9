#include "app/file_news_display.h"

#include <QDir>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include "app/session_fixture.h"
#include "app/ui_file_dialogs.h"
#include "pages/rows/output_eq_rows.h"
#include "params/set_text.h"
#include "params/settings_file.h"

// What the window tells of the document and of files, and how each notice is answered.

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FileNewsInWindow : public Sessions {
 protected:
    FileNewsInWindow() { start(); }
    CBitmapSlider& volume() {
        return run->on<CBitmapSlider>(Page::outputEqualizer, output_eq_id::volume.slider);
    }
    [[nodiscard]] std::filesystem::path fileNamed(const std::string& name,
                                                  std::u16string_view setName = u"File") {
        return pathOf(run->settingsFileNamed(name, setName));
    }
    void open(const std::filesystem::path& path) { ASSERT_TRUE(run->frame->openFile(textOf(path))); }
    /// A settings file of which only the start is there, whose start is not that of the sets here.
    [[nodiscard]] std::filesystem::path shortFile() {
        const auto path = fileNamed("car.eqs", u"Short");
        std::filesystem::resize_file(path, 300);
        return path;
    }
    void saveAgain() { run->press(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier); }
    QAction& saveAgainAction() { return *run->frame->action(QStringLiteral("Save Again")); }
    QString document() { return run->status().document().name; }
    bool isMarked() { return run->status().document().modified; }
    std::u16string firstName() { return readSetText(run->tuning.store().sets[0].setName); }
    Bytes storeBytes() {
        const auto* first = reinterpret_cast<const std::uint8_t*>(&run->tuning.store());
        return {first, first + parameterStoreSize};
    }
    [[nodiscard]] std::vector<std::string> marksOf(MarkKind kind) const {
        std::vector<std::string> texts;
        for (const HistoryMark& mark : run->history->marks()) {
            if (mark.kind == kind) {
                texts.push_back(mark.text);
            }
        }
        return texts;
    }
    const QString shortText = QStringLiteral("car.eqs: 300 of 10600 bytes, the rest reads as zero");
    const QString undoLabel = QStringLiteral("Undo");
};

// ---- the document

TEST_F(FileNewsInWindow, NameAndMarkFollowOpenEditUndoAndSave) {
    EXPECT_EQ(document(), QString());
    run->click(run->flag(2));
    EXPECT_EQ(document(), QString()) << "a change alone makes no document";
    open(fileNamed("one.eqs"));
    EXPECT_EQ(document(), QStringLiteral("one.eqs"));
    EXPECT_FALSE(isMarked());
    run->drag(volume(), 40);
    EXPECT_TRUE(isMarked());
    run->undoKey();
    EXPECT_FALSE(isMarked());
    run->redoKey();
    EXPECT_TRUE(isMarked());
    run->hold(volume(), 5);
    EXPECT_TRUE(isMarked());
    run->letGo(volume());
    run->dialogs.answer = folder / "two.eqs";
    run->frame->action(QStringLiteral("Save"))->trigger();
    EXPECT_EQ(document(), QStringLiteral("two.eqs"));
    EXPECT_EQ(run->status().document().toolTip, textOf(folder / "two.eqs"));
    EXPECT_FALSE(isMarked());
    run->undoKey();
    EXPECT_TRUE(isMarked());
}

TEST_F(FileNewsInWindow, ARefusedFileAndAnExportChangeNoDocument) {
    open(fileNamed("one.eqs"));
    run->drag(volume(), 40);
    ASSERT_TRUE(writeFile(folder / "refused.eqs", {}));
    EXPECT_FALSE(run->frame->openFile(textOf(folder / "refused.eqs")));
    EXPECT_FALSE(run->frame->openFile(textOf(folder / "missing.eqs")));
    EXPECT_EQ(document(), QStringLiteral("one.eqs"));
    EXPECT_TRUE(isMarked());
    run->dialogs.answer = folder / "image.bin";
    run->frame->action(QStringLiteral("Export"))->trigger();
    ASSERT_TRUE(std::filesystem::exists(folder / "image.bin"));
    EXPECT_EQ(document(), QStringLiteral("one.eqs"));
    EXPECT_TRUE(isMarked());
}

// ---- Save Again

TEST_F(FileNewsInWindow, SaveAgainNeedsADocument) {
    EXPECT_FALSE(saveAgainAction().isEnabled());
    run->drag(volume(), 40);
    saveAgain();
    EXPECT_THAT(run->dialogs.asked, IsEmpty());
    EXPECT_THAT(run->shown, IsEmpty());
    open(fileNamed("one.eqs"));
    EXPECT_TRUE(saveAgainAction().isEnabled());
}

TEST_F(FileNewsInWindow, SaveAgainWritesWithoutADialogByKeyAndMenu) {
    const auto one = fileNamed("one.eqs");
    const auto other = fileNamed("other.eqs");
    open(one);
    run->profile->addRecentFile(textOf(other));
    const auto save = [&](const std::function<void()>& how) {
        run->drag(volume(), 20);
        ASSERT_TRUE(isMarked());
        const std::size_t saves = marksOf(MarkKind::saved).size();
        how();
        EXPECT_EQ(readFile(one), storeBytes());
        EXPECT_FALSE(isMarked());
        EXPECT_EQ(marksOf(MarkKind::saved).size(), saves + 1);
        EXPECT_EQ(marksOf(MarkKind::saved).back(), "saved one.eqs");
    };
    save([&] { saveAgain(); });
    EXPECT_TRUE(run->recentItems().value(0).endsWith(QDir::toNativeSeparators(textOf(one))))
        << run->recentItems().join(QLatin1Char('|')).toStdString();
    save([&] { saveAgainAction().trigger(); });
    EXPECT_THAT(run->dialogs.asked, IsEmpty());
    EXPECT_THAT(run->shown, IsEmpty());
    EXPECT_TRUE(run->becomesEmpty()) << "nothing is left to restore";
}

TEST_F(FileNewsInWindow, AFileThatChangedOnTheDiskIsWrittenOnlyAfterOverwrite) {
    const auto one = fileNamed("one.eqs");
    open(one);
    run->drag(volume(), 20);
    const Bytes foreign(10600, 7);
    ASSERT_TRUE(writeFile(one, foreign));
    for (int i = 0; i < 2; ++i) {
        saveAgain();
        EXPECT_EQ(run->notice(), QStringLiteral("one.eqs has changed on the disk"));
        EXPECT_EQ(run->noticeButtons(), QStringList{QStringLiteral("Overwrite")});
        EXPECT_EQ(readFile(one), foreign);
        EXPECT_TRUE(isMarked());
    }
    EXPECT_THAT(run->shown, IsEmpty());
    run->answerNotice(QStringLiteral("Overwrite"));
    EXPECT_EQ(readFile(one), storeBytes());
    EXPECT_FALSE(isMarked());
    EXPECT_EQ(run->notice(), QString());
    const auto versions = run->frame->fileNews().files().versions().list();
    ASSERT_FALSE(versions.empty());
    EXPECT_EQ(run->frame->fileNews().files().versions().read(versions.front().id), foreign)
        << "what the other program wrote is kept";
}

// ---- short files

TEST_F(FileNewsInWindow, AShortFileIsToldAndUndoBringsBackTheSetsOfBefore) {
    run->drag(volume(), 20);
    const auto before = run->state();
    open(shortFile());
    EXPECT_EQ(run->notice(), shortText);
    EXPECT_EQ(run->noticeButtons(), QStringList{undoLabel});
    EXPECT_THAT(run->shown, IsEmpty());
    run->answerNotice(undoLabel);
    EXPECT_TRUE(run->same(*before, *run->state()));
    EXPECT_FALSE(run->toldNotices().filter(shortText).isEmpty());
}

TEST_F(FileNewsInWindow, UndoAtAShortFileGoesBehindTheEditsSince) {
    run->drag(volume(), 20);
    const auto before = run->state();
    open(shortFile());
    run->click(run->flag(3));
    run->click(run->flag(4));
    // A text box that is being edited undoes its own text first, but not here.
    run->typeInto(run->setName(), QStringLiteral("Typed"));
    ASSERT_EQ(run->notice(), shortText);
    run->answerNotice(undoLabel);
    EXPECT_TRUE(run->same(*before, *run->state()));
    EXPECT_TRUE(run->pagesShowTheSet());
}

TEST_F(FileNewsInWindow, TheNoticeOfAShortFileIsThereWhileItsSetsAre) {
    open(shortFile());
    run->undoKey();
    EXPECT_NE(run->notice(), shortText);
    run->press(Qt::Key_F6, {});
    run->press(Qt::Key_Escape, {});
    EXPECT_EQ(run->notice(), QString()) << "nothing stands behind it";
    run->redoKey();
    run->press(Qt::Key_F6, {});
    run->press(Qt::Key_Escape, {});
    EXPECT_EQ(run->notice(), shortText);
    saveAgain();
    EXPECT_EQ(run->notice(), QString()) << "saved, the zeros are its own";
    run->undoKey();
    run->redoKey();
    run->press(Qt::Key_F6, {});
    run->press(Qt::Key_Escape, {});
    EXPECT_EQ(run->notice(), QString());
}

TEST_F(FileNewsInWindow, AShortFileOpenedTwiceLeadsBackBehindBoth) {
    run->drag(volume(), 20);
    const auto before = run->state();
    const auto path = shortFile();
    open(path);
    open(path);
    ASSERT_EQ(run->notice(), shortText);
    run->answerNotice(undoLabel);
    EXPECT_TRUE(run->same(*before, *run->state()));
}

TEST_F(FileNewsInWindow, AWholeFileEndsTheNoticeOfAShortOne) {
    open(shortFile());
    ASSERT_EQ(run->notice(), shortText);
    open(fileNamed("whole.eqs"));
    EXPECT_EQ(run->notice(), QString());
}

// ---- earlier versions

TEST_F(FileNewsInWindow, EarlierVersionsOpenAsOneStepWithItsName) {
    const auto one = fileNamed("one.eqs", u"Former");
    open(one);
    run->typeInto(run->setName(), QStringLiteral("Newer"));
    saveAgain();
    const Bytes written = readFile(one);
    const std::size_t steps = run->steps();
    bool looked = false;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, run->frame.get(), [&] {
        QWidget* const dialog = QApplication::activeModalWidget();
        if (dialog == nullptr) {
            return;
        }
        auto* const list = dialog->findChild<QTreeWidget*>();
        EXPECT_EQ(list->topLevelItemCount(), 1);
        list->setCurrentItem(list->topLevelItem(0));
        for (auto* button : dialog->findChildren<QAbstractButton*>()) {
            if (button->text() == QStringLiteral("Open")) {
                QTest::mouseClick(button, Qt::LeftButton);
                looked = true;
            }
        }
        look.stop();
        dialog->close();
    });
    look.start(10);
    run->frame->action(QStringLiteral("Earlier Versions..."))->trigger();
    run->settleEvents();
    ASSERT_TRUE(looked);
    EXPECT_EQ(firstName(), u"Former");
    EXPECT_EQ(run->steps(), steps + 1);
    EXPECT_EQ(run->history->undoText(), "Opened an earlier version of one.eqs");
    EXPECT_EQ(document(), QStringLiteral("one.eqs"));
    EXPECT_TRUE(isMarked());
    EXPECT_EQ(readFile(one), written) << "no file is touched";

    EXPECT_TRUE(run->frame->undoCommands().undo());
    EXPECT_EQ(run->history->position(), steps);
    EXPECT_EQ(firstName(), u"Newer");
    EXPECT_EQ(storeBytes(), written);
    EXPECT_FALSE(isMarked());
}

TEST_F(FileNewsInWindow, WhatCannotBeKeptIsToldAndTheSaveGoesOn) {
    const auto one = fileNamed("one.eqs");
    open(one);
    // Nothing can be kept where a file stands in the folder's place.
    std::filesystem::create_directories(data());
    ASSERT_TRUE(writeFile(data() / "versions", {1}));
    run->drag(volume(), 20);
    saveAgain();
    EXPECT_EQ(run->notice(), QStringLiteral("What one.eqs held before could not be kept"));
    EXPECT_EQ(readFile(one), storeBytes());
    EXPECT_FALSE(isMarked());
    EXPECT_THAT(run->shown, IsEmpty());
}

// ---- undo and redo

TEST_F(FileNewsInWindow, UndoAndRedoTellWhatChangedAndShowGoesThere) {
    run->answers = {BoxAnswer::ok};
    run->click(run->on<SkinCheckBox>(Page::outputEqualizer, selection_id::assign));
    run->click(run->on<SkinCheckBox>(Page::outputEqualizer, selection_id::checks[1]));
    run->drag(volume(), 40);
    const QString step = QString::fromStdString(std::string(run->history->undoText()));
    for (const bool undoes : {true, false}) {
        run->tabs().setCurrentIndex(static_cast<int>(Page::communication));
        const std::uint8_t mask = run->tuning.selectionMask();
        undoes ? run->undoKey() : run->redoKey();
        EXPECT_EQ(run->notice(), (undoes ? QStringLiteral("Undone: ") : QStringLiteral("Redone: ")) + step);
        EXPECT_EQ(run->noticeButtons(), QStringList{QStringLiteral("Show")});
        EXPECT_EQ(run->tabs().currentIndex(), static_cast<int>(Page::communication));
        EXPECT_EQ(run->tuning.selectionMask(), mask);
        EXPECT_TRUE(run->toldNotices().isEmpty()) << "the list shows by itself what is undone";
        run->answerNotice(QStringLiteral("Show"));
        EXPECT_EQ(run->tabs().currentIndex(), static_cast<int>(Page::outputEqualizer));
        EXPECT_EQ(run->frame->focusWidget(), &volume());
        EXPECT_EQ(run->tuning.selectionMask(), mask);
    }
}

TEST_F(FileNewsInWindow, EveryOtherNoticeStandsInTheHistoryList) {
    run->drag(volume(), 20);
    run->undoKey();
    const auto path = shortFile();
    open(path);
    run->click(run->flag(3));
    ASSERT_TRUE(writeFile(path, {1, 2}));
    saveAgain();
    EXPECT_EQ(run->toldNotices(),
              (QStringList{shortText, QStringLiteral("car.eqs has changed on the disk")}));
}

}  // namespace
}  // namespace tessavo::test
