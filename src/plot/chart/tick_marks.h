#pragma once

#include <QString>
#include <vector>

namespace tessavo {

/// The range of values that an axis shows. It can be used when both limits are finite and the maximum is
/// greater than the minimum.
struct AxisRange {
    double minimum = 0;
    double maximum = 1;

    friend bool operator==(const AxisRange&, const AxisRange&) = default;
};

/// Which distances between ticks count as round.
enum class TickSteps {
    decimal,  ///< 1, 2, 5 times a power of ten
    decibel,  ///< 1, 2, 3, 6, 12, 24; smaller and larger ones as decimal
};

/// How the grid line of a tick is drawn.
enum class GridRank { minor, major, zero };

/// One tick of an axis.
struct Tick {
    double value = 0;
    bool labelled = false;  ///< a major tick
    GridRank grid = GridRank::minor;
};

/// The ticks of an axis.
struct TickSet {
    std::vector<Tick> ticks;  ///< in ascending order
    double resolution = 0;    ///< distance of the labelled ticks; 0 when they are not evenly spaced
};

/// Ticks of a linear axis. The labelled ones stand at whole multiples of one round step, the minor ones
/// divide the step evenly.
/// \param range of the axis
/// \param maxMajor at most so many labelled ticks; 0 gives no ticks at all
/// \param maxMinor at most so many minor ticks between two labelled ones
/// \param steps which steps are round
[[nodiscard]] TickSet linearTicks(AxisRange range, int maxMajor, int maxMinor, TickSteps steps);

/// Ticks of a logarithmic axis. Labels stand at the same multiples in each decade: of the choices between all
/// multiples from 1 to 9 and one label in several decades, the one with most labels up to `maxMajor` is
/// taken. A range too short for this gets linear ticks. Minor ticks stand at the other multiples up to 9.
/// \param range of the axis; both limits are above zero
/// \param maxMajor at most so many labels
/// \param maxMinor 0 for no minor ticks
[[nodiscard]] TickSet logarithmicTicks(AxisRange range, int maxMajor, int maxMinor);

/// The range extended to the next round numbers, for a linear axis.
[[nodiscard]] AxisRange roundOutwards(AxisRange range, int maxMajor, TickSteps steps);
/// The same for a logarithmic axis.
[[nodiscard]] AxisRange roundOutwardsLogarithmic(AxisRange range);

/// How the number of a label is written.
enum class LabelForm {
    plain,     ///< "500", "-6"
    withSign,  ///< "+6", "0", "-6"
    kilo,      ///< "500", "1k", "2.5M"
};

/// The label of a tick.
/// \param value of the tick
/// \param resolution distance to the next label, from which follows how many digits tell them apart; 0 when
///     unknown
/// \param form how the number is written
[[nodiscard]] QString tickLabel(double value, double resolution, LabelForm form);

}  // namespace tessavo
