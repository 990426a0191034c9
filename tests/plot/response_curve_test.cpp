#include "plot/response_curve.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

#include "dsp/coeff_bzt2.h"
#include "plot/long_response.h"
#include "plot/response_terms.h"

namespace tessavo::test {
namespace {

constexpr BiquadWords unity{1 << 28, 0, 0, 0, 0};
constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();

using Respond = ResponseCurve (*)(std::span<const BiquadWords>);

class Response : public ::testing::TestWithParam<Respond> {
 protected:
    static ResponseCurve respond(const std::vector<BiquadWords>& cascade) { return GetParam()(cascade); }
    static void expectEverywhere(const std::vector<BiquadWords>& cascade, std::int32_t decibels) {
        const ResponseCurve curve = respond(cascade);
        for (std::size_t point = 0; point < curvePointCount; ++point) {
            ASSERT_EQ(curve.magnitudeDb[point], decibels) << curve.frequencyHz[point] << " Hz";
        }
    }
};

INSTANTIATE_TEST_SUITE_P(, Response, ::testing::Values(&computeResponse, &plainResponse),
                         [](const auto& which) { return which.index == 0 ? "Fast" : "Plain"; });

TEST_P(Response, RunsFrom20To20000HzInStepsOf20) {
    const ResponseCurve curve = respond({unity});
    ASSERT_EQ(curve.frequencyHz.size(), 1000U);
    for (std::size_t point = 0; point < 1000; ++point) {
        ASSERT_EQ(curve.frequencyHz[point], static_cast<std::int32_t>(20 * (point + 1)));
    }
}

TEST_P(Response, OfUnitySectionsIsZeroEverywhere) {
    expectEverywhere(std::vector<BiquadWords>(10, unity), 0);
    expectEverywhere(std::vector<BiquadWords>(13, unity), 0);
    expectEverywhere({unity}, 0);
}

TEST_P(Response, OfNoSectionAtAllIsZeroEverywhere) {
    expectEverywhere({}, 0);
}

TEST_P(Response, OfHalfThePowerIsMinusThreeByTruncation) {
    // 2^28 sqrt(1/2): -3.0103 dB
    expectEverywhere({{189812531, 0, 0, 0, 0}}, -3);
    expectEverywhere({{-189812531, 0, 0, 0, 0}}, -3);
}

TEST_P(Response, OfTwiceThePowerIsThreeByTruncation) {
    // 2^28 sqrt(2): 3.0103 dB
    expectEverywhere({{379625062, 0, 0, 0, 0}}, 3);
}

TEST_P(Response, TruncatesTowardsZeroOnBothSides) {
    // 10^(+-0.99/20) and 10^(+-1.01/20) in units of 2^-28, by mpmath.
    expectEverywhere({{300842978, 0, 0, 0, 0}}, 0);
    expectEverywhere({{239518950, 0, 0, 0, 0}}, 0);
    expectEverywhere({{301536492, 0, 0, 0, 0}}, 1);
    expectEverywhere({{238968071, 0, 0, 0, 0}}, -1);
}

TEST_P(Response, SumsDecibelsBeforeItTruncates) {
    // Five times 0.99 dB are 4.95 dB; 3.0103 up and 2 x 3.0103 down are -3.0103 dB.
    expectEverywhere(std::vector<BiquadWords>(5, {300842978, 0, 0, 0, 0}), 4);
    expectEverywhere({{379625062, 0, 0, 0, 0}, {189812531, 0, 0, 0, 0}, {189812531, 0, 0, 0, 0}}, -3);
}

TEST_P(Response, DoesNotDependOnTheOrderOfTheSections) {
    coeffBZT2 generator;
    std::vector<BiquadWords> cascade(3);
    generator.computeBand(1000 << 16 | 2, 9.3F, 1.0F, 0, cascade[0]);
    generator.computeBand(5000 << 16 | 1, -4.7F, 0.7F, 0, cascade[1]);
    generator.computeCrossover(100 << 16, 0, cascade[2]);
    const ResponseCurve forward = respond(cascade);
    const ResponseCurve backward = respond({cascade[2], cascade[1], cascade[0]});
    for (std::size_t point = 0; point < curvePointCount; ++point) {
        if (longMagnitude(cascade, point + 1).isCertain()) {
            ASSERT_EQ(forward.magnitudeDb[point], backward.magnitudeDb[point]) << point;
        }
    }
}

TEST_P(Response, OfASectionOfZeroWordsIsTheLowestValueEverywhere) {
    expectEverywhere({{}}, lowest);
    expectEverywhere({unity, {}, unity}, lowest);
    expectEverywhere({{0, 0, 0, 1 << 30, 1 << 29}, unity}, lowest);
}

TEST_P(Response, UsesTheExponentsOfNumeratorAndDenominator) {
    // One pole at half: 1 / (1 - z^-1 / 2) is 6.02 dB at 0 Hz; as a numerator it is -6.02 dB.
    EXPECT_EQ(respond({{1 << 28, 0, 0, -(1 << 29), 0}}).magnitudeDb[0], 6);
    EXPECT_EQ(respond({{1 << 28, -(1 << 27), 0, 0, 0}}).magnitudeDb[0], -6);
    EXPECT_EQ(respond({{1 << 28, 0, 0, 0, -(1 << 29)}}).magnitudeDb[0], 6);
    EXPECT_EQ(respond({{1 << 28, 0, -(1 << 27), 0, 0}}).magnitudeDb[0], -6);
}

TEST_P(Response, EvaluatesAt49500Hz) {
    // A comb of z^-1 has its zero at half the rate, 24750 Hz: at 20000 Hz |1 + z^-1| is 2 cos(pi
    // 20000/49500).
    const double expected = 20 * std::log10(2 * std::cos(3.14159265358979323846 * 20000 / 49500));
    EXPECT_EQ(respond({{1 << 28, 1 << 28, 0, 0, 0}}).magnitudeDb[999],
              static_cast<std::int32_t>(std::trunc(expected)));
    // z^-2 = 1 at 24750 Hz, and the notch of 1 + z^-2 lies at 12375 Hz, between two points of the grid.
    const ResponseCurve notch = respond({{1 << 28, 0, 1 << 28, 0, 0}});
    std::size_t deepest = 0;
    for (std::size_t point = 0; point < curvePointCount; ++point) {
        if (notch.magnitudeDb[point] < notch.magnitudeDb[deepest]) {
            deepest = point;
        }
    }
    EXPECT_NEAR(notch.frequencyHz[deepest], 12375, 15);
}

TEST_P(Response, OfExtremeWordsIsThatOfTheFormula) {
    std::size_t certain = 0;
    for (const std::int32_t numerator : {lowest, highest}) {
        for (const std::int32_t denominator : {lowest, highest}) {
            const std::vector<BiquadWords> cascade(
                13, BiquadWords{numerator, numerator, numerator, denominator, denominator});
            const ResponseCurve curve = respond(cascade);
            for (std::size_t point = 0; point < curvePointCount; ++point) {
                const LongMagnitude expected = longMagnitude(cascade, point + 1);
                if (expected.isCertain()) {
                    ++certain;
                    ASSERT_EQ(curve.magnitudeDb[point],
                              static_cast<std::int32_t>(std::trunc(expected.decibels)))
                        << point;
                }
            }
        }
    }
    EXPECT_GT(certain, 3800U);
}

TEST_P(Response, OfAPeakReachesItsGainAtItsCentre) {
    coeffBZT2 generator;
    std::vector<BiquadWords> cascade(1);
    ASSERT_TRUE(generator.computeBand(1000 << 16 | 2, 9.5F, 2.0F, 0, cascade[0]));
    const ResponseCurve curve = respond(cascade);
    EXPECT_EQ(curve.magnitudeDb[49], 9);
    EXPECT_EQ(curve.magnitudeDb[0], 0);
    EXPECT_EQ(curve.magnitudeDb[999], 0);
}

TEST_P(Response, KeepsNoStateBetweenCalls) {
    const ResponseCurve first = respond({{300842978, 0, 0, 0, 0}});
    respond({{}, {lowest, highest, lowest, highest, lowest}});
    EXPECT_EQ(respond({{300842978, 0, 0, 0, 0}}), first);
}

TEST(ResponseTerms, TheAngleOfAPointIsItsFrequencyAt49500Hz) {
    EXPECT_NEAR(curveAngle(0), 2 * 3.14159265358979323846 * 20 / 49500, 1e-15);
    EXPECT_NEAR(curveAngle(999), 2 * 3.14159265358979323846 * 20000 / 49500, 1e-14);
}

TEST(ResponseTerms, TheMagnitudeOfAPointIsTheOneBeforeTruncation) {
    const std::vector<BiquadWords> cascade{{379625062, 0, 0, 0, 0}};
    EXPECT_NEAR(plainMagnitudeDb(cascade, 500), 3.0103, 1e-4);
}

TEST(ResponseTerms, TheMagnitudeBetweenTwoPointsIsThatOfTheAngle) {
    // A section with one zero, 1 + z^-1: |H| = 2 cos(w / 2).
    const std::vector<BiquadWords> cascade{{1 << 28, 1 << 28, 0, 0, 0}};
    for (const double angle : {0.001, 0.5, 1.234567, 2.5}) {
        EXPECT_NEAR(plainMagnitudeAt(cascade, angle), 20.0 * std::log10(2.0 * std::cos(angle / 2.0)), 1e-9);
    }
    EXPECT_EQ(plainMagnitudeAt(cascade, curveAngle(123)), plainMagnitudeDb(cascade, 123));
}

}  // namespace
}  // namespace tessavo::test
