#pragma once

#include <QPainter>
#include <QPolygonF>
#include <QRectF>

#include "plot/chart/chart_data.h"
#include "plot/chart/chart_layout.h"

namespace tessavo {

/// The points of an x/y data set in the chart's coordinates. Both coordinates are NaN for a point that cannot
/// be drawn.
[[nodiscard]] QPolygonF placedPoints(const CChartData& data, const CAxis& xAxis, const CAxis& yAxis,
                                     const ChartLayout& layout);

/// Whether placedPoints() found a position for a point.
[[nodiscard]] bool isDrawable(QPointF point);

/// Draws one x/y data set in its style. Lines and bars end at the edges of the box. Markers of points inside
/// the box are drawn whole, even where they reach beyond its edges.
/// \param painter draws in the chart's coordinates
/// \param points from placedPoints()
/// \param floorY y from which bars and shading start
/// \param style of the data set
/// \param box the space for data
void drawDataSet(QPainter& painter, const QPolygonF& points, double floorY, const DataStyle& style,
                 const QRectF& box);

/// The pen for the lines of a style.
[[nodiscard]] QPen linePen(const DataStyle& style);

/// Draws one marker around a point.
void drawMarker(QPainter& painter, QPointF center, MarkerShape shape, double size, QRgb color);

/// Indices of the points that carry a marker, ascending.
/// \param pointCount points of the data set
/// \param frequency which of them
/// \param count see MarkerFrequency
[[nodiscard]] std::vector<std::size_t> markedPoints(std::size_t pointCount, MarkerFrequency frequency,
                                                    int count);

}  // namespace tessavo
