#pragma once

namespace tessavo {

/// The sum of three numbers with a single rounding, or nearly so: where large ones take each other away, what is left
/// keeps its digits.
[[nodiscard]] constexpr double sumOfThree(double a, double b, double c) {
    const double first = a + b;
    const double addedB = first - a;
    const double second = first + c;
    const double addedC = second - first;
    const double lost =
        ((a - (first - addedB)) + (b - addedB)) + ((first - (second - addedC)) + (c - addedC));
    return second + lost;
}

/// A quadratic c0 + c1 z^-1 + c2 z^-2 on the unit circle z = e^iw, multiplied by z. That changes no magnitude, and in a
/// quotient of two of them nothing at all, but leaves one trigonometric function in each part:
///
///     (c0 + c2) cos w + c1  +  i (c0 - c2) sin w
///
/// The real part is c0 + c1 + c2 - 2 (c0 + c2) sin^2(w/2), which keeps its digits at low frequencies.
struct CenteredQuadratic {
    double sum;              ///< c0 + c1 + c2
    double twiceOuter;       ///< 2 (c0 + c2)
    double outerDifference;  ///< c0 - c2

    constexpr CenteredQuadratic(double c0, double c1, double c2)
        : sum(sumOfThree(c0, c1, c2)), twiceOuter(2.0 * (c0 + c2)), outerDifference(c0 - c2) {}

    /// The real part where sin^2(w/2) is the argument.
    [[nodiscard]] constexpr double realAt(double halfAngleSquare) const {
        return sum - twiceOuter * halfAngleSquare;
    }
};

}  // namespace tessavo
