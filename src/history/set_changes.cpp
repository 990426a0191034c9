#include "history/set_changes.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace tessavo {

namespace {

const std::uint8_t* bytesOf(const ParameterSet& set) {
    return reinterpret_cast<const std::uint8_t*>(&set);
}

SetChanges allChanges(const ParameterSet& before, const ParameterSet& after) {
    SetChanges changes;
    for (const Field& field : fieldTable()) {
        const std::size_t width = widthOf(field.type);
        forEachElement(field, [&](FieldIndex index) {
            const std::size_t offset = recordOffsetOf(field, index);
            if (std::memcmp(bytesOf(before) + offset, bytesOf(after) + offset, width) != 0) {
                changes.elements.push_back({&field, index});
            }
        });
    }
    changes.isNamed = before.setName != after.setName;
    changes.hasOtherVersion = before.setVersion != after.setVersion;
    return changes;
}

bool isOf(const ChangedElement& element, FieldId field) {
    return element.field->id == field;
}

// The page writes one value into all of them.
void leaveOutCopies(SetChanges& changes) {
    const auto isFirst = [](const ChangedElement& element) { return isOf(element, FieldId::delaySize1); };
    if (std::ranges::any_of(changes.elements, isFirst)) {
        std::erase_if(changes.elements, [](const ChangedElement& element) {
            return isOf(element, FieldId::delaySize1Copies) || isOf(element, FieldId::delaySize1Last);
        });
    }
}

// A set that is read brings its sources into all sets.
void leaveOutSpreadSources(std::vector<SetChanges>& changes, const ParameterStore& after,
                           std::size_t currentSet) {
    std::array<bool, channelCount> isSpread{};
    for (const SetChanges& each : changes) {
        for (const ChangedElement& element : each.elements) {
            if (each.set == currentSet && isOf(element, FieldId::routerSource)) {
                isSpread.at(element.index.outer) = true;
            }
        }
    }
    const auto& current = after.sets[currentSet].routerSource;
    std::erase_if(changes, [&](SetChanges& each) {
        if (each.set == currentSet || each.elements.empty()) {
            return false;
        }
        std::erase_if(each.elements, [&](const ChangedElement& element) {
            const std::size_t channel = element.index.outer;
            return isOf(element, FieldId::routerSource) && isSpread.at(channel) &&
                   after.sets[each.set].routerSource[channel] == current.at(channel);
        });
        return each.count() == 0;
    });
}

}  // namespace

SetChanges changesBetween(const ParameterSet& before, const ParameterSet& after) {
    SetChanges changes = allChanges(before, after);
    leaveOutCopies(changes);
    return changes;
}

std::vector<SetChanges> changesBetween(const ParameterStore& before, const ParameterStore& after,
                                       std::size_t currentSet) {
    std::vector<SetChanges> changes;
    for (std::size_t set = 0; set < setCount; ++set) {
        if (std::memcmp(bytesOf(before.sets[set]), bytesOf(after.sets[set]), sizeof(ParameterSet)) != 0) {
            changes.push_back(changesBetween(before.sets[set], after.sets[set]));
            changes.back().set = set;
        }
    }
    if (changes.size() > 1) {
        leaveOutSpreadSources(changes, after, currentSet);
    }
    return changes;
}

}  // namespace tessavo
