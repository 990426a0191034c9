#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "dsp/section.h"

namespace tessavo {

/// Frequencies in equal ratios at which levels are computed, with what the level of a section needs of them.
struct FitPoints {
    std::vector<double> frequenciesHz{};
    std::vector<double> halfAngleSquare{};  ///< sin^2(w / 2), w the angle of a sample at 49500 Hz

    [[nodiscard]] std::size_t size() const { return frequenciesHz.size(); }

    /// Adds one frequency behind the others.
    void watch(double frequencyHz);

    /// \param fromHz above 0
    /// \param toHz above fromHz
    /// \param count at least 2
    [[nodiscard]] static FitPoints even(double fromHz, double toHz, std::size_t count);
};

/// The squared magnitude of a section as a ratio of polynomials in x = sin^2(w / 2). Near 0 Hz no digits are lost, as they
/// would be in cosines.
struct PowerRatio {
    double n0 = 1.0;
    double n1 = 0.0;
    double n2 = 0.0;
    double d0 = 1.0;
    double d1 = 0.0;
    double d2 = 0.0;

    [[nodiscard]] double numerator(double x) const { return n0 + x * (n1 + x * n2); }
    [[nodiscard]] double denominator(double x) const { return d0 + x * (d1 + x * d2); }
};

/// \return 1 everywhere for a section that passes everything through
[[nodiscard]] PowerRatio powerRatioOf(const Section& section);

/// 10 log10 of a power, to 1e-9 dB; nothing but sums, products and one division, so that neighbours are computed side by side
/// and every machine finds the same. What is below the lowest power that is told, 1e-30, counts as that.
///
/// ln m = 2 artanh((m - 1) / (m + 1)) for the mantissa m from 0.707 to 1.414, by its series.
[[nodiscard]] inline double decibelsOfPower(double power) {
    constexpr double lowestPower = 1e-30;
    constexpr double decibelsOfE = 4.342944819032518;              // 10 log10 e
    constexpr double decibelsOfTwo = 3.010299956639812;            // 10 log10 2
    constexpr std::uint64_t lowestMantissa = 0x3FE6A09E667F3BCDU;  // of sqrt(1/2), as the bits of a double
    constexpr std::uint64_t one = 0x3FF0000000000000U;
    constexpr std::uint64_t mantissaBits = 0x000FFFFFFFFFFFFFU;
    constexpr std::uint64_t wholeNumber = 0x4330000000000000U;  // 2^52; bits added to it are units
    constexpr double wholeNumberValue = 4503599627370496.0 + 1023.0;
    const std::uint64_t bits =
        std::bit_cast<std::uint64_t>(power > lowestPower ? power : lowestPower) + (one - lowestMantissa);
    const double exponent = std::bit_cast<double>((bits >> 52U) | wholeNumber) - wholeNumberValue;
    const double mantissa = std::bit_cast<double>((bits & mantissaBits) + lowestMantissa);
    const double s = (mantissa - 1.0) / (mantissa + 1.0);
    const double s2 = s * s;
    const double series =
        1.0 + s2 * (1.0 / 3.0 + s2 * (1.0 / 5.0 + s2 * (1.0 / 7.0 + s2 * (1.0 / 9.0 + s2 * (1.0 / 11.0)))));
    return exponent * decibelsOfTwo + (2.0 * decibelsOfE) * s * series;
}

}  // namespace tessavo
