#pragma once

#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <vector>

namespace tessavo {

/// Leaves out points that make no difference on the screen: those inside a level stretch, and of those that
/// fall into one column of pixels all but the first, the lowest, the highest and the last.
/// \param line points in the order in which they are drawn
/// \param columnWidth width of a column, usually one device pixel; 0 leaves out points of level stretches
///     only
[[nodiscard]] QPolygonF thinned(const QPolygonF& line, double columnWidth);

/// The pieces of a line that run inside a rectangle. They end exactly where the line crosses the edge.
[[nodiscard]] std::vector<QPolygonF> piecesInside(const QPolygonF& line, const QRectF& rect);

/// What a rectangle and a closed polygon have in common.
[[nodiscard]] QPolygonF polygonInside(const QPolygonF& polygon, const QRectF& rect);

}  // namespace tessavo
