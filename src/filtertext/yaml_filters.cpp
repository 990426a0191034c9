#include <algorithm>
#include <iterator>

#include "filtertext/readers.h"
#include "filtertext/yaml_filter.h"
#include "filtertext/yaml_pipeline.h"
#include "filtertext/yaml_tree.h"
#include "filtertext/yaml_values.h"
#include "text/shown_text.h"

namespace tessavo {

namespace {

constexpr double highestRateHz = 1e7;

void also(std::string& reason, std::string_view more) {
    reason.append(reason.empty() ? "" : "; ").append(more);
}

class ConfigurationReader {
 public:
    explicit ConfigurationReader(YamlTree tree) : tree_(std::move(tree)) {}

    FilterText read(std::string_view channelName) {
        if (tree_.nodes.empty() || tree_.nodes[tree_.root].kind != YamlKind::mapping) {
            refuse({"There is no filter in the file."});
            return std::move(result_);
        }
        const YamlNode& root = tree_.nodes[tree_.root];
        const YamlNode* const filters = filtersOf(root);
        if (filters == nullptr) {
            refuse({"There is no filter in the file."});
        } else if (filters->kind != YamlKind::mapping) {
            refuse({"\"filters\" must be a map of names and filters.", filters->place});
        } else if (readRate(root) && readPipeline(root, channelName)) {
            addFilters(*filters);
        }
        return std::move(result_);
    }

 private:
    void refuse(YamlTrouble trouble) {
        result_.trouble = std::move(trouble.text);
        result_.troubleLine = trouble.place.line;
        result_.troubleColumn = trouble.place.column;
    }

    /// The map of filters: under its key, or the whole text where it is nothing else.
    const YamlNode* filtersOf(const YamlNode& root) {
        for (const std::string_view key : {"filters", "pipeline", "devices"}) {
            if (const YamlNode* const value = valueOf(tree_, root, key)) {
                isWhole_ = true;
                return key == "filters" ? value : nullptr;
            }
        }
        for (std::size_t item = 1; item < root.items.size(); item += 2) {
            if (valueOf(tree_, tree_.nodes[root.items[item]], "type") != nullptr) {
                return &root;
            }
        }
        return nullptr;
    }

    bool readRate(const YamlNode& root) {
        const YamlNode* const devices = isWhole_ ? valueOf(tree_, root, "devices") : nullptr;
        if (devices == nullptr) {
            return true;
        }
        if (devices->kind != YamlKind::mapping) {
            refuse({"\"devices\" must be a map.", devices->place});
            return false;
        }
        const YamlNode* const rate = valueOf(tree_, *devices, "samplerate");
        if (rate == nullptr) {
            return true;
        }
        const auto hertz = numberIn(*rate);
        if (!hertz || *hertz <= 0.0 || *hertz > highestRateHz) {
            refuse({std::string("The sampling rate is no rate in Hz: ").append(shownNode(*rate)).append("."),
                    rate->place});
            return false;
        }
        result_.samplingRateHz = *hertz;
        result_.tellsSamplingRate = true;
        return true;
    }

    bool readPipeline(const YamlNode& root, std::string_view channelName) {
        const YamlNode* const node = isWhole_ ? valueOf(tree_, root, "pipeline") : nullptr;
        if (node == nullptr) {
            if (!channelName.empty()) {
                refuse(noSuchChannel(channelName, {}));
            }
            return channelName.empty();
        }
        auto read = readYamlPipeline(tree_, *node, channelName);
        if (auto* const trouble = std::get_if<YamlTrouble>(&read)) {
            refuse(std::move(*trouble));
            return false;
        }
        pipeline_ = std::move(std::get<YamlPipeline>(read));
        result_.channels = pipeline_->channels;
        result_.channel = pipeline_->channel;
        return true;
    }

    void addFilters(const YamlNode& filters) {
        for (std::size_t item = 0; item + 1 < filters.items.size(); item += 2) {
            const YamlNode& name = tree_.nodes[filters.items[item]];
            addFilter(name, readYamlFilter(tree_, name, tree_.nodes[filters.items[item + 1]],
                                           result_.samplingRateHz));
        }
        if (pipeline_) {
            addUnknown();
        }
        if (result_.lines.empty()) {
            refuse({"There is no filter in the file."});
        }
        std::ranges::stable_sort(result_.lines, {}, &FilterLine::line);
    }

    /// A row for each time that the channel plays the filter, or one that says why it does not.
    void addFilter(const YamlNode& name, YamlFilter filter) {
        YamlUse use;
        use.playing = 1;
        if (pipeline_) {
            const auto found = pipeline_->uses.find(name.text);
            use = found == pipeline_->uses.end() ? YamlUse{} : found->second;
            if (found != pipeline_->uses.end()) {
                pipeline_->uses.erase(found);
            }
        }
        FilterLine& line = filter.line;
        if (line.kind == FilterLineKind::error) {
            result_.lines.push_back(std::move(line));
            return;
        }
        if (use.playing == 0) {
            setAside(line, use);
            result_.lines.push_back(std::move(line));
            return;
        }
        if (filter.preampDb) {
            line.source.reset();
            result_.hasPreamp = true;
            result_.preampDb += *filter.preampDb * static_cast<double>(use.playing);
        }
        result_.lines.insert(result_.lines.end(), use.playing, line);
    }

    /// A filter that the channel does not play.
    static void setAside(FilterLine& line, const YamlUse& use) {
        if (line.kind == FilterLineKind::none) {
            line.reason.clear();
        }
        if (use.playsElsewhere && !use.isBypassed) {
            line.kind = FilterLineKind::unsupported;
            line.meaning.reset();
            line.reason = use.other ? std::string("for channel ").append(std::to_string(*use.other))
                                    : std::string("for other channels");
            return;
        }
        line.kind = FilterLineKind::off;
        also(line.reason,
             use.name == nullptr ? "in no step of the pipeline" : "only in bypassed steps of the pipeline");
    }

    /// What is left of the names in the pipeline.
    void addUnknown() {
        std::vector<FilterLine> lines;
        for (const auto& [name, use] : pipeline_->uses) {
            FilterLine line;
            line.line = use.name->place.line;
            line.column = use.name->place.column;
            line.kind = FilterLineKind::error;
            line.text = shownText(name);
            line.reason = "the pipeline names this filter, and there is none of that name";
            lines.push_back(std::move(line));
        }
        std::ranges::stable_sort(lines, {}, &FilterLine::column);
        result_.lines.insert(result_.lines.end(), std::make_move_iterator(lines.begin()),
                             std::make_move_iterator(lines.end()));
    }

    YamlTree tree_;
    bool isWhole_ = false;  // it has the parts of a configuration, not filters alone
    std::optional<YamlPipeline> pipeline_{};
    FilterText result_{};
};

}  // namespace

FilterText readYamlFilters(std::string_view text, std::string_view channelName) {
    auto read = readYamlTree(text);
    if (auto* const trouble = std::get_if<YamlTrouble>(&read)) {
        FilterText result;
        result.trouble = std::move(trouble->text);
        result.troubleLine = trouble->place.line;
        result.troubleColumn = trouble->place.column;
        return result;
    }
    return ConfigurationReader(std::move(std::get<YamlTree>(read))).read(channelName);
}

}  // namespace tessavo
