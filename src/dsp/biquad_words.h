#pragma once

#include <cstdint>

namespace tessavo {

/// One second-order section in the target's form: five signed 32-bit fixed-point words in the order in which
/// the target stores them. They hold b0/8, b1/8, b2/8, a1/2 and a2/2, each as a fraction with 31 bits; the
/// divisors make room for numerator gains up to 18 dB and for every stable denominator.
///
/// The transfer function is (b0 + b1 z^-1 + b2 z^-2) / (1 + a1 z^-1 + a2 z^-2): a1 and a2 carry the plus
/// sign.
struct BiquadWords {
    std::int32_t b0 = 0;
    std::int32_t b1 = 0;
    std::int32_t b2 = 0;
    std::int32_t a1 = 0;
    std::int32_t a2 = 0;

    friend bool operator==(const BiquadWords&, const BiquadWords&) = default;
};

static_assert(sizeof(BiquadWords) == 20);

/// The word of b0 = 1, which is 2^31 / 8. A section of this word and four zeros passes everything through
/// unchanged.
inline constexpr std::int32_t unityNumeratorWord = 1 << 28;

}  // namespace tessavo
