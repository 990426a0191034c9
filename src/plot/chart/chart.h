#pragma once

#include <QFont>
#include <QObject>
#include <QPainter>
#include <QString>
#include <array>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "plot/chart/axis.h"
#include "plot/chart/chart_data.h"
#include "plot/chart/chart_layout.h"

namespace tessavo {

/// What stands under the pointer.
struct ChartReadout {
    QPointF point;  ///< the data point, in the chart's coordinates
    QString text;   ///< its values with their units
};

/// Data sets, axes and titles of a chart, and how they are drawn and saved. Used on the user-interface
/// thread.
class CChart : public QObject {
    Q_OBJECT

 public:
    static constexpr std::size_t mostDataSets = 20;

    explicit CChart(QObject* parent = nullptr);

    // --- data

    /// \param values as many as the product of the dimensions, the last dimension running fastest
    /// \return identifier, above zero and never used before by this chart; -1 for the 21st data set and for
    ///         dimensions that do not fit the values
    virtual int addDataSet(std::span<const double> values, std::span<const int> dimensions);
    /// Takes new values and keeps identifier, place and style. \return false leaves the chart as it was
    virtual bool replaceDataSet(int identifier, std::span<const double> values,
                                std::span<const int> dimensions);
    virtual bool removeDataSet(int identifier);
    virtual void clearDataSets();
    virtual bool setDataSetColor(int identifier, QRgb color);
    /// Numbers outside their limits are clamped.
    virtual bool setDataSetStyle(int identifier, const DataStyle& style);
    /// Values of y that these limits do not hold stay in the data set and in its file, but are not shown.
    virtual bool setDataSetLimits(int identifier, const ValueLimits& limits);
    /// \param x bottom or top \param y left or right
    virtual bool setDataSetAxes(int identifier, AxisSide x, AxisSide y);
    [[nodiscard]] const std::vector<CChartData>& dataSets() const { return dataSets_; }
    [[nodiscard]] const CChartData* dataSet(int identifier) const;

    // --- axes and titles

    [[nodiscard]] const CAxis& axis(AxisSide side) const { return axes_[static_cast<std::size_t>(side)]; }
    [[nodiscard]] std::span<const CAxis> axes() const { return axes_; }
    /// Takes range, scale and looks; automatic axes follow the data at once.
    virtual void setAxis(const CAxis& axis);
    /// Fixed range of one axis; after a fault the chart is as before.
    RangeFault setRange(AxisSide side, AxisRange range);
    /// All axes follow the data from now on, or stay where they are. Those that show what the one across
    /// shows go on doing so.
    void setAutoRange(bool automatic);
    [[nodiscard]] bool isAutoRange() const;
    /// The axis whose range and scale this one shows: the one across while it has no data of its own and was
    /// not given a range of its own, else itself.
    [[nodiscard]] AxisSide leaderOf(AxisSide side) const;
    [[nodiscard]] const QString& title() const { return title_; }
    [[nodiscard]] const QFont& titleFont() const { return titleFont_; }
    void setTitle(const QString& title, const QFont& font);

    // --- drawing

    /// Where things stand when drawn into a rectangle.
    [[nodiscard]] ChartLayout layoutFor(const QRectF& outer) const;
    /// Everything, at the scale of the painter's device.
    virtual void draw(QPainter& painter, const QRectF& outer) const;
    /// What changes only with layoutChanged().
    void drawStatic(QPainter& painter, const ChartLayout& layout) const;
    /// What changes with every new curve.
    virtual void drawData(QPainter& painter, const ChartLayout& layout) const = 0;
    /// Nearest data to a place in the box; nothing outside or without data.
    [[nodiscard]] virtual std::optional<ChartReadout> readoutAt(const ChartLayout& layout,
                                                                QPointF place) const = 0;

    // --- saving

    using Notify = std::function<void(const QString&)>;

    /// Saves one value a line, for data sets of one or two dimensions. An existing file is replaced whole or
    /// not at all; a chart without data sets leaves an empty one, and data sets without values too.
    /// \param notify gets "Cannot save files of %d dimensions." for each data set of another kind
    /// \return 1 when the file was written, 0 when there is no data set or the file cannot be written
    [[nodiscard]] virtual int saveToFile(const QString& path, const Notify& notify) const;
    /// Whether any data set holds a value.
    [[nodiscard]] bool hasData() const;

 Q_SIGNALS:
    void dataChanged();    ///< values or styles of data sets
    void layoutChanged();  ///< ranges, ticks, titles or grids

 protected:
    /// Space for data within the space that is left for it.
    [[nodiscard]] virtual QRectF shapedBox(const QRectF& available) const { return available; }
    /// Extent of the data that an automatic axis shows.
    [[nodiscard]] virtual std::optional<AxisRange> dataExtent(const CAxis& axis) const = 0;
    [[nodiscard]] virtual bool fitsExactly() const { return false; }
    /// Replaces the file. \return what saveToFile() returns
    [[nodiscard]] int writeText(const QString& path, const QByteArray& text) const;

    /// Brings automatic axes up to the data and tells what changed.
    void refitAfter(bool layoutTouched);

 private:
    CChartData* find(int identifier);
    [[nodiscard]] bool isUsed(AxisSide side) const;

    std::vector<CChartData> dataSets_;
    std::array<CAxis, allAxisSides.size()> axes_;
    QString title_;
    QFont titleFont_;
    int nextIdentifier_ = 1;
};

}  // namespace tessavo
