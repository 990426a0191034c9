#pragma once

#include <QColor>
#include <cstddef>
#include <limits>
#include <optional>
#include <span>
#include <vector>

#include "controls/theme.h"
#include "plot/chart/axis.h"

namespace tessavo {

enum class ChartType { xyLine, xyScatter, histogram };
enum class LineStyle { solid, dashed, dotted, dashDot, dashDotDot };
enum class MarkerShape { none, circle, square, triangle, x, filled };
enum class MarkerFrequency {
    everyPoint,
    everyNth,  ///< every markerCount-th point, from the first
    count,     ///< markerCount points, evenly spread from the first to the last
};

/// How a data set is drawn.
struct DataStyle {
    QRgb color = theme::level;
    ChartType type = ChartType::xyLine;
    LineStyle lineStyle = LineStyle::solid;
    int lineSize = 2;  ///< pixels, 1 to 20
    MarkerShape marker = MarkerShape::none;
    int markerSize = 7;  ///< pixels, 3 to 40
    MarkerFrequency markerFrequency = MarkerFrequency::everyPoint;
    int markerCount = 10;    ///< 1 to 10000
    double fillOpacity = 0;  ///< 0 to 1; shades the space between a line and zero

    friend bool operator==(const DataStyle&, const DataStyle&) = default;
};

/// Values between which data mean something; the limits themselves stand for none, as the ends of a whole
/// number do where it could not hold the result.
struct ValueLimits {
    double lowest = -std::numeric_limits<double>::infinity();
    double highest = std::numeric_limits<double>::infinity();

    /// Never a value that is not finite.
    [[nodiscard]] bool hold(double value) const { return value > lowest && value < highest; }
};

/// One data set: a block of values with its dimensions, and how it is drawn.
///
/// Plane curves have two dimensions of which the first has size 2: n x values, then n y values. Values that
/// are not finite, or y values that the limits do not hold, are kept, saved and skipped when drawing and when
/// an axis follows the data.
class CChartData {
 public:
    /// \return nothing unless every dimension is at least 0 and their product is the number of values
    static std::optional<CChartData> make(std::span<const double> values, std::span<const int> dimensions);

    [[nodiscard]] std::span<const double> values() const { return values_; }
    [[nodiscard]] std::span<const int> dimensions() const { return dimensions_; }

    [[nodiscard]] bool isXy() const { return dimensions_.size() == 2 && dimensions_[0] == 2; }
    /// Points of a plane curve.
    [[nodiscard]] std::size_t pointCount() const { return isXy() ? values_.size() / 2 : 0; }
    [[nodiscard]] std::span<const double> xValues() const { return values().first(pointCount()); }
    [[nodiscard]] std::span<const double> yValues() const {
        return values().subspan(pointCount(), pointCount());
    }

    /// Takes the values of another data set and keeps identifier, style, limits and axes.
    void takeValues(CChartData&& other);

    int identifier = -1;
    DataStyle style;
    ValueLimits limits;                 ///< of the y values
    AxisSide xAxis = AxisSide::bottom;  ///< bottom or top
    AxisSide yAxis = AxisSide::left;    ///< left or right

 private:
    CChartData() = default;

    std::vector<double> values_;
    std::vector<int> dimensions_;
};

/// Style with every number brought into its limits.
[[nodiscard]] DataStyle clamped(DataStyle style);

/// Smallest and largest finite value within the limits, only those above zero when asked; nothing without
/// any.
[[nodiscard]] std::optional<AxisRange> extentOf(std::span<const double> values, bool aboveZeroOnly,
                                                const ValueLimits& limits = {});

}  // namespace tessavo
