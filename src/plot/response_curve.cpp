#include "plot/response_curve.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "dsp/saturate.h"
#include "plot/response_terms.h"

namespace tessavo {

namespace {

using PointArray = std::array<double, curvePointCount>;

// With u = sin^2(w/2), the squared magnitude of c0 + c1 z^-1 + c2 z^-2 on the unit circle is
//   (c0 + c1 + c2 - 2 (c0 + c2) u)^2 + (c0 - c2)^2 sin^2(w):
// no trigonometry is left per section, and the two terms cannot cancel each other.
struct GridTerms {
    PointArray halfAngleSquare{};  // sin^2(w/2)
    PointArray sineSquare{};       // sin^2(w)

    GridTerms() {
        for (std::size_t i = 0; i < curvePointCount; ++i) {
            const double w = curveAngle(i);
            const double half = std::sin(w / 2.0);
            const double full = std::sin(w);
            halfAngleSquare[i] = half * half;
            sineSquare[i] = full * full;
        }
    }
};

const GridTerms& gridTerms() {
    static const GridTerms terms;
    return terms;
}

// One quadratic of the cascade in that form. The words are integers, so the three sums are exact.
struct Quadratic {
    double sum;          // c0 + c1 + c2
    double twiceOuter;   // 2 (c0 + c2)
    double squareOuter;  // (c0 - c2)^2
    double bound;        // |c0| + |c1| + |c2|, never below the magnitude

    Quadratic(double c0, double c1, double c2)
        : sum(c0 + c1 + c2),
          twiceOuter(2.0 * (c0 + c2)),
          squareOuter((c0 - c2) * (c0 - c2)),
          bound(std::fabs(c0) + std::fabs(c1) + std::fabs(c2)) {}

    [[nodiscard]] double squareAt(double halfAngleSquare, double sineSquare) const {
        const double real = sum - twiceOuter * halfAngleSquare;
        return real * real + squareOuter * sineSquare;
    }
};

Quadratic numeratorOf(const BiquadWords& words) {
    return {words.b0 * numeratorUnit, words.b1 * numeratorUnit, words.b2 * numeratorUnit};
}

Quadratic denominatorOf(const BiquadWords& words) {
    return {1.0, words.a1 * denominatorUnit, words.a2 * denominatorUnit};
}

// Products of the squared magnitudes of all numerators and of all denominators, and of their bounds.
struct CascadeProducts {
    PointArray numerator;
    PointArray denominator;
    double numeratorBound = 1.0;
    double denominatorBound = 1.0;

    explicit CascadeProducts(std::span<const BiquadWords> cascade) {
        numerator.fill(1.0);
        denominator.fill(1.0);
        // Two sections at a time: the products travel to memory and back half as often.
        for (; cascade.size() >= 2; cascade = cascade.subspan(2)) {
            multiply(numerator, numeratorBound, numeratorOf(cascade[0]), numeratorOf(cascade[1]));
            multiply(denominator, denominatorBound, denominatorOf(cascade[0]), denominatorOf(cascade[1]));
        }
        if (!cascade.empty()) {
            const Quadratic unity(1.0, 0.0, 0.0);
            multiply(numerator, numeratorBound, numeratorOf(cascade[0]), unity);
            multiply(denominator, denominatorBound, denominatorOf(cascade[0]), unity);
        }
    }

 private:
    static void multiply(PointArray& products, double& bound, const Quadratic& first,
                         const Quadratic& second) {
        const GridTerms& grid = gridTerms();
        bound *= first.bound * second.bound;
        for (std::size_t i = 0; i < curvePointCount; ++i) {
            products[i] *= first.squareAt(grid.halfAngleSquare[i], grid.sineSquare[i]) *
                           second.squareAt(grid.halfAngleSquare[i], grid.sineSquare[i]);
        }
    }
};

// The products of longer cascades could leave the range of a double.
constexpr std::size_t longestProduct = 32;

constexpr double dbPerOctaveOfPower = 3.0102999566398119521;

// How far this evaluation and the plain one can be apart in dB. Rounding shifts each magnitude by less than
// 20 units of roundoff of its bound in either of them. Twice that for the sum of bound / magnitude over all
// quadratics, and a rest for the logarithms.
double uncertaintyDb(double sumOfQuotients) {
    constexpr double dbPerRoundoff = 4e-14;
    constexpr double logarithmRest = 1e-9;
    return logarithmRest + dbPerRoundoff * sumOfQuotients;
}

// The sum is at most the number of quadratics plus the quotients of the products, since no quotient is
// below 1.
double quickSumOfQuotients(const CascadeProducts& products, std::size_t point, std::size_t sections) {
    return 2.0 * static_cast<double>(sections) +
           products.numeratorBound / std::sqrt(products.numerator[point]) +
           products.denominatorBound / std::sqrt(products.denominator[point]);
}

double exactSumOfQuotients(std::span<const BiquadWords> cascade, std::size_t point) {
    const double u = gridTerms().halfAngleSquare[point];
    const double s = gridTerms().sineSquare[point];
    double sum = 0.0;
    for (const BiquadWords& words : cascade) {
        const Quadratic n = numeratorOf(words);
        const Quadratic d = denominatorOf(words);
        sum += n.bound / std::sqrt(n.squareAt(u, s)) + d.bound / std::sqrt(d.squareAt(u, s));
    }
    return sum;
}

bool sameWholeDb(double db, double uncertainty) {
    return truncateTo<std::int32_t>(std::fabs(db) - uncertainty) ==
           truncateTo<std::int32_t>(std::fabs(db) + uncertainty);
}

// Largest uncertainty of a point whose products are not far below their bounds, and what "not far" means.
constexpr double usualUncertaintyDb = 1e-3;
constexpr double usualSquareRatio = 1e-20;

// All quotients n / d that certainly truncate to the same whole dB. Neighbouring points mostly share one,
// which saves their logarithms.
struct WholeDbRange {
    double lowest = 1.0;
    double highest = 0.0;
    std::int32_t db = 0;

    [[nodiscard]] bool contains(double n, double d) const { return n > lowest * d && n < highest * d; }

    static WholeDbRange around(double db) {
        const double whole = std::trunc(db);
        const double floorDb = whole > 0.0 ? whole : whole - 1.0;
        const double ceilingDb = whole < 0.0 ? whole : whole + 1.0;
        return {std::exp2((floorDb + usualUncertaintyDb) / dbPerOctaveOfPower),
                std::exp2((ceilingDb - usualUncertaintyDb) / dbPerOctaveOfPower),
                truncateTo<std::int32_t>(whole)};
    }
};

// A product below this, or a quotient of one with it, may leave the range of a double.
constexpr double smallestProduct = 1e-100;

}  // namespace

ResponseCurve computeResponse(std::span<const BiquadWords> cascade) {
    if (cascade.size() > longestProduct) {
        return plainResponse(cascade);
    }
    const CascadeProducts products(cascade);
    const double usualNumerator =
        std::max(smallestProduct, products.numeratorBound * products.numeratorBound * usualSquareRatio);
    const double usualDenominator =
        std::max(smallestProduct, products.denominatorBound * products.denominatorBound * usualSquareRatio);
    ResponseCurve curve;
    WholeDbRange range;
    for (std::size_t i = 0; i < curvePointCount; ++i) {
        curve.frequencyHz[i] = static_cast<std::int32_t>(i + 1) * curveStepHz;
        const double n = products.numerator[i];
        const double d = products.denominator[i];
        if (n > usualNumerator && d > usualDenominator) {
            if (!range.contains(n, d)) {
                range = WholeDbRange::around(dbPerOctaveOfPower * std::log2(n / d));
            }
            if (range.contains(n, d)) {
                curve.magnitudeDb[i] = range.db;
                continue;
            }
        } else if (n > smallestProduct && d > smallestProduct) {
            const double db = dbPerOctaveOfPower * std::log2(n / d);
            if (sameWholeDb(db, uncertaintyDb(quickSumOfQuotients(products, i, cascade.size()))) ||
                sameWholeDb(db, uncertaintyDb(exactSumOfQuotients(cascade, i)))) {
                curve.magnitudeDb[i] = truncateTo<std::int32_t>(db);
                continue;
            }
        }
        // The last digits decide about a whole dB: only the plain evaluation can tell.
        curve.magnitudeDb[i] = truncateTo<std::int32_t>(plainMagnitudeDb(cascade, i));
    }
    return curve;
}

}  // namespace tessavo
