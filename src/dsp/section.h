#pragma once

#include <array>

namespace tessavo {

/// Coefficients of one second-order section with a0 = 1, as real numbers.
struct Section {
    double b0 = 1.0;
    double b1 = 0.0;
    double b2 = 0.0;
    double a1 = 0.0;
    double a2 = 0.0;

    /// The five values in the target's scale: numerator / 8, denominator / 2. A numerator gain up to 18 dB
    /// and any stable denominator fit into [-1, 1).
    [[nodiscard]] constexpr std::array<double, 5> scaled() const {
        return {b0 / 8.0, b1 / 8.0, b2 / 8.0, a1 / 2.0, a2 / 2.0};
    }
};

}  // namespace tessavo
