#pragma once

#include <cstddef>
#include <span>

#include "plot/response_curve.h"

namespace tessavo {

/// Value of one unit in the last place of a coefficient word: 28 fraction bits for b0, b1, b2, 30 for a1, a2.
inline constexpr double numeratorUnit = 1.0 / (1 << 28);
inline constexpr double denominatorUnit = 1.0 / (1 << 30);

/// Angle of a curve point, 0 to 999, in radians per sample.
[[nodiscard]] double curveAngle(std::size_t point);

/// The cascade's magnitude in dB at one point, before truncation, term by term as the formula stands.
[[nodiscard]] double plainMagnitudeDb(std::span<const BiquadWords> cascade, std::size_t point);

}  // namespace tessavo
