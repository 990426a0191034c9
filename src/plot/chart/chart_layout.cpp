#include "plot/chart/chart_layout.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

#include "controls/theme.h"

namespace tessavo {
namespace {

constexpr double labelGap = 6;
constexpr double textMargin = 6;
constexpr double leastLeft = 54;
constexpr double leastTop = 26;
constexpr double leastRight = 22;
constexpr double leastBottom = 50;
constexpr double leastBox = 8;
constexpr double markLength = 4;
constexpr double titleGap = 7;  ///< of the titles' row from what stands below it

double widestLabel(const std::vector<PlacedTick>& ticks) {
    double width = 0;
    for (const PlacedTick& placed : ticks) {
        width = std::max(width, placed.labelBox.width());
    }
    return width;
}

bool labelsTouch(const std::vector<PlacedTick>& ticks, bool vertical) {
    const PlacedTick* last = nullptr;
    for (const PlacedTick& placed : ticks) {
        if (placed.label.isEmpty()) {
            continue;
        }
        if (last != nullptr) {
            const double gap = vertical ? last->labelBox.top() - placed.labelBox.bottom()
                                        : placed.labelBox.left() - last->labelBox.right();
            if (gap < (vertical ? 1.0 : labelGap)) {
                return true;
            }
        }
        last = &placed;
    }
    return false;
}

/// Moves a label back inside the chart where it would stick out.
QRectF movedInside(QRectF label, const QRectF& outer) {
    label.moveLeft(std::max(std::min(label.left(), outer.right() - 2 - label.width()), outer.left() + 2));
    label.moveTop(std::max(std::min(label.top(), outer.bottom() - 2 - label.height()), outer.top() + 2));
    return label;
}

double textHeight(const QFont& font) {
    return QFontMetricsF(font).height();
}

bool hasLabels(const CAxis& axis) {
    return axis.isShown() && axis.look().tickLabels;
}

/// How far the outermost labels of the upright axes reach above and below the box.
double overhang(std::span<const CAxis> axes) {
    double reach = 0;
    for (const CAxis& axis : axes) {
        if (axis.isVertical() && hasLabels(axis)) {
            reach = std::max(reach, std::ceil(textHeight(axis.look().labelFont) / 2));
        }
    }
    return reach;
}

/// Distance of an axis' labels from the box; those of a level axis keep clear of the upright ones' overhang.
double labelDistance(const CAxis& axis, double overhang) {
    const double gap = textMargin + (axis.look().tickMarks ? markLength : 0);
    return axis.isVertical() ? gap : std::max(gap, overhang);
}

QRectF labelRect(const CAxis& axis, const QRectF& box, double position, QSizeF size, double gap) {
    switch (axis.side()) {
        case AxisSide::left:
            return {{box.left() - gap - size.width(), position - size.height() / 2}, size};
        case AxisSide::right:
            return {{box.right() + gap, position - size.height() / 2}, size};
        case AxisSide::bottom:
            return {{position - size.width() / 2, box.bottom() + gap}, size};
        case AxisSide::top:
            return {{position - size.width() / 2, box.top() - gap - size.height()}, size};
    }
    return {};
}

/// The rectangles that ticks and labels of one axis must fit.
struct TickBounds {
    QRectF outer;
    QRectF box;
    double overhang = 0;
};

std::vector<PlacedTick> ticksWithAtMost(const CAxis& axis, int maxMajor, const TickBounds& bounds) {
    const QRectF& box = bounds.box;
    const double gap = labelDistance(axis, bounds.overhang);
    const TickSet set = axis.ticks(maxMajor);
    const QFontMetricsF metrics(axis.look().labelFont);
    std::vector<PlacedTick> ticks;
    ticks.reserve(set.ticks.size());
    for (const Tick& tick : set.ticks) {
        const double fraction = std::clamp(axis.fraction(tick.value), 0.0, 1.0);
        PlacedTick placed{tick, 0, {}, {}};
        placed.position =
            axis.isVertical() ? box.bottom() - fraction * box.height() : box.left() + fraction * box.width();
        if (tick.labelled && axis.look().tickLabels) {
            placed.label = tickLabel(tick.value, set.resolution, axis.look().labels);
            const QSizeF size(metrics.horizontalAdvance(placed.label), metrics.height());
            placed.labelBox = movedInside(labelRect(axis, box, placed.position, size, gap), bounds.outer);
        }
        ticks.push_back(std::move(placed));
    }
    return ticks;
}

std::vector<PlacedTick> ticksWithoutOverlap(const CAxis& axis, const TickBounds& bounds) {
    if (!axis.isShown()) {
        return {};
    }
    for (int maxMajor = axis.look().majorTicks; maxMajor > 0; --maxMajor) {
        std::vector<PlacedTick> ticks = ticksWithAtMost(axis, maxMajor, bounds);
        if (!labelsTouch(ticks, axis.isVertical())) {
            return ticks;
        }
    }
    return {};
}

/// In a chart that is too small for its labels, labels of one axis may overlap those of another; then the
/// later ones are left out.
void dropOverlapping(ChartLayout& layout) {
    std::vector<QRectF> shown;
    for (std::vector<PlacedTick>& ticks : layout.ticks) {
        const std::size_t others = shown.size();
        for (PlacedTick& placed : ticks) {
            const auto meets = [&placed](const QRectF& other) { return other.intersects(placed.labelBox); };
            if (!placed.label.isEmpty() &&
                std::any_of(shown.begin(), shown.begin() + static_cast<std::ptrdiff_t>(others), meets)) {
                placed.label.clear();
                placed.labelBox = {};
            }
            if (!placed.label.isEmpty()) {
                shown.push_back(placed.labelBox);
            }
        }
    }
}

/// Space that marks and labels of a horizontal axis take beside the box.
double labelDepth(const CAxis& axis, double overhang) {
    const AxisLook& look = axis.look();
    const double marks = look.tickMarks ? markLength : 0;
    return hasLabels(axis) ? labelDistance(axis, overhang) + textHeight(look.labelFont) : marks;
}

double titleHeight(const CAxis& axis) {
    return axis.isShown() && !axis.look().title.isEmpty() ? textHeight(axis.look().titleFont) : 0;
}

/// Space that labels take above the box: those of the top axis, and the upper halves of the upright ones as
/// far as the usual distance of the titles does not hold them.
double labelsAbove(std::span<const CAxis> axes) {
    const double reach = overhang(axes);
    double labels = std::max(0.0, reach - titleGap);
    for (const CAxis& axis : axes) {
        if (axis.side() == AxisSide::top && axis.isShown()) {
            labels = std::max(labels, labelDepth(axis, reach));
        }
    }
    return labels;
}

/// Space above the box: labels and, above them, one row for the titles of three axes.
double topDepth(std::span<const CAxis> axes) {
    const double labels = labelsAbove(axes);
    double titles = 0;
    for (const CAxis& axis : axes) {
        if (axis.side() != AxisSide::bottom) {
            titles = std::max(titles, titleHeight(axis));
        }
    }
    return labels + titles + (titles > 0 ? 11 : 8);
}

QRgb gridColor(GridRank rank) {
    switch (rank) {
        case GridRank::minor:
            return chart_colors::minorGrid;
        case GridRank::major:
            return chart_colors::majorGrid;
        case GridRank::zero:
            return chart_colors::zeroGrid;
    }
    return chart_colors::minorGrid;
}

void drawGrid(QPainter& painter, const ChartLayout& layout, const CAxis& axis, GridRank rank) {
    const bool wanted = rank == GridRank::minor ? axis.look().minorGrid : axis.look().majorGrid;
    if (!wanted) {
        return;
    }
    const QRectF& box = layout.box;
    for (const PlacedTick& placed : layout.ticksOf(axis.side())) {
        if (placed.tick.grid != rank) {
            continue;
        }
        if (axis.isVertical()) {
            drawHairline(painter, {box.left(), placed.position}, {box.right(), placed.position},
                         gridColor(rank));
        } else {
            drawHairline(painter, {placed.position, box.top()}, {placed.position, box.bottom()},
                         gridColor(rank));
        }
    }
}

void drawMarks(QPainter& painter, const ChartLayout& layout, const CAxis& axis) {
    const QRectF& box = layout.box;
    for (const PlacedTick& placed : layout.ticksOf(axis.side())) {
        const double length = placed.tick.labelled ? markLength : markLength / 2;
        const double at = placed.position;
        switch (axis.side()) {
            case AxisSide::left:
                drawHairline(painter, {box.left() - length, at}, {box.left(), at}, theme::mark);
                break;
            case AxisSide::right:
                drawHairline(painter, {box.right(), at}, {box.right() + length, at}, theme::mark);
                break;
            case AxisSide::bottom:
                drawHairline(painter, {at, box.bottom()}, {at, box.bottom() + length}, theme::mark);
                break;
            case AxisSide::top:
                drawHairline(painter, {at, box.top() - length}, {at, box.top()}, theme::mark);
                break;
        }
    }
}

void drawLabels(QPainter& painter, const ChartLayout& layout, const CAxis& axis) {
    painter.setFont(axis.look().labelFont);
    painter.setPen(QColor(theme::text2));
    for (const PlacedTick& placed : layout.ticksOf(axis.side())) {
        if (!placed.label.isEmpty()) {
            painter.drawText(placed.labelBox, Qt::AlignCenter | Qt::TextDontClip, placed.label);
        }
    }
}

/// Titles stand at the ends of their axes, those of three axes in one row above the box.
void drawTitle(QPainter& painter, const ChartLayout& layout, const CAxis& axis, double rowDepth) {
    const AxisLook& look = axis.look();
    if (!axis.isShown() || look.title.isEmpty()) {
        return;
    }
    const QRectF& box = layout.box;
    const QRectF& outer = layout.outer;
    const QFontMetricsF metrics(look.titleFont);
    const double room = outer.width() * (axis.side() == AxisSide::bottom ? 0.9 : 0.3);
    const QString title = metrics.elidedText(look.title, Qt::ElideRight, room);
    QRectF rect({0, 0}, QSizeF(metrics.horizontalAdvance(title), metrics.height()));
    const double row = box.top() - titleGap - rowDepth;
    switch (axis.side()) {
        case AxisSide::left:
            rect.moveBottomRight({box.left() - textMargin, row});
            break;
        case AxisSide::right:
            rect.moveBottomLeft({box.right() + textMargin, row});
            break;
        case AxisSide::bottom:
            rect.moveBottomRight({box.right() + 8, outer.bottom() - 10});
            break;
        case AxisSide::top:
            rect.moveCenter({box.center().x(), 0});
            rect.moveBottom(row);
            break;
    }
    painter.setFont(look.titleFont);
    painter.setPen(QColor(theme::text3));
    painter.drawText(movedInside(rect, outer.adjusted(4, 0, -4, 0)), Qt::AlignCenter | Qt::TextDontClip,
                     title);
}

}  // namespace

void drawGridLines(QPainter& painter, const ChartLayout& layout, const CAxis& axis) {
    for (const GridRank rank : {GridRank::minor, GridRank::major, GridRank::zero}) {
        drawGrid(painter, layout, axis, rank);
    }
}

void drawHairline(QPainter& painter, QPointF from, QPointF to, QRgb color) {
    const QTransform device = painter.deviceTransform();
    bool invertible = false;
    const QTransform back = device.inverted(&invertible);
    if (!invertible) {
        return;
    }
    const QPointF start = device.map(from);
    const QPointF end = device.map(to);
    const double thickness = std::max(1.0, std::round(std::abs(device.m11())));
    const bool vertical = std::abs(start.x() - end.x()) < std::abs(start.y() - end.y());
    const QPointF first(std::round(std::min(start.x(), end.x())), std::round(std::min(start.y(), end.y())));
    const QPointF last(std::round(std::max(start.x(), end.x())), std::round(std::max(start.y(), end.y())));
    const QRectF line(
        first, vertical ? QSizeF(thickness, last.y() - first.y()) : QSizeF(last.x() - first.x(), thickness));
    painter.fillRect(back.mapRect(line), QColor::fromRgba(color));
}

QRectF boxInside(const QRectF& outer, std::span<const CAxis> axes, const QString& title,
                 const QFont& titleFont) {
    const double reach = overhang(axes);
    double left = leastLeft;
    double top = leastTop;
    double right = leastRight;
    double bottom = leastBottom;
    for (const CAxis& axis : axes) {
        if (axis.side() == AxisSide::bottom) {
            bottom = std::max(bottom, labelDepth(axis, reach) + titleHeight(axis) + 12);
        }
    }
    top = std::max(top, topDepth(axes));
    if (!title.isEmpty()) {
        top += textHeight(titleFont) + 4;
    }
    const double height = std::max(leastBox, outer.height() - top - bottom);
    // The height is known now; the labels of the vertical axes follow from it, and their width from the
    // labels.
    const QRectF upright(outer.left(), outer.top() + top, leastBox, height);
    const QRectF anywhere(-1e6, -1e6, 2e6, 2e6);
    for (const CAxis& axis : axes) {
        if (!axis.isVertical() || !axis.isShown()) {
            continue;
        }
        const double marks = axis.look().tickMarks ? markLength : 0;
        const double width =
            widestLabel(ticksWithoutOverlap(axis, {anywhere, upright, reach})) + textMargin + marks + 6;
        double& side = axis.side() == AxisSide::left ? left : right;
        side = std::max(side, width);
    }
    const double width = std::max(leastBox, outer.width() - left - right);
    return {outer.left() + left, outer.top() + top, width, height};
}

ChartLayout placeTicks(const QRectF& outer, const QRectF& box, std::span<const CAxis> axes) {
    ChartLayout layout;
    layout.outer = outer;
    layout.box = box;
    for (const CAxis& axis : axes) {
        layout.ticks[static_cast<std::size_t>(axis.side())] =
            ticksWithoutOverlap(axis, {outer, box, overhang(axes)});
    }
    dropOverlapping(layout);
    return layout;
}

void drawFrame(QPainter& painter, const ChartLayout& layout, std::span<const CAxis> axes,
               const QString& title, const QFont& titleFont) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QColor(theme::line));
    painter.setBrush(QColor(chart_colors::card));
    painter.drawRoundedRect(layout.outer.adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
    const QRectF& box = layout.box;
    painter.fillRect(box, QColor(chart_colors::box));
    painter.setClipRect(layout.outer);
    for (const GridRank rank : {GridRank::minor, GridRank::major, GridRank::zero}) {
        for (const CAxis& axis : axes) {
            drawGrid(painter, layout, axis, rank);
        }
    }
    const QPointF inner = box.bottomRight() - QPointF(1, 1);
    drawHairline(painter, box.topLeft(), {box.right(), box.top()}, chart_colors::majorGrid);
    drawHairline(painter, {box.left(), inner.y()}, {box.right(), inner.y()}, chart_colors::majorGrid);
    drawHairline(painter, box.topLeft(), {box.left(), box.bottom()}, chart_colors::majorGrid);
    drawHairline(painter, {inner.x(), box.top()}, {inner.x(), box.bottom()}, chart_colors::majorGrid);
    const double topLabels = labelsAbove(axes);
    for (const CAxis& axis : axes) {
        if (axis.look().tickMarks) {
            drawMarks(painter, layout, axis);
        }
        drawLabels(painter, layout, axis);
        drawTitle(painter, layout, axis, topLabels);
    }
    if (!title.isEmpty()) {
        painter.setFont(titleFont);
        painter.setPen(QColor(theme::text));
        const QRectF rect(layout.outer.left() + 8, layout.outer.top() + 6, layout.outer.width() - 16,
                          textHeight(titleFont));
        const QString fitting = QFontMetricsF(titleFont).elidedText(title, Qt::ElideRight, rect.width());
        painter.drawText(rect, Qt::AlignCenter, fitting);
    }
    painter.restore();
}

}  // namespace tessavo
