#include "compare/channel_clip.h"

namespace tessavo {

bool belongsToChannel(const Field&) {
    return false;
}

ChannelClip clipOf(const ParameterSet&, RecordChannel channel) {
    return {.channel = channel};
}

ParameterSet pasteChannel(const ParameterSet& set, const ChannelClip&, std::uint8_t) {
    return set;
}

std::vector<std::uint8_t> channelClipBytes(const ChannelClip&) {
    return {};
}

ChannelClipReading readChannelClip(std::span<const std::uint8_t>) {
    return {};
}

std::string channelClipText(const ChannelClip&) {
    return {};
}

}  // namespace tessavo
