#pragma once

#include <array>

#include "dsp/filter_methods.h"
#include "params/tuning_state.h"

namespace tessavo {

/// Which coefficient words are not those that the chosen filter method gives for the current set: because the
/// method was changed since they were computed, or because they came with a received set. One bit stands for
/// each section, the lowest bit for the first.
struct ForeignWords {
    /// Bits of one output channel.
    struct Channel {
        unsigned bands = 0;
        unsigned crossovers = 0;
        friend bool operator==(const Channel&, const Channel&) = default;
    };

    std::array<Channel, channelCount> playing;  ///< words of the image, by record channel
    std::array<Channel, channelCount> drawn;    ///< words that the curves are drawn from, by record channel
    unsigned inputDrawn = 0;                    ///< the same for the thirteen input bands

    /// Whether there is any such word.
    [[nodiscard]] bool any() const { return *this != ForeignWords{}; }
    friend bool operator==(const ForeignWords&, const ForeignWords&) = default;
};

/// Finds foreign words by computing every section anew. Its generators are its own: they warn nobody, and do
/// not use up the one warning that the application's generators give. A section that the method cannot
/// compute counts as not foreign. Used on the user-interface thread.
class ForeignWordSearch {
 public:
    [[nodiscard]] ForeignWords find(const TuningState& tuning);

 private:
    FilterMethods methods_ = makeFilterMethods();
};

}  // namespace tessavo
