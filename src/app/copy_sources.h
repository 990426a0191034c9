#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "comm/transfers.h"
#include "params/parameter_image.h"
#include "params/records.h"

namespace tessavo {

class TuningState;

/// A set that was read from a copy or from the target.
struct CopiedSet {
    std::optional<ParameterSet> set;
    std::string trouble;  ///< why there is none, as a sentence
};

/// One set that can be looked at beside others.
struct CopySource {
    std::string title;  ///< names it within its group, in UTF-8
    std::string group;  ///< what it stands under: "Target"
    std::function<CopiedSet()> read;
};

// What is read is converted into a copy of `base`: what the target does not take, as the name, stays the base's, and
// so do the coefficient words. Phases are those of the image, which reading a set into the program only ever inverts.

/// The six sets of the target. Each is read through an exchange of its own, which touches neither image nor
/// sets of the program and needs Live Mode off: with Live Mode on nothing is sent, and the trouble is
/// `turnOffLiveModeText`.
/// \param tuning, transfers outlive the sources; the sources read on their thread
[[nodiscard]] std::vector<CopySource> targetSources(const TuningState& tuning, ITransfers& transfers,
                                                    const ParameterSet& base);

/// An image as a set.
[[nodiscard]] ParameterSet setOfImage(const ParameterImage& image, const ParameterSet& base);

}  // namespace tessavo
