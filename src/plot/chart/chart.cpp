#include "plot/chart/chart.h"

#include <QSaveFile>
#include <algorithm>
#include <limits>
#include <utility>

#include "base/number_text.h"
#include "controls/theme.h"

namespace tessavo {
namespace {

AxisSide opposite(AxisSide side) {
    switch (side) {
        case AxisSide::left:
            return AxisSide::right;
        case AxisSide::right:
            return AxisSide::left;
        case AxisSide::bottom:
            return AxisSide::top;
        case AxisSide::top:
            return AxisSide::bottom;
    }
    return side;
}

}  // namespace

CChart::CChart(QObject* parent)
    : QObject(parent),
      axes_{CAxis(AxisSide::left), CAxis(AxisSide::bottom), CAxis(AxisSide::right), CAxis(AxisSide::top)},
      titleFont_(theme::font(13, QFont::Medium)) {
    for (const AxisSide side : {AxisSide::left, AxisSide::bottom}) {
        CAxis& axis = axes_[static_cast<std::size_t>(side)];
        AxisLook look = axis.look();
        look.majorTicks = 9;
        look.minorTicks = 1;
        look.majorGrid = true;
        look.minorGrid = true;
        axis.setLook(look);
    }
}

int CChart::addDataSet(std::span<const double> values, std::span<const int> dimensions) {
    auto data = CChartData::make(values, dimensions);
    if (!data || dataSets_.size() >= mostDataSets || nextIdentifier_ == std::numeric_limits<int>::max()) {
        return -1;
    }
    data->identifier = nextIdentifier_++;
    dataSets_.push_back(std::move(*data));
    refitAfter(false);
    return dataSets_.back().identifier;
}

bool CChart::replaceDataSet(int identifier, std::span<const double> values, std::span<const int> dimensions) {
    CChartData* const old = find(identifier);
    auto data = CChartData::make(values, dimensions);
    if (old == nullptr || !data) {
        return false;
    }
    old->moveValuesFrom(std::move(*data));
    refitAfter(false);
    return true;
}

bool CChart::removeDataSet(int identifier) {
    const auto removed = std::erase_if(
        dataSets_, [identifier](const CChartData& data) { return data.identifier == identifier; });
    if (removed > 0) {
        refitAfter(false);
    }
    return removed > 0;
}

void CChart::clearDataSets() {
    if (!dataSets_.empty()) {
        dataSets_.clear();
        refitAfter(false);
    }
}

bool CChart::setDataSetColor(int identifier, QRgb color) {
    const CChartData* const data = dataSet(identifier);
    if (data == nullptr) {
        return false;
    }
    DataStyle style = data->style;
    style.color = color;
    return setDataSetStyle(identifier, style);
}

bool CChart::setDataSetStyle(int identifier, const DataStyle& style) {
    CChartData* const data = find(identifier);
    if (data == nullptr) {
        return false;
    }
    const DataStyle usable = clamped(style);
    if (usable != data->style) {
        data->style = usable;
        refitAfter(false);
    }
    return true;
}

bool CChart::setDataSetLimits(int identifier, const ValueLimits& limits) {
    CChartData* const data = find(identifier);
    if (data == nullptr) {
        return false;
    }
    data->limits = limits;
    refitAfter(false);
    return true;
}

bool CChart::setDataSetAxes(int identifier, AxisSide x, AxisSide y) {
    CChartData* const data = find(identifier);
    if (data == nullptr || axis(x).isVertical() || !axis(y).isVertical()) {
        return false;
    }
    data->xAxis = x;
    data->yAxis = y;
    refitAfter(true);
    return true;
}

const CChartData* CChart::dataSet(int identifier) const {
    const auto found = std::ranges::find(dataSets_, identifier, &CChartData::identifier);
    return found == dataSets_.end() ? nullptr : &*found;
}

CChartData* CChart::find(int identifier) {
    const auto found = std::ranges::find(dataSets_, identifier, &CChartData::identifier);
    return found == dataSets_.end() ? nullptr : &*found;
}

bool CChart::isUsed(AxisSide side) const {
    return std::ranges::any_of(
        dataSets_, [side](const CChartData& data) { return data.xAxis == side || data.yAxis == side; });
}

void CChart::setAxis(const CAxis& axis) {
    CAxis& mine = axes_[static_cast<std::size_t>(axis.side())];
    if (mine != axis) {
        mine = axis;
        refitAfter(true);
    }
}

RangeFault CChart::setRange(AxisSide side, AxisRange range) {
    CAxis changed = axis(side);
    const RangeFault fault = changed.setRange(range);
    if (fault == RangeFault::none) {
        setAxis(changed);
    }
    return fault;
}

AxisSide CChart::leaderOf(AxisSide side) const {
    const AxisSide across = opposite(side);
    const bool secondary = side == AxisSide::right || side == AxisSide::top;
    const bool follows = axis(side).isAutomatic() && !isUsed(side) && (secondary || isUsed(across));
    return follows ? across : side;
}

void CChart::setAutoRange(bool automatic) {
    for (CAxis& axis : axes_) {
        // An axis that shows the range of the one across is automatic: if it were not, it would show its own.
        if (automatic || leaderOf(axis.side()) == axis.side()) {
            axis.setAutomatic(automatic);
        }
    }
    refitAfter(true);
}

bool CChart::isAutoRange() const {
    return axis(leaderOf(AxisSide::left)).isAutomatic() && axis(leaderOf(AxisSide::bottom)).isAutomatic();
}

void CChart::setTitle(const QString& title, const QFont& font) {
    if (title_ != title || titleFont_ != font) {
        title_ = title;
        titleFont_ = font;
        Q_EMIT layoutChanged();
    }
}

void CChart::refitAfter(bool layoutTouched) {
    bool changed = layoutTouched;
    for (CAxis& axis : axes_) {
        if (axis.isAutomatic() && isUsed(axis.side())) {
            changed |= axis.fit(dataExtent(axis), fitsExactly());
        }
    }
    // An axis without data of its own shows the range of the one across.
    for (CAxis& mirror : axes_) {
        const CAxis& across = axis(leaderOf(mirror.side()));
        if (mirror.range() != across.range() || mirror.scale() != across.scale()) {
            changed |= mirror.setScale(across.scale()) == RangeFault::none &&
                       mirror.setRange(across.range()) == RangeFault::none;
            mirror.setAutomatic(true);
        }
    }
    if (changed) {
        Q_EMIT layoutChanged();
    }
    Q_EMIT dataChanged();
}

ChartLayout CChart::layoutFor(const QRectF& outer) const {
    const QRectF box = shapedBox(boxInside(outer, axes_, title_, titleFont_));
    return placeTicks(outer, box, axes_);
}

void CChart::draw(QPainter& painter, const QRectF& outer) const {
    const ChartLayout layout = layoutFor(outer);
    drawStatic(painter, layout);
    drawData(painter, layout);
}

void CChart::drawStatic(QPainter& painter, const ChartLayout& layout) const {
    drawFrame(painter, layout, axes_, title_, titleFont_);
}

bool CChart::hasData() const {
    return std::ranges::any_of(dataSets_, [](const CChartData& data) { return !data.values().empty(); });
}

int CChart::saveToFile(const QString& path, const Notify& notify) const {
    QByteArray text;
    for (const CChartData& data : dataSets_) {
        const std::size_t count = data.dimensions().size();
        if (count != 1 && count != 2) {
            if (notify) {
                notify(QStringLiteral("Cannot save files of %1 dimensions.").arg(count));
            }
            continue;
        }
        for (const double value : data.values()) {
            text.append(shortNumber(value)).append("\r\n");
        }
    }
    return writeText(path, text);
}

int CChart::writeText(const QString& path, const QByteArray& text) const {
    QSaveFile file(path);
    const bool written = file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
    return written && !dataSets_.empty() ? 1 : 0;
}

}  // namespace tessavo
