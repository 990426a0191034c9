#pragma once

#include <QPixmap>
#include <QWidget>
#include <optional>

#include "controls/focus_ring.h"
#include "plot/chart/chart.h"
#include "plot/chart/chart_host.h"

namespace tessavo {

/// Shows a chart, its context menu and a readout under the pointer.
///
/// Everything is drawn into a buffer at the screen's scale and copied to the screen in one step; axes, grids
/// and labels are kept and drawn again only when they change. However many curves arrive between two paints,
/// the last one is painted, once. With the focus, Left and Right move the readout, Home and End take it to
/// the ends, Shift+F10 opens the context menu.
class CChartView : public QWidget {
    Q_OBJECT

 public:
    /// \param chart, host outlive the view or are never used again by it
    CChartView(CChart& chart, IChartHost& host, QWidget* parent = nullptr);

    /// The chart without the readout, at the screen's scale.
    [[nodiscard]] QImage picture() const;
    /// What the readout says; empty when it shows nothing.
    [[nodiscard]] QString readoutText() const;

    void openSettings();
    void copyPicture() const;
    void savePicture();
    void saveData();

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

 private:
    [[nodiscard]] std::optional<ChartReadout> readout() const;
    void setPointer(std::optional<QPointF> pointer);
    void openMenu(QPoint globalPlace);
    void renewFrame();
    void tellReadout();

    CChart& chart_;
    IChartHost& host_;
    ChartLayout layout_;
    QPixmap frame_;  ///< what changes only with the layout
    bool frameIsFresh_ = false;
    QPixmap buffer_;  ///< frame, data and readout on their way to the screen
    bool dataAreTold_ = false;
    std::optional<QPointF> pointer_;
    FocusRing ring_;
};

}  // namespace tessavo
