#pragma once

#include <span>

namespace tessavo {

// What columns of numbers are, told from the numbers alone.

/// A row of a measurement; rows of one frequency may follow each other.
struct MeasuredPoint {
    double frequencyHz = 0;
    double levelDb = 0;
    double third = 0;  ///< what stands in the third column or in that of the phase; NaN for nothing
};

/// Whether a third column without a heading is a phase: it turns by more than 30 degrees somewhere, and it is neither a
/// second level nor the frequency again.
/// \param points by rising frequency
[[nodiscard]] bool isPhaseColumn(std::span<const MeasuredPoint> points);

/// Whether level and third column are ohms and their phase: a few ohms everywhere, and a phase within a quarter of a turn
/// that is of both signs.
[[nodiscard]] bool areOhms(std::span<const MeasuredPoint> points);

/// Whether they are samples over time: even steps, values that a converter has, and either a time of a few seconds or a
/// short peak in a signal that swings about zero.
/// \param points by rising frequency
[[nodiscard]] bool areSamples(std::span<const MeasuredPoint> points);

/// Whether all levels are within two bounds.
[[nodiscard]] bool areLevelsWithin(std::span<const MeasuredPoint> points, double least, double most);

}  // namespace tessavo
