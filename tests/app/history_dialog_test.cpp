#include "app/history_dialog.h"

#include <QAccessible>
#include <QElapsedTimer>
#include <QTest>

#include "app/undo_fixture.h"
#include "controls/skin_button.h"

// The list of all steps.

namespace tessavo::test {
namespace {

using Kind = HistoryModel::Kind;
using State = HistoryModel::State;

class HistoryList : public UndoTest {
 protected:
    HistoryDialog& open() {
        dialog_ = std::make_unique<HistoryDialog>(commands(), frame.get());
        dialog_->show();
        dialog_->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog_.get()));
        return *dialog_;
    }
    ~HistoryList() override { dialog_.reset(); }
    QListView& list() { return dialog_->list(); }
    QModelIndex row(int index) { return list().model()->index(index, 0); }
    int rows() { return list().model()->rowCount(); }
    State stateAt(int index) { return static_cast<State>(row(index).data(HistoryModel::stateRole).toInt()); }
    Kind kindAt(int index) { return static_cast<Kind>(row(index).data(HistoryModel::kindRole).toInt()); }
    QString textAt(int index) { return row(index).data().toString(); }
    QPoint middleOf(int index) { return list().visualRect(row(index)).center(); }

    std::unique_ptr<HistoryDialog> dialog_;
};

TEST_F(HistoryList, HasEveryStepWithItsTimeAndMarksTheCurrentOne) {
    for (const int number : {1, 2, 3}) {
        click(flag(number));
    }
    undoKey();
    open();
    ASSERT_EQ(rows(), 4);
    EXPECT_EQ(kindAt(0), Kind::start);
    const State expected[]{State::done, State::done, State::current, State::undone};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(stateAt(i), expected[i]) << i;
        EXPECT_EQ(row(i).data(HistoryModel::timeRole).toString().size(), i == 0 ? 0 : 8);
    }
    EXPECT_EQ(list().currentIndex().row(), 2);
    EXPECT_TRUE(row(2).data(Qt::AccessibleTextRole).toString().endsWith(QStringLiteral(", current")));
    EXPECT_TRUE(row(3).data(Qt::AccessibleTextRole).toString().endsWith(QStringLiteral(", undone")));
    EXPECT_NE(QAccessible::queryAccessibleInterface(&list()), nullptr);
}

TEST_F(HistoryList, ADoubleClickEnterAndTheButtonGoThere) {
    std::vector<std::unique_ptr<TuningSnapshot>> states;
    states.push_back(state());
    for (const int number : {1, 2, 3, 4}) {
        click(flag(number));
        states.push_back(state());
    }
    open();
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, middleOf(1));
    EXPECT_TRUE(same(*states[4], *state())) << "to choose a row is not to go there";
    QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, middleOf(1));
    EXPECT_TRUE(same(*states[1], *state()));
    EXPECT_EQ(list().currentIndex().row(), 1);
    EXPECT_EQ(stateAt(1), State::current);
    QTest::keyClick(&list(), Qt::Key_Down);
    QTest::keyClick(&list(), Qt::Key_Down);
    EXPECT_TRUE(same(*states[1], *state())) << "to look is not to go";
    QTest::keyClick(&list(), Qt::Key_Return);
    EXPECT_TRUE(same(*states[3], *state()));
    EXPECT_TRUE(dialog_->isVisible());
    QTest::keyClick(&list(), Qt::Key_Home);
    for (auto* button : dialog_->findChildren<CxSkinButton*>()) {
        if (button->text() == QStringLiteral("Go There")) {
            QTest::mouseClick(button, Qt::LeftButton);
        }
    }
    EXPECT_TRUE(same(*states[0], *state()));
    EXPECT_EQ(moves.size(), 3U);
    EXPECT_EQ(moves.back().first, QStringLiteral("Back at the start"));
    EXPECT_TRUE(pagesShowTheSet());
}

TEST_F(HistoryList, ShowsWhatWasSavedConfirmedAndToldBetweenTheSteps) {
    click(flag(1));
    dialogs.answer = folder / "car.eqs";
    frame->action(QStringLiteral("Save"))->trigger();
    click(flag(2));
    history->markConfirmed(tuning.image(), "confirmed");
    history->markNotice("The disk is full");
    click(flag(3));
    open();
    QStringList texts;
    for (int i = 0; i < rows(); ++i) {
        texts << textAt(i);
    }
    ASSERT_EQ(rows(), 7);
    EXPECT_EQ(texts[2], QStringLiteral("saved car.eqs"));
    EXPECT_EQ(kindAt(2), Kind::saved);
    EXPECT_EQ(texts[4], QStringLiteral("confirmed"));
    EXPECT_EQ(texts[5], QStringLiteral("The disk is full"));
    EXPECT_EQ(row(2).data(HistoryModel::timeRole).toString().size(), 8);
    // A mark leads to the state that it tells of.
    list().setCurrentIndex(row(2));
    QTest::keyClick(&list(), Qt::Key_Return);
    EXPECT_EQ(history->position(), 1U);
    EXPECT_EQ(stateAt(4), State::undone);
}

TEST_F(HistoryList, FollowsEditsWhileItIsOpen) {
    open();
    EXPECT_EQ(rows(), 1);
    click(flag(1));
    EXPECT_EQ(rows(), 2);
    EXPECT_EQ(list().currentIndex().row(), 1);
    QTest::keyClick(&list(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(list().currentIndex().row(), 0) << "the keys of the menu work here too";
}

TEST_F(HistoryList, TenThousandRowsAreThereAtOnce) {
    for (int i = 0; i < 10000; ++i) {
        tuning.setVolume(static_cast<float>(i % 100) / 10.0F, true);
        history->commit();
        if (i % 10 == 0) {
            history->markNotice("told");
        }
    }
    ASSERT_GE(steps(), 9990U);
    QElapsedTimer timer;
    timer.start();
    open();
    dialog_->grab();
    EXPECT_LT(timer.elapsed(), 2000);
    EXPECT_GT(rows(), 10900);
    EXPECT_TRUE(list().visualRect(list().currentIndex()).intersects(list().viewport()->rect()));
    timer.restart();
    QTest::keyClick(&list(), Qt::Key_Home);
    QTest::keyClick(&list(), Qt::Key_Return);
    EXPECT_EQ(history->position(), 0U);
    EXPECT_LT(timer.elapsed(), 2000);
}

TEST_F(HistoryList, EscapeClosesIt) {
    open();
    QTest::keyClick(&list(), Qt::Key_Escape);
    EXPECT_FALSE(dialog_->isVisible());
}

}  // namespace
}  // namespace tessavo::test
