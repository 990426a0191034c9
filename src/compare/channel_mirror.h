#pragma once

#include <span>
#include <string>
#include <vector>

#include "params/channels.h"
#include "params/records.h"

namespace tessavo {

/// A channel with a source of the left and the one with the same source of the right.
struct MirrorPair {
    RecordChannel left;
    RecordChannel right;
    std::string text;  ///< "Channel 7 (FrontLeft) to Channel 4 (FrontRight)"
};

/// What mirroring a set would do.
struct MirrorPlan {
    std::vector<MirrorPair> pairs;  ///< in page order of the left channels
    /// Channels of the left or the right that have no partner, and why, in page order: "Channel 7 (FrontLeft) stays: no
    /// channel has the source FrontRight." Channels whose source has no side are not told of.
    std::vector<std::string> unpaired;
};

/// Pairs the channels of a set by their sources. Where several have the same source they are paired in page order.
[[nodiscard]] MirrorPlan planMirror(const ParameterSet& set);

/// The set with each right channel as its left one. Sources, flags and spare bytes stay.
[[nodiscard]] ParameterSet mirrorChannels(const ParameterSet& set, std::span<const MirrorPair> pairs);

}  // namespace tessavo
