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

struct PlacedTick {
    Tick tick;
    double position = 0;  ///< x or y in the chart's coordinates
    QString label;        ///< empty for minor ticks
    QRectF labelBox;
};

/// Where everything that does not move with the data stands.
struct ChartLayout {
    QRectF outer;
    QRectF box;  ///< the space for data
    std::array<std::vector<PlacedTick>, allAxisSides.size()> ticks;

    [[nodiscard]] const std::vector<PlacedTick>& ticksOf(AxisSide side) const {
        return ticks[static_cast<std::size_t>(side)];
    }
    /// Point of the box for two fractions; y counts upwards.
    [[nodiscard]] QPointF point(double xFraction, double yFraction) const {
        return {box.left() + xFraction * box.width(), box.bottom() - yFraction * box.height()};
    }
};

/// Space for data inside outer when axes, labels and titles have theirs; never empty.
[[nodiscard]] QRectF boxInside(const QRectF& outer, std::span<const CAxis> axes, const QString& title,
                               const QFont& titleFont);

/// Places ticks and labels around a box. Labels of one axis never touch: where space is short there are
/// fewer.
[[nodiscard]] ChartLayout placeTicks(const QRectF& outer, const QRectF& box, std::span<const CAxis> axes);

/// Draws card, box, grids, ticks, labels and titles.
void drawFrame(QPainter& painter, const ChartLayout& layout, std::span<const CAxis> axes,
               const QString& title, const QFont& titleFont);

/// Draws the grid lines of one axis, as its looks ask for them.
void drawGridLines(QPainter& painter, const ChartLayout& layout, const CAxis& axis);

/// Straight line one device-independent pixel wide, on whole device pixels at every scale.
void drawHairline(QPainter& painter, QPointF from, QPointF to, QRgb color);

}  // namespace tessavo
