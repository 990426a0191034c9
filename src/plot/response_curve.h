#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "dsp/biquad_words.h"

namespace tessavo {

inline constexpr std::size_t curvePointCount = 1000;
inline constexpr std::int32_t curveStepHz = 20;

/// Magnitude response of a cascade, in whole dB (truncated towards zero) at 20, 40, ... 20000 Hz.
struct ResponseCurve {
    std::array<std::int32_t, curvePointCount> frequencyHz{};
    std::array<std::int32_t, curvePointCount> magnitudeDb{};

    friend bool operator==(const ResponseCurve&, const ResponseCurve&) = default;
};

/// Computes the response of a cascade from the very words that go to the target, at a sampling rate of 49500
/// Hz.
///
/// Each section adds 10 log10(N / D) with N = |b0 + b1 z^-1 + b2 z^-2|^2 and D = |1 + a1 z^-1 + a2 z^-2|^2 on
/// the unit circle. A sum below or above the 32-bit range saturates, an undefined one gives 0. Keeps no state
/// between calls.
///
/// Gives the same whole dB as plainResponse() at every point, much faster.
[[nodiscard]] ResponseCurve computeResponse(std::span<const BiquadWords> cascade);

/// The same by evaluating the formula term by term; the reference that computeResponse() is held to.
[[nodiscard]] ResponseCurve plainResponse(std::span<const BiquadWords> cascade);

}  // namespace tessavo
