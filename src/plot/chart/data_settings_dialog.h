#pragma once

#include <utility>
#include <vector>

#include "plot/chart/dialog_parts.h"

namespace tessavo {

/// The dialog "Data Settings": steps through the data sets and how they are drawn. It edits copies of the
/// styles; OK gives them to the chart.
class CDataSettingsDialog : public SettingsDialog {
    Q_OBJECT

 public:
    /// Chart and host outlive the dialog.
    CDataSettingsDialog(CChart& chart, IChartHost& host, QWidget* parent = nullptr);

 protected:
    bool apply() override;
    void step(int direction) override;

 private:
    void layOut();
    void showCurrent();
    void readControls();
    void nameFrequencies();
    void showColor();

    CChart& chart_;
    std::vector<std::pair<int, DataStyle>> styles_;  ///< by identifier
    std::size_t index_ = 0;                          ///< of the edited one among them
    QRgb color_ = 0;

    CColorControl* counter_;
    SkinComboBox* type_;
    SkinComboBox* lineStyle_;
    SpinEdit* lineSize_;
    CColorControl* swatch_;
    CxSkinButton* colorButton_;
    SkinComboBox* marker_;
    SpinEdit* markerSize_;
    SkinComboBox* frequency_;
    SpinEdit* count_;
};

}  // namespace tessavo
