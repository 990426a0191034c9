#include "fit/band_shape.h"

#include <gtest/gtest.h>

#include "fitted_channel.h"

namespace tessavo {
namespace {

std::vector<double> designedLevels(const IcoefficientGenerator& method, const BandShape& shape,
                                   const FitPoints& points) {
    const PowerRatio ratio = designedRatio(method, shape);
    std::vector<double> levels;
    for (const double x : points.halfAngleSquare) {
        levels.push_back(10.0 * std::log10(ratio.numerator(x) / ratio.denominator(x)));
    }
    return levels;
}

TEST(FitPoints, DecibelsAreThoseOfTheLogarithm) {
    for (double power = 1e-29; power < 1e29; power *= 1.0371) {
        EXPECT_NEAR(decibelsOfPower(power), 10.0 * std::log10(power), 2e-9) << power;
    }
    EXPECT_EQ(decibelsOfPower(1.0), 0.0);
    EXPECT_NEAR(decibelsOfPower(0.0), -300.0, 1e-6);
    EXPECT_NEAR(decibelsOfPower(-1.0), -300.0, 1e-6);
    EXPECT_NEAR(decibelsOfPower(std::nan("")), -300.0, 1e-6);
}

TEST(BandShape, ItsWordsPlayWhatTheTargetPlays) {
    const FilterMethods methods = makeFilterMethods();
    const FitPoints points = FitPoints::even(20.0, 20000.0, 500);
    for (const auto& method : methods) {
        for (const BandTypeName& type : bandTypeNames) {
            for (const float gain : {-12.0F, -0.5F, 0.0F, 3.0F, 11.9F}) {
                for (const std::uint16_t hz : {std::uint16_t{25}, std::uint16_t{800}, std::uint16_t{15000}}) {
                    const EqBandParams band{.type = static_cast<std::uint8_t>(type.type),
                                            .frequencyHz = hz,
                                            .gainDb = gain,
                                            .q = 2.3F};
                    const auto played = test::playedLevels(
                        test::withBands(test::plainChannel(), std::span(&band, 1), *method),
                        points.frequenciesHz);
                    const auto ratio = playedRatio(*method, band);
                    ASSERT_TRUE(ratio);
                    for (std::size_t i = 0; i < points.size(); ++i) {
                        const double x = points.halfAngleSquare[i];
                        EXPECT_NEAR(decibelsOfPower(ratio->numerator(x) / ratio->denominator(x)), played[i],
                                    1e-6);
                    }
                }
            }
        }
    }
}

TEST(BandShape, SlopesAreThoseOfItsLevel) {
    const FilterMethods methods = makeFilterMethods();
    const FitPoints points = FitPoints::even(20.0, 20000.0, 120);
    for (const auto& method : methods) {
        for (const BandTypeName& type : bandTypeNames) {
            for (const double gain : {-9.0, -1.0, 2.0, 8.0}) {
                const BandShape shape{type.type, std::log(700.0), gain, std::log(3.0)};
                std::array<std::vector<double>, termsPerBand> slopes;
                std::array<double*, termsPerBand> columns{};
                for (std::size_t term = 0; term < termsPerBand; ++term) {
                    slopes.at(term).resize(points.size());
                    columns.at(term) = slopes.at(term).data();
                }
                levelSlopes(*method, shape, points, columns);
                for (std::size_t term = 0; term < termsPerBand; ++term) {
                    constexpr double reach = 3e-5;
                    BandShape above = shape;
                    BandShape below = shape;
                    termOf(above, term) += reach;
                    termOf(below, term) -= reach;
                    const auto high = designedLevels(*method, above, points);
                    const auto low = designedLevels(*method, below, points);
                    for (std::size_t i = 0; i < points.size(); ++i) {
                        EXPECT_NEAR(slopes.at(term)[i], (high[i] - low[i]) / (2.0 * reach), 1e-3)
                            << "term " << term << " at " << points.frequenciesHz[i];
                    }
                }
            }
        }
    }
}

TEST(BandShape, WhatFitsIntoNoWordIsNotPlayed) {
    const FilterMethods methods = makeFilterMethods();
    // A shelf of more than 18 dB at the upper end needs a numerator of 8 or more.
    EXPECT_FALSE(playedRatio(*methods.front(), {.type = 0, .frequencyHz = 20, .gainDb = 19.0F, .q = 0.7F}));
}

}  // namespace
}  // namespace tessavo
