#include "app/compare_curves.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

#include "base/message_box.h"
#include "controls/skin_painter.h"
#include "controls/theme.h"
#include "dsp/filter_kind.h"
#include "params/tuning_state.h"
#include "plot/response_terms.h"

namespace tessavo {

namespace {

constexpr double lowestHz = 20;
constexpr double highestHz = 20000;
constexpr int levelRoomDb = 18;
constexpr double axisLeft = 40;
constexpr double axisBottom = 18;
constexpr double titleHeight = 20;
constexpr double titleGap = 6;
constexpr double labelHeight = 14;
constexpr double lineLength = 22;
// The colours of the plot.
constexpr QRgb ground = 0xFF101419;
constexpr QRgb minorGrid = 0xFF1C232B;
constexpr QRgb majorGrid = 0xFF303A45;
constexpr QRgb zeroLine = 0xFF5B6977;
constexpr QRgb leftColor = theme::level;
constexpr QRgb rightColor = theme::mixed;

/// Lets a generator's warning pass: the same warning comes where the set is tuned.
class QuietBoxes : public IMessageBox {
 public:
    BoxAnswer show(std::string_view /*text*/, BoxIcon /*icon*/, BoxButtons /*buttons*/) override {
        return BoxAnswer::ok;
    }
};

std::vector<BiquadWords> outputCascade(const TuningState& tuning, RecordChannel channel) {
    std::vector<BiquadWords> cascade;
    cascade.reserve(bandCount + crossoverCount);
    for (std::size_t band = 0; band < bandCount; ++band) {
        cascade.push_back(tuning.bandWords(channel, band));
    }
    for (std::size_t crossover = 0; crossover < crossoverCount; ++crossover) {
        cascade.push_back(tuning.crossoverWords(channel, crossover));
    }
    return cascade;
}

std::vector<BiquadWords> inputCascade(const TuningState& tuning) {
    std::vector<BiquadWords> cascade;
    cascade.reserve(inputSectionCount);
    for (std::size_t band = 0; band < inputSectionCount; ++band) {
        cascade.push_back(tuning.inputWords(band));
    }
    return cascade;
}

FineCurve fineCurve(const std::vector<BiquadWords>& cascade) {
    // Far outside the chart the toolkit counts with numbers that are too large for it.
    constexpr double far = 10.0 * levelRoomDb;
    FineCurve curve;
    for (std::size_t i = 0; i < FineCurve::pointCount; ++i) {
        const double angle = 2.0 * std::numbers::pi * FineCurve::frequencyOf(i) / responseSamplingRateHz;
        const double level = plainMagnitudeAt(cascade, angle);
        curve.levelDb[i] = std::isnan(level) ? 0.0 : std::clamp(level, -far, far);
    }
    return curve;
}

double xOf(const QRectF& box, double hertz) {
    return box.left() + box.width() * std::log(hertz / lowestHz) / std::log(highestHz / lowestHz);
}

double yOf(const QRectF& box, double level) {
    return box.center().y() - level / levelRoomDb * box.height() / 2;
}

QPen penOf(QRgb color, Qt::PenStyle style) {
    return {QColor::fromRgb(color), 2, style, Qt::FlatCap, Qt::RoundJoin};
}

void paintCurve(QPainter& painter, const QRectF& box, const FineCurve& curve, const QPen& pen) {
    QPolygonF points;
    points.reserve(static_cast<qsizetype>(FineCurve::pointCount));
    for (std::size_t i = 0; i < FineCurve::pointCount; ++i) {
        points << QPointF(xOf(box, FineCurve::frequencyOf(i)), yOf(box, curve.levelDb[i]));
    }
    painter.setPen(pen);
    painter.drawPolyline(points);
}

void paintLevels(SkinPainter& painter, const QRectF& box) {
    // Where it is low only some numbers have room.
    const int labelStep = box.height() / 6 >= labelHeight ? 6 : box.height() / 3 >= labelHeight ? 12 : 18;
    for (int level = -levelRoomDb; level <= levelRoomDb; level += 3) {
        const double y = std::round(yOf(box, level)) + 0.5;
        painter.setPen(QColor::fromRgb(level == 0 ? zeroLine : level % 6 == 0 ? majorGrid : minorGrid));
        painter.drawLine(QPointF(box.left(), y), QPointF(box.right(), y));
        if (level % labelStep == 0) {
            const QString number = level > 0    ? QStringLiteral("+%1").arg(level)
                                   : level == 0 ? QStringLiteral("0 dB")
                                                : QString::number(level);
            painter.text(QRectF(0, y - 8, box.left() - 6, 16), Qt::AlignRight | Qt::AlignVCenter,
                         theme::text2, number);
        }
    }
}

void paintFrequencies(SkinPainter& painter, const QRectF& box) {
    for (int decade = 10; decade < highestHz; decade *= 10) {
        for (int digit = 1; digit <= 9; ++digit) {
            const int hertz = digit * decade;
            if (hertz < lowestHz || hertz > highestHz) {
                continue;
            }
            const bool isMajor = digit == 1 || digit == 2 || digit == 5;
            const double x = std::round(xOf(box, hertz)) - 0.5;
            painter.setPen(QColor::fromRgb(isMajor ? majorGrid : minorGrid));
            painter.drawLine(QPointF(x, box.top()), QPointF(x, box.bottom()));
            if (!isMajor) {
                continue;
            }
            const QString number =
                hertz < 1000 ? QString::number(hertz) : QString::number(hertz / 1000) + QLatin1Char('k');
            const QRectF place(x - 40, box.bottom() + 3, 80, labelHeight);
            // The outermost stay within the chart.
            if (hertz == static_cast<int>(lowestHz)) {
                painter.text(place.translated(40, 0), Qt::AlignLeft, theme::text2, number);
            } else if (hertz == static_cast<int>(highestHz)) {
                painter.text(place.translated(-40, 0), Qt::AlignRight, theme::text2,
                             number + QStringLiteral(" Hz"));
            } else {
                painter.text(place, Qt::AlignHCenter, theme::text2, number);
            }
        }
    }
}

void paintGrid(SkinPainter& painter, const QRectF& box) {
    painter.setFont(theme::font(11));
    painter.fillRect(box, QColor::fromRgb(ground));
    paintLevels(painter, box);
    paintFrequencies(painter, box);
}

/// A piece of line and what it stands for.
/// \return where the next one begins
double paintKey(SkinPainter& painter, double left, double right, const QPen& pen, const QString& name) {
    painter.setPen(pen);
    painter.drawLine(QPointF(left, titleHeight / 2), QPointF(left + lineLength, titleHeight / 2));
    const double textLeft = left + lineLength + 6;
    painter.setFont(theme::font(11));
    const QFontMetrics metrics(painter.font());
    const QString shown =
        metrics.elidedText(name, Qt::ElideMiddle, std::max(0, static_cast<int>(right - textLeft)));
    painter.text(QRectF(textLeft, 0, right - textLeft, titleHeight), Qt::AlignLeft | Qt::AlignVCenter,
                 theme::text2, shown);
    return textLeft + metrics.horizontalAdvance(shown) + 18;
}

}  // namespace

double FineCurve::frequencyOf(std::size_t point) {
    const double part = static_cast<double>(point) / static_cast<double>(pointCount - 1);
    return lowestHz * std::pow(highestHz / lowestHz, part);
}

struct CurveMaker::Scratch {
    QuietBoxes boxes;
    TuningState tuning{boxes};
    ParameterStore store;
};

CurveMaker::CurveMaker() : scratch_(std::make_unique<Scratch>()) {}

CurveMaker::~CurveMaker() = default;

FineCurve CurveMaker::curveOf(const ParameterSet& set, std::optional<RecordChannel> channel,
                              std::uint32_t filterMode) {
    Scratch& scratch = *scratch_;
    scratch.store.sets[0] = set;
    scratch.tuning.setFilterMode(filterMode);
    scratch.tuning.replaceStore(scratch.store);
    return fineCurve(channel ? outputCascade(scratch.tuning, *channel) : inputCascade(scratch.tuning));
}

CompareChart::CompareChart(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("compareChart"));
    setFont(theme::font(11));
    tellAloud();
}

void CompareChart::show(const QString& title, const QString& leftName, const FineCurve& left,
                        const QString& rightName, const FineCurve& right) {
    title_ = title;
    leftName_ = leftName;
    rightName_ = rightName;
    left_ = left;
    right_ = right;
    tellAloud();
    update();
}

void CompareChart::clear(const QString& title) {
    title_ = title;
    left_.reset();
    right_.reset();
    tellAloud();
    update();
}

void CompareChart::tellAloud() {
    setAccessibleName(left_ ? QStringLiteral("Curves of %1. %2. %3.").arg(title_, leftKey(), rightKey())
                            : title_);
}

QRectF CompareChart::box() const {
    return QRectF(rect()).adjusted(axisLeft, titleHeight + titleGap, -1, -axisBottom);
}

void CompareChart::paintEvent(QPaintEvent* /*event*/) {
    SkinPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QRectF place = box();
    paintGrid(painter, place);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPen leftPen = penOf(leftColor, Qt::SolidLine);
    const QPen rightPen = penOf(rightColor, Qt::DashLine);
    if (left_ && right_) {
        painter.save();
        painter.setClipRect(place);
        paintCurve(painter, place, *left_, leftPen);
        paintCurve(painter, place, *right_, rightPen);
        painter.restore();
    }
    painter.setFont(theme::font(12, QFont::DemiBold));
    const QFontMetrics metrics(painter.font());
    const QString shown = metrics.elidedText(title_, Qt::ElideRight, left_ ? width() * 2 / 5 : width());
    painter.text(QRectF(0, 0, width(), titleHeight), Qt::AlignLeft | Qt::AlignVCenter, theme::text, shown);
    if (left_ && right_) {
        const double keys = metrics.horizontalAdvance(shown) + 18;
        const double middle = paintKey(painter, keys, keys + (width() - keys) / 2 - 18, leftPen, leftKey());
        paintKey(painter, middle, width(), rightPen, rightKey());
    }
}

}  // namespace tessavo
