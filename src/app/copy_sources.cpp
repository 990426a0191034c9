#include "app/copy_sources.h"

#include <memory>
#include <utility>

#include "comm/target_commands.h"
#include "copies/target_copy.h"
#include "params/image_conversion.h"
#include "params/tuning_state.h"

namespace tessavo {

namespace {

CopiedSet readFromTarget(const TuningState& tuning, ITransfers& transfers, std::uint8_t targetSet,
                         const ParameterSet& base) {
    if (tuning.liveMode()) {
        return {.set = std::nullopt, .trouble = std::string(turnOffLiveModeText)};
    }
    const SetCopy copy = readTargetSet(transfers, targetSet);
    if (const auto image = copy.image()) {
        return {.set = setOfImage(*image, base), .trouble = {}};
    }
    const bool arrived = copy.state == SetState::wrongDigest;
    return {.set = std::nullopt,
            .trouble = targetSetTitle(targetSet) +
                       (arrived ? " came with a wrong digest."
                                : " could not be read; the communication log tells why.")};
}

}  // namespace

ParameterSet setOfImage(const ParameterImage& image, const ParameterSet& base) {
    auto store = std::make_unique<ParameterStore>();
    store->sets[0] = base;
    // Reading never clears it; beside another set the image's own is to be seen.
    for (OutputChannelParams& channel : store->sets[0].channels) {
        channel.invertPhase = 0;
    }
    readImageFields(*store, 0, image);
    return store->sets[0];
}

std::vector<CopySource> targetSources(const TuningState& tuning, ITransfers& transfers,
                                      const ParameterSet& base) {
    std::vector<CopySource> sources;
    sources.reserve(targetSetNumbers.size());
    const auto kept = std::make_shared<const ParameterSet>(base);
    for (const std::uint8_t targetSet : targetSetNumbers) {
        sources.push_back(
            {.title = targetSetTitle(targetSet), .group = "Target", .read = [=, &tuning, &transfers] {
                 return readFromTarget(tuning, transfers, targetSet, *kept);
             }});
    }
    return sources;
}

}  // namespace tessavo
