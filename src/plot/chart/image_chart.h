#pragma once

#include <QImage>

#include "plot/chart/chart.h"
#include "plot/chart/image_palette.h"

namespace tessavo {

/// Shows a two-dimensional data set as an image: one cell a value, coloured from the smallest to the largest.
///
/// The first dimension counts rows from the bottom, the second columns from the left; cell n reaches from n
/// to n + 1 on its axis. The first data set with two dimensions is shown. Cells whose value is not finite
/// stay empty. The first cell would reach infinitely far on a logarithmic axis, which has no 0: there it
/// begins at 0.5, so that it is as wide as the second.
class CImageChart : public CChart {
    Q_OBJECT

 public:
    explicit CImageChart(QObject* parent = nullptr);

    [[nodiscard]] const CImagePalette& palette() const { return palette_; }
    [[nodiscard]] bool maintainsAspectRatio() const { return maintainsAspectRatio_; }
    [[nodiscard]] bool scalesToWindow() const { return scalesToWindow_; }

    /// Chooses a built-in colour table.
    /// \return false, and nothing is changed, for an identifier that names none
    bool setPalette(int identifier);
    /// Whether a step of the bottom axis is as long on the screen as a step of the left one, so that cells
    /// are square.
    void setMaintainsAspectRatio(bool maintain);
    /// Whether the image fills the window. Otherwise a cell is one pixel wide and high, if there is room for
    /// all of them.
    void setScalesToWindow(bool scale);

    void drawData(QPainter& painter, const ChartLayout& layout) const override;
    /// Column, row and value of the cell at a point.
    [[nodiscard]] std::optional<ChartReadout> readoutAt(const ChartLayout& layout,
                                                        QPointF point) const override;

 protected:
    [[nodiscard]] QRectF shapedBox(const QRectF& available) const override;
    [[nodiscard]] std::optional<AxisRange> dataExtent(const CAxis& axis) const override;
    [[nodiscard]] bool fitsExactly() const override { return true; }

 private:
    [[nodiscard]] const CChartData* shown() const;
    [[nodiscard]] const QImage& image() const;
    void drawStraight(QPainter& painter, const ChartLayout& layout) const;
    void drawCurved(QPainter& painter, const ChartLayout& layout) const;

    CImagePalette palette_;
    bool maintainsAspectRatio_ = false;
    bool scalesToWindow_ = true;
    mutable QImage image_;  ///< made when first drawn, null when out of date
};

}  // namespace tessavo
