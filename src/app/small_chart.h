#pragma once

#include <QPen>
#include <QPolygonF>
#include <QRectF>
#include <QString>
#include <array>
#include <cstddef>
#include <initializer_list>

namespace tessavo {

class SkinPainter;

/// Response of a channel, or of the input, as the plot computes it, but not truncated to whole dB: steps would hide
/// what two sets differ in.
struct FineCurve {
    static constexpr std::size_t pointCount = 601;
    std::array<double, pointCount> levelDb{};  ///< finite

    /// Frequency of a point in Hz: 20 to 20000, evenly on a logarithmic axis.
    [[nodiscard]] static double frequencyOf(std::size_t point);

    friend bool operator==(const FineCurve&, const FineCurve&) = default;
};

/// A chart that is too small for the plot's own: where levels and frequencies stand in it, and its parts. The colours are
/// those of the plot.
struct SmallChart {
    QRectF box;
    int lowestDb;
    int highestDb;

    [[nodiscard]] double xOf(double hertz) const;
    [[nodiscard]] double yOf(double level) const;
    /// The middle of the line of pixels at a frequency.
    [[nodiscard]] double lineAt(double hertz) const;
    [[nodiscard]] QPolygonF polyline(const FineCurve& curve) const;
};

/// Distances of the lines of a grid, in dB.
struct LevelSteps {
    int all;
    int major;
};

/// Fills the box and draws its lines.
/// \param majorDigits first digits of the frequencies whose lines are major
void paintGrid(SkinPainter& painter, const SmallChart& chart, LevelSteps steps,
               std::initializer_list<int> majorDigits);
/// Draws the number of a level at the left of the box, in the painter's font: "+12", "0 dB".
void paintLevelNumber(SkinPainter& painter, const SmallChart& chart, int level);
/// "500", "2k".
[[nodiscard]] QString frequencyNumber(int hertz);
void paintCurve(SkinPainter& painter, const SmallChart& chart, const FineCurve& curve, const QPen& pen);

}  // namespace tessavo
