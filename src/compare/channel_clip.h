#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "params/channels.h"
#include "params/field_table.h"
#include "params/records.h"

namespace tessavo {

/// Name of the clipboard's form that holds the bytes of a channel.
inline constexpr std::string_view channelClipMimeType = "application/x-tessavo-channel";

/// Whether a field belongs to a channel itself, and is copied with it: filters, crossovers, volume, delay, phase, limiter,
/// output groups and what those add. The source and the channel's flag belong to its place and stay there.
[[nodiscard]] bool belongsToChannel(const Field& field);

/// One output channel of a set, by itself.
struct ChannelClip {
    OutputChannelParams params{};  ///< its channelFlag and spare bytes are 0
    LimiterParams limiter{};       ///< its spare bytes are 0
    RecordChannel channel{};       ///< where it was taken from; for words only
    std::uint8_t source = 0;       ///< that channel's source; for words only
};

/// Takes a channel out of a set.
/// \param channel 0 to 7
[[nodiscard]] ChannelClip clipOf(const ParameterSet& set, RecordChannel channel);

/// The set with the clip in these channels. Sources, flags and spare bytes of the channels stay.
/// \param selectionMask the channels, one selectionBit() each, as TuningState::selectionMask() gives them
[[nodiscard]] ParameterSet pasteChannel(const ParameterSet& set, const ChannelClip& clip,
                                        std::uint8_t selectionMask);

/// The clip as bytes for the clipboard, with their version and a check.
[[nodiscard]] std::vector<std::uint8_t> channelClipBytes(const ChannelClip& clip);

/// What bytes of the clipboard hold.
struct ChannelClipReading {
    std::optional<ChannelClip> clip;
    std::string trouble;  ///< why there is none, as a sentence for a person; empty where there is one
};

/// Reads bytes that may come from any program. Only the bytes that channelClipBytes() gives are taken.
[[nodiscard]] ChannelClipReading readChannelClip(std::span<const std::uint8_t> bytes);

/// The clip for a text editor: a heading, then a line for each filter, "Filter 1: ON  Peak  Fc 90.0 Hz  Gain 3.5 dB  Q 0.7",
/// for each crossover, volume, delay and limiter. UTF-8 without a byte beyond ASCII; each line ends with a line feed.
[[nodiscard]] std::string channelClipText(const ChannelClip& clip);

}  // namespace tessavo
