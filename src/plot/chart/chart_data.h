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

/// How the points of a plane curve are drawn.
enum class ChartType { xyLine, xyScatter, histogram };
enum class LineStyle { solid, dashed, dotted, dashDot, dashDotDot };
enum class MarkerShape { none, circle, square, triangle, x, filled };
/// Which points of a data set carry a marker.
enum class MarkerFrequency {
    everyPoint,
    everyNth,  ///< the first point and every markerCount-th after it
    count,     ///< markerCount points, spread evenly from the first to the last
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
    double fillOpacity = 0;  ///< of the shade between a line and zero: 0 for none, to 1

    friend bool operator==(const DataStyle&, const DataStyle&) = default;
};

/// The limits between which a value means something. A limit itself means nothing: where a computation
/// saturates, its limits stand for results that are not known.
struct ValueLimits {
    double lowest = -std::numeric_limits<double>::infinity();
    double highest = std::numeric_limits<double>::infinity();

    /// Whether a value lies between the limits; false for one that is not finite.
    [[nodiscard]] bool hold(double value) const { return value > lowest && value < highest; }
};

/// One data set: a block of values with its dimensions, and how it is drawn.
///
/// A plane curve has two dimensions, of which the first has size 2: n values of x, then n values of y. Values
/// that are not finite, and values of y outside the limits, stay in the data set and are saved, but they are
/// not drawn and no axis follows them.
class CChartData {
 public:
    /// \return nothing unless every dimension is at least 0 and their product is the number of values
    static std::optional<CChartData> make(std::span<const double> values, std::span<const int> dimensions);

    [[nodiscard]] std::span<const double> values() const { return values_; }
    [[nodiscard]] std::span<const int> dimensions() const { return dimensions_; }

    [[nodiscard]] bool isXy() const { return dimensions_.size() == 2 && dimensions_[0] == 2; }
    /// Number of points of a plane curve; 0 for other data.
    [[nodiscard]] std::size_t pointCount() const { return isXy() ? values_.size() / 2 : 0; }
    [[nodiscard]] std::span<const double> xValues() const { return values().first(pointCount()); }
    [[nodiscard]] std::span<const double> yValues() const {
        return values().subspan(pointCount(), pointCount());
    }

    /// Replaces the values by those of another data set. Identifier, style, limits and axes stay.
    void moveValuesFrom(CChartData&& other);

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

/// The style with every number clamped into its limits.
[[nodiscard]] DataStyle clamped(DataStyle style);

/// The smallest and the largest of the values that are finite and within the limits; nothing when there is
/// none.
/// \param values to look at
/// \param aboveZeroOnly passes over values that a logarithmic axis cannot show
/// \param limits of the values
[[nodiscard]] std::optional<AxisRange> extentOf(std::span<const double> values, bool aboveZeroOnly,
                                                const ValueLimits& limits = {});

}  // namespace tessavo
