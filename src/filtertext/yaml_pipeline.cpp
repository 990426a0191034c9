#include "filtertext/yaml_pipeline.h"

#include <algorithm>

#include "base/number_text.h"
#include "filtertext/yaml_values.h"
#include "text/shown_text.h"

namespace tessavo {

namespace {

/// A step of kind Filter.
struct Step {
    const YamlNode* names = nullptr;
    std::optional<std::vector<std::size_t>> channels{};  // nothing for all
    bool isBypassed = false;
};

class PipelineReader {
 public:
    explicit PipelineReader(const YamlTree& tree) : tree_(tree) {}

    [[nodiscard]] bool read(const YamlNode& pipeline, std::string_view channelName) {
        if (pipeline.kind != YamlKind::sequence) {
            return refuse("The pipeline must be a list of steps.", pipeline);
        }
        std::vector<Step> steps;
        for (const std::size_t item : pipeline.items) {
            if (!readStep(tree_.nodes[item], steps)) {
                return false;
            }
        }
        if (!chooseChannel(channelName)) {
            return false;
        }
        return std::ranges::all_of(steps, [this](const Step& step) { return use(step); });
    }

    YamlPipeline result{};
    YamlTrouble trouble{};

 private:
    bool refuse(std::string text, const YamlNode& where) {
        trouble = {std::move(text), where.place};
        return false;
    }

    bool readStep(const YamlNode& node, std::vector<Step>& steps) {
        if (node.kind != YamlKind::mapping) {
            return refuse("A step of the pipeline must be a map.", node);
        }
        const YamlNode* const type = valueOf(tree_, node, "type");
        if (type == nullptr || type->kind != YamlKind::scalar) {
            return refuse("A step of the pipeline has no type.", type == nullptr ? node : *type);
        }
        if (type->text != "Filter") {
            return true;
        }
        Step step;
        step.names = valueOf(tree_, node, "names");
        if (step.names == nullptr || step.names->kind != YamlKind::sequence) {
            return refuse("A step of the pipeline must have a list of names.",
                          step.names == nullptr ? node : *step.names);
        }
        if (const YamlNode* const bypassed = valueOf(tree_, node, "bypassed")) {
            const auto flag = flagIn(*bypassed);
            if (!flag) {
                return refuse("\"bypassed\" must be true or false.", *bypassed);
            }
            step.isBypassed = *flag;
        }
        if (!readChannels(node, step)) {
            return false;
        }
        steps.push_back(std::move(step));
        return true;
    }

    bool readChannels(const YamlNode& node, Step& step) {
        const YamlNode* const one = valueOf(tree_, node, "channel");
        const YamlNode* const several = valueOf(tree_, node, "channels");
        if (one != nullptr && several != nullptr) {
            return refuse(R"(A step of the pipeline has both "channel" and "channels".)", *several);
        }
        if (one != nullptr) {
            step.channels.emplace();
            return readChannel(*one, step);
        }
        if (several == nullptr) {
            return true;
        }
        if (several->kind != YamlKind::sequence) {
            return refuse("\"channels\" must be a list of numbers.", *several);
        }
        step.channels.emplace();
        return std::ranges::all_of(
            several->items, [this, &step](std::size_t item) { return readChannel(tree_.nodes[item], step); });
    }

    bool readChannel(const YamlNode& node, Step& step) {
        const auto channel = countIn(node);
        if (!channel) {
            return refuse(
                std::string("A channel must be a number from 0, not ").append(shownNode(node)).append("."),
                node);
        }
        step.channels->push_back(*channel);
        if (known_.emplace(*channel, known_.size()).second) {
            result.channels.push_back(std::to_string(*channel));
        }
        return true;
    }

    bool chooseChannel(std::string_view channelName) {
        if (channelName.empty()) {
            result.channel = result.channels.empty() ? std::string() : result.channels.front();
        } else if (std::ranges::find(result.channels, channelName) != result.channels.end()) {
            result.channel = channelName;
        } else {
            trouble = noSuchChannel(channelName, result.channels);
            return false;
        }
        read_ = wholeNumber<std::size_t>(result.channel);
        return true;
    }

    bool use(const Step& step) {
        bool isRead = !step.channels;
        std::optional<std::size_t> other;
        bool hasOthers = false;
        bool hasSeveral = false;
        for (const std::size_t channel : step.channels.value_or(std::vector<std::size_t>{})) {
            if (channel == read_) {
                isRead = true;
                continue;
            }
            hasSeveral = hasSeveral || (other && *other != channel);
            hasOthers = true;
            other = channel;
        }
        for (const std::size_t item : step.names->items) {
            const YamlNode& name = tree_.nodes[item];
            if (name.kind != YamlKind::scalar || name.text.size() > longestYamlKey) {
                return refuse("The name of a filter must be a short text.", name);
            }
            YamlUse& use = result.uses[name.text];
            use.name = use.name == nullptr ? &name : use.name;
            use.playing += isRead && !step.isBypassed ? 1U : 0U;
            use.isBypassed = use.isBypassed || (isRead && step.isBypassed);
            if (hasOthers && !step.isBypassed) {
                const bool isSame = !use.playsElsewhere || use.other == other;
                use.other = isSame && !hasSeveral ? other : std::nullopt;
                use.playsElsewhere = true;
            }
        }
        return true;
    }

    const YamlTree& tree_;
    std::map<std::size_t, std::size_t> known_{};
    std::optional<std::size_t> read_{};
};

}  // namespace

YamlTrouble noSuchChannel(std::string_view channelName, const std::vector<std::string>& channels) {
    YamlTrouble trouble;
    trouble.text = std::string("There is no channel ").append(inQuotes(channelName)).append(" in the file; ");
    if (channels.empty()) {
        trouble.text.append("it names none.");
        return trouble;
    }
    constexpr std::size_t mostNamed = 16;
    trouble.text.append(channels.size() == 1 ? "it names " : "there are ");
    for (std::size_t index = 0; index < std::min(channels.size(), mostNamed); ++index) {
        trouble.text.append(index == 0 ? "" : ", ").append(channels[index]);
    }
    trouble.text.append(channels.size() > mostNamed ? " and others." : ".");
    return trouble;
}

std::variant<YamlPipeline, YamlTrouble> readYamlPipeline(const YamlTree& tree, const YamlNode& pipeline,
                                                         std::string_view channelName) {
    PipelineReader reader(tree);
    if (!reader.read(pipeline, channelName)) {
        return std::move(reader.trouble);
    }
    return std::move(reader.result);
}

}  // namespace tessavo
