#pragma once

#include "plot/chart/dialog_parts.h"
#include "plot/chart/image_chart.h"

namespace tessavo {

/// The dialog "Image Plot Settings": colour table, grids and how the image fills the window.
class CImagePlotSettingsDialog : public SettingsDialog {
    Q_OBJECT

 public:
    /// Chart and host outlive the dialog.
    CImagePlotSettingsDialog(CImageChart& chart, IChartHost& host, QWidget* parent = nullptr);

 protected:
    bool apply() override;

 private:
    void showStrip();

    CImageChart& chart_;
    TitleGroup* title_;
    SkinComboBox* colorTable_;
    CColorControl* strip_;
    GridsGroup* grids_;
    SkinCheckBox* aspectRatio_;
    SkinCheckBox* scale_;
};

}  // namespace tessavo
