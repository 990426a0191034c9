#pragma once

#include <array>
#include <vector>

#include "plot/chart/dialog_parts.h"

namespace tessavo {

/// The dialog "Axis Settings": steps through the axes that are shown or were shown, with their ranges, scale,
/// ticks and titles. It edits copies; OK gives them to the chart, unless one of the ranges cannot be shown.
class CAxisSettings : public SettingsDialog {
    Q_OBJECT

 public:
    /// Chart and host outlive the dialog.
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

    /// Makes the controls of one range.
    [[nodiscard]] RangeRow makeRow(const QString& name, QWidget* parent);
    [[nodiscard]] CAxis& current() { return axes_[static_cast<std::size_t>(shown_[index_])]; }
    /// The axis whose range a row shows: in the row of its own direction the edited axis, in the other row
    /// the left or the bottom one. Where such an axis shows the range of the one across, it is the one
    /// across.
    /// \param vertical the row for the left and right axes
    [[nodiscard]] CAxis& axisOf(bool vertical);
    void showCurrent();
    static void showRange(const RangeRow& row, const CAxis& axis);
    /// Reads the controls into the copies.
    /// \return false, after a message, when a range cannot be shown
    bool readControls();
    bool readRange(const RangeRow& row, CAxis& axis, AxisScale scale);

    CChart& chart_;
    IChartHost& host_;
    std::array<CAxis, allAxisSides.size()> axes_;
    std::vector<AxisSide> shown_;  ///< the axes that the dialog steps through
    std::size_t index_ = 0;        ///< of the edited one among them

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
