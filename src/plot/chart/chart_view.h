#pragma once

#include <QPixmap>
#include <QWidget>
#include <optional>

#include "controls/tracked_widget.h"
#include "plot/chart/chart.h"
#include "plot/chart/chart_host.h"

namespace tessavo {

/// Shows a chart, its context menu and a readout under the pointer.
///
/// Everything is drawn into a buffer at the screen's scale and copied to the screen in one step. Axes, grids
/// and labels are drawn into a pixmap of their own, and drawn again only when they change. However many
/// curves arrive between two paint events, only the last one is painted. With the focus, Left and Right move
/// the readout, Home and End take it to the ends, and Shift+F10 opens the context menu.
class CChartView : public FocusTracked<QWidget> {
    Q_OBJECT

 public:
    /// Chart and host outlive the view.
    CChartView(CChart& chart, IChartHost& host, QWidget* parent = nullptr);

    /// The chart without the readout, at the screen's scale.
    [[nodiscard]] QImage picture() const;
    /// The text of the readout; empty while there is none.
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

 private:
    [[nodiscard]] std::optional<ChartReadout> readout() const;
    void setPointer(std::optional<QPointF> pointer);
    void openMenu(QPoint globalPosition);
    void renewFrame();
    void announceReadout();

    CChart& chart_;
    IChartHost& host_;
    ChartLayout layout_;
    QPixmap frame_;  ///< axes, grids and labels, which change only with the layout
    bool frameIsFresh_ = false;
    QPixmap buffer_;  ///< frame, data and readout on their way to the screen
    bool dataAnnounced_ = false;
    std::optional<QPointF> pointer_;
};

}  // namespace tessavo
