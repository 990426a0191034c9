#pragma once

#include <optional>

#include "params/channels.h"
#include "params/parameter_image.h"

namespace tessavo {

/// By how much the louder one of two sets is lowered so that both play equally loud. Steps are those of the
/// volumeGainTable(), half a dB each.
struct LevelMatch {
    unsigned loweredSteps = 0;  ///< what the volume range lets do
    unsigned missingSteps = 0;  ///< what it does not
    /// The channel whose volume ends at -6 dB before the others; nothing where no step is missing.
    std::optional<RecordChannel> lowest{};
    /// False where one of the two plays nothing, or its loudness is not known: nothing is lowered then.
    bool isComparable = true;

    friend bool operator==(const LevelMatch&, const LevelMatch&) = default;
};

inline constexpr double matchStepDb = 0.5;

/// How a set is to be lowered beside another one. All its channels are lowered by the same, so that their balance
/// stays: as far as the lowest one of those that have a source can go.
/// \param playedDb, otherDb their loudnessDb()
/// \return the difference to the nearest step where the set is the louder one; no steps where it is not
[[nodiscard]] LevelMatch matchLevel(const ParameterImage& played, double playedDb, double otherDb);

}  // namespace tessavo
