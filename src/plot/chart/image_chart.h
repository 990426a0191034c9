#pragma once

#include <QImage>

#include "plot/chart/chart.h"
#include "plot/chart/image_palette.h"

namespace tessavo {

/// Shows a two-dimensional data set as an image: one cell a value, coloured from the smallest to the largest.
///
/// The first dimension counts rows from the bottom, the second columns from the left: cell n reaches from n
/// to n + 1 on its axis. The first data set with two dimensions is shown. Cells that are not finite stay
/// empty. On a logarithmic axis the first cell, which has no end there, is seen from 0.5 on, as wide as the
/// second.
class CImageChart : public CChart {
    Q_OBJECT

 public:
    explicit CImageChart(QObject* parent = nullptr);

    [[nodiscard]] const CImagePalette& palette() const { return palette_; }
    [[nodiscard]] bool maintainsAspectRatio() const { return maintainsAspectRatio_; }
    [[nodiscard]] bool scalesToWindow() const { return scalesToWindow_; }

    /// \return false for an identifier that names no colour table
    bool setPalette(int identifier);
    /// One step of the bottom axis' range is as long as one of the left axis'.
    void setMaintainsAspectRatio(bool maintain);
    /// Fills the window; otherwise a step of the ranges, the width of a cell, is one pixel where there is
    /// room for all of them.
    void setScalesToWindow(bool scale);

    void drawData(QPainter& painter, const ChartLayout& layout) const override;
    /// Column, row and value of the cell under the place.
    [[nodiscard]] std::optional<ChartReadout> readoutAt(const ChartLayout& layout,
                                                        QPointF place) const override;

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
