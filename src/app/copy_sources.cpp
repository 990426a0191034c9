#include "app/copy_sources.h"

#include <chrono>
#include <memory>
#include <utility>

#include "app/restore_sources.h"
#include "app/wall_time_text.h"
#include "comm/target_commands.h"
#include "copies/target_copy.h"
#include "params/image_conversion.h"
#include "params/tuning_state.h"

namespace tessavo {

namespace {

std::string capital(std::string text) {
    // The texts of the sets begin with a letter of ASCII.
    text.front() = static_cast<char>(text.front() - 'a' + 'A');
    return text;
}

std::string nameOf(std::uint8_t targetSet) {
    return targetSet == 0 ? std::string("Default Set") : capital(targetSetText(targetSet));
}

CopySource sourceOf(const SetToWrite& set, std::string title, std::string group, const ParameterSet& base) {
    // Shared: a record and an image are large for what is copied from list to list.
    auto converted = std::make_shared<const ParameterSet>(setOfImage(set.image, base));
    return {.title = std::move(title), .group = std::move(group), .read = [converted = std::move(converted)] {
                return CopiedSet{.set = *converted, .trouble = {}};
            }};
}

std::vector<CopySource> sourcesIn(const std::filesystem::path& dataFolder, const ParameterSet& base,
                                  bool backups) {
    std::vector<CopySource> sources;
    for (const RestoreSource& each : restoreSources(dataFolder)) {
        if (each.place.empty() == backups) {
            continue;
        }
        const std::string time = dayAndTimeText(each.time).toStdString();
        for (const SetToWrite& set : each.sets) {
            std::string title = nameOf(set.targetSet);
            std::string group("Written into the target");
            if (backups) {
                group.assign("Backup ").append(each.title).append(", ").append(time);
            } else {
                title.append(", ").append(time).append(", ").append(each.port);
            }
            sources.push_back(sourceOf(set, std::move(title), std::move(group), base));
        }
    }
    return sources;
}

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
    return {
        .set = std::nullopt,
        .trouble = nameOf(targetSet) + (arrived ? " came with a wrong digest."
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

std::vector<CopySource> backupSources(const std::filesystem::path& dataFolder, const ParameterSet& base) {
    return sourcesIn(dataFolder, base, true);
}

std::vector<CopySource> writtenSources(const std::filesystem::path& dataFolder, const ParameterSet& base) {
    return sourcesIn(dataFolder, base, false);
}

std::vector<CopySource> targetSources(const TuningState& tuning, ITransfers& transfers,
                                      const ParameterSet& base) {
    std::vector<CopySource> sources;
    sources.reserve(targetSetNumbers.size());
    const auto kept = std::make_shared<const ParameterSet>(base);
    for (const std::uint8_t targetSet : targetSetNumbers) {
        sources.push_back({.title = nameOf(targetSet), .group = "Target", .read = [=, &tuning, &transfers] {
                               return readFromTarget(tuning, transfers, targetSet, *kept);
                           }});
    }
    return sources;
}

}  // namespace tessavo
