#include "app/compare_curves.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "app/small_chart.h"
#include "base/message_box.h"
#include "controls/skin_painter.h"
#include "controls/theme.h"
#include "dsp/filter_kind.h"
#include "params/tuning_state.h"
#include "plot/response_terms.h"

namespace tessavo {

namespace {

constexpr int levelRoomDb = 18;
constexpr double axisLeft = 40;
constexpr double axisBottom = 18;
constexpr double titleHeight = 20;
constexpr double titleGap = 6;
constexpr double labelHeight = 14;
constexpr double lineLength = 22;
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

QPen penOf(QRgb color, Qt::PenStyle style) {
    return {QColor::fromRgb(color), 2, style, Qt::FlatCap, Qt::RoundJoin};
}

SmallChart placeOf(const QRectF& box) {
    return {box, -levelRoomDb, levelRoomDb};
}

void paintLevels(SkinPainter& painter, const SmallChart& chart) {
    // Where it is low only some numbers have room.
    const double height = chart.box.height();
    const int labelStep = height / 6 >= labelHeight ? 6 : height / 3 >= labelHeight ? 12 : 18;
    for (int level = -levelRoomDb; level <= levelRoomDb; level += labelStep) {
        paintLevelNumber(painter, chart, level);
    }
}

void paintFrequencies(SkinPainter& painter, const SmallChart& chart) {
    for (const int hertz : {20, 50, 100, 200, 500, 1000, 2000, 5000, 10000, 20000}) {
        const QString number = frequencyNumber(hertz);
        const QRectF place(chart.lineAt(hertz) - 40, chart.box.bottom() + 3, 80, labelHeight);
        // The outermost stay within the chart.
        if (hertz == 20) {
            painter.text(place.translated(40, 0), Qt::AlignLeft, theme::text2, number);
        } else if (hertz == 20000) {
            painter.text(place.translated(-40, 0), Qt::AlignRight, theme::text2,
                         number + QStringLiteral(" Hz"));
        } else {
            painter.text(place, Qt::AlignHCenter, theme::text2, number);
        }
    }
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
    const SmallChart place = placeOf(box());
    painter.setFont(theme::font(11));
    paintGrid(painter, place, {3, 6}, {1, 2, 5});
    paintLevels(painter, place);
    paintFrequencies(painter, place);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPen leftPen = penOf(leftColor, Qt::SolidLine);
    const QPen rightPen = penOf(rightColor, Qt::DashLine);
    if (left_ && right_) {
        painter.save();
        painter.setClipRect(place.box);
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
