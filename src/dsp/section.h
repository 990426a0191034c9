#pragma once

#include <array>

namespace tessavo {

/// One second-order section with a0 = 1, as real numbers. As it is made it passes everything through.
struct Section {
    double b0 = 1.0;
    double b1 = 0.0;
    double b2 = 0.0;
    double a1 = 0.0;
    double a2 = 0.0;

    /// The five values in the scale of BiquadWords: numerator / 8, denominator / 2. For numerator gains up to
    /// 18 dB and for every stable denominator they lie in [-1, 1).
    [[nodiscard]] constexpr std::array<double, 5> scaled() const {
        return {b0 / 8.0, b1 / 8.0, b2 / 8.0, a1 / 2.0, a2 / 2.0};
    }
};

}  // namespace tessavo
