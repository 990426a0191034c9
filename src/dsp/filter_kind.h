#pragma once

#include <cstdint>

namespace tessavo {

/// Direction codes of a crossover filter as records, image and target hold them; any non-zero code is a
/// low-pass.
enum class CrossoverKind : std::uint8_t { highPass = 0, lowPass = 1 };

/// Sampling rate of delays in samples, of the response curves and of bilinear band pre-warping, in Hz.
inline constexpr double responseSamplingRateHz = 49500.0;

/// Sampling rate of every other filter computation, in Hz. The two rates differ on purpose.
inline constexpr double designSamplingRateHz = 44100.0;

}  // namespace tessavo
