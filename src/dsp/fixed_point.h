#pragma once

#include <array>

#include "dsp/biquad_words.h"

namespace tessavo {

/// Converts five real numbers into 32-bit fractions with 31 bits: sign(x) * floor(|x| * 2^31). Values are
/// truncated towards zero, -1.0 gives -2^31, and NaN gives 0.
///
/// The first value outside [-1, 1) stops the conversion: its own word becomes 0, the words before it are
/// converted, and the words after it stay as they were.
/// \param scaled b0/8, b1/8, b2/8, a1/2 and a2/2, in this order
/// \return true when all five words were converted
bool coefficientsToFixed(const std::array<double, 5>& scaled, BiquadWords& out);

}  // namespace tessavo
