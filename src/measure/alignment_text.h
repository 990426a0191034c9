#pragma once

#include <cstdint>
#include <string>

#include "measure/alignment.h"

namespace tessavo {

/// What a person told of the loudspeakers, and is told in.
enum class AlignmentUnit : std::uint8_t { centimeters, milliseconds };

/// How near a channel comes: "within 1 cm" (rounded up), "12 cm too early", "the farthest".
[[nodiscard]] std::string alignmentResult(const ChannelAlignment& channel, double celsius);

/// Why a channel is not in line: "4.3 ms are needed, 4.0 ms are possible (2.0 ms in the group, 2.0 ms in the channel); 0.3 ms
/// or 12 cm are missing." As many decimals as what is missing needs.
/// \param channel misses something
[[nodiscard]] std::string shortfallText(const ChannelAlignment& channel);

/// Where the farthest loudspeaker would have to be: "All eight are in line if the farthest is at 233 cm or nearer". Rounded
/// down, so that it is in reach as it is read.
/// \param alignment of at least one channel
[[nodiscard]] std::string possibleText(const Alignment& alignment, AlignmentUnit unit);

/// How many channels were told, in a sentence: "All eight", "Both", "The only one".
/// \param alignment of at least one channel
[[nodiscard]] std::string allTold(const Alignment& alignment);

/// The number of a channel that misses most, by page position.
/// \param alignment that is not reachable
[[nodiscard]] PagePosition worstOf(const Alignment& alignment);

/// How many channels miss something.
[[nodiscard]] int countMissing(const Alignment& alignment);

}  // namespace tessavo
