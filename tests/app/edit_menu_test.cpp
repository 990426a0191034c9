#include "app/edit_menu.h"

#include <QMenu>
#include <QMenuBar>
#include <QTest>

#include "app/history_dialog.h"
#include "app/undo_fixture.h"
#include "pages/rows/output_eq_rows.h"
#include "plot/chart/plot_dlg.h"

// The menu: its texts, its keys, and when it has nothing.

namespace tessavo::test {
namespace {

class EditMenus : public UndoTest {
 protected:
    QAction& entry(int index) { return *menu(QStringLiteral("Edit"))->actions().value(index); }
    QAction& undoEntry() { return entry(0); }
    QAction& redoEntry() { return entry(1); }
};

TEST_F(EditMenus, WithNothingToDoItSaysPlainlyUndoAndRedoAndIsDisabled) {
    EXPECT_EQ(itemsOf(QStringLiteral("Edit")).first(4),
              (QStringList{QStringLiteral("Undo"), QStringLiteral("Redo"), QStringLiteral("History..."),
                           QStringLiteral("Channel Names...")}));
    EXPECT_FALSE(undoEntry().isEnabled());
    EXPECT_FALSE(redoEntry().isEnabled());
    EXPECT_TRUE(entry(2).isEnabled());
    EXPECT_EQ(undoEntry().shortcuts(), QList<QKeySequence>{QKeySequence(QStringLiteral("Ctrl+Z"))});
    EXPECT_EQ(redoEntry().shortcuts(), (QList<QKeySequence>{QKeySequence(QStringLiteral("Ctrl+Shift+Z")),
                                                            QKeySequence(QStringLiteral("Ctrl+Y"))}));
}

TEST_F(EditMenus, ItsTextsFollowEveryStep) {
    click(flag(1));
    const QString step = QString::fromStdString(std::string(history->undoText()));
    EXPECT_EQ(undoEntry().text(), QStringLiteral("&Undo: ") + step);
    EXPECT_TRUE(undoEntry().isEnabled());
    EXPECT_FALSE(redoEntry().isEnabled());
    undoKey();
    EXPECT_EQ(undoEntry().text(), QStringLiteral("&Undo"));
    EXPECT_FALSE(undoEntry().isEnabled());
    EXPECT_EQ(redoEntry().text(), QStringLiteral("&Redo: ") + step);
    EXPECT_TRUE(redoEntry().isEnabled());
    press(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(redoEntry().text(), QStringLiteral("&Redo"));
}

TEST_F(EditMenus, AStepInTheMakingCanBeUndoneAtOnce) {
    auto& slider = on<CBitmapSlider>(Page::outputEqualizer, output_eq_id::volume.slider);
    key(slider, Qt::Key_Up);
    EXPECT_TRUE(undoEntry().isEnabled());
}

TEST_F(EditMenus, ItsEntriesAreChosenWithTheMouse) {
    const auto before = state();
    click(flag(1));
    const auto after = state();
    clickMenu(QStringLiteral("Edit"),
              QStringLiteral("Undo: ") + QString::fromStdString(std::string(history->undoText())));
    settleEvents();
    EXPECT_TRUE(same(*before, *state()));
    clickMenu(QStringLiteral("Edit"),
              QStringLiteral("Redo: ") + QString::fromStdString(std::string(history->redoText())));
    settleEvents();
    EXPECT_TRUE(same(*after, *state()));
}

TEST_F(EditMenus, AnAmpersandIsDoubledAndALongTextMakesItGrow) {
    click(flag(1));
    const int narrow = menu(QStringLiteral("Edit"))->sizeHint().width();
    ASSERT_TRUE(frame->openFile(settingsFileNamed("left & right of the grand old family saloon.eqs")));
    EXPECT_EQ(undoEntry().text(),
              QStringLiteral("&Undo: Opened left && right of the grand old family saloon.eqs"));
    QMenu* edit = menu(QStringLiteral("Edit"));
    const int wide = edit->sizeHint().width();
    EXPECT_GT(wide, narrow);
    const QFontMetrics metrics = edit->fontMetrics();
    EXPECT_GE(wide,
              metrics.horizontalAdvance(QStringLiteral("Undo: Opened left & right of the grand old family "
                                                       "saloon.eqsCtrl+Shift+Z")));
}

TEST_F(EditMenus, ItGrowsWithItsTextsAndNeverShrinks) {
    QMenu* edit = menu(QStringLiteral("Edit"));
    const auto widthWhenOpen = [&] {
        edit->popup(QPoint(0, 0));
        const int width = edit->width();
        edit->hide();
        return width;
    };
    click(flag(1));
    const int narrow = widthWhenOpen();
    EXPECT_EQ(widthWhenOpen(), narrow) << "it does not creep";
    ASSERT_TRUE(frame->openFile(settingsFileNamed("left and right of the grand old family saloon.eqs")));
    const int wide = widthWhenOpen();
    EXPECT_GT(wide, narrow);
    ASSERT_TRUE(commands().goTo(0));
    click(flag(1));
    EXPECT_EQ(widthWhenOpen(), wide);
}

TEST_F(EditMenus, ANameWiderThanAScreenIsShortenedInItsMiddle) {
    ASSERT_TRUE(frame->openFile(settingsFileNamed(std::string(200, 'w') + ".eqs")));
    EXPECT_LT(menu(QStringLiteral("Edit"))->sizeHint().width(), 900);
    EXPECT_TRUE(undoEntry().text().endsWith(QStringLiteral(".eqs")));
}

TEST_F(EditMenus, ItsKeysWorkWhileThePlotIsInFront) {
    click(flag(1));
    QTest::mouseClick(&showPlot(), Qt::LeftButton);
    CPlotDlg& plot = view().plot();
    plot.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&plot));
    QTest::keyClick(&plot, Qt::Key_Z, Qt::ControlModifier);
    settleEvents();
    EXPECT_EQ(history->position(), 0U);
}

TEST_F(EditMenus, HistoryOpensOnceAndComesToTheFrontAgain) {
    clickMenu(QStringLiteral("Edit"), QStringLiteral("History..."));
    ASSERT_TRUE(QTest::qWaitFor([&] { return frame->findChild<HistoryDialog*>() != nullptr; }));
    auto* dialog = frame->findChild<HistoryDialog*>();
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_FALSE(dialog->isModal());
    clickMenu(QStringLiteral("Edit"), QStringLiteral("History..."));
    EXPECT_EQ(frame->findChildren<HistoryDialog*>().size(), 1);
}

}  // namespace
}  // namespace tessavo::test
