#include "compare/channel_clip.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "base/md5.h"

namespace tessavo {

namespace {

constexpr std::array<std::uint8_t, 4> mark{'T', 'S', 'C', 'H'};
constexpr std::uint16_t formVersion = 1;

/// The clipboard's form, little-endian as every other one: docs/formats.md tells it.
struct ClipForm {
    std::array<std::uint8_t, 4> mark;
    std::uint16_t version;
    std::uint16_t size;  ///< of the whole form
    std::uint8_t channel;
    std::uint8_t source;
    std::array<std::uint8_t, 2> spare10;
    OutputChannelParams params;
    LimiterParams limiter;
    Md5Digest check;  ///< of everything before it
};
static_assert(sizeof(ClipForm) == 220 && offsetof(ClipForm, version) == 4 && offsetof(ClipForm, size) == 6 &&
              offsetof(ClipForm, channel) == 8 && offsetof(ClipForm, source) == 9 &&
              offsetof(ClipForm, params) == 12 && offsetof(ClipForm, limiter) == 180 &&
              offsetof(ClipForm, check) == 204);

void copyChannel(ParameterSet& to, RecordChannel toChannel, const ParameterSet& from,
                 RecordChannel fromChannel) {
    for (const Field& field : fieldTable()) {
        if (!belongsToChannel(field)) {
            continue;
        }
        for (std::size_t inner = 0; inner < field.inner.count; ++inner) {
            std::memcpy(
                reinterpret_cast<unsigned char*>(&to) + recordOffsetOf(field, {toChannel.value, inner}),
                reinterpret_cast<const unsigned char*>(&from) +
                    recordOffsetOf(field, {fromChannel.value, inner}),
                widthOf(field.type));
        }
    }
}

Md5Digest checkOf(const ClipForm& form) {
    return md5({reinterpret_cast<const std::uint8_t*>(&form), offsetof(ClipForm, check)});
}

std::vector<std::uint8_t> bytesOf(const ClipForm& form) {
    std::vector<std::uint8_t> bytes(sizeof form);
    std::memcpy(bytes.data(), &form, sizeof form);
    return bytes;
}

ChannelClipReading refused(std::string_view why) {
    ChannelClipReading reading;
    reading.trouble.append("The channel on the clipboard ").append(why).append(".");
    return reading;
}

}  // namespace

bool belongsToChannel(const Field& field) {
    return field.outer.count == channelCount && field.id != FieldId::routerSource &&
           field.id != FieldId::channelFlag;
}

ChannelClip clipOf(const ParameterSet& set, RecordChannel channel) {
    ParameterSet only{};
    copyChannel(only, channel, set, channel);
    return {only.channels.at(channel.value), only.limiters.at(channel.value), channel,
            set.routerSource.at(channel.value)};
}

ParameterSet pasteChannel(const ParameterSet& set, const ChannelClip& clip, std::uint8_t selectionMask) {
    ParameterSet only{};
    only.channels[0] = clip.params;
    only.limiters[0] = clip.limiter;
    ParameterSet pasted = set;
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        if ((selectionMask & selectionBit({position})) != 0) {
            copyChannel(pasted, recordChannelAt({position}), only, {0});
        }
    }
    return pasted;
}

std::vector<std::uint8_t> channelClipBytes(const ChannelClip& clip) {
    ClipForm form{mark,        formVersion,  sizeof form, clip.channel.value, clip.source, {},
                  clip.params, clip.limiter, {}};
    form.check = checkOf(form);
    return bytesOf(form);
}

ChannelClipReading readChannelClip(std::span<const std::uint8_t> bytes) {
    ClipForm form{};
    std::copy_n(bytes.begin(), std::min(bytes.size(), sizeof form), reinterpret_cast<std::uint8_t*>(&form));
    constexpr std::size_t headSize = offsetof(ClipForm, channel);
    if (bytes.size() >= mark.size() && form.mark != mark) {
        return refused("is not one of Tessavo");
    }
    if (bytes.size() < headSize) {
        return refused("is cut short");
    }
    if (form.version > formVersion) {
        return refused("was copied by a newer version of Tessavo");
    }
    if (form.version != formVersion || form.size != sizeof form) {
        return refused("is damaged");
    }
    if (bytes.size() < sizeof form) {
        return refused("is cut short");
    }
    if (bytes.size() > sizeof form || form.check != checkOf(form)) {
        return refused("is damaged");
    }
    const ChannelClip clip{form.params, form.limiter, {form.channel}, form.source};
    // A right check over what channelClipBytes() never writes: the spare bytes of a clip are 0.
    ParameterSet only{};
    only.channels[0] = clip.params;
    only.limiters[0] = clip.limiter;
    if (form.channel >= channelCount ||
        bytesOf(form) != channelClipBytes({clipOf(only, {0}).params, clipOf(only, {0}).limiter, clip.channel,
                                           clip.source})) {
        return refused("is damaged");
    }
    return {clip, {}};
}

}  // namespace tessavo
