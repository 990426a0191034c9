#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "dsp/biquad_words.h"

namespace tessavo {

inline constexpr std::size_t curvePointCount = 1000;  ///< points of a curve
inline constexpr std::int32_t curveStepHz = 20;       ///< from one point to the next; the first is at 20 Hz

/// Magnitude response of a cascade of sections at 20, 40, ... 20000 Hz, in whole dB, truncated towards zero.
struct ResponseCurve {
    std::array<std::int32_t, curvePointCount> frequencyHz{};
    std::array<std::int32_t, curvePointCount> magnitudeDb{};

    friend bool operator==(const ResponseCurve&, const ResponseCurve&) = default;
};

/// Computes the response of a cascade from the very words that go to the target, at a sampling rate of 49500
/// Hz.
///
/// Each section adds 10 log10(N / D) dB, where N = |b0 + b1 z^-1 + b2 z^-2|^2 and D = |1 + a1 z^-1 + a2
/// z^-2|^2 on the unit circle. A sum outside the 32-bit range gives the nearer limit of that range, an
/// undefined one gives 0. No state stays between calls.
///
/// The result is the same as that of plainResponse() at every point, but is computed much faster.
[[nodiscard]] ResponseCurve computeResponse(std::span<const BiquadWords> cascade);

/// Computes the response by evaluating the formula term by term. The tests hold computeResponse() to it.
[[nodiscard]] ResponseCurve plainResponse(std::span<const BiquadWords> cascade);

}  // namespace tessavo
