#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "history/byte_diff.h"

namespace tessavo {

/// Wall-clock time, as a person is told it.
using WallTime = std::chrono::system_clock::time_point;

/// One step of a person: what can be undone and redone as a whole. Both differences are between two
/// TuningSnapshot.
struct Step {
    std::string text;       ///< what it did, in words: "Channel 7, Filter 3 gain −4.5 dB"
    WallTime time;          ///< when it ended
    std::uint32_t set = 0;  ///< set that was current when it ended, 0 to 4
    /// From the state after the step before to the state in which this one began. They differ where another
    /// set was chosen in between, which is no step.
    ByteDiff lead;
    ByteDiff change;  ///< from the state in which it began to the state in which it ended
};

/// Steps do not change once they are made; several owners may read them on any thread.
using Steps = std::vector<std::shared_ptr<const Step>>;

}  // namespace tessavo
