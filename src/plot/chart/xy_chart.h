#pragma once

#include "plot/chart/chart.h"

namespace tessavo {

/// Chart of x/y data as lines, scattered points and histograms.
///
/// A point cannot be drawn when it is not finite, or not above zero on a logarithmic axis; it is skipped, and
/// a line breaks there. Data sets that are no x/y data stay in the chart but are not drawn.
class CXYChart : public CChart {
    Q_OBJECT

 public:
    explicit CXYChart(QObject* parent = nullptr);

    void drawData(QPainter& painter, const ChartLayout& layout) const override;
    /// The point of the first data set whose x is nearest.
    [[nodiscard]] std::optional<ChartReadout> readoutAt(const ChartLayout& layout,
                                                        QPointF point) const override;
    /// Saves a line "x y" for each point of the x/y data sets. Other data sets are left out.
    [[nodiscard]] int saveToFile(const QString& path, const Notify& notify) const override;

 protected:
    [[nodiscard]] std::optional<AxisRange> dataExtent(const CAxis& axis) const override;
};

/// Gives a chart the axes of a frequency response: a logarithmic bottom axis from 20 Hz to 20 kHz, and a left
/// axis from -18 to 18 dB.
void setUpResponseAxes(CXYChart& chart);

}  // namespace tessavo
