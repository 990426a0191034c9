#include "app/small_chart.h"

#include <algorithm>
#include <cmath>

#include "controls/skin_painter.h"
#include "controls/theme.h"
#include "plot/chart/chart_layout.h"

namespace tessavo {

namespace {

constexpr double lowestHz = 20;
constexpr double highestHz = 20000;
constexpr int numberGap = 6;
constexpr int numberHeight = 16;

void paintLevelLines(SkinPainter& painter, const SmallChart& chart, LevelSteps steps) {
    const int first = chart.lowestDb - chart.lowestDb % steps.all;
    for (int level = first; level <= chart.highestDb; level += steps.all) {
        const double y = std::round(chart.yOf(level)) + 0.5;
        painter.setPen(QColor::fromRgb(level == 0                 ? chart_colors::zeroGrid
                                       : level % steps.major == 0 ? chart_colors::majorGrid
                                                                  : chart_colors::minorGrid));
        painter.drawLine(QPointF(chart.box.left(), y), QPointF(chart.box.right(), y));
    }
}

}  // namespace

double FineCurve::frequencyOf(std::size_t point) {
    const double part = static_cast<double>(point) / static_cast<double>(pointCount - 1);
    return lowestHz * std::pow(highestHz / lowestHz, part);
}

double SmallChart::xOf(double hertz) const {
    return box.left() + box.width() * std::log(hertz / lowestHz) / std::log(highestHz / lowestHz);
}

double SmallChart::yOf(double level) const {
    return box.top() + box.height() * (highestDb - level) / (highestDb - lowestDb);
}

double SmallChart::lineAt(double hertz) const {
    return std::round(xOf(hertz)) - 0.5;
}

QPolygonF SmallChart::polyline(const FineCurve& curve) const {
    QPolygonF points;
    points.reserve(static_cast<qsizetype>(FineCurve::pointCount));
    for (std::size_t i = 0; i < FineCurve::pointCount; ++i) {
        points << QPointF(xOf(FineCurve::frequencyOf(i)), yOf(curve.levelDb.at(i)));
    }
    return points;
}

void paintGrid(SkinPainter& painter, const SmallChart& chart, LevelSteps steps,
               std::initializer_list<int> majorDigits) {
    painter.fillRect(chart.box, QColor::fromRgb(chart_colors::box));
    paintLevelLines(painter, chart, steps);
    for (int decade = 10; decade < highestHz; decade *= 10) {
        for (int digit = 1; digit <= 9; ++digit) {
            const int hertz = digit * decade;
            if (hertz < lowestHz || hertz > highestHz) {
                continue;
            }
            const bool isMajor = std::ranges::find(majorDigits, digit) != majorDigits.end();
            painter.setPen(QColor::fromRgb(isMajor ? chart_colors::majorGrid : chart_colors::minorGrid));
            const double x = chart.lineAt(hertz);
            painter.drawLine(QPointF(x, chart.box.top()), QPointF(x, chart.box.bottom()));
        }
    }
}

void paintLevelNumber(SkinPainter& painter, const SmallChart& chart, int level) {
    const QString number = level > 0    ? QStringLiteral("+%1").arg(level)
                           : level == 0 ? QStringLiteral("0 dB")
                                        : QString::number(level);
    const double y = std::round(chart.yOf(level)) + 0.5;
    painter.text(QRectF(0, y - numberHeight / 2.0, chart.box.left() - numberGap, numberHeight),
                 Qt::AlignRight | Qt::AlignVCenter, theme::text2, number);
}

QString frequencyNumber(int hertz) {
    return hertz < 1000 ? QString::number(hertz) : QString::number(hertz / 1000) + QLatin1Char('k');
}

void paintCurve(SkinPainter& painter, const SmallChart& chart, const FineCurve& curve, const QPen& pen) {
    painter.setPen(pen);
    painter.drawPolyline(chart.polyline(curve));
}

}  // namespace tessavo
