#pragma once

#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <vector>

namespace tessavo {

/// Leaves out points that no stroke can show: those within level stretches, and those between the first, the
/// lowest, the highest and the last of one column.
/// \param line points in the order of the stroke
/// \param columnWidth width of a column, usually one device pixel; 0 keeps all columns
[[nodiscard]] QPolygonF thinned(const QPolygonF& line, double columnWidth);

/// Pieces of a line that run inside a rectangle, the places where it crosses the edge included.
[[nodiscard]] std::vector<QPolygonF> piecesInside(const QPolygonF& line, const QRectF& rect);

/// Part of a closed polygon inside a rectangle.
[[nodiscard]] QPolygonF polygonInside(const QPolygonF& polygon, const QRectF& rect);

}  // namespace tessavo
