#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "plot/cascade_families.h"
#include "plot/long_response.h"
#include "plot/response_curve.h"

namespace tessavo::test {
namespace {

// Families of this many cascades of 1000 points each.
constexpr int cascadesOfAFamily = 100;

class ResponseProperty : public ::testing::TestWithParam<std::size_t> {
 protected:
    [[nodiscard]] static const CascadeFamily& family() { return cascadeFamilies()[GetParam()]; }
    std::mt19937_64 random_{20250 + GetParam()};
};

INSTANTIATE_TEST_SUITE_P(, ResponseProperty, ::testing::Range(std::size_t{0}, cascadeFamilies().size()),
                         [](const auto& which) { return cascadeFamilies()[which.param].name; });

TEST_P(ResponseProperty, FastAndPlainAgreeInEveryWholeDecibel) {
    for (int i = 0; i < cascadesOfAFamily; ++i) {
        const Cascade cascade = family().draw(random_);
        const ResponseCurve fast = computeResponse(cascade);
        const ResponseCurve plain = plainResponse(cascade);
        ASSERT_EQ(fast.frequencyHz, plain.frequencyHz);
        for (std::size_t point = 0; point < curvePointCount; ++point) {
            ASSERT_EQ(fast.magnitudeDb[point], plain.magnitudeDb[point])
                << family().name << " cascade " << i << " at " << fast.frequencyHz[point] << " Hz";
        }
    }
}

TEST_P(ResponseProperty, AgreesWithTheFormulaInExtendedPrecisionAwayFromRoundingEdges) {
    std::size_t certain = 0;
    for (int i = 0; i < 10; ++i) {
        const Cascade cascade = family().draw(random_);
        const ResponseCurve curve = computeResponse(cascade);
        for (std::size_t point = 0; point < curvePointCount; ++point) {
            const LongMagnitude expected = longMagnitude(cascade, point + 1);
            if (expected.isCertain()) {
                ++certain;
                ASSERT_EQ(curve.magnitudeDb[point], static_cast<std::int32_t>(std::trunc(expected.decibels)))
                    << family().name << " cascade " << i << " at " << curve.frequencyHz[point] << " Hz";
            }
        }
    }
    // Cascades with a section of zero words have no finite magnitude to compare with.
    const bool oftenSilent = family().name == "zeroWordsAmongOthers";
    const bool onEdges = family().name == "levelsAtTheEdgeOfAWholeDecibel";
    EXPECT_GE(certain, oftenSilent || onEdges ? 1000U : 6000U) << family().name;
}

/// Sections that only amplify, by 10, 100, 1000 or 10000 together: exactly a whole dB, so that the order in
/// which an evaluation rounds decides about the last one.
Cascade exactPowerOfTen(std::mt19937_64& random) {
    std::vector<double> factors;
    double left = 1;
    const std::uint64_t tens = 1 + random() % 4;
    for (std::uint64_t i = 0; i < tens; ++i) {
        factors.push_back(std::ldexp(5.0, -static_cast<int>(random() % 3)));
        left *= 10 / factors.back();
    }
    while (left > 1) {
        factors.push_back(std::min(left, std::ldexp(1.0, 1 + static_cast<int>(random() % 2))));
        left /= factors.back();
    }
    std::shuffle(factors.begin(), factors.end(), random);
    Cascade cascade;
    for (const double factor : factors) {
        cascade.push_back({static_cast<std::int32_t>(std::ldexp(factor, 28)), 0, 0, 0, 0});
    }
    return cascade;
}

TEST(ResponseOfExactDecibels, FastAndPlainTruncateAlikeWhereTheLastDigitsDecide) {
    std::mt19937_64 random(1);
    std::size_t justBelow = 0;
    for (int i = 0; i < 3000; ++i) {
        const Cascade cascade = exactPowerOfTen(random);
        const ResponseCurve plain = plainResponse(cascade);
        ASSERT_EQ(computeResponse(cascade), plain) << "cascade " << i;
        justBelow += plain.magnitudeDb[0] % 20 == 19 ? 1U : 0U;
    }
    // Rounding takes some of them below the whole dB: the test reaches the edge.
    EXPECT_GT(justBelow, 0U);
}

}  // namespace
}  // namespace tessavo::test
