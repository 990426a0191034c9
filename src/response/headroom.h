#pragma once

#include "dsp/filter_kind.h"
#include "response/channel_model.h"

namespace tessavo {

/// How loud a channel gets.
struct Headroom {
    double highestDb = 0;  ///< its highest level from 20 Hz to 20 kHz: volume and filters together
    double atHz = 0;       ///< where that is
    /// How far that is below the +18 dB to which the target limits a volume; negative when above.
    double leftDb = 0;
};

/// The peak is found to its last digits by the slope of the response, not only to the nearest of some points.
/// \return minus infinity for a channel that is silent; where a level is not defined it does not count
[[nodiscard]] Headroom headroomOf(const ChannelModel& channel);

}  // namespace tessavo
