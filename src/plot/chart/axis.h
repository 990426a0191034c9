#pragma once

#include <QFont>
#include <QString>
#include <array>
#include <cstddef>
#include <optional>

#include "plot/chart/tick_marks.h"

namespace tessavo {

/// Where an axis stands beside the data.
enum class AxisSide { left, bottom, right, top };
inline constexpr std::array allAxisSides{AxisSide::left, AxisSide::bottom, AxisSide::right, AxisSide::top};

/// How an axis spreads its values.
enum class AxisScale { linear, logarithmic };

/// Why a range cannot be shown.
enum class RangeFault {
    none,
    notANumber,      ///< a limit is infinite or no number
    maxNotAboveMin,  ///< the maximum is not greater than the minimum
    notPositive,     ///< a logarithmic axis with a limit that is not above zero
    tooNarrow,       ///< the limits are so near to each other that ticks would coincide
    tooWide          ///< a limit is too large, or on a logarithmic axis too small, to compute with
};

/// What to tell a person about a fault; empty for `none`.
[[nodiscard]] QString rangeFaultText(RangeFault fault);

/// How an axis looks.
struct AxisLook {
    static constexpr int mostMajorTicks = 50;
    static constexpr int mostMinorTicks = 9;

    int majorTicks = 0;  ///< most major ticks, 0 to mostMajorTicks; 0 hides the axis
    int minorTicks = 0;  ///< most minor ticks between two major ones, 0 to mostMinorTicks
    bool tickMarks = false;
    bool tickLabels = true;
    bool majorGrid = false;
    bool minorGrid = false;
    TickSteps steps = TickSteps::decimal;
    LabelForm labels = LabelForm::plain;
    QString title;
    QFont titleFont;
    QFont labelFont;

    friend bool operator==(const AxisLook&, const AxisLook&) = default;
};

/// One axis: its range, its scale and its look. Its range can always be shown: one that cannot is refused.
class CAxis {
 public:
    explicit CAxis(AxisSide side);

    [[nodiscard]] AxisSide side() const { return side_; }
    [[nodiscard]] bool isVertical() const { return side_ == AxisSide::left || side_ == AxisSide::right; }
    [[nodiscard]] QString name() const;  ///< "Left Axis" and so on
    [[nodiscard]] bool isShown() const { return look_.majorTicks > 0; }
    /// Whether the axis is shown or was shown before. The settings offer such an axis, so that a person can
    /// show it again.
    [[nodiscard]] bool wasShown() const { return wasShown_; }

    [[nodiscard]] const AxisRange& range() const { return range_; }
    [[nodiscard]] AxisScale scale() const { return scale_; }
    [[nodiscard]] bool isAutomatic() const { return automatic_; }
    [[nodiscard]] const AxisLook& look() const { return look_; }
    /// Unit that the readout shows behind a value of this axis; empty for a plain number.
    [[nodiscard]] const QString& unit() const { return unit_; }
    void setUnit(const QString& unit) { unit_ = unit; }

    /// Why a range cannot be shown on an axis of this scale; `none` when it can.
    [[nodiscard]] static RangeFault check(AxisRange range, AxisScale scale);

    /// Shows exactly this range from now on; the axis is no longer automatic. After a fault everything is as
    /// before.
    RangeFault setRange(AxisRange range);
    /// Changes the scale. A logarithmic one is refused while the range is fixed and not above zero. After a
    /// fault everything is as before.
    RangeFault setScale(AxisScale scale);
    /// Whether fit() changes the range.
    void setAutomatic(bool automatic) { automatic_ = automatic; }
    /// Changes the look; numbers of ticks outside their limits are clamped.
    void setLook(const AxisLook& look);

    /// Lets an automatic axis follow the data.
    /// \param extent smallest and largest value to show: finite, and above zero on a logarithmic scale;
    ///     without one the range stays
    /// \param exact takes the extent as it is, without rounding it outwards
    /// \return whether the range changed
    bool fit(std::optional<AxisRange> extent, bool exact = false);

    /// Where a value stands on the axis: 0 at the minimum, 1 at the maximum, less or more outside the range.
    /// NaN for a value that is not finite, and on a logarithmic scale for one that is not above zero.
    [[nodiscard]] double fraction(double value) const;
    /// The value that stands at a fraction of the axis; the inverse of fraction().
    [[nodiscard]] double valueAt(double fraction) const;

    /// The ticks of the axis.
    /// \param maxMajor most labels; where they would touch, a chart asks for fewer than the look has
    [[nodiscard]] TickSet ticks(int maxMajor) const;

    friend bool operator==(const CAxis&, const CAxis&) = default;

 private:
    AxisSide side_;
    AxisScale scale_ = AxisScale::linear;
    AxisRange range_;
    bool automatic_ = true;
    bool wasShown_ = false;
    QString unit_;
    AxisLook look_;
};

}  // namespace tessavo
