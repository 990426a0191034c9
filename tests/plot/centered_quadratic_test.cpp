#include "plot/centered_quadratic.h"

#include <cmath>
#include <complex>
#include <gtest/gtest.h>

namespace tessavo::test {
namespace {

TEST(SumOfThree, KeepsTheDigitsThatPlainAdditionLoses) {
    // 1 + 2^-60 - 1, whichever of them comes first.
    const double tiny = std::ldexp(1.0, -60);
    EXPECT_EQ((1.0 + tiny) - 1.0, 0.0);
    EXPECT_EQ(sumOfThree(1.0, tiny, -1.0), tiny);
    EXPECT_EQ(sumOfThree(tiny, 1.0, -1.0), tiny);
    EXPECT_EQ(sumOfThree(1.0, -1.0, tiny), tiny);
    EXPECT_EQ(sumOfThree(0.0, 0.0, 0.0), 0.0);
    EXPECT_EQ(sumOfThree(1.5, 2.25, -3.0), 0.75);
}

TEST(CenteredQuadraticTerms, AreTheQuadraticTurnedByOneSample) {
    const CenteredQuadratic terms(1.25, -1.5, 0.5);
    for (const double w : {0.0, 0.1, 1.0, 2.0, 3.1}) {
        const std::complex<double> z = std::polar(1.0, w);
        const std::complex<double> expected = 1.25 * z - 1.5 + 0.5 / z;
        const double half = std::sin(w / 2);
        EXPECT_NEAR(terms.realAt(half * half), expected.real(), 1e-15) << w;
        EXPECT_NEAR(terms.outerDifference * std::sin(w), expected.imag(), 1e-15) << w;
    }
}

}  // namespace
}  // namespace tessavo::test
