#include <gtest/gtest.h>

#include "plot/cascade_families.h"
#include "plot/long_response.h"
#include "plot/response_curve.h"

namespace tessavo::testing {
namespace {

// Twelve families of 100 cascades of 1000 points: 1,200,000 points.
constexpr int cascadesOfAFamily = 100;

class ResponseProperty : public ::testing::TestWithParam<std::size_t> {
 protected:
    [[nodiscard]] static const CascadeFamily& family() { return cascadeFamilies()[GetParam()]; }
    std::mt19937_64 random_{20250 + GetParam()};
};

INSTANTIATE_TEST_SUITE_P(, ResponseProperty, ::testing::Range<std::size_t>(0, 12),
                         [](const auto& which) { return cascadeFamilies()[which.param].name; });

TEST_P(ResponseProperty, FastAndPlainAgreeInEveryWholeDecibel) {
    std::size_t points = 0;
    for (int i = 0; i < cascadesOfAFamily; ++i) {
        const Cascade cascade = family().draw(random_);
        const ResponseCurve fast = computeResponse(cascade);
        const ResponseCurve plain = plainResponse(cascade);
        ASSERT_EQ(fast.frequencyHz, plain.frequencyHz);
        for (std::size_t point = 0; point < curvePointCount; ++point) {
            ASSERT_EQ(fast.magnitudeDb[point], plain.magnitudeDb[point])
                << family().name << " cascade " << i << " at " << fast.frequencyHz[point] << " Hz";
            ++points;
        }
    }
    EXPECT_EQ(points, 100000U);
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

TEST(ResponsePropertySize, CoversAMillionPoints) {
    EXPECT_EQ(cascadeFamilies().size(), 12U);
    EXPECT_GE(cascadeFamilies().size() * cascadesOfAFamily * curvePointCount, 1000000U);
}

}  // namespace
}  // namespace tessavo::testing
