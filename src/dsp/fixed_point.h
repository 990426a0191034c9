#pragma once

#include <array>

#include "dsp/biquad_words.h"

namespace tessavo {

/// Converts b0/8, b1/8, b2/8, a1/2, a2/2 (in this order) into 32-bit fractions with 31 bits.
///
/// Every word is sign(x) * floor(|x| * 2^31): truncated towards zero, -1.0 gives -2^31, NaN gives 0.
/// \return true when all five words were converted. The first value outside [-1, 1) stops the conversion:
///         its own word becomes 0, words before it stay converted, words after it keep what they held.
bool coefficientsToFixed(const std::array<double, 5>& scaled, BiquadWords& out);

}  // namespace tessavo
