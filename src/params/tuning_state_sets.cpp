#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <functional>
#include <set>
#include <tuple>

#include "params/image_conversion.h"
#include "params/tuning_state.h"

namespace tessavo {

namespace {

constexpr std::chrono::milliseconds wholeSetsWait{5000};

const unsigned char* bytesOf(const ParameterSet& set) {
    return reinterpret_cast<const unsigned char*>(&set);
}

bool areEqual(const ParameterSet& one, const ParameterSet& other) {
    return std::memcmp(&one, &other, sizeof one) == 0;
}

bool goesIntoImage(const Field& field) {
    return field.rule != ImageRule::none && field.rule != ImageRule::fromImageOnly;
}

// Both crossovers of a channel are computed together.
FieldIndex shapedIndex(const Field& field, FieldIndex index) {
    return field.shapes == Shapes::crossovers ? FieldIndex{index.outer, 0} : index;
}

}  // namespace

std::vector<TuningState::ChangedValue> TuningState::changedValues(const ParameterSet& before,
                                                                  const ParameterSet& after) {
    std::vector<ChangedValue> changed;
    for (const Field& field : fieldTable()) {
        forEachElement(field, [&](FieldIndex index) {
            const std::size_t offset = recordOffsetOf(field, index);
            if (std::memcmp(bytesOf(before) + offset, bytesOf(after) + offset, widthOf(field.type)) != 0) {
                changed.push_back({&field, index});
            }
        });
    }
    return changed;
}

// Several values shape the same coefficients, which are computed once; fields of one kind of band have different tables.
void TuningState::computeChanged(std::span<const ChangedValue> changed, const ParameterSet& set) {
    std::set<std::tuple<Shapes, std::size_t, std::size_t, std::size_t>> computed;
    for (const ChangedValue& value : changed) {
        const FieldIndex index = shapedIndex(*value.field, value.index);
        if (computed.emplace(value.field->shapes, value.field->outer.count, index.outer, index.inner)
                .second) {
            computeShaped(set, value.field->id, value.index);
        }
    }
}

void TuningState::writeToImage(std::span<const ChangedValue> changed) {
    for (const ChangedValue& value : changed) {
        writeImageField(image_, currentParameterSet(), *value.field, value.index);
        takeWords(value.field->shapes, value.index);
    }
}

bool TuningState::replaceSets(std::span<const SetReplacement> replacements) {
    const auto store = std::make_unique<ParameterStore>(store_);
    for (const SetReplacement& replacement : replacements) {
        if (replacement.set >= setCount) {
            return false;
        }
        ParameterSet& record = store->sets[replacement.set];
        record = replacement.record;
        record.recordSize = store_.sets[replacement.set].recordSize;
    }
    if (std::ranges::equal(store->sets, store_.sets, areEqual)) {
        return false;
    }
    const RunningChange running(*this);
    const ParameterSet& current = store->sets[currentSet_];
    const std::vector<ChangedValue> changed = changedValues(currentParameterSet(), current);
    // Done before the lock is taken and before the sets change: a generator may show its warning here. While it is
    // open, a transfer sends the former values, whole and without waiting.
    computeChanged(changed, current);
    {
        const SemaphoreHold wholeSets(*exclusion_, wholeSetsWait);
        store_ = *store;
        for (std::size_t set = 0; set < setCount; ++set) {
            discardOutdatedImage(set);
        }
        const SemaphoreHold hold(*imageGuard_);
        writeToImage(changed);
    }
    if (std::ranges::any_of(changed, [](const ChangedValue& value) { return goesIntoImage(*value.field); })) {
        raiseUpdatePending();
    }
    notifyHistory(TuningEvent::changed);
    notifyChange();
    return true;
}

}  // namespace tessavo
