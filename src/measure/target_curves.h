#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "measure/level_curve.h"

namespace tessavo {

/// A target curve that the program knows.
struct NamedTarget {
    std::string_view name;   ///< as commands take it
    std::string_view shown;  ///< as a list shows it
};

/// Flat, three house curves for cars, and the room curve, in this order.
[[nodiscard]] std::span<const NamedTarget> namedTargets();

/// The curve of that name, in dB about a level of its own.
///
/// "flat"; "car-strong" (+9 dB up to 60 Hz, 0 from 160 Hz to 3 kHz, -6 at 20 kHz); "car-medium" (+6 up to 40 Hz, +1 at 250 Hz,
/// -5 at 20 kHz); "car-soft" (+6 up to 125 Hz, 0 from 200 Hz, -9 at 20 kHz); "room" (-1 dB an octave).
/// \return nothing for another name
[[nodiscard]] std::optional<LevelCurve> targetNamed(std::string_view name);

/// The level that brings a target to a curve: the mean of what the curve is above it, every frequency counting alike.
/// \param frequenciesHz above 0; those of the range in use, in equal ratios
[[nodiscard]] double anchorDb(const LevelCurve& curve, const LevelCurve& target,
                              std::span<const double> frequenciesHz);

}  // namespace tessavo
