#pragma once

#include <cmath>
#include <cstddef>
#include <numbers>
#include <span>

#include "dsp/biquad_words.h"

namespace tessavo::test {

/// A cascade's magnitude at one point, and how far doubles may stray from it.
struct LongMagnitude {
    long double decibels = 0;
    long double uncertainty = 0;

    /// Whether no whole dB lies within reach of the uncertainty, so that truncation is certain.
    [[nodiscard]] bool isCertain() const {
        if (!std::isfinite(decibels) || !(uncertainty < 0.2L)) {
            return false;
        }
        const long double nearest = std::round(decibels);
        return nearest == 0.0L || std::abs(decibels - nearest) > uncertainty;
    }
};

/// The sections' formula in extended precision. \param point 1 to 1000, 20 Hz apart at 49500 Hz
inline LongMagnitude longMagnitude(std::span<const BiquadWords> cascade, std::size_t point) {
    const long double w =
        2.0L * std::numbers::pi_v<long double> * 20.0L * static_cast<long double>(point) / 49500.0L;
    LongMagnitude sum{0.0L, 1e-9L};
    for (const BiquadWords& words : cascade) {
        const long double b0 = std::ldexp(static_cast<long double>(words.b0), -28);
        const long double b1 = std::ldexp(static_cast<long double>(words.b1), -28);
        const long double b2 = std::ldexp(static_cast<long double>(words.b2), -28);
        const long double a1 = std::ldexp(static_cast<long double>(words.a1), -30);
        const long double a2 = std::ldexp(static_cast<long double>(words.a2), -30);
        const auto squared = [w](long double c0, long double c1, long double c2) {
            const long double real = c0 + c1 * std::cos(w) + c2 * std::cos(2 * w);
            const long double imaginary = c1 * std::sin(w) + c2 * std::sin(2 * w);
            return real * real + imaginary * imaginary;
        };
        const auto strays = [](long double c0, long double c1, long double c2, long double power) {
            const long double size = std::abs(c0) + std::abs(c1) + std::abs(c2);
            return 1e-14L * (size * size + size * std::sqrt(power)) / power;
        };
        const long double n = squared(b0, b1, b2);
        const long double d = squared(1.0L, a1, a2);
        sum.decibels += 10.0L * std::log10(n / d);
        sum.uncertainty += 4.4L * (strays(b0, b1, b2, n) + strays(1.0L, a1, a2, d));
    }
    return sum;
}

}  // namespace tessavo::test
