#include <atomic>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

#include "history/session.h"

// A generator's warning waits for its answer in the middle of a change, and whole sets are written while another
// thread may copy the image.

namespace tessavo::test {
namespace {

using std::chrono::milliseconds;

class NestedHistory : public ::testing::Test {
 protected:
    NestedHistory() { state_.start(); }

    Bytes row() const { return rowOf(*snapshotOf(state_)); }

    LookingBoxes boxes_;
    LockLog lock_;
    TuningState state_{boxes_, std::make_unique<FakeLock>(lock_)};
    History history_{state_};
};

TEST_F(NestedHistory, NothingHappensWhileAnEditWaitsForItsWarning) {
    state_.setVolume(1, true);
    history_.commit();
    state_.setVolume(2, true);
    history_.commit();
    history_.undo();
    prepareWarning(state_);
    history_.commit();
    const Bytes before = row();
    const std::size_t steps = history_.steps().size();
    std::vector<HistoryEvent> events;
    history_.setListener([&](HistoryEvent event) { events.push_back(event); });
    boxes_.look = [&] {
        const Bytes within = row();
        EXPECT_TRUE(state_.changeRuns());
        EXPECT_FALSE(history_.commit("half an edit"));
        EXPECT_FALSE(history_.undo());
        EXPECT_FALSE(history_.redo());
        EXPECT_FALSE(history_.goTo(0));
        EXPECT_FALSE(history_.adopt(*history_.trail(10), "adopted"));
        history_.endGesture();
        history_.beginGesture(Gesture::press);
        EXPECT_EQ(history_.steps().size(), steps);
        EXPECT_EQ(history_.position(), steps);
        EXPECT_TRUE(events.empty());
        EXPECT_SAME_BYTES(row(), within);
    };
    warn(state_);
    ASSERT_EQ(boxes_.shown.size(), 1U);
    EXPECT_FALSE(state_.changeRuns());
    EXPECT_TRUE(history_.commit()) << "the change of the edit is not lost";
    EXPECT_EQ(history_.undoText(), "Channel 1, Filter 1 gain 24.0 dB");
    const Bytes after = row();
    EXPECT_TRUE(history_.undo());
    EXPECT_SAME_BYTES(row(), before);
    EXPECT_TRUE(history_.redo());
    EXPECT_SAME_BYTES(row(), after);
    EXPECT_EQ(boxes_.shown.size(), 1U) << "undo and redo compute nothing, so they warn of nothing";
}

TEST_F(NestedHistory, AConfirmationPartsNoRunWhileAnEditWaitsForItsWarning) {
    prepareWarning(state_);
    history_.commit();
    const Bytes before = row();
    state_.setLiveMode(true);
    history_.beginGesture(Gesture::run);
    state_.setVolume(1, true);
    const ParameterImage passed = state_.image();
    state_.setVolume(2, true);
    boxes_.look = [&] {
        history_.markConfirmed(passed, "confirmed");
        EXPECT_EQ(history_.steps().size(), 1U);
        EXPECT_TRUE(history_.marks().empty());
    };
    warn(state_);
    ASSERT_EQ(boxes_.shown.size(), 1U);
    const Bytes after = row();
    history_.markConfirmed(passed, "confirmed");
    history_.endGesture();
    ASSERT_EQ(history_.steps().size(), 3U) << "nothing is lost by it";
    EXPECT_SAME_BYTES(row(), after);
    EXPECT_TRUE(history_.goTo(1));
    EXPECT_SAME_BYTES(row(), before);
}

TEST_F(NestedHistory, AConfirmationPartsNoStepWhileAnEditWaitsForItsWarning) {
    prepareWarning(state_);
    history_.commit();
    state_.setLiveMode(true);
    history_.beginGesture(Gesture::run);
    state_.setVolume(1, true);
    const ParameterImage passed = state_.image();
    const Bytes middle = row();
    state_.setVolume(2, true);
    history_.endGesture();
    const Bytes ended = row();
    boxes_.look = [&] {
        history_.markConfirmed(passed, "confirmed");
        EXPECT_EQ(history_.steps().size(), 2U);
        EXPECT_TRUE(history_.marks().empty());
    };
    warn(state_);
    ASSERT_EQ(boxes_.shown.size(), 1U);
    const Bytes after = row();
    history_.markConfirmed(passed, "confirmed");
    EXPECT_EQ(history_.steps().size(), 3U) << "as soon as it is over";
    history_.commit();
    ASSERT_EQ(history_.steps().size(), 4U);
    EXPECT_SAME_BYTES(row(), after);
    for (const Bytes* const expected : {&ended, &middle}) {
        EXPECT_TRUE(history_.undo());
        EXPECT_SAME_BYTES(row(), *expected);
    }
}

/// A store whose set has the band that no words can hold.
ParameterStore warningStore(const ParameterStore& store, std::size_t set) {
    ParameterStore with = store;
    with.sets[set].channels[7].bands[0] = {.type = 0, .frequencyHz = 5000, .gainDb = 24, .q = 1, .off = 0};
    return with;
}

// Each generator warns once, so each change has a tuning of its own.
TEST(NestedChanges, NothingHappensWhileASetOrAFileWaitsForItsWarning) {
    const ParameterStore fresh = Tuning().state.store();
    const ParameterImage image = [&] {
        Tuning other;
        other.load(bytesOf(warningStore(fresh, 0)));
        return other.state.image();
    }();
    using Change = std::function<void(TuningState&)>;
    for (const Change& change : std::vector<Change>{
             [](TuningState& state) { state.selectSet(1); },
             [&](TuningState& state) { state.replaceStore(warningStore(fresh, 0)); },
             [&](TuningState& state) {
                 state.replaceImage(image);
                 state.imageToSet();
             },
         }) {
        LookingBoxes boxes;
        TuningState state(boxes);
        state.start();
        state.replaceStore(warningStore(fresh, 1));
        History history(state);
        state.setVolume(1, true);
        history.commit();
        boxes.look = [&] {
            EXPECT_FALSE(history.undo());
            EXPECT_FALSE(history.redo());
            EXPECT_FALSE(history.commit());
        };
        change(state);
        EXPECT_EQ(boxes.shown.size(), 1U);
        EXPECT_TRUE(history.undo()) << "as soon as it is over";
    }
}

// The window shows the set while the selector's change runs, and a box may open there.
TEST_F(NestedHistory, NothingHappensWhileAMoveChoosesItsSetAndRefreshesThePages) {
    state_.setVolume(1, true);
    history_.commit();
    state_.selectSet(1);
    const auto tries = [&] {
        EXPECT_FALSE(history_.undo());
        EXPECT_FALSE(history_.redo());
        EXPECT_FALSE(history_.goTo(1));
        EXPECT_FALSE(history_.commit());
    };
    int calls = 0;
    history_.setView({.chooseSet =
                          [&](std::uint32_t set) {
                              ++calls;
                              tries();
                              state_.selectSet(set);
                              tries();
                          },
                      .refresh =
                          [&] {
                              ++calls;
                              EXPECT_EQ(state_.currentSet(), 0U);
                              tries();
                          },
                      .commitSoon = [] { ADD_FAILURE() << "a move is no change"; }});
    EXPECT_TRUE(history_.undo());
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(history_.steps().size(), 1U);
}

TEST_F(NestedHistory, UndoAndRedoHoldTheMutualExclusionObject) {
    state_.setVolume(1, true);
    history_.commit();
    for (const bool granted : {true, false}) {
        for (const bool forth : {false, true}) {
            lock_ = {};
            lock_.granted = granted;
            EXPECT_TRUE(forth ? history_.redo() : history_.undo()) << "without the lock as well";
            EXPECT_THAT(lock_.asked, testing::ElementsAre(milliseconds(5000)));
            EXPECT_EQ(lock_.released, granted ? 1 : 0);
        }
    }
}

/// Lets a test look whenever it is taken and released.
class WatchedLock : public CSemaphore {
 public:
    bool take(milliseconds limit) override {
        if (!CSemaphore::take(limit)) {
            return false;
        }
        if (atTake) {
            atTake();
        }
        return true;
    }
    void release() override {
        if (atRelease) {
            atRelease();
        }
        CSemaphore::release();
    }
    std::function<void()> atTake;
    std::function<void()> atRelease;
};

TEST(HistoryLocks, NoHalfOfAStateIsSeenOutsideTheMutualExclusionObject) {
    RecordingBoxes boxes;
    auto* const whole = new WatchedLock;
    auto* const image = new WatchedLock;
    TuningState state(boxes, std::unique_ptr<CSemaphore>(whole), std::unique_ptr<CSemaphore>(image));
    state.start();
    History history(state);
    std::mt19937_64 random(1);
    state.replaceStore(recordOf<ParameterStore>(randomStore(random)));
    history.commit("Opened");
    const auto rowNow = [&state] { return rowOf(*snapshotOf(state)); };
    int holds = 0;
    bool isHeld = false;
    Bytes last = rowNow();
    Bytes lastImage = bytesOf(state.image());
    whole->atTake = [&] {
        ++holds;
        isHeld = true;
        EXPECT_SAME_BYTES(rowNow(), last) << "written before the lock was taken";
    };
    whole->atRelease = [&] {
        isHeld = false;
        last = rowNow();
    };
    image->atTake = [&] {
        EXPECT_TRUE(isHeld) << "the image changes as a whole";
        EXPECT_SAME_BYTES(bytesOf(state.image()), lastImage);
    };
    image->atRelease = [&] { lastImage = bytesOf(state.image()); };
    for (int round = 0; round < 3; ++round) {
        EXPECT_TRUE(history.undo());
        EXPECT_SAME_BYTES(rowNow(), last) << "written after the lock was released";
        EXPECT_SAME_BYTES(bytesOf(state.image()), lastImage);
        EXPECT_TRUE(history.redo());
        EXPECT_SAME_BYTES(rowNow(), last);
    }
    EXPECT_EQ(holds, 6);
}

// What the live worker copies is one of the two states, never a mixture.
TEST(HistoryLocks, ACopyOnAnotherThreadHoldsOneState) {
    RecordingBoxes boxes;
    TuningState state(boxes);
    state.start();
    History history(state);
    std::mt19937_64 random(2);
    const Bytes before = bytesOf(state.image());
    state.replaceStore(recordOf<ParameterStore>(randomStore(random)));
    history.commit("Opened");
    const Bytes after = bytesOf(state.image());
    std::atomic<bool> ends = false;
    std::atomic<int> copies = 0;
    int others = 0;
    std::thread worker([&] {
        while (!ends) {
            const Bytes copy = bytesOf(state.imageCopy());
            others += copy == before || copy == after ? 0 : 1;
            ++copies;
        }
    });
    for (int round = 0; round < 1000 || copies < 100; ++round) {
        history.undo();
        history.redo();
    }
    ends = true;
    worker.join();
    EXPECT_EQ(others, 0) << "of " << copies;
}

// Choosing a set sends nothing, so that the target may hold another set when a step is undone that changed no image.
TEST(HistoryLocks, UndoAndRedoRaiseTheUpdateInAnyCase) {
    Session session;
    session.state.setVolume(1, true);
    session.commit();
    session.state.setName(u"abc");
    session.commit();
    session.state.selectSet(1);
    int told = 0;
    session.state.setChangeListener([&] { told += session.state.updatePending() ? 1 : 0; });
    for (const bool forth : {false, false, true, true}) {
        session.settle();
        told = 0;
        EXPECT_FALSE(session.state.updatePending());
        EXPECT_TRUE(forth ? session.history.redo() : session.history.undo());
        EXPECT_EQ(session.state.currentSet(), 0U);
        EXPECT_TRUE(session.state.updatePending());
        EXPECT_GT(told, 0) << "whoever shows it is told";
    }
}

}  // namespace
}  // namespace tessavo::test
