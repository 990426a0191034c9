#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "filtertext/yaml_tree.h"

namespace tessavo {

/// How the pipeline of a CamillaDSP configuration uses one filter.
struct YamlUse {
    const YamlNode* name = nullptr;    ///< where it is named first
    std::size_t playing = 0;           ///< how often the channel that is read plays it
    bool isBypassed = false;           ///< the channel that is read names it in a bypassed step
    bool playsElsewhere = false;       ///< other channels play it
    std::optional<std::size_t> other;  ///< the one that plays it; nothing where several do
};

/// What the steps of kind Filter say. Mixers and processors are passed over, and channels are taken to keep their numbers.
struct YamlPipeline {
    std::vector<std::string>
        channels{};         ///< numbers of the channels that steps name, in the order of the file
    std::string channel{};  ///< the one of them that is read; empty where no step names one
    std::map<std::string_view, YamlUse> uses{};  ///< of every filter that a step names; views into the tree
};

/// That a channel was asked for which the file does not name.
[[nodiscard]] YamlTrouble noSuchChannel(std::string_view channelName,
                                        const std::vector<std::string>& channels);

/// Reads a pipeline.
/// \param channelName number of the channel to read; empty for the first that a step names
[[nodiscard]] std::variant<YamlPipeline, YamlTrouble> readYamlPipeline(const YamlTree& tree,
                                                                       const YamlNode& pipeline,
                                                                       std::string_view channelName);

}  // namespace tessavo
