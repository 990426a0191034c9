#include "fit/band_shape.h"

#include <cmath>
#include <numbers>

#include "dsp/fixed_point.h"
#include "params/section_words.h"
#include "plot/response_terms.h"

namespace tessavo {

namespace {

constexpr double powerInDb = 10.0 / std::numbers::ln10;

PowerRatio slopeOf(const PowerRatio& above, const PowerRatio& below, double distance) {
    const double scale = 1.0 / distance;
    return {(above.n0 - below.n0) * scale, (above.n1 - below.n1) * scale, (above.n2 - below.n2) * scale,
            (above.d0 - below.d0) * scale, (above.d1 - below.d1) * scale, (above.d2 - below.d2) * scale};
}

}  // namespace

double& termOf(BandShape& shape, std::size_t term) {
    return term == 0 ? shape.logHz : term == 1 ? shape.gainDb : shape.logQ;
}

double termOf(const BandShape& shape, std::size_t term) {
    return term == 0 ? shape.logHz : term == 1 ? shape.gainDb : shape.logQ;
}

PowerRatio designedRatio(const IcoefficientGenerator& method, const BandShape& shape) {
    const BandRequest request{.type = static_cast<std::uint8_t>(shape.type),
                              .frequencyHz = std::exp(shape.logHz),
                              .gainDb = shape.gainDb,
                              .q = std::exp(shape.logQ),
                              .linearGain = std::pow(10.0, std::abs(shape.gainDb) / 20.0)};
    return powerRatioOf(method.bandSection(request).value_or(Section{}));
}

std::optional<PowerRatio> playedRatio(const IcoefficientGenerator& method, const EqBandParams& band) {
    BiquadWords words;
    if (!coefficientsToFixed(designedBand(method, band).scaled(), words)) {
        return std::nullopt;
    }
    return powerRatioOf({words.b0 * numeratorUnit, words.b1 * numeratorUnit, words.b2 * numeratorUnit,
                         words.a1 * denominatorUnit, words.a2 * denominatorUnit});
}

std::vector<PowerRatio> playedRatios(const IcoefficientGenerator& method,
                                     std::span<const EqBandParams> bands) {
    std::vector<PowerRatio> ratios;
    ratios.reserve(bands.size());
    for (const EqBandParams& band : bands) {
        ratios.push_back(playedRatio(method, band).value_or(PowerRatio{}));
    }
    return ratios;
}

std::vector<double> levelsOf(std::span<const PowerRatio> bands, const FitPoints& points) {
    std::vector<double> levels(points.size(), 1.0);
    for (const PowerRatio& band : bands) {
        for (std::size_t i = 0; i < points.size(); ++i) {
            const double x = points.halfAngleSquare[i];
            levels[i] *= band.numerator(x) / band.denominator(x);
        }
    }
    for (double& level : levels) {
        level = decibelsOfPower(level);
    }
    return levels;
}

void levelSlopes(const IcoefficientGenerator& method, const BandShape& shape, const FitPoints& points,
                 std::array<double*, termsPerBand> slopes) {
    // Small beside what a term means, large beside the last digits of the coefficients.
    constexpr double reach = 1e-4;
    const PowerRatio ratio = designedRatio(method, shape);
    std::array<PowerRatio, termsPerBand> slope{};
    for (std::size_t term = 0; term < termsPerBand; ++term) {
        BandShape above = shape;
        BandShape below = shape;
        termOf(above, term) += reach;
        termOf(below, term) -= reach;
        slope[term] = slopeOf(designedRatio(method, above), designedRatio(method, below), 2.0 * reach);
    }
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double x = points.halfAngleSquare[i];
        const double numerator = powerInDb / ratio.numerator(x);
        const double denominator = powerInDb / ratio.denominator(x);
        for (std::size_t term = 0; term < termsPerBand; ++term) {
            slopes[term][i] = slope[term].numerator(x) * numerator - slope[term].denominator(x) * denominator;
        }
    }
}

}  // namespace tessavo
