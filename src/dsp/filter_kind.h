#pragma once

#include <cstdint>

namespace tessavo {

/// Direction of a crossover filter; the numbers are the codes in records, image and target. Any other code
/// means a low-pass as well.
enum class CrossoverKind : std::uint8_t { highPass = 0, lowPass = 1 };

/// Sampling rate of delays in samples, of the response curves and of bilinear band pre-warping, in Hz.
inline constexpr double responseSamplingRateHz = 49500.0;

/// Sampling rate of every other filter computation, in Hz. The two rates differ on purpose.
inline constexpr double designSamplingRateHz = 44100.0;

// The range in which a channel is heard, in Hz.
inline constexpr double lowestHeardHz = 20.0;
inline constexpr double highestHeardHz = 20000.0;

}  // namespace tessavo
