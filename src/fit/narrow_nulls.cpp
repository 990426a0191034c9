#include "fit/narrow_nulls.h"

#include <algorithm>
#include <cmath>

#include "measure/smoothing.h"

namespace tessavo {

namespace {

constexpr Smoothing noiseSmoothing{24};

/// The highest, or the lowest, of the values at most so many places away.
template <typename Better>
std::vector<double> extremes(const std::vector<double>& values, std::size_t reach, Better better) {
    std::vector<double> result(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::size_t first = i < reach ? 0 : i - reach;
        const std::size_t last = std::min(values.size() - 1, i + reach);
        double best = values[first];
        for (std::size_t k = first + 1; k <= last; ++k) {
            best = better(values[k], best) ? values[k] : best;
        }
        result[i] = best;
    }
    return result;
}

}  // namespace

std::vector<NarrowNull> narrowNulls(const LevelCurve& measurement) {
    const LevelCurve curve = smoothed(measurement, noiseSmoothing);
    const auto reach = static_cast<std::size_t>(std::lround(widestNullOctaves * pointsPerOctave / 2.0));
    // A morphological closing: what is narrower than its window is filled up to the lower shoulder.
    const std::vector<double> closed =
        extremes(extremes(curve.levelsDb, reach, std::greater<>()), reach, std::less<>());
    std::vector<NarrowNull> nulls;
    for (std::size_t i = 0; i < closed.size();) {
        std::size_t end = i;
        double depth = 0;
        while (end < closed.size() && closed[end] > curve.levelsDb[end]) {
            depth = std::max(depth, closed[end] - curve.levelsDb[end]);
            ++end;
        }
        if (depth > shallowestNullDb) {
            const std::size_t before = i == 0 ? 0 : i - 1;
            const std::size_t behind = std::min(end, closed.size() - 1);
            nulls.push_back({curve.frequenciesHz[before], curve.frequenciesHz[behind], depth});
        }
        i = end + 1;
    }
    return nulls;
}

LevelCurve bridged(const LevelCurve& measurement, const std::vector<NarrowNull>& nulls) {
    if (nulls.empty()) {
        return measurement;
    }
    const LevelCurve shoulders = smoothed(measurement, noiseSmoothing);
    LevelCurve result;
    std::size_t next = 0;
    const auto add = [&](double hz, double db) {
        if (result.frequenciesHz.empty() || hz > result.frequenciesHz.back()) {
            result.frequenciesHz.push_back(hz);
            result.levelsDb.push_back(db);
        }
    };
    for (std::size_t i = 0; i < measurement.frequenciesHz.size(); ++i) {
        const double hz = measurement.frequenciesHz[i];
        while (next < nulls.size() && hz >= nulls[next].fromHz) {
            add(nulls[next].fromHz, levelAt(shoulders, nulls[next].fromHz));
            add(nulls[next].toHz, levelAt(shoulders, nulls[next].toHz));
            ++next;
        }
        if (next == 0 || hz > nulls[next - 1].toHz) {
            add(hz, measurement.levelsDb[i]);
        }
    }
    return result;
}

}  // namespace tessavo
