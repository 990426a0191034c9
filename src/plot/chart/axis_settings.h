#pragma once

#include <array>
#include <vector>

#include "plot/chart/dialog_parts.h"

namespace tessavo {

/// "Axis Settings": steps through the axes that are or were shown with their ranges, scale, ticks and titles.
/// Nothing changes in the chart before OK, and a range that cannot be shown changes nothing at all.
class CAxisSettings : public SettingsDialog {
    Q_OBJECT

 public:
    /// \param chart, host outlive the dialog
    CAxisSettings(CChart& chart, IChartHost& host, QWidget* parent = nullptr);

 protected:
    bool apply() override;
    void step(int direction) override;

 private:
    struct RangeRow {
        TextEditBox* minimum;
        TextEditBox* maximum;
        SkinCheckBox* automatic;
    };

    [[nodiscard]] RangeRow makeRow(const QString& name, QWidget* parent);
    [[nodiscard]] CAxis& current() { return axes_[static_cast<std::size_t>(shown_[place_])]; }
    /// The axis whose range stands in a row: the one in hand or its partner, or the one across that it
    /// follows.
    [[nodiscard]] CAxis& axisOf(bool vertical);
    void showCurrent();
    static void showRange(const RangeRow& row, const CAxis& axis);
    /// Takes the controls into the copies; false, with a message, when a range cannot be shown.
    bool takeCurrent();
    bool takeRange(const RangeRow& row, CAxis& axis, AxisScale scale);

    CChart& chart_;
    IChartHost& host_;
    std::array<CAxis, allAxisSides.size()> axes_;
    std::vector<AxisSide> shown_;
    std::size_t place_ = 0;

    CColorControl* name_;
    CColorControl* counter_;
    RangeRow xRange_{};
    RangeRow yRange_{};
    SkinCheckBox* logarithmic_;
    SpinEdit* majorTicks_;
    SpinEdit* minorTicks_;
    SkinCheckBox* tickMarks_;
    SkinCheckBox* tickLabels_;
    TitleGroup* title_;
};

}  // namespace tessavo
