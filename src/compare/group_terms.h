#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "params/channels.h"
#include "params/parameter_image.h"
#include "params/records.h"

namespace tessavo {

/// What becomes of the group gains and delays when they are taken out of the channels.
enum class GroupTerms : std::uint8_t {
    /// They stay in their fields, so that output groups go on working; volume and delay become what is left.
    kept,
    /// They become 0, so that volume and delay are all there is.
    cleared,
};

/// A channel from which the group terms cannot be taken out.
struct UntakenChannel {
    RecordChannel channel;
    std::string
        reason;  ///< a sentence: "Channel 3 stays: its volume would have to be −7.5 dB, and −6.0 dB is the least."
};

/// What taking the group terms out of the channels does to a set.
struct GroupTermsResult {
    ParameterSet record{};              ///< for TuningState::replaceSet()
    std::vector<RecordChannel> taken;   ///< channels whose group terms were taken out, in page order
    std::vector<UntakenChannel> stays;  ///< channels that stay as they are, in page order
};

/// Whether a group gain or a group delay of the set is not 0.
[[nodiscard]] bool hasGroupTerms(const ParameterSet& set);

/// A set that was read from the target has the group terms in its volumes and delays, and in their own fields once more;
/// its delays are off by the rate at which they came back as well. Chooses volume and delay of every channel so that
/// edits from now on give exactly the gain word and the delay in samples of the received image: tenths where they do,
/// and else hundredths of a millisecond. A channel whose volume or delay would leave its range, or whose gain word no
/// volume gives, stays as it is altogether. What is right and within its range stays to the bit.
/// \param image the image that the set was received with
[[nodiscard]] GroupTermsResult takeOutGroupTerms(const ParameterSet& set, const ParameterImage& image,
                                                 GroupTerms terms = GroupTerms::kept);

}  // namespace tessavo
