#pragma once

#include <vector>

#include "measure/level_curve.h"

namespace tessavo {

/// A null of a measurement: sound that cancels itself at the microphone. No boost fills it.
struct NarrowNull {
    double fromHz = 0;
    double toHz = 0;
    double depthDb = 0;  ///< below the lower of its two shoulders
};

inline constexpr double widestNullOctaves = 1.0 / 6.0;
inline constexpr double shallowestNullDb = 6.0;

/// The nulls that are narrower than a sixth of an octave and deeper than 6 dB, by rising frequency. Finer detail than a
/// twenty-fourth of an octave is noise and counts as smoothed.
[[nodiscard]] std::vector<NarrowNull> narrowNulls(const LevelCurve& measurement);

/// The measurement with a straight line over each of these nulls.
[[nodiscard]] LevelCurve bridged(const LevelCurve& measurement, const std::vector<NarrowNull>& nulls);

}  // namespace tessavo
