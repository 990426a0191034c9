#include <QDeadlineTimer>
#include <QTest>
#include <algorithm>
#include <thread>

#include "app/undo_fixture.h"
#include "pages/rows/output_eq_rows.h"

// Runs of keys that end before the target confirms what they have sent, in the window and with a target inside
// the program.

namespace tessavo::test {
namespace {

using ::testing::IsEmpty;

constexpr int patienceMs = 30000;

class UndoingInLiveMode : public UndoTest {
 protected:
    /// Live Mode on, the target holding what is shown, and the volume with the focus.
    void begin() {
        ASSERT_TRUE(line.startWorker());
        slider_ = &on<CBitmapSlider>(Page::outputEqualizer, output_eq_id::volume.slider);
        click(eqMode());
        ASSERT_TRUE(QTest::qWaitFor([this] { return line.imageIsConfirmed(); }, patienceMs));
        slider_->setFocus(Qt::TabFocusReason);
        settleEvents();
        start_ = state();
    }
    /// One run of keys, of which the target is just being sent the first state.
    void run() {
        QTest::keyClick(slider_, Qt::Key_PageDown);
        settleEvents();
        sent_ = state();
        const QDeadlineTimer patience(patienceMs);
        while (!line.liveTransferRuns() && !patience.hasExpired()) {
            std::this_thread::yield();
        }
        QTest::keyClick(slider_, Qt::Key_PageDown);
        QTest::keyClick(slider_, Qt::Key_PageDown);
        settleEvents();
        ASSERT_EQ(steps(), 0U);
        end_ = state();
    }
    bool waitForTwoSteps() {
        return QTest::qWaitFor([this] { return steps() == 2; }, patienceMs);
    }
    void expectMarkOfTheFirst() {
        ASSERT_FALSE(history->marks().empty());
        const auto first = std::find_if(history->marks().begin(), history->marks().end(),
                                        [](const HistoryMark& mark) { return mark.number == 1; });
        ASSERT_NE(first, history->marks().end());
        EXPECT_EQ(first->kind, MarkKind::confirmed);
    }

    CBitmapSlider* slider_ = nullptr;
    std::unique_ptr<TuningSnapshot> start_;
    std::unique_ptr<TuningSnapshot> sent_;
    std::unique_ptr<TuningSnapshot> end_;
};

TEST_F(UndoingInLiveMode, ARunThatEndsBeforeItsStateIsConfirmedIsPartedBehindItsEnd) {
    ASSERT_NO_FATAL_FAILURE(begin());
    ASSERT_NO_FATAL_FAILURE(run());
    QTest::keyClick(slider_, Qt::Key_Tab);
    settleEvents();
    ASSERT_EQ(history->gesture(), Gesture::none);
    ASSERT_EQ(steps(), 1U) << "the run has ended while the target is still asked";
    ASSERT_TRUE(line.liveTransferRuns());
    ASSERT_TRUE(waitForTwoSteps());
    expectMarkOfTheFirst();
    EXPECT_TRUE(same(*end_, *state())) << "nothing moves";
    undoKey();
    EXPECT_TRUE(same(*sent_, *state())) << "what the target has confirmed";
    undoKey();
    EXPECT_TRUE(same(*start_, *state()));
    ASSERT_TRUE(commands().goTo(2));
    EXPECT_TRUE(same(*end_, *state()));
    EXPECT_TRUE(pagesShowTheSet());
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(UndoingInLiveMode, ARunThatIsUndoneBeforeItsStateIsConfirmedIsRedoneInTwoSteps) {
    ASSERT_NO_FATAL_FAILURE(begin());
    ASSERT_NO_FATAL_FAILURE(run());
    undoKey();
    ASSERT_EQ(steps(), 1U);
    ASSERT_TRUE(same(*start_, *state()));
    ASSERT_TRUE(line.liveTransferRuns());
    ASSERT_TRUE(waitForTwoSteps());
    expectMarkOfTheFirst();
    EXPECT_EQ(history->position(), 0U);
    EXPECT_TRUE(same(*start_, *state())) << "nothing moves";
    redoKey();
    EXPECT_TRUE(same(*sent_, *state())) << "what the target has confirmed";
    redoKey();
    EXPECT_TRUE(same(*end_, *state()));
    EXPECT_EQ(steps(), 2U);
    EXPECT_THAT(shown, IsEmpty());
}

}  // namespace
}  // namespace tessavo::test
