#include "copies/target_copy.h"

#include <algorithm>

namespace tessavo {

std::optional<ParameterImage> SetCopy::image() const {
    return state == SetState::sound ? std::optional(imageOfReply(reply)) : std::nullopt;
}

TargetCopy::TargetCopy() {
    for (std::size_t i = 0; i < sets.size(); ++i) {
        sets[i].targetSet = targetSetNumbers[i];
    }
}

const SetCopy& TargetCopy::set(std::uint8_t targetSet) const {
    const auto* const found = std::ranges::find(sets, targetSet, &SetCopy::targetSet);
    return found != sets.end() ? *found : sets.back();
}

bool TargetCopy::everySetRead() const {
    return std::ranges::all_of(sets, [](const SetCopy& set) {
        return set.state == SetState::sound || set.state == SetState::wrongDigest;
    });
}

bool TargetCopy::everySetSound() const {
    return std::ranges::all_of(sets, [](const SetCopy& set) { return set.state == SetState::sound; });
}

bool TargetCopy::isEmpty() const {
    return std::ranges::none_of(sets, [](const SetCopy& set) {
        return set.state == SetState::sound || set.state == SetState::wrongDigest;
    });
}

BackUp backUp(ITransfers& /*transfers*/, const CopyWatch& /*watch*/) {
    return {};
}

SetCopy readTargetSet(ITransfers& /*transfers*/, std::uint8_t targetSet) {
    return {.targetSet = targetSet, .state = SetState::failed, .reply = {}, .trouble = {}};
}

}  // namespace tessavo
