#pragma once

#include <QColor>
#include <QPainter>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <array>
#include <span>
#include <vector>

#include "plot/chart/axis.h"

namespace tessavo {

/// Colours that only the chart has.
namespace chart_colors {
inline constexpr QRgb card = 0xFF151A20;
inline constexpr QRgb box = 0xFF101419;
inline constexpr QRgb minorGrid = 0xFF1C232B;
inline constexpr QRgb majorGrid = 0xFF303A45;
inline constexpr QRgb zeroGrid = 0xFF5B6977;
}  // namespace chart_colors

/// A tick and where it stands.
struct PlacedTick {
    Tick tick;
    double position = 0;  ///< x of a bottom or top axis, y of a left or right one, in the chart's coordinates
    QString label;        ///< empty for minor ticks
    QRectF labelBox;      ///< around the label
};

/// Where everything stands that does not move with the data. All coordinates are those of the painter.
struct ChartLayout {
    QRectF outer;  ///< the whole chart
    QRectF box;    ///< the space for data
    std::array<std::vector<PlacedTick>, allAxisSides.size()> ticks;

    [[nodiscard]] const std::vector<PlacedTick>& ticksOf(AxisSide side) const {
        return ticks[static_cast<std::size_t>(side)];
    }
    /// The point of the box at two fractions of its sides; y is counted from the bottom.
    [[nodiscard]] QPointF point(double xFraction, double yFraction) const {
        return {box.left() + xFraction * box.width(), box.bottom() - yFraction * box.height()};
    }
};

/// The space for data that axes, labels and titles leave inside a rectangle. It is never empty, however small
/// the rectangle.
[[nodiscard]] QRectF boxInside(const QRectF& outer, std::span<const CAxis> axes, const QString& title,
                               const QFont& titleFont);

/// Finds where ticks and labels stand around a box. Labels of one axis never touch: where the space is too
/// short, the axis has fewer.
[[nodiscard]] ChartLayout placeTicks(const QRectF& outer, const QRectF& box, std::span<const CAxis> axes);

/// Draws card, box, grids, ticks, labels and titles.
void drawFrame(QPainter& painter, const ChartLayout& layout, std::span<const CAxis> axes,
               const QString& title, const QFont& titleFont);

/// Draws the grid lines of one axis, those that its look asks for.
void drawGridLines(QPainter& painter, const ChartLayout& layout, const CAxis& axis);

/// Draws a straight line one logical pixel wide that covers whole device pixels at every scale.
void drawHairline(QPainter& painter, QPointF from, QPointF to, QRgb color);

}  // namespace tessavo
