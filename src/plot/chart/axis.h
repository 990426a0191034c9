#pragma once

#include <QFont>
#include <QString>
#include <array>
#include <cstddef>
#include <optional>

#include "plot/chart/tick_marks.h"

namespace tessavo {

enum class AxisSide { left, bottom, right, top };
inline constexpr std::array allAxisSides{AxisSide::left, AxisSide::bottom, AxisSide::right, AxisSide::top};

enum class AxisScale { linear, logarithmic };

/// Why a range cannot be shown.
enum class RangeFault { none, notANumber, maxNotAboveMin, notPositive, tooNarrow, tooWide };

/// What to tell a person about it; empty for none.
[[nodiscard]] QString rangeFaultText(RangeFault fault);

/// How an axis looks; every value is usable.
struct AxisLook {
    static constexpr int mostMajorTicks = 50;
    static constexpr int mostMinorTicks = 9;

    int majorTicks = 0;  ///< at most so many; 0 hides the axis
    int minorTicks = 0;  ///< at most so many between two major ones
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

/// One axis: its range, its scale and its looks. Always holds a range that can be shown.
class CAxis {
 public:
    explicit CAxis(AxisSide side);

    [[nodiscard]] AxisSide side() const { return side_; }
    [[nodiscard]] bool isVertical() const { return side_ == AxisSide::left || side_ == AxisSide::right; }
    [[nodiscard]] QString name() const;  ///< "Left Axis" and so on
    [[nodiscard]] bool isShown() const { return look_.majorTicks > 0; }
    /// Whether it is shown or once was, so that its settings lead back to it.
    [[nodiscard]] bool wasShown() const { return wasShown_; }

    [[nodiscard]] const AxisRange& range() const { return range_; }
    [[nodiscard]] AxisScale scale() const { return scale_; }
    [[nodiscard]] bool isAutomatic() const { return automatic_; }
    [[nodiscard]] const AxisLook& look() const { return look_; }
    /// What its values count in, as the readout shows it behind a value; empty for a plain number.
    [[nodiscard]] const QString& unit() const { return unit_; }
    void setUnit(const QString& unit) { unit_ = unit; }

    [[nodiscard]] static RangeFault check(AxisRange range, AxisScale scale);

    /// Shows exactly this range from now on; after a fault everything is as before.
    RangeFault setRange(AxisRange range);
    /// A logarithmic scale is refused while the range is fixed and not above zero.
    RangeFault setScale(AxisScale scale);
    void setAutomatic(bool automatic) { automatic_ = automatic; }
    /// Tick counts outside their limits are clamped.
    void setLook(const AxisLook& look);

    /// Follows the data when automatic.
    /// \param extent finite values of the data, above zero on a logarithmic scale; nothing keeps the range
    /// \param exact takes the extent as it is, without rounding it outwards
    /// \return whether the range changed
    bool fit(std::optional<AxisRange> extent, bool exact = false);

    /// Place of a value: 0 at the minimum, 1 at the maximum, NaN where it has none.
    [[nodiscard]] double fraction(double value) const;
    [[nodiscard]] double valueAt(double fraction) const;

    /// Ticks with at most so many labels.
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
