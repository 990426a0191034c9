#include "app/import_chart.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "controls/skin_painter.h"
#include "controls/theme.h"
#include "pages/form/form.h"
#include "plot/chart/chart_layout.h"

namespace tessavo {

namespace {

constexpr QMarginsF boxMargins(44, 26, 12, 24);
constexpr int headTop = 5;
constexpr int headHeight = 16;
constexpr int titleLeft = 12;
constexpr double sampleLength = 22;
constexpr double sampleGap = 6;
constexpr double keyGap = 16;
constexpr double numberWidth = 40;
constexpr int lineStepDb = 4;
constexpr int wideStepDb = 8;
constexpr int widestWithFineSteps = 40;
constexpr int leastRoomDb = 12;
constexpr int mostRoomDb = 40;
constexpr int deepestDb = -24;
constexpr double edgeDb = 2;
constexpr double fillAlpha = 0.16;
constexpr double fadedAlpha = 0.03;
constexpr double fadeDb = 12;
constexpr double beforeAlpha = 0.85;

int steps(double level) {
    return static_cast<int>(std::ceil(level / lineStepDb)) * lineStepDb;
}

double lowest(const FineCurve& curve) {
    return std::ranges::min(curve.levelDb);
}

double highest(const FineCurve& curve) {
    return std::ranges::max(curve.levelDb);
}

QColor withAlpha(QColor color, double alpha) {
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

QPen beforePen(const QColor& color) {
    QPen pen(withAlpha(color, beforeAlpha), 1, Qt::CustomDashLine, Qt::FlatCap, Qt::RoundJoin);
    pen.setDashPattern({2, 3});
    return pen;
}

QPen afterPen(const QColor& color) {
    return {color, 2, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin};
}

QString rangeText(const FineCurve& curve) {
    return QStringLiteral("%1 to %2 dB")
        .arg(textOf(fixedText(lowest(curve), 1)), textOf(fixedText(highest(curve), 1)));
}

// Fades with the distance from the line of 0 dB.
QBrush fillBrush(const SmallChart& chart, const QColor& color) {
    QLinearGradient gradient(0, chart.yOf(fadeDb * 2 / 3), 0, chart.yOf(-fadeDb));
    gradient.setColorAt(0, withAlpha(color, fillAlpha * 1.1));
    gradient.setColorAt(0.4, withAlpha(color, fillAlpha));
    gradient.setColorAt(1, withAlpha(color, fadedAlpha));
    return gradient;
}

}  // namespace

ImportChart::ImportChart(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("importChart"));
    setAccessibleName(QStringLiteral("Filters alone"));
}

void ImportChart::show(const FineCurve& before, const FineCurve& after, const QColor& color) {
    before_ = before;
    after_ = after;
    color_ = color;
    setAccessibleName(
        QStringLiteral("Filters alone: before %1, after %2").arg(rangeText(before), rangeText(after)));
    update();
}

SmallChart ImportChart::chart() const {
    const QRectF box = QRectF(rect()).marginsRemoved(boxMargins);
    if (!before_ || !after_) {
        return {box, -leastRoomDb, leastRoomDb};
    }
    const double top = std::max(highest(*before_), highest(*after_)) + edgeDb;
    const double bottom = std::min(lowest(*before_), lowest(*after_)) - edgeDb;
    return {box, std::min(-leastRoomDb, -steps(-std::max<double>(bottom, deepestDb))),
            std::max(leastRoomDb, steps(std::min<double>(top, mostRoomDb)))};
}

void ImportChart::paintEvent(QPaintEvent* /*event*/) {
    SkinPainter painter(this);
    painter.roundFrame(QRectF(rect()), 6, QColor::fromRgb(chart_colors::card), QColor::fromRgb(theme::line));
    const SmallChart place = chart();
    const int step = place.highestDb - place.lowestDb > widestWithFineSteps ? wideStepDb : lineStepDb;
    const int major = 2 * step;
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setFont(theme::font(11));
    paintGrid(painter, place, {step, major}, {1});
    painter.setPen(QColor::fromRgb(chart_colors::majorGrid));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(place.box.adjusted(0, 0, -1, -1));
    paintLevelNumber(painter, place, 0);
    paintLevelNumber(painter, place, (place.highestDb - 1) / major * major);
    paintLevelNumber(painter, place, (place.lowestDb + 1) / major * major);
    for (const int hertz : {100, 1000, 10000}) {
        painter.text(QRectF(place.xOf(hertz) - numberWidth / 2, place.box.bottom() + 3, numberWidth, 14),
                     Qt::AlignHCenter, theme::text2, frequencyNumber(hertz));
    }
    painter.setRenderHint(QPainter::Antialiasing);
    if (before_ && after_) {
        painter.save();
        painter.setClipRect(place.box);
        paintCurves(painter, place);
        painter.restore();
    }
    paintHead(painter);
}

void ImportChart::paintCurves(SkinPainter& painter, const SmallChart& place) const {
    QPolygonF area = place.polyline(*after_);
    const double zero = place.yOf(0);
    area << QPointF(place.box.right(), zero) << QPointF(place.box.left(), zero);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fillBrush(place, color_));
    painter.drawPolygon(area);
    painter.setBrush(Qt::NoBrush);
    paintCurve(painter, place, *before_, beforePen(color_));
    paintCurve(painter, place, *after_, afterPen(color_));
}

void ImportChart::paintHead(SkinPainter& painter) const {
    painter.setFont(theme::font(11, QFont::Medium));
    painter.text(QRectF(titleLeft, headTop, width(), headHeight), Qt::AlignLeft | Qt::AlignVCenter,
                 theme::text, QStringLiteral("Filters alone"));
    if (!before_ || !after_) {
        return;
    }
    painter.setFont(theme::font(11));
    const QFontMetrics metrics(painter.font());
    double right = width() - titleLeft;
    const auto key = [&](const QString& name, const QPen& pen) {
        const double words = metrics.horizontalAdvance(name);
        painter.text(QRectF(right - words, headTop, words + 1, headHeight), Qt::AlignLeft | Qt::AlignVCenter,
                     theme::text2, name);
        const double end = right - words - sampleGap;
        const double middle = headTop + headHeight / 2.0 + (pen.width() == 1 ? 0.5 : 0);
        painter.setPen(pen);
        painter.drawLine(QPointF(end - sampleLength, middle), QPointF(end, middle));
        right = end - sampleLength - keyGap;
    };
    key(QStringLiteral("after"), afterPen(color_));
    key(QStringLiteral("before"), beforePen(color_));
}

}  // namespace tessavo
