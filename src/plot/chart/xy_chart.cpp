#include "plot/chart/xy_chart.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "base/number_text.h"
#include "plot/chart/data_painting.h"

namespace tessavo {
namespace {

QString withUnit(double value, const CAxis& axis) {
    QString text = QString::fromStdString(shortNumber(value));
    if (axis.look().labels == LabelForm::withSign && value > 0) {
        text.prepend(QLatin1Char('+'));
    }
    return axis.unit().isEmpty() ? text : text + QLatin1Char(' ') + axis.unit();
}

/// Outer edges of the outermost bars: each reaches as far outwards as inwards, where it meets its neighbour
/// half-way.
std::optional<AxisRange> barExtent(const CChartData& data, const CAxis& xAxis, const CAxis& yAxis) {
    const bool logarithmic = xAxis.scale() == AxisScale::logarithmic;
    std::vector<double> positions;
    for (std::size_t n = 0; n < data.pointCount(); ++n) {
        const double x = data.xValues()[n];
        const double y = data.yValues()[n];
        if (!std::isnan(xAxis.fraction(x)) && !std::isnan(yAxis.fraction(y)) && data.limits.hold(y)) {
            positions.push_back(logarithmic ? std::log10(x) : x);
        }
    }
    std::ranges::sort(positions);
    if (positions.size() < 2) {
        return std::nullopt;
    }
    const double first = positions.front() - (positions[1] - positions.front()) / 2;
    const double last = positions.back() + (positions.back() - positions[positions.size() - 2]) / 2;
    return logarithmic ? AxisRange{std::pow(10.0, first), std::pow(10.0, last)} : AxisRange{first, last};
}

}  // namespace

CXYChart::CXYChart(QObject* parent) : CChart(parent) {}

void CXYChart::drawData(QPainter& painter, const ChartLayout& layout) const {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(layout.outer, Qt::IntersectClip);
    for (const CChartData& data : dataSets()) {
        if (!data.isXy()) {
            continue;
        }
        const QPolygonF points = placedPoints(data, axis(data.xAxis), axis(data.yAxis), layout);
        const double zero = std::clamp(axis(data.yAxis).fraction(0.0), 0.0, 1.0);
        // A logarithmic axis has no zero; its bars stand on its floor.
        const double floorY = layout.point(0, std::isnan(zero) ? 0.0 : zero).y();
        drawDataSet(painter, points, floorY, data.style, layout.box);
    }
    painter.restore();
}

std::optional<ChartReadout> CXYChart::readoutAt(const ChartLayout& layout, QPointF pointer) const {
    const auto data = std::ranges::find_if(dataSets(), &CChartData::isXy);
    if (data == dataSets().end() || !layout.box.contains(pointer)) {
        return std::nullopt;
    }
    const CAxis& xAxis = axis(data->xAxis);
    const CAxis& yAxis = axis(data->yAxis);
    const QPolygonF points = placedPoints(*data, xAxis, yAxis, layout);
    std::optional<std::size_t> nearest;
    double shortest = std::numeric_limits<double>::infinity();
    for (qsizetype n = 0; n < points.size(); ++n) {
        const double distance = std::abs(points[n].x() - pointer.x());
        if (isDrawable(points[n]) && distance < shortest) {
            shortest = distance;
            nearest = static_cast<std::size_t>(n);
        }
    }
    if (!nearest) {
        return std::nullopt;
    }
    return ChartReadout{points[static_cast<qsizetype>(*nearest)],
                        withUnit(data->xValues()[*nearest], xAxis) + QStringLiteral("   ") +
                            withUnit(data->yValues()[*nearest], yAxis)};
}

int CXYChart::saveToFile(const QString& path, const Notify& /*notify*/) const {
    QByteArray text;
    for (const CChartData& data : dataSets()) {
        for (std::size_t n = 0; n < data.pointCount(); ++n) {
            text.append(shortNumber(data.xValues()[n])).append(' ');
            text.append(shortNumber(data.yValues()[n])).append("\r\n");
        }
    }
    return writeText(path, text);
}

std::optional<AxisRange> CXYChart::dataExtent(const CAxis& axis) const {
    std::optional<AxisRange> extent;
    const auto include = [&extent](const std::optional<AxisRange>& more) {
        if (more) {
            extent = !extent ? *more
                             : AxisRange{std::min(extent->minimum, more->minimum),
                                         std::max(extent->maximum, more->maximum)};
        }
    };
    const bool aboveZeroOnly = axis.scale() == AxisScale::logarithmic;
    for (const CChartData& data : dataSets()) {
        if (!data.isXy() || (axis.side() != data.xAxis && axis.side() != data.yAxis)) {
            continue;
        }
        const bool bars = data.style.type == ChartType::histogram;
        if (!axis.isVertical()) {
            include(extentOf(data.xValues(), aboveZeroOnly));
            include(bars ? barExtent(data, axis, this->axis(data.yAxis)) : std::nullopt);
            continue;
        }
        const auto values = extentOf(data.yValues(), aboveZeroOnly, data.limits);
        include(values);
        // Bars stand on zero.
        include(bars && values && !aboveZeroOnly ? std::optional(AxisRange{0, 0}) : std::nullopt);
    }
    return extent;
}

void setUpResponseAxes(CXYChart& chart) {
    for (const AxisSide side : allAxisSides) {
        CAxis axis(side);
        AxisLook look = chart.axis(side).look();
        if (axis.isVertical()) {
            look.steps = TickSteps::decibel;
            look.labels = LabelForm::withSign;
            look.title = QStringLiteral("dB");
            axis.setUnit(QStringLiteral("dB"));
            axis.setRange({-18, 18});
        } else {
            look.labels = LabelForm::kilo;
            look.title = QStringLiteral("Hz");
            axis.setUnit(QStringLiteral("Hz"));
            axis.setRange({20, 20000});
            axis.setScale(AxisScale::logarithmic);
        }
        if (side == AxisSide::bottom) {
            look.majorTicks = 10;
        }
        // The other two axes show the ranges of these.
        axis.setAutomatic(side == AxisSide::right || side == AxisSide::top);
        axis.setLook(look);
        chart.setAxis(axis);
    }
}

}  // namespace tessavo
