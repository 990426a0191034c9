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

/// The data nearest to the pointer, as the readout shows it.
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

    /// Adds a data set.
    /// \param values as many as the product of the dimensions; the index of the last dimension runs fastest
    /// \param dimensions sizes of the dimensions, each at least 0
    /// \return its identifier, above zero and never used before by this chart; -1 when there are
    ///     `mostDataSets` already, and when the dimensions do not fit the values
    virtual int addDataSet(std::span<const double> values, std::span<const int> dimensions);
    // The functions below return false, and leave the chart as it was, for an unknown identifier or unfit
    // arguments.

    /// Replaces the values of a data set; its identifier, its position among the data sets and its style
    /// stay.
    virtual bool replaceDataSet(int identifier, std::span<const double> values,
                                std::span<const int> dimensions);
    virtual bool removeDataSet(int identifier);
    virtual void clearDataSets();
    virtual bool setDataSetColor(int identifier, QRgb color);
    /// Sets how a data set is drawn; numbers outside their limits are clamped.
    virtual bool setDataSetStyle(int identifier, const DataStyle& style);
    /// Sets which values of y mean something. The others stay in the data set and in its file, but are not
    /// drawn.
    virtual bool setDataSetLimits(int identifier, const ValueLimits& limits);
    /// Sets the axes that a data set is drawn on.
    /// \param identifier of the data set
    /// \param x bottom or top
    /// \param y left or right
    virtual bool setDataSetAxes(int identifier, AxisSide x, AxisSide y);
    [[nodiscard]] const std::vector<CChartData>& dataSets() const { return dataSets_; }
    /// A data set by its identifier; null for an unknown one.
    [[nodiscard]] const CChartData* dataSet(int identifier) const;

    // --- axes and titles

    [[nodiscard]] const CAxis& axis(AxisSide side) const { return axes_[static_cast<std::size_t>(side)]; }
    [[nodiscard]] std::span<const CAxis> axes() const { return axes_; }
    /// Replaces the axis of the same side by this one. If it is automatic, it follows the data at once.
    virtual void setAxis(const CAxis& axis);
    /// Fixes the range of one axis. After a fault the chart is as before.
    RangeFault setRange(AxisSide side, AxisRange range);
    /// Makes all axes follow the data from now on, or stay as they are. An axis that shows the range of the
    /// one across goes on doing so.
    void setAutoRange(bool automatic);
    /// Whether the ranges that the left and the bottom axis show follow the data.
    [[nodiscard]] bool isAutoRange() const;
    /// The axis whose range and scale an axis shows. An axis without data of its own and without a range of
    /// its own shows those of the axis across; any other axis shows its own.
    [[nodiscard]] AxisSide leaderOf(AxisSide side) const;
    [[nodiscard]] const QString& title() const { return title_; }
    [[nodiscard]] const QFont& titleFont() const { return titleFont_; }
    void setTitle(const QString& title, const QFont& font);

    // --- drawing

    /// Where everything stands when the chart is drawn into a rectangle.
    [[nodiscard]] ChartLayout layoutFor(const QRectF& outer) const;
    /// Draws the whole chart into a rectangle, at the scale of the painter's device.
    virtual void draw(QPainter& painter, const QRectF& outer) const;
    /// Draws what changes only when layoutChanged() is emitted: axes, grids, labels and titles.
    void drawStatic(QPainter& painter, const ChartLayout& layout) const;
    /// Draws the data, which change with every new curve.
    virtual void drawData(QPainter& painter, const ChartLayout& layout) const = 0;
    /// The data nearest to a point; nothing for a point outside the box, and without data.
    [[nodiscard]] virtual std::optional<ChartReadout> readoutAt(const ChartLayout& layout,
                                                                QPointF point) const = 0;

    // --- saving

    using Notify = std::function<void(const QString&)>;

    /// Saves the data sets of one or two dimensions as text, one value a line. An existing file is replaced
    /// whole or not at all. A chart without data sets, or with empty ones, leaves an empty file.
    /// \param path of the file
    /// \param notify gets "Cannot save files of %d dimensions." for each data set of another kind
    /// \return 1 when the file was written, 0 when there is no data set or the file cannot be written
    [[nodiscard]] virtual int saveToFile(const QString& path, const Notify& notify) const;
    /// Whether any data set holds a value.
    [[nodiscard]] bool hasData() const;

 Q_SIGNALS:
    void dataChanged();    ///< values or styles of data sets have changed
    void layoutChanged();  ///< ranges, ticks, titles or grids have changed

 protected:
    /// The box for the data, within the room that axes and titles leave. A derived class may want another
    /// shape.
    [[nodiscard]] virtual QRectF shapedBox(const QRectF& available) const { return available; }
    /// The extent of the data that an automatic axis shows; nothing without data.
    [[nodiscard]] virtual std::optional<AxisRange> dataExtent(const CAxis& axis) const = 0;
    /// Whether automatic axes end where the data end, instead of at the next round numbers.
    [[nodiscard]] virtual bool fitsExactly() const { return false; }
    /// Replaces a file by a text.
    /// \return what saveToFile() returns
    [[nodiscard]] int writeText(const QString& path, const QByteArray& text) const;

    /// Lets automatic axes follow the data, and emits the signals for what has changed.
    /// \param layoutTouched whether something else of the layout has changed already
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
