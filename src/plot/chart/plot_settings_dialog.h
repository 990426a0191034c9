#pragma once

#include "plot/chart/dialog_parts.h"

namespace tessavo {

/// "XY Plot Settings": title and grids, and the ways to the settings of axes and data.
class CPlotSettingsDialog : public SettingsDialog {
    Q_OBJECT

 public:
    /// \param chart, host outlive the dialog
    CPlotSettingsDialog(CChart& chart, IChartHost& host, QWidget* parent = nullptr);

 protected:
    bool apply() override;

 private:
    CChart& chart_;
    TitleGroup* title_;
    GridsGroup* grids_;
};

}  // namespace tessavo
