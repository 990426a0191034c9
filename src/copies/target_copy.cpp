#include "copies/target_copy.h"

#include <algorithm>

#include "copies/copy_round.h"

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

BackUp backUp(ITransfers& transfers, const CopyWatch& watch) {
    BackUp result;
    CopyRound round(watch, targetSetNumbers.size() + 1);
    for (SetCopy& set : result.copy.sets) {
        if (!round.begin(CopyAct::readSet, set.targetSet)) {
            result.cancelled = true;
            return result;
        }
        set = readTargetSet(transfers, set.targetSet);
    }
    if (!round.begin(CopyAct::readVersions, 0)) {
        result.cancelled = true;
        return result;
    }
    TargetReply reply{};
    if (transfers.ReceiveFromTarget(reply, std::span(&command_code::readVersions, std::size_t{1}))) {
        result.copy.versions = versionsOf(reply);
    }
    return result;
}

SetCopy readTargetSet(ITransfers& transfers, std::uint8_t targetSet) {
    SetCopy set{.targetSet = targetSet, .state = SetState::failed, .reply = {}, .trouble = {}};
    const std::array<std::uint8_t, 2> request{command_code::readSet, targetSet};
    TargetReply reply{};
    // A reply whose disconnect failed has arrived too, but the exchange was not one.
    if (transfers.ReceiveFromTarget(reply, request)) {
        set.reply = reply;
        set.state = isSound(reply) ? SetState::sound : SetState::wrongDigest;
    }
    return set;
}

}  // namespace tessavo
