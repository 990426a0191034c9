#pragma once

#include <cstddef>
#include <span>

#include "plot/response_curve.h"

namespace tessavo {

/// What the lowest bit of a coefficient word is worth: b0, b1 and b2 have 28 fraction bits, a1 and a2 have
/// 30.
inline constexpr double numeratorUnit = 1.0 / (1 << 28);
inline constexpr double denominatorUnit = 1.0 / (1 << 30);

/// Angular frequency of a curve point, in radians per sample at 49500 Hz.
/// \param point 0 to 999
[[nodiscard]] double curveAngle(std::size_t point);

/// The cascade's magnitude in dB at one point, before truncation, computed term by term as the formula
/// stands.
/// \param cascade the sections
/// \param point 0 to 999
[[nodiscard]] double plainMagnitudeDb(std::span<const BiquadWords> cascade, std::size_t point);

/// The same between the points of a curve.
/// \param angle angular frequency in radians per sample
[[nodiscard]] double plainMagnitudeAt(std::span<const BiquadWords> cascade, double angle);

}  // namespace tessavo
