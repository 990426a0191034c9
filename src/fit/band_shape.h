#pragma once

#include <array>
#include <optional>
#include <span>
#include <vector>

#include "dsp/band_types.h"
#include "dsp/icoefficient_generator.h"
#include "fit/fit_points.h"
#include "params/records.h"

namespace tessavo {

/// A band off the steps of the target, in the terms in which it is fitted.
struct BandShape {
    BandType type = BandType::peak;
    double logHz = 0;  ///< natural logarithm of the frequency in Hz
    double gainDb = 0;
    double logQ = 0;  ///< natural logarithm of the quality factor
};

inline constexpr std::size_t termsPerBand = 3;  ///< frequency, gain and Q, in this order

/// The values that a band may take, in the same terms.
struct BandRoom {
    std::array<double, termsPerBand> lowest{};
    std::array<double, termsPerBand> highest{};
};

/// \param term below termsPerBand
[[nodiscard]] double& termOf(BandShape& shape, std::size_t term);
[[nodiscard]] double termOf(const BandShape& shape, std::size_t term);

/// The band as a method designs it, before its coefficients become fixed point.
[[nodiscard]] PowerRatio designedRatio(const IcoefficientGenerator& method, const BandShape& shape);

/// The band as the target plays it: what its five words say.
/// \return nothing where a coefficient does not fit into its word
[[nodiscard]] std::optional<PowerRatio> playedRatio(const IcoefficientGenerator& method,
                                                    const EqBandParams& band);

/// The same for several bands; one with such a coefficient passes everything through.
[[nodiscard]] std::vector<PowerRatio> playedRatios(const IcoefficientGenerator& method,
                                                   std::span<const EqBandParams> bands);

/// The levels of bands together at some points, in dB.
[[nodiscard]] std::vector<double> levelsOf(std::span<const PowerRatio> bands, const FitPoints& points);

/// The slopes of a band's level at some points, in dB for each unit of a term.
///
/// The level is 10 log10(N / D), so that its slope is (10 / ln 10) (N' / N - D' / D). N' and D' are those of the six
/// coefficients, which are smooth in each term.
/// \param slopes takes the slopes by term; each has the size of the points
void levelSlopes(const IcoefficientGenerator& method, const BandShape& shape, const FitPoints& points,
                 std::array<double*, termsPerBand> slopes);

}  // namespace tessavo
