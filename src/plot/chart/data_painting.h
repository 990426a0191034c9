#pragma once

#include <QPainter>
#include <QPolygonF>
#include <QRectF>

#include "plot/chart/chart_data.h"
#include "plot/chart/chart_layout.h"

namespace tessavo {

/// Points of an x/y data set in the chart's coordinates; both coordinates are NaN where a point has no place.
[[nodiscard]] QPolygonF placedPoints(const CChartData& data, const CAxis& xAxis, const CAxis& yAxis,
                                     const ChartLayout& layout);

/// Draws one x/y data set in its style: lines and bars within the box, and whole the marks of the points that
/// stand in it.
/// \param floorY where bars and shading start
void drawDataSet(QPainter& painter, const QPolygonF& points, double floorY, const DataStyle& style,
                 const QRectF& box);

/// Pen with the dashes of a line style.
[[nodiscard]] QPen linePen(const DataStyle& style);

/// One marker around a point.
void drawMarker(QPainter& painter, QPointF center, MarkerShape shape, double size, QRgb color);

/// Numbers of the points that carry a marker, ascending.
[[nodiscard]] std::vector<std::size_t> markedPoints(std::size_t pointCount, MarkerFrequency frequency,
                                                    int count);

}  // namespace tessavo
