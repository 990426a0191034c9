#pragma once

#include <QString>
#include <vector>

namespace tessavo {

/// What an axis shows; usable when maximum > minimum and both are finite.
struct AxisRange {
    double minimum = 0;
    double maximum = 1;

    friend bool operator==(const AxisRange&, const AxisRange&) = default;
};

/// Distances that count as round.
enum class TickSteps {
    decimal,  ///< 1, 2, 5 times a power of ten
    decibel,  ///< 1, 2, 3, 6, 12, 24; beyond these as decimal
};

/// How the grid line of a tick is drawn.
enum class GridRank { minor, major, zero };

struct Tick {
    double value = 0;
    bool labelled = false;
    GridRank grid = GridRank::minor;
};

/// Ticks in ascending order.
struct TickSet {
    std::vector<Tick> ticks;
    double resolution = 0;  ///< distance of the labelled ticks; 0 when they are not evenly spaced
};

/// Ticks of a linear axis: labelled ones at whole multiples of one round step, minor ones dividing it evenly.
/// \param maxMajor at most so many labelled ticks; 0 gives no ticks at all
/// \param maxMinor at most so many minor ticks between two labelled ones
[[nodiscard]] TickSet linearTicks(AxisRange range, int maxMajor, int maxMinor, TickSteps steps);

/// Ticks of a logarithmic axis at the same multiples in each decade, from all of 1 ... 9 to one of some
/// decades: those that give most labels up to maxMajor; a range too short for these gets linear ticks. Minor
/// ticks, unless maxMinor is 0, fill the multiples up to 9. \param range both limits above zero
[[nodiscard]] TickSet logarithmicTicks(AxisRange range, int maxMajor, int maxMinor);

/// Range grown to the next round numbers.
[[nodiscard]] AxisRange roundOutwards(AxisRange range, int maxMajor, TickSteps steps);
[[nodiscard]] AxisRange roundOutwardsLogarithmic(AxisRange range);

enum class LabelForm {
    plain,
    withSign,  ///< "+6", "0", "-6"
    kilo,      ///< "500", "1k", "2.5M"
};

/// \param resolution distance of neighbouring labels, so that they stay different; 0 when unknown
[[nodiscard]] QString tickLabel(double value, double resolution, LabelForm form);

}  // namespace tessavo
