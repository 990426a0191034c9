#include <gtest/gtest.h>
#include <utility>

#include "history/random_session.h"

namespace tessavo::test {
namespace {

/// A random session that remembers each state before and after a step, whole.
class RandomSession {
 public:
    RandomSession(std::uint64_t seed, const SessionFiles& files)
        : files_(files), random_(seed), session_(static_cast<std::uint32_t>(random_() % 3)) {}

    void play(int moves) {
        for (int i = 0; i < moves && !testing::Test::HasFailure(); ++i) {
            playOnce();
        }
        walkEverywhere();
    }

 private:
    struct Known {
        Bytes before;
        Bytes after;
    };

    void playOnce() {
        TuningState& state = session_.state;
        switch (random_() % 16) {
            case 0:
                state.selectSet(static_cast<std::uint32_t>(random_() % setCount));
                break;
            case 1:
                state.setFilterMode(static_cast<std::uint32_t>(random_() % 3));
                break;
            case 2:
                state.setSelectionMask(static_cast<std::uint8_t>(random_()));
                break;
            case 3:
            case 4:
                move(&History::undo);
                break;
            case 5:
                makeStep(true);
                move(&History::undo);
                break;
            case 6:
            case 7:
                move(&History::redo);
                break;
            case 8:
                goTo(random_() % (known_.size() + 1));
                break;
            default:
                makeStep(false);
        }
    }

    // As a person does: one change, or a gesture of several.
    /// \param staysOpen the next move ends it
    void makeStep(bool staysOpen) {
        const Bytes before = session_.row();
        const std::size_t position = session_.history.position();
        const bool isGesture = random_() % 3 == 0;
        if (isGesture) {
            session_.history.beginGesture(random_() % 2 == 0 ? Gesture::press : Gesture::run);
        }
        for (std::uint64_t changes = isGesture ? 1 + random_() % 6 : 1; changes > 0; --changes) {
            changeAnything(session_.state, files_, random_);
        }
        const Bytes after = session_.row();
        if (before != after) {
            known_.resize(position);
            known_.push_back({before, after});
        }
        if (staysOpen) {
            openSteps_ = before == after ? 0 : 1;
            return;
        }
        isGesture ? session_.history.endGesture() : static_cast<void>(session_.history.commit());
        EXPECT_EQ(session_.history.position(), position + (before == after ? 0 : 1));
        EXPECT_EQ(session_.history.steps().size(), known_.size());
    }

    void move(bool (History::*act)()) {
        const std::size_t from = session_.history.position() + std::exchange(openSteps_, 0);
        const bool moved = (session_.history.*act)();
        EXPECT_EQ(moved, act == &History::undo ? from > 0 : from < known_.size());
        expectMoved(from, moved);
    }

    void goTo(std::size_t to) {
        const std::size_t from = session_.history.position();
        EXPECT_EQ(session_.history.goTo(to), to != from);
        EXPECT_EQ(session_.history.position(), to);
        expectMoved(from, to != from);
    }

    // After a move back the tuning stands as before the next step, after a move forth as behind the last one.
    void expectMoved(std::size_t from, bool moved) {
        const std::size_t to = session_.history.position();
        EXPECT_EQ(moved, to != from);
        if (moved) {
            EXPECT_SAME_BYTES(session_.row(), to < from ? known_[to].before : known_[to - 1].after);
        }
    }

    void walkEverywhere() {
        History& history = session_.history;
        while (history.undo()) {
            ASSERT_SAME_BYTES(session_.row(), known_[history.position()].before);
        }
        ASSERT_EQ(history.position(), 0U);
        while (history.redo()) {
            ASSERT_SAME_BYTES(session_.row(), known_[history.position() - 1].after);
        }
        ASSERT_EQ(history.position(), known_.size());
        for (int jump = 0; jump < 10; ++jump) {
            goTo(random_() % (known_.size() + 1));
        }
        goTo(0);
    }

    const SessionFiles& files_;
    std::mt19937_64 random_;
    Session session_;
    std::vector<Known> known_;  ///< by step
    std::size_t openSteps_ = 0;
};

class RandomSessions : public ::testing::TestWithParam<std::uint64_t> {};

INSTANTIATE_TEST_SUITE_P(, RandomSessions, ::testing::Range(std::uint64_t{0}, std::uint64_t{20}));

// Fifty sessions each, a thousand in all.
TEST_P(RandomSessions, AnyPathBackAndForthEndsInTheSameBytes) {
    const SessionFiles files(GetParam());
    for (std::uint64_t seed = 0; seed < 50 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        RandomSession(1000 * GetParam() + seed, files).play(60);
    }
}

}  // namespace
}  // namespace tessavo::test
