#include "app/text_undo.h"

#include <QMenu>
#include <QTest>

#include "app/undo_fixture.h"
#include "pages/rows/audio_router_rows.h"
#include "pages/rows/output_eq_rows.h"

// A text box that is being edited undoes its own typing first.

namespace tessavo::test {
namespace {

class TypingUndo : public UndoTest {
 protected:
    NumberEdit& gainBox() {
        return on<NumberEdit>(Page::outputEqualizer, output_eq_id::bands[2].sliders[1].edit);
    }
};

TEST_F(TypingUndo, ABoxUndoesAndRedoesItsTypingBeforeAnythingElse) {
    click(flag(2));
    ASSERT_EQ(history->position(), 1U);
    const auto before = state();
    const QString shownBefore = gainBox().text();
    typeInto(gainBox(), QStringLiteral("7"));
    undoKey();
    EXPECT_EQ(gainBox().text(), shownBefore);
    EXPECT_EQ(history->position(), 1U);
    EXPECT_FALSE(gainBox().isEdited()) << "leaving it takes nothing";
    redoKey();
    EXPECT_EQ(gainBox().text(), QStringLiteral("7"));
    undoKey();
    EXPECT_TRUE(same(*before, *state()));
    undoKey();
    EXPECT_EQ(history->position(), 0U) << "now the program's own step";
    EXPECT_TRUE(moves.size() == 1 && moves[0].first.startsWith(QStringLiteral("Undone: ")));
}

TEST_F(TypingUndo, CtrlYRedoesTheTypingToo) {
    typeInto(gainBox(), QStringLiteral("7"));
    undoKey();
    press(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(gainBox().text(), QStringLiteral("7"));
}

TEST_F(TypingUndo, ATextThatWasAppliedIsUndoneAsAStepAndTheBoxShowsTheRestoredValue) {
    const QString shownBefore = gainBox().text();
    for (const Qt::Key key : {Qt::Key_Z, Qt::Key_Y}) {
        typeInto(gainBox(), QStringLiteral("4.5"));
        this->key(gainBox(), Qt::Key_Return);
        ASSERT_TRUE(gainBox().hasFocus());
        ASSERT_EQ(history->position(), 1U);
        undoKey();
        EXPECT_EQ(gainBox().text(), shownBefore);
        EXPECT_EQ(history->position(), 0U);
        press(key, key == Qt::Key_Z ? Qt::ControlModifier | Qt::ShiftModifier : Qt::ControlModifier);
        EXPECT_EQ(gainBox().text(), QStringLiteral("4.5"));
        EXPECT_EQ(history->position(), 1U);
        undoKey();
    }
}

TEST_F(TypingUndo, TypingOverAnAppliedTextGoesBackToThatTextOnly) {
    typeInto(gainBox(), QStringLiteral("4.5"));
    key(gainBox(), Qt::Key_Return);
    typeInto(gainBox(), QStringLiteral("6"));
    undoKey();
    EXPECT_EQ(gainBox().text(), QStringLiteral("4.5"));
    EXPECT_EQ(history->position(), 1U);
    undoKey();
    EXPECT_EQ(history->position(), 0U);
}

TEST_F(TypingUndo, ABoxWhoseTypingCountsAtOnceComesBackToTheByte) {
    auto& delay = on<NumberEdit>(Page::channelConfig, audio_router_id::delaySize2);
    const auto before = state();
    typeInto(delay, QStringLiteral("13"));
    EXPECT_EQ(tuning.currentParameterSet().delaySize2Ms, 13);
    undoKey();
    EXPECT_TRUE(same(*before, *state()));
    commands().settle();
    EXPECT_EQ(steps(), 0U);
}

TEST_F(TypingUndo, ASpinBoxUndoesItsTypingAndThenItsStep) {
    auto& spin = on<SpinEdit>(Page::channelConfig, audio_router_id::surroundMode);
    const int before = spin.value();
    spin.setFocus(Qt::TabFocusReason);
    spin.selectAll();
    QTest::keyClicks(&spin, QStringLiteral("3"));
    undoKey();
    EXPECT_EQ(spin.value(), before);
    EXPECT_EQ(steps(), 0U);
    spin.selectAll();
    QTest::keyClicks(&spin, QStringLiteral("3"));
    key(spin, Qt::Key_Return);
    ASSERT_EQ(history->position(), 1U);
    undoKey();
    EXPECT_EQ(spin.value(), before);
    EXPECT_EQ(history->position(), 0U);
}

TEST_F(TypingUndo, TheNameUndoesItsTyping) {
    const QString before = setName().text();
    typeInto(setName(), QStringLiteral("x"));
    undoKey();
    EXPECT_EQ(setName().text(), before);
    commands().settle();
    EXPECT_EQ(steps(), 0U) << "nothing has changed in the end";
}

TEST_F(TypingUndo, TheMenuUndoesTheTypingOfTheBoxToo) {
    click(flag(2));
    typeInto(gainBox(), QStringLiteral("7"));
    QMenu* edit = menu(QStringLiteral("Edit"));
    Q_EMIT edit->aboutToShow();
    EXPECT_EQ(itemsOf(QStringLiteral("Edit")).value(0), QStringLiteral("Undo: Typing"));
    EXPECT_TRUE(commands().undo());
    EXPECT_NE(gainBox().text(), QStringLiteral("7"));
    EXPECT_EQ(history->position(), 1U);
}

TEST_F(TypingUndo, ABoxWithoutTypingLeavesTheKeysToTheProgram) {
    click(flag(2));
    gainBox().setFocus(Qt::TabFocusReason);
    undoKey();
    EXPECT_EQ(history->position(), 0U);
    redoKey();
    EXPECT_EQ(history->position(), 1U);
}

}  // namespace
}  // namespace tessavo::test
