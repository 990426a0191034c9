#include "compare/channel_mirror.h"

#include <algorithm>
#include <array>

#include "compare/channel_clip.h"
#include "history/element_words.h"

namespace tessavo {

namespace {

struct Sides {
    std::uint8_t left;
    std::uint8_t right;
};
// Codes of the sources: front, rear, front center, front total, rear total.
constexpr std::array<Sides, 5> sides{{{1, 2}, {4, 5}, {7, 8}, {9, 10}, {12, 13}}};

using Channels = std::vector<RecordChannel>;

Channels channelsWith(const ParameterSet& set, std::uint8_t source) {
    Channels channels;
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const RecordChannel channel = recordChannelAt({position});
        if (set.routerSource.at(channel.value) == source) {
            channels.push_back(channel);
        }
    }
    return channels;
}

std::size_t positionOf(RecordChannel channel) {
    return static_cast<std::size_t>(std::ranges::find(channelMap, channel.value) - channelMap.begin());
}

std::string sourceWord(std::uint8_t source) {
    return valueText(fieldOf(FieldId::routerSource), source);
}

// "Channel 7 (FrontLeft)"
std::string nameOfChannel(const ParameterSet& set, RecordChannel channel) {
    const std::array<std::size_t, 1> record{channel.value};
    return channelList(record)
        .append(" (")
        .append(sourceWord(set.routerSource.at(channel.value)))
        .append(")");
}

struct Unpaired {
    std::size_t position;
    std::string text;
};

// The channels of one side that are more than the other side has.
void addUnpaired(std::vector<Unpaired>& unpaired, const ParameterSet& set, const Channels& channels,
                 const Channels& others, std::uint8_t otherSource) {
    for (std::size_t i = others.size(); i < channels.size(); ++i) {
        std::string text = nameOfChannel(set, channels[i]).append(" stays: no ");
        text.append(others.empty() ? "" : "other ");
        text.append("channel has the source ").append(sourceWord(otherSource)).append(".");
        unpaired.push_back({positionOf(channels[i]), std::move(text)});
    }
}

}  // namespace

MirrorPlan planMirror(const ParameterSet& set) {
    MirrorPlan plan;
    std::vector<Unpaired> unpaired;
    for (const auto& [leftSource, rightSource] : sides) {
        const Channels lefts = channelsWith(set, leftSource);
        const Channels rights = channelsWith(set, rightSource);
        for (std::size_t i = 0; i < std::min(lefts.size(), rights.size()); ++i) {
            plan.pairs.push_back(
                {lefts[i], rights[i],
                 nameOfChannel(set, lefts[i]).append(" to ").append(nameOfChannel(set, rights[i]))});
        }
        addUnpaired(unpaired, set, lefts, rights, rightSource);
        addUnpaired(unpaired, set, rights, lefts, leftSource);
    }
    std::ranges::sort(plan.pairs, {}, [](const MirrorPair& pair) { return positionOf(pair.left); });
    std::ranges::sort(unpaired, {}, &Unpaired::position);
    for (Unpaired& each : unpaired) {
        plan.unpaired.push_back(std::move(each.text));
    }
    return plan;
}

ParameterSet mirrorChannels(const ParameterSet& set, std::span<const MirrorPair> pairs) {
    ParameterSet mirrored = set;
    for (const MirrorPair& pair : pairs) {
        const auto position = static_cast<std::uint8_t>(positionOf(pair.right));
        mirrored = pasteChannel(mirrored, clipOf(set, pair.left), selectionBit({position}));
    }
    return mirrored;
}

}  // namespace tessavo
