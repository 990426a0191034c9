#include "plot/chart/image_chart.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "base/number_text.h"
#include "base/saturate.h"

namespace tessavo {

CImageChart::CImageChart(QObject* parent) : CChart(parent) {
    connect(this, &CChart::dataChanged, this, [this] { image_ = {}; });
    for (const AxisSide side : {AxisSide::left, AxisSide::bottom}) {
        CAxis changed = axis(side);
        AxisLook look = changed.look();
        // A grid would hide the image; it can be turned on.
        look.majorGrid = false;
        look.minorGrid = false;
        look.tickMarks = true;
        changed.setLook(look);
        setAxis(changed);
    }
}

bool CImageChart::setPalette(int identifier) {
    const auto palette = CImagePalette::load(identifier);
    if (palette) {
        palette_ = *palette;
        Q_EMIT dataChanged();
    }
    return palette.has_value();
}

void CImageChart::setMaintainsAspectRatio(bool maintain) {
    if (maintainsAspectRatio_ != maintain) {
        maintainsAspectRatio_ = maintain;
        Q_EMIT layoutChanged();
    }
}

void CImageChart::setScalesToWindow(bool scale) {
    if (scalesToWindow_ != scale) {
        scalesToWindow_ = scale;
        Q_EMIT layoutChanged();
    }
}

const CChartData* CImageChart::shown() const {
    const auto found = std::ranges::find_if(dataSets(), [](const CChartData& data) {
        return data.dimensions().size() == 2 && !data.values().empty();
    });
    return found == dataSets().end() ? nullptr : &*found;
}

const QImage& CImageChart::image() const {
    const CChartData* const data = shown();
    if (data == nullptr || !image_.isNull()) {
        return image_;
    }
    const int rows = data->dimensions()[0];
    const int columns = data->dimensions()[1];
    const AxisRange values = extentOf(data->values(), false).value_or(AxisRange{0, 0});
    QImage image(columns, rows, QImage::Format_ARGB32);
    auto value = data->values().begin();
    for (int row = 0; row < rows && !image.isNull(); ++row) {
        for (int column = 0; column < columns; ++column) {
            image.setPixel(column, rows - 1 - row,
                           palette_.colorOf(*value++, values.minimum, values.maximum));
        }
    }
    image_ = std::move(image);
    return image_;
}

void CImageChart::drawData(QPainter& painter, const ChartLayout& layout) const {
    if (image().isNull()) {
        return;
    }
    painter.save();
    painter.setClipRect(layout.box, Qt::IntersectClip);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    if (axis(AxisSide::bottom).scale() == AxisScale::logarithmic ||
        axis(AxisSide::left).scale() == AxisScale::logarithmic) {
        drawCurved(painter, layout);
    } else {
        drawStraight(painter, layout);
    }
    // The image covers what stands below; the grid belongs on top of it.
    for (const CAxis& axis : axes()) {
        drawGridLines(painter, layout, axis);
    }
    painter.restore();
}

void CImageChart::drawStraight(QPainter& painter, const ChartLayout& layout) const {
    const QSizeF cells = image().size();
    const auto pointOf = [&](double column, double row) {
        return layout.point(axis(AxisSide::bottom).fraction(column), axis(AxisSide::left).fraction(row));
    };
    const QRectF target(pointOf(0, cells.height()), pointOf(cells.width(), 0));
    painter.drawImage(target, image());
}

/// Looks up the cell of every pixel of the screen: cells of a logarithmic axis have many widths.
void CImageChart::drawCurved(QPainter& painter, const ChartLayout& layout) const {
    const QTransform toDevice = painter.deviceTransform();
    bool invertible = false;
    const QTransform back = toDevice.inverted(&invertible);
    const QRect device = toDevice.mapRect(layout.box).toAlignedRect();
    if (!invertible || device.isEmpty()) {
        return;
    }
    // Numbers of the cells along one side, -1 where there is none.
    const auto cellsAlong = [&](int pixels, int cellCount, const CAxis& axis, auto fractionAt) {
        std::vector<int> cells;
        cells.reserve(static_cast<std::size_t>(pixels));
        for (int n = 0; n < pixels; ++n) {
            const double value = std::floor(axis.valueAt(fractionAt(n)));
            cells.push_back(value >= 0 && value < cellCount ? truncateTo<int>(value) : -1);
        }
        return cells;
    };
    const QRectF& box = layout.box;
    const std::vector<int> columns =
        cellsAlong(device.width(), image().width(), axis(AxisSide::bottom), [&](int n) {
            return (back.map(QPointF(device.left() + n + 0.5, 0)).x() - box.left()) / box.width();
        });
    const std::vector<int> rows =
        cellsAlong(device.height(), image().height(), axis(AxisSide::left), [&](int n) {
            return (box.bottom() - back.map(QPointF(0, device.top() + n + 0.5)).y()) / box.height();
        });
    QImage picture(device.size(), QImage::Format_ARGB32);
    picture.fill(Qt::transparent);
    for (int y = 0; y < picture.height(); ++y) {
        const int row = rows[static_cast<std::size_t>(y)];
        for (int x = 0; x < picture.width() && row >= 0; ++x) {
            const int column = columns[static_cast<std::size_t>(x)];
            if (column >= 0) {
                picture.setPixel(x, y, image().pixel(column, image().height() - 1 - row));
            }
        }
    }
    painter.drawImage(back.mapRect(QRectF(device)), picture);
}

std::optional<ChartReadout> CImageChart::readoutAt(const ChartLayout& layout, QPointF point) const {
    const CChartData* const data = shown();
    if (data == nullptr || !layout.box.contains(point)) {
        return std::nullopt;
    }
    const double x = (point.x() - layout.box.left()) / layout.box.width();
    const double y = (layout.box.bottom() - point.y()) / layout.box.height();
    const auto column = truncateTo<int>(std::floor(axis(AxisSide::bottom).valueAt(x)));
    const auto row = truncateTo<int>(std::floor(axis(AxisSide::left).valueAt(y)));
    const int rows = data->dimensions()[0];
    const int columns = data->dimensions()[1];
    if (column < 0 || row < 0 || column >= columns || row >= rows) {
        return std::nullopt;
    }
    const auto index =
        static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) + static_cast<std::size_t>(column);
    return ChartReadout{point, QStringLiteral("%1, %2   %3")
                                   .arg(column)
                                   .arg(row)
                                   .arg(QString::fromStdString(shortNumber(data->values()[index])))};
}

QRectF CImageChart::shapedBox(const QRectF& available) const {
    const CChartData* const data = shown();
    if (data == nullptr || (scalesToWindow_ && !maintainsAspectRatio_)) {
        return available;
    }
    // The axes may show more than the image or only a piece of it.
    const auto lengthOf = [this](AxisSide side) {
        const AxisRange& range = axis(side).range();
        return std::clamp(range.maximum - range.minimum, 1e-9, 1e9);
    };
    const QSizeF steps(lengthOf(AxisSide::bottom), lengthOf(AxisSide::left));
    const bool fits = steps.width() <= available.width() && steps.height() <= available.height();
    if (!scalesToWindow_ && (fits || !maintainsAspectRatio_)) {
        return {available.topLeft(), steps.boundedTo(available.size()).expandedTo({1, 1})};
    }
    const QSizeF size = steps.scaled(available.size(), Qt::KeepAspectRatio).expandedTo({1, 1});
    return {available.center() - QPointF(size.width(), size.height()) / 2, size};
}

std::optional<AxisRange> CImageChart::dataExtent(const CAxis& axis) const {
    const CChartData* const data = shown();
    if (data == nullptr) {
        return std::nullopt;
    }
    const int cells = data->dimensions()[axis.isVertical() ? 0 : 1];
    const bool logarithmic = axis.scale() == AxisScale::logarithmic;
    return AxisRange{logarithmic ? 0.5 : 0.0, static_cast<double>(cells)};
}

}  // namespace tessavo
