#pragma once

#include "plot/chart/dialog_parts.h"
#include "plot/chart/image_chart.h"

namespace tessavo {

/// "Image Plot Settings": colour table, grids and how the image fills the window.
class CImagePlotSettingsDialog : public SettingsDialog {
    Q_OBJECT

 public:
    /// \param chart, host outlive the dialog
    CImagePlotSettingsDialog(CImageChart& chart, IChartHost& host, QWidget* parent = nullptr);

 protected:
    bool apply() override;

 private:
    CImageChart& chart_;
    TitleGroup* title_;
    QComboBox* colorTable_;
    GridsGroup* grids_;
    QCheckBox* aspectRatio_;
    QCheckBox* scale_;
};

}  // namespace tessavo
