#include "plot/chart/data_painting.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/saturate.h"
#include "plot/chart/line_geometry.h"

namespace tessavo {
namespace {

/// Whether a point belongs into the box; what stands on its edge does.
bool standsIn(const QRectF& box, QPointF point) {
    constexpr double edge = 0.5;
    return box.adjusted(-edge, -edge, edge, edge).contains(point);
}

/// Stretches of points that a line connects.
std::vector<QPolygonF> unbrokenRuns(const QPolygonF& points) {
    std::vector<QPolygonF> runs;
    bool open = false;
    for (const QPointF& point : points) {
        if (!isDrawable(point)) {
            open = false;
            continue;
        }
        if (!open) {
            runs.emplace_back();
            open = true;
        }
        runs.back().append(point);
    }
    return runs;
}

// Points of one polygon. Painting a polygon costs with the square of its corners, so several small ones are
// much cheaper than a large one.
constexpr qsizetype pieceSize = 24;

/// Shades between a line and the floor. The line hides the edge, so that it need not be smooth; then
/// neighbouring parts meet without a seam.
void drawShade(QPainter& painter, const QPolygonF& line, double floorY, const DataStyle& style,
               const QRectF& box) {
    QColor color(style.color);
    color.setAlphaF(static_cast<float>(style.fillOpacity));
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.setRenderHint(QPainter::Antialiasing, false);
    for (qsizetype from = 0; from + 1 < line.size(); from += pieceSize) {
        const qsizetype to = std::min(from + pieceSize, line.size() - 1);
        QPolygonF piece = line.mid(from, to - from + 1);
        piece.append({line[to].x(), floorY});
        piece.append({line[from].x(), floorY});
        painter.drawPolygon(polygonInside(piece, box));
    }
    painter.setRenderHint(QPainter::Antialiasing);
}

/// Strokes a solid line in parts. Each begins with the last segment of the one before, which joins them.
void drawInParts(QPainter& painter, const QPolygonF& line) {
    for (qsizetype start = 0; start + 1 < line.size(); start += pieceSize) {
        const qsizetype from = std::max<qsizetype>(start - 1, 0);
        const qsizetype to = std::min(start + pieceSize, line.size() - 1);
        painter.drawPolyline(line.constData() + from, truncateTo<int>(static_cast<double>(to - from + 1)));
    }
}

void drawLine(QPainter& painter, const QPolygonF& run, double floorY, const DataStyle& style,
              const QRectF& box) {
    const double scale = std::max(1e-3, std::abs(painter.deviceTransform().m11()));
    // Few points are drawn as they are, so that dashes keep their lengths.
    const bool crowded = static_cast<double>(run.size()) > 2 * box.width() * scale;
    const QPolygonF line = thinned(run, crowded ? 1 / scale : 0);
    if (style.fillOpacity > 0 && line.size() > 1) {
        drawShade(painter, line, floorY, style, box);
    }
    const double reach = style.lineSize;
    painter.setPen(linePen(style));
    painter.setBrush(Qt::NoBrush);
    for (const QPolygonF& piece : piecesInside(line, box.adjusted(-reach, -reach, reach, reach))) {
        if (piece.size() == 1) {
            drawMarker(painter, piece.first(), MarkerShape::filled, style.lineSize * 2.0, style.color);
        } else if (style.lineStyle == LineStyle::solid) {
            drawInParts(painter, piece);
        } else {
            painter.drawPolyline(piece);
        }
    }
}

void drawBars(QPainter& painter, const QPolygonF& points, double floorY, const DataStyle& style,
              const QRectF& box) {
    constexpr double loneBar = 12;
    QPolygonF bars;
    std::ranges::copy_if(points, std::back_inserter(bars), isDrawable);
    std::ranges::stable_sort(bars, {}, [](const QPointF& point) { return point.x(); });
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(style.color));
    for (qsizetype n = 0; n < bars.size(); ++n) {
        const double x = bars[n].x();
        // Half the way to the neighbours; the outermost bars are as wide on both sides.
        const double before = n > 0 ? (x - bars[n - 1].x()) / 2 : std::numeric_limits<double>::infinity();
        const double after =
            n + 1 < bars.size() ? (bars[n + 1].x() - x) / 2 : std::numeric_limits<double>::infinity();
        const double lone = bars.size() == 1 ? loneBar / 2 : 0;
        const double left = std::max(0.5, std::isinf(before) ? (std::isinf(after) ? lone : after) : before);
        const double right = std::max(0.5, std::isinf(after) ? (std::isinf(before) ? lone : before) : after);
        const double gap = left + right > 4 ? 0.5 : 0.0;
        const QRectF bar = QRectF(QPointF(x - left + gap, std::min(bars[n].y(), floorY)),
                                  QPointF(x + right - gap, std::max(bars[n].y(), floorY))) &
                           box.adjusted(-1, -1, 1, 1);
        if (bar.isValid()) {
            painter.drawRect(bar);
        }
    }
}

void drawMarkers(QPainter& painter, const QPolygonF& points, const DataStyle& style, MarkerShape shape,
                 const QRectF& box) {
    const auto count = static_cast<std::size_t>(points.size());
    for (const std::size_t n : markedPoints(count, style.markerFrequency, style.markerCount)) {
        const QPointF& point = points[static_cast<qsizetype>(n)];
        if (isDrawable(point) && standsIn(box, point)) {
            drawMarker(painter, point, shape, style.markerSize, style.color);
        }
    }
}

}  // namespace

bool isDrawable(QPointF point) {
    return !std::isnan(point.x()) && !std::isnan(point.y());
}

QPolygonF placedPoints(const CChartData& data, const CAxis& xAxis, const CAxis& yAxis,
                       const ChartLayout& layout) {
    constexpr double nowhere = std::numeric_limits<double>::quiet_NaN();
    QPolygonF points;
    points.reserve(static_cast<qsizetype>(data.pointCount()));
    for (std::size_t n = 0; n < data.pointCount(); ++n) {
        const double x = xAxis.fraction(data.xValues()[n]);
        const double y = yAxis.fraction(data.yValues()[n]);
        const bool drawable = !std::isnan(x) && !std::isnan(y) && data.limits.hold(data.yValues()[n]);
        points.append(drawable ? layout.point(x, y) : QPointF(nowhere, nowhere));
    }
    return points;
}

QPen linePen(const DataStyle& style) {
    QPen pen{QColor(style.color)};
    pen.setWidthF(style.lineSize);
    pen.setCapStyle(Qt::FlatCap);
    pen.setJoinStyle(Qt::BevelJoin);
    switch (style.lineStyle) {
        case LineStyle::solid:
            break;
        case LineStyle::dashed:
            pen.setDashPattern({4, 3});
            break;
        case LineStyle::dotted:
            pen.setDashPattern({1, 2});
            break;
        case LineStyle::dashDot:
            pen.setDashPattern({4, 2, 1, 2});
            break;
        case LineStyle::dashDotDot:
            pen.setDashPattern({4, 2, 1, 2, 1, 2});
            break;
    }
    return pen;
}

void drawMarker(QPainter& painter, QPointF center, MarkerShape shape, double size, QRgb color) {
    const double half = size / 2;
    QPen pen{QColor(color)};
    pen.setWidthF(1.5);
    pen.setJoinStyle(Qt::MiterJoin);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    switch (shape) {
        case MarkerShape::none:
            break;
        case MarkerShape::circle:
            painter.drawEllipse(center, half, half);
            break;
        case MarkerShape::square:
            painter.drawRect(QRectF(center.x() - half, center.y() - half, size, size));
            break;
        case MarkerShape::triangle:
            painter.drawPolygon(QPolygonF{QPointF(center.x(), center.y() - half),
                                          QPointF(center.x() + half, center.y() + half),
                                          QPointF(center.x() - half, center.y() + half)});
            break;
        case MarkerShape::x:
            painter.drawLine(center - QPointF(half, half), center + QPointF(half, half));
            painter.drawLine(center - QPointF(half, -half), center + QPointF(half, -half));
            break;
        case MarkerShape::filled:
            painter.setPen(Qt::NoPen);
            painter.setBrush(QColor(color));
            painter.drawEllipse(center, half, half);
            break;
    }
}

std::vector<std::size_t> markedPoints(std::size_t pointCount, MarkerFrequency frequency, int count) {
    const auto wanted = static_cast<std::size_t>(std::max(count, 1));
    std::vector<std::size_t> marked;
    if (frequency == MarkerFrequency::count && wanted < pointCount) {
        for (std::size_t n = 0; n < wanted; ++n) {
            marked.push_back(wanted == 1 ? 0 : n * (pointCount - 1) / (wanted - 1));
        }
        return marked;
    }
    const std::size_t step = frequency == MarkerFrequency::everyNth ? wanted : 1;
    for (std::size_t n = 0; n < pointCount; n += step) {
        marked.push_back(n);
    }
    return marked;
}

void drawDataSet(QPainter& painter, const QPolygonF& points, double floorY, const DataStyle& style,
                 const QRectF& box) {
    painter.save();
    painter.setClipRect(box, Qt::IntersectClip);
    std::vector<QPointF> lone;
    switch (style.type) {
        case ChartType::xyLine:
            for (const QPolygonF& run : unbrokenRuns(points)) {
                if (run.size() == 1) {
                    lone.push_back(run.first());
                } else {
                    drawLine(painter, run, floorY, style, box);
                }
            }
            break;
        case ChartType::histogram:
            drawBars(painter, points, floorY, style, box);
            break;
        case ChartType::xyScatter:
            break;
    }
    painter.restore();
    // A marker on the edge is drawn whole, so that its shape can be recognised.
    for (const QPointF& point : lone) {
        if (standsIn(box, point)) {
            drawMarker(painter, point, MarkerShape::filled, style.lineSize * 2.0, style.color);
        }
    }
    MarkerShape shape = style.marker;
    // Scattered points without a marker would be invisible.
    if (style.type == ChartType::xyScatter && shape == MarkerShape::none) {
        shape = MarkerShape::filled;
    }
    if (shape != MarkerShape::none) {
        drawMarkers(painter, points, style, shape, box);
    }
}

}  // namespace tessavo
