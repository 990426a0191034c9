#pragma once

#include "plot/chart/chart.h"

namespace tessavo {

/// Lines, scattered points and histograms of x/y data.
///
/// Points that have no place (not finite, or not above zero on a logarithmic axis) are skipped, and a line
/// breaks there. Data sets that are no x/y data are kept but not drawn.
class CXYChart : public CChart {
    Q_OBJECT

 public:
    explicit CXYChart(QObject* parent = nullptr);

    void drawData(QPainter& painter, const ChartLayout& layout) const override;
    /// The point nearest in x of the first data set.
    [[nodiscard]] std::optional<ChartReadout> readoutAt(const ChartLayout& layout,
                                                        QPointF place) const override;
    /// Saves a line "x y" for each point of the x/y data sets; others are skipped.
    [[nodiscard]] int saveToFile(const QString& path, const Notify& notify) const override;

 protected:
    [[nodiscard]] std::optional<AxisRange> dataExtent(const CAxis& axis) const override;
};

/// Gives a chart the axes of a frequency response: 20 Hz to 20 kHz on a logarithmic bottom axis, -18 to 18 dB
/// on the left.
void setUpResponseAxes(CXYChart& chart);

}  // namespace tessavo
