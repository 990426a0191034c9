#include "history/ab_memories.h"

#include <cstring>
#include <string>
#include <type_traits>

#include "params/loudness.h"

namespace tessavo {

namespace {

template <typename Part>
bool equalBytes(const Part& one, const Part& other) {
    static_assert(std::is_trivially_copyable_v<Part>);
    return std::memcmp(&one, &other, sizeof one) == 0;
}

}  // namespace

std::unique_ptr<const AbMemories::Memory> AbMemories::memoryIn(const TuningSnapshot& state) {
    return std::make_unique<Memory>(Memory{.record = state.store.sets[state.currentSet],
                                           .image = state.image,
                                           .received = state.received[state.currentSet],
                                           .bandWords = state.bandWords,
                                           .crossoverWords = state.crossoverWords,
                                           .inputWords = state.inputWords,
                                           .loudnessDb = tessavo::loudnessDb(state.image, state.inputWords)});
}

bool AbMemories::equals(const Memory& memory, const TuningSnapshot& state) {
    return equalBytes(memory.record, state.store.sets[state.currentSet]) &&
           equalBytes(memory.image, state.image) &&
           equalBytes(memory.received, state.received[state.currentSet]) &&
           equalBytes(memory.bandWords, state.bandWords) &&
           equalBytes(memory.crossoverWords, state.crossoverWords) &&
           equalBytes(memory.inputWords, state.inputWords);
}

const AbMemories::Memory* AbMemories::memoryOf(AbSide side) const {
    return memories_[tuning_.currentSet()][static_cast<std::size_t>(side)].get();
}

std::unique_ptr<const AbMemories::Memory>& AbMemories::slotOf(AbSide side) {
    return memories_[tuning_.currentSet()][static_cast<std::size_t>(side)];
}

std::unique_ptr<TuningSnapshot> AbMemories::state() const {
    auto snapshot = std::make_unique<TuningSnapshot>();
    tuning_.takeSnapshot(*snapshot);
    return snapshot;
}

// A step that was undone and then replaced is no more, and one that is too old to be undone is for ever.
void AbMemories::forgetReplaced() {
    const std::uint64_t dropped = history_.dropped();
    std::erase_if(switches_, [&](const Done& done) {
        if (done.number <= dropped) {
            first_[done.set] = done.to;
            return true;
        }
        const std::uint64_t index = done.number - dropped - 1;
        return index >= history_.steps().size() || history_.steps()[index] != done.step;
    });
}

AbSide AbMemories::heard() {
    if (switchingTo_) {
        return *switchingTo_;
    }
    forgetReplaced();
    const std::uint64_t last = history_.dropped() + history_.position();
    AbSide side = first_[tuning_.currentSet()];
    for (const Done& done : switches_) {
        if (done.number <= last && done.set == tuning_.currentSet()) {
            side = done.to;
        }
    }
    return side;
}

bool AbMemories::isChanged() {
    const Memory* const memory = memoryOf(heard());
    return memory != nullptr && !equals(*memory, *state());
}

void AbMemories::store() {
    slotOf(heard()) = memoryIn(*state());
}

AbMemories::Switch AbMemories::switchSides(const Restore& restore) {
    history_.endGesture();
    const AbSide from = heard();
    const AbSide to = otherSide(from);
    const Switch result{.to = to, .isCopy = !has(to), .hadChanges = isChanged()};
    const auto next = state();
    if (result.isCopy) {
        slotOf(to) = memoryIn(*next);
        if (!has(from)) {
            slotOf(from) = memoryIn(*next);
        }
    }
    const Memory& memory = *memoryOf(to);
    next->store.sets[next->currentSet] = memory.record;
    next->image = memory.image;
    next->received[next->currentSet] = memory.received;
    next->bandWords = memory.bandWords;
    next->crossoverWords = memory.crossoverWords;
    next->inputWords = memory.inputWords;
    switchingTo_ = to;
    restore(*next);
    std::string text = "Switched to ";
    text.push_back(letterOf(to));
    history_.commitAlways(std::move(text));
    switches_.push_back(
        {history_.dropped() + history_.position(), history_.steps().back(), tuning_.currentSet(), to});
    switchingTo_.reset();
    return result;
}

LevelMatch AbMemories::levelMatch(AbSide side) const {
    const Memory* const played = memoryOf(side);
    const Memory* const other = memoryOf(otherSide(side));
    if (played == nullptr || other == nullptr) {
        return {};
    }
    return matchLevel(played->image, played->loudnessDb, other->loudnessDb);
}

}  // namespace tessavo
