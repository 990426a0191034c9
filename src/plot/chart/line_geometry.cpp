#include "plot/chart/line_geometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

namespace tessavo {
namespace {

QPolygonF withoutLevelPoints(const QPolygonF& line) {
    QPolygonF reduced;
    reduced.reserve(line.size());
    for (const QPointF& point : line) {
        const qsizetype count = reduced.size();
        // Points may be left out only while the line goes on in one direction; where it turns back, the turn
        // must stay.
        if (count >= 2 && reduced[count - 1].y() == point.y() && reduced[count - 2].y() == point.y() &&
            (reduced[count - 1].x() - reduced[count - 2].x()) * (point.x() - reduced[count - 1].x()) >= 0) {
            reduced[count - 1] = point;
        } else {
            reduced.append(point);
        }
    }
    return reduced;
}

struct Column {
    QPointF first, lowest, highest, last;
    bool lowestComesFirst = true;

    explicit Column(QPointF point) : first(point), lowest(point), highest(point), last(point) {}

    void take(QPointF point) {
        if (point.y() < lowest.y()) {
            lowest = point;
            lowestComesFirst = false;
        } else if (point.y() > highest.y()) {
            highest = point;
            lowestComesFirst = true;
        }
        last = point;
    }

    void appendTo(QPolygonF& line) const {
        const std::array points{first, lowestComesFirst ? lowest : highest,
                                lowestComesFirst ? highest : lowest, last};
        for (const QPointF& point : points) {
            if (line.isEmpty() || line.last() != point) {
                line.append(point);
            }
        }
    }
};

/// Liang and Barsky's clipping of one segment.
std::optional<std::pair<QPointF, QPointF>> segmentInside(QPointF from, QPointF to, const QRectF& rect) {
    const QPointF step = to - from;
    const std::array<double, 4> directions{-step.x(), step.x(), -step.y(), step.y()};
    const std::array<double, 4> distances{from.x() - rect.left(), rect.right() - from.x(),
                                          from.y() - rect.top(), rect.bottom() - from.y()};
    double enter = 0;
    double leave = 1;
    for (std::size_t edge = 0; edge < directions.size(); ++edge) {
        if (directions[edge] == 0) {
            if (distances[edge] < 0) {
                return std::nullopt;
            }
            continue;
        }
        const double crossing = distances[edge] / directions[edge];
        if (directions[edge] < 0) {
            enter = std::max(enter, crossing);
        } else {
            leave = std::min(leave, crossing);
        }
    }
    if (enter > leave) {
        return std::nullopt;
    }
    return std::pair{enter > 0 ? from + enter * step : from, leave < 1 ? from + leave * step : to};
}

/// Cuts a polygon off on one side of a straight edge; depth is negative outside.
template <typename Depth>
QPolygonF cutOff(const QPolygonF& polygon, Depth depth) {
    QPolygonF cut;
    cut.reserve(polygon.size() + 4);
    for (qsizetype n = 0; n < polygon.size(); ++n) {
        const QPointF& previous = polygon[n == 0 ? polygon.size() - 1 : n - 1];
        const QPointF& point = polygon[n];
        const double before = depth(previous);
        const double index = depth(point);
        if ((before < 0) != (index < 0)) {
            cut.append(previous + before / (before - index) * (point - previous));
        }
        if (index >= 0) {
            cut.append(point);
        }
    }
    return cut;
}

}  // namespace

QPolygonF thinned(const QPolygonF& line, double columnWidth) {
    QPolygonF reduced = withoutLevelPoints(line);
    if (columnWidth <= 0 || reduced.size() < 4) {
        return reduced;
    }
    QPolygonF thin;
    thin.reserve(reduced.size());
    Column column(reduced.first());
    double columnIndex = std::floor(reduced.first().x() / columnWidth);
    for (qsizetype n = 1; n < reduced.size(); ++n) {
        const double index = std::floor(reduced[n].x() / columnWidth);
        if (index == columnIndex) {
            column.take(reduced[n]);
        } else {
            column.appendTo(thin);
            column = Column(reduced[n]);
            columnIndex = index;
        }
    }
    column.appendTo(thin);
    return thin;
}

std::vector<QPolygonF> piecesInside(const QPolygonF& line, const QRectF& rect) {
    std::vector<QPolygonF> pieces;
    if (line.size() == 1 && rect.contains(line.first())) {
        pieces.push_back(line);
    }
    bool connected = false;
    for (qsizetype n = 1; n < line.size(); ++n) {
        const auto segment = segmentInside(line[n - 1], line[n], rect);
        if (!segment) {
            connected = false;
            continue;
        }
        if (!connected) {
            pieces.push_back({segment->first});
        }
        pieces.back().append(segment->second);
        connected = segment->second == line[n];
    }
    return pieces;
}

QPolygonF polygonInside(const QPolygonF& polygon, const QRectF& rect) {
    QPolygonF inside = cutOff(polygon, [&](const QPointF& p) { return p.x() - rect.left(); });
    inside = cutOff(inside, [&](const QPointF& p) { return rect.right() - p.x(); });
    inside = cutOff(inside, [&](const QPointF& p) { return p.y() - rect.top(); });
    return cutOff(inside, [&](const QPointF& p) { return rect.bottom() - p.y(); });
}

}  // namespace tessavo
