#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "measure/level_curve.h"

namespace tessavo {

/// Points an octave of a smoothed curve, and of a mean.
inline constexpr int pointsPerOctave = 96;

/// The width over which a curve is smoothed: one part of so many of an octave, 1 to 48; 0 for none.
struct Smoothing {
    int partsPerOctave = 0;

    friend bool operator==(const Smoothing&, const Smoothing&) = default;
};

/// Reads "none", "1/1", "1/2", "1/3", "1/6", "1/12", "1/24" or any other "1/N" with N from 1 to 48.
[[nodiscard]] std::optional<Smoothing> smoothingOf(std::string_view text);

/// The text of a smoothing, as smoothingOf() reads it.
[[nodiscard]] std::string textOf(Smoothing smoothing);

/// Frequencies in equal ratios, at least pointsPerOctave of them an octave and at least two; the ends are as told.
/// \param lowestHz above 0
/// \param highestHz above lowestHz
[[nodiscard]] std::vector<double> evenFrequencies(double lowestHz, double highestHz);

/// Smooths the level of a curve: at each point the mean of the power over a window of that width, centred in the logarithm of
/// the frequency. The mean is that of the straight lines between the points, to the last digits; beyond its ends the curve
/// goes on as it ends. The phase is not smoothed.
/// \return at evenFrequencies() from the first to the last; the curve itself where the smoothing is none
[[nodiscard]] LevelCurve smoothed(const LevelCurve& curve, Smoothing smoothing);

/// The mean of several curves as power, over the frequencies that all of them have. It has no phase unless there is but one
/// curve, which is then returned as it is.
/// \return nothing where no two frequencies belong to all of them, or for no curve
[[nodiscard]] std::optional<LevelCurve> powerMean(std::span<const LevelCurve> curves);

/// A measurement less what its microphone adds: levels, and phases where both have them.
[[nodiscard]] LevelCurve calibrated(const LevelCurve& measurement, const LevelCurve& microphone);

}  // namespace tessavo
