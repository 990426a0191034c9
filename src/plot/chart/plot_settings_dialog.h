#pragma once

#include "plot/chart/dialog_parts.h"

namespace tessavo {

/// The dialog "XY Plot Settings": title and grids, and the buttons that open the settings of axes and data.
class CPlotSettingsDialog : public SettingsDialog {
    Q_OBJECT

 public:
    /// Chart and host outlive the dialog.
    CPlotSettingsDialog(CChart& chart, IChartHost& host, QWidget* parent = nullptr);

 protected:
    bool apply() override;

 private:
    CChart& chart_;
    TitleGroup* title_;
    GridsGroup* grids_;
};

}  // namespace tessavo
