#include "comm/line_turns.h"

#include <chrono>

namespace tessavo {

namespace {

// Edits and commands come and go without a word to who waits here.
constexpr std::chrono::milliseconds lookAgain{100};

}  // namespace

template <typename May>
bool LineTurns::waitFor(std::unique_lock<std::mutex>& guard, const Wanted& wanted, May may) {
    while (!ended_ && wanted()) {
        if (may()) {
            return true;
        }
        changed_.wait_for(guard, lookAgain);
    }
    return false;
}

bool LineTurns::takeQuestion(const Wanted& wanted) {
    std::unique_lock guard(mutex_);
    questionWaits_ = true;
    const bool mine = waitFor(guard, wanted, [this] {
        const bool roundIsDue = askedSinceRound_ && needs_.editWaits();
        return !needs_.commandRuns() && (roundsRest_ || (!roundRuns_ && !roundIsDue));
    });
    questionWaits_ = false;
    questionRuns_ = mine;
    askedSinceRound_ = askedSinceRound_ || mine;
    changed_.notify_all();
    return mine;
}

void LineTurns::endQuestion() {
    const std::lock_guard guard(mutex_);
    questionRuns_ = false;
    changed_.notify_all();
}

bool LineTurns::takeRound(const Wanted& wanted) {
    std::unique_lock guard(mutex_);
    const bool mine = waitFor(guard, wanted, [this] {
        const bool questionIsDue = questionWaits_ && !askedSinceRound_ && !needs_.commandRuns();
        return !questionRuns_ && !questionIsDue;
    });
    roundRuns_ = mine;
    return mine;
}

void LineTurns::endRound() {
    const std::lock_guard guard(mutex_);
    if (roundRuns_) {
        roundRuns_ = false;
        askedSinceRound_ = false;
        changed_.notify_all();
    }
}

void LineTurns::setRoundsRest(bool rest) {
    const std::lock_guard guard(mutex_);
    roundsRest_ = rest;
    changed_.notify_all();
}

void LineTurns::end() {
    const std::lock_guard guard(mutex_);
    ended_ = true;
    changed_.notify_all();
}

}  // namespace tessavo
