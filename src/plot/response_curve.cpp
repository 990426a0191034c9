#include "plot/response_curve.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/saturate.h"
#include "plot/centered_quadratic.h"
#include "plot/response_terms.h"

namespace tessavo {

namespace {

using PointArray = std::array<double, curvePointCount>;

// With the squares of two sines per point, no trigonometry is left per section, and the two terms of a squared
// magnitude cannot cancel each other.
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

// One quadratic of the cascade in that form. The words are integers, so its sums are exact.
struct Quadratic : CenteredQuadratic {
    double squareOuter;     // (c0 - c2)^2
    double perBoundSquare;  // 1 / (|c0| + |c1| + |c2|)^2, the bound being never below the magnitude

    Quadratic(double c0, double c1, double c2)
        : CenteredQuadratic(c0, c1, c2), squareOuter(outerDifference * outerDifference) {
        const double bound = std::fabs(c0) + std::fabs(c1) + std::fabs(c2);
        perBoundSquare = bound > 0.0 ? 1.0 / (bound * bound) : 0.0;
    }

    [[nodiscard]] double squareAt(double halfAngleSquare, double sineSquare) const {
        const double real = realAt(halfAngleSquare);
        return real * real + squareOuter * sineSquare;
    }
};

Quadratic numeratorOf(const BiquadWords& words) {
    return {words.b0 * numeratorUnit, words.b1 * numeratorUnit, words.b2 * numeratorUnit};
}

Quadratic denominatorOf(const BiquadWords& words) {
    return {1.0, words.a1 * denominatorUnit, words.a2 * denominatorUnit};
}

// Products of the squared magnitudes of all numerators and of all denominators, and how far the worst
// quadratic of them lies below its bound: the least square of magnitude / bound.
struct CascadeProducts {
    PointArray numerator;
    PointArray denominator;
    PointArray leastSquareRatio;

    explicit CascadeProducts(std::span<const BiquadWords> cascade) {
        numerator.fill(1.0);
        denominator.fill(1.0);
        leastSquareRatio.fill(1.0);
        // Two sections at a time: the products travel to memory and back half as often.
        for (; cascade.size() >= 2; cascade = cascade.subspan(2)) {
            multiply(numerator, numeratorOf(cascade[0]), numeratorOf(cascade[1]));
            multiply(denominator, denominatorOf(cascade[0]), denominatorOf(cascade[1]));
        }
        if (!cascade.empty()) {
            const Quadratic unity(1.0, 0.0, 0.0);
            multiply(numerator, numeratorOf(cascade[0]), unity);
            multiply(denominator, denominatorOf(cascade[0]), unity);
        }
    }

 private:
    void multiply(PointArray& products, const Quadratic& first, const Quadratic& second) {
        const GridTerms& grid = gridTerms();
        for (std::size_t i = 0; i < curvePointCount; ++i) {
            const double firstSquare = first.squareAt(grid.halfAngleSquare[i], grid.sineSquare[i]);
            const double secondSquare = second.squareAt(grid.halfAngleSquare[i], grid.sineSquare[i]);
            products[i] *= firstSquare * secondSquare;
            leastSquareRatio[i] =
                std::min(leastSquareRatio[i],
                         std::min(firstSquare * first.perBoundSquare, secondSquare * second.perBoundSquare));
        }
    }
};

// The products of longer cascades could leave the range of a double.
constexpr std::size_t longestProduct = 32;

constexpr double dbPerOctaveOfPower = 3.0102999566398119521;

// Rounding shifts each magnitude by less than 20 units of roundoff of its bound, in this evaluation as in the
// plain one: together they are apart by less than 4e-14 dB times the sum of bound / magnitude over all
// quadratics, and a rest below 1e-9 dB for the logarithms. With no square of magnitude / bound below the
// first of these, 64 quadratics stay below the second.
constexpr double usualSquareRatio = 1e-17;
constexpr double usualUncertaintyDb = 1e-3;

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
    ResponseCurve curve;
    WholeDbRange range;
    for (std::size_t i = 0; i < curvePointCount; ++i) {
        curve.frequencyHz[i] = static_cast<std::int32_t>(i + 1) * curveStepHz;
        const double n = products.numerator[i];
        const double d = products.denominator[i];
        if (products.leastSquareRatio[i] > usualSquareRatio && n > smallestProduct && d > smallestProduct) {
            if (!range.contains(n, d)) {
                range = WholeDbRange::around(dbPerOctaveOfPower * std::log2(n / d));
            }
            if (range.contains(n, d)) {
                curve.magnitudeDb[i] = range.db;
                continue;
            }
        }
        // The last digits decide about a whole dB: only the plain evaluation can tell.
        curve.magnitudeDb[i] = truncateTo<std::int32_t>(plainMagnitudeDb(cascade, i));
    }
    return curve;
}

}  // namespace tessavo
