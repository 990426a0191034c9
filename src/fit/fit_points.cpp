#include "fit/fit_points.h"

#include <cmath>
#include <numbers>

#include "dsp/filter_kind.h"

namespace tessavo {

FitPoints FitPoints::even(double fromHz, double toHz, std::size_t count) {
    FitPoints points;
    points.frequenciesHz.reserve(count);
    points.halfAngleSquare.reserve(count);
    const double octaves = std::log2(toHz / fromHz);
    for (std::size_t i = 0; i < count; ++i) {
        const double hz =
            fromHz * std::exp2(octaves * static_cast<double>(i) / static_cast<double>(count - 1));
        points.watch(hz);
    }
    return points;
}

void FitPoints::watch(double frequencyHz) {
    const double sine = std::sin(std::numbers::pi * frequencyHz / responseSamplingRateHz);
    frequenciesHz.push_back(frequencyHz);
    halfAngleSquare.push_back(sine * sine);
}

PowerRatio powerRatioOf(const Section& s) {
    const double zeroHz = s.b0 + s.b1 + s.b2;
    const double poleZeroHz = 1.0 + s.a1 + s.a2;
    return {.n0 = zeroHz * zeroHz,
            .n1 = -4.0 * (s.b1 * (s.b0 + s.b2) + 4.0 * s.b0 * s.b2),
            .n2 = 16.0 * s.b0 * s.b2,
            .d0 = poleZeroHz * poleZeroHz,
            .d1 = -4.0 * (s.a1 * (1.0 + s.a2) + 4.0 * s.a2),
            .d2 = 16.0 * s.a2};
}

}  // namespace tessavo
