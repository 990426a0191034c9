#include "app/compare_curves.h"

#include <QPainterPath>
#include <array>
#include <cmath>

#include "base/message_box.h"
#include "controls/skin_painter.h"
#include "controls/theme.h"
#include "params/tuning_state.h"

namespace tessavo {

namespace {

constexpr double lowestHz = 20;
constexpr double highestHz = 20000;
constexpr double levelRoomDb = 18;
constexpr double axisLeft = 34;
constexpr double axisBottom = 18;
constexpr double titleHeight = 20;
constexpr double lineLength = 22;
constexpr QRgb ground = 0xFF101419;
constexpr QRgb grid = 0xFF303A45;
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

class CurveCatcher : public ICurveDisplay {
 public:
    void setCurve(const ResponseCurve& curve) override { caught = curve; }
    ResponseCurve caught;
};

double xOf(const QRectF& box, double hertz) {
    return box.left() + box.width() * std::log(hertz / lowestHz) / std::log(highestHz / lowestHz);
}

double yOf(const QRectF& box, double level) {
    return box.center().y() - level / levelRoomDb * box.height() / 2;
}

QPen penOf(QRgb color, Qt::PenStyle style) {
    return {QColor::fromRgb(color), 2, style, Qt::FlatCap, Qt::RoundJoin};
}

void paintCurve(QPainter& painter, const QRectF& box, const ResponseCurve& curve, const QPen& pen) {
    QPolygonF points;
    points.reserve(static_cast<qsizetype>(curvePointCount));
    for (std::size_t i = 0; i < curvePointCount; ++i) {
        // Far outside the box the toolkit counts with numbers that are too large for it.
        const double level = std::clamp<double>(curve.magnitudeDb[i], -10 * levelRoomDb, 10 * levelRoomDb);
        points << QPointF(xOf(box, curve.frequencyHz[i]), yOf(box, level));
    }
    painter.setPen(pen);
    painter.drawPolyline(points);
}

void paintGrid(SkinPainter& painter, const QRectF& box) {
    painter.setFont(theme::font(11));
    painter.fillRect(box, QColor::fromRgb(ground));
    const QFontMetricsF metrics(painter.font());
    for (const int level : {12, 6, 0, -6, -12}) {
        const double y = std::round(yOf(box, level)) + 0.5;
        painter.setPen(QColor::fromRgb(level == 0 ? zeroLine : grid));
        painter.drawLine(QPointF(box.left(), y), QPointF(box.right(), y));
        // Where it is low only every second number has room.
        if (level % 12 == 0 || box.height() > 6 * metrics.height()) {
            const QString number = level > 0   ? QStringLiteral("+%1").arg(level)
                                   : level < 0 ? QStringLiteral("\u2212%1").arg(-level)
                                               : QStringLiteral("0 dB");
            painter.text(QRectF(0, y - 8, box.left() - 4, 16), Qt::AlignRight | Qt::AlignVCenter,
                         theme::text2, number);
        }
    }
    const std::array<std::pair<int, const char*>, 7> marks{
        {{50, "50"}, {100, "100"}, {500, "500"}, {1000, "1k"}, {5000, "5k"}, {10000, "10k"}, {20000, "20k"}}};
    for (const auto& [hertz, text] : marks) {
        const double x = std::round(xOf(box, hertz)) - 0.5;
        painter.setPen(QColor::fromRgb(grid));
        painter.drawLine(QPointF(x, box.top()), QPointF(x, box.bottom()));
        painter.text(QRectF(x - 24, box.bottom() + 2, hertz == 20000 ? 26 : 48, 14),
                     hertz == 20000 ? Qt::AlignRight : Qt::AlignHCenter, theme::text2, QLatin1String(text));
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
    CurveCatcher catcher;
    ParameterStore store;
};

CurveMaker::CurveMaker() : scratch_(std::make_unique<Scratch>()) {
    scratch_->tuning.setCurveDisplay(&scratch_->catcher);
}

CurveMaker::~CurveMaker() = default;

ResponseCurve CurveMaker::curveOf(const ParameterSet& set, std::optional<RecordChannel> channel,
                                  std::uint32_t filterMode) {
    Scratch& scratch = *scratch_;
    scratch.store.sets[0] = set;
    scratch.tuning.setFilterMode(filterMode);
    scratch.tuning.replaceStore(scratch.store);
    if (channel) {
        scratch.tuning.showOutputCurve(*channel);
    } else {
        scratch.tuning.showInputCurve();
    }
    return scratch.catcher.caught;
}

CompareChart::CompareChart(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("compareChart"));
    setFont(theme::font(11));
    tellAloud();
}

void CompareChart::show(const QString& title, const QString& leftName, const ResponseCurve& left,
                        const QString& rightName, const ResponseCurve& right) {
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
    setAccessibleName(left_ ? QStringLiteral("Curves of %1: %2 and %3").arg(title_, leftName_, rightName_)
                            : title_);
}

QRectF CompareChart::box() const {
    return QRectF(rect()).adjusted(axisLeft, titleHeight + 2, -2, -axisBottom);
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
    const int titleWidth = QFontMetrics(painter.font()).horizontalAdvance(title_);
    painter.text(QRectF(0, 0, width(), titleHeight), Qt::AlignLeft | Qt::AlignVCenter, theme::text, title_);
    if (left_ && right_) {
        const double keys = titleWidth + 18;
        const double middle = paintKey(painter, keys, keys + (width() - keys) / 2 - 18, leftPen, leftName_);
        paintKey(painter, middle, width(), rightPen, rightName_);
    }
}

}  // namespace tessavo
