#pragma once

#include <array>

#include "dsp/filter_methods.h"
#include "params/tuning_state.h"

namespace tessavo {

/// Which coefficient words are not those that the chosen method gives for the current set. One bit for each
/// section, the lowest for the first.
struct ForeignWords {
    struct Channel {
        unsigned bands = 0;
        unsigned crossovers = 0;
        friend bool operator==(const Channel&, const Channel&) = default;
    };

    std::array<Channel, channelCount> playing;  ///< words of the image, by record channel
    std::array<Channel, channelCount> drawn;    ///< words that the curves are drawn from, by record channel
    unsigned inputDrawn = 0;                    ///< the same for the thirteen input bands

    [[nodiscard]] bool any() const { return *this != ForeignWords{}; }
    friend bool operator==(const ForeignWords&, const ForeignWords&) = default;
};

/// Finds them. Has generators of its own, which warn nobody and leave the application's warnings alone. A
/// section that the method cannot compute counts as one of its own. User-interface thread.
class ForeignWordSearch {
 public:
    [[nodiscard]] ForeignWords find(const TuningState& tuning);

 private:
    FilterMethods methods_ = makeFilterMethods();
};

}  // namespace tessavo
