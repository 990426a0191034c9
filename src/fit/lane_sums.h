#pragma once

#include <array>
#include <cstddef>

namespace tessavo {

/// The sum of the products of two rows of numbers. Four sums run side by side, so that none waits for the one before it; their
/// order is the same on every machine.
[[nodiscard]] inline double productSum(const double* a, const double* b, std::size_t count) {
    constexpr std::size_t lanes = 4;
    std::array<double, lanes> sums{};
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            sums[lane] += a[i + lane] * b[i + lane];
        }
    }
    double rest = 0;
    for (; i < count; ++i) {
        rest += a[i] * b[i];
    }
    return (sums[0] + sums[1]) + (sums[2] + sums[3]) + rest;
}

}  // namespace tessavo
