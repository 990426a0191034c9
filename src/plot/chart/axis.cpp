#include "plot/chart/axis.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "controls/theme.h"

namespace tessavo {
namespace {

constexpr double widest = 1e300;
constexpr double narrowest = 1e-290;
// Below this share of its limits a range has no room left for different doubles.
constexpr double narrowestShare = 1e-9;

bool isTooNarrow(AxisRange range) {
    const double largest = std::max(std::abs(range.minimum), std::abs(range.maximum));
    return range.maximum - range.minimum < std::max(narrowest, largest * narrowestShare);
}

AxisRange grownLinear(AxisRange extent, const AxisLook& look, bool exact) {
    extent.minimum = std::clamp(extent.minimum, -widest / 10, widest / 10);
    extent.maximum = std::clamp(extent.maximum, -widest / 10, widest / 10);
    if (isTooNarrow(extent)) {
        const double largest = std::max(std::abs(extent.minimum), std::abs(extent.maximum));
        const double least = look.steps == TickSteps::decibel ? 6.0 : 0.0;
        const double margin = std::max({least, largest * 0.1, largest < narrowest * 1e10 ? 1.0 : 0.0});
        extent = {extent.minimum - margin, extent.maximum + margin};
    }
    return exact ? extent : roundOutwards(extent, look.majorTicks, look.steps);
}

AxisRange grownLogarithmic(AxisRange extent, bool exact) {
    extent.minimum = std::clamp(extent.minimum, 1 / widest * 1e10, widest / 10);
    extent.maximum = std::clamp(extent.maximum, extent.minimum, widest / 10);
    if (extent.maximum < extent.minimum * 1.01) {
        extent = {extent.minimum / 2, extent.maximum * 2};
    }
    return exact ? extent : roundOutwardsLogarithmic(extent);
}

}  // namespace

QString rangeFaultText(RangeFault fault) {
    switch (fault) {
        case RangeFault::none:
            return {};
        case RangeFault::notANumber:
            return QStringLiteral("Max and Min must be numbers.");
        case RangeFault::maxNotAboveMin:
            return QStringLiteral("Max must be greater than Min.");
        case RangeFault::notPositive:
            return QStringLiteral("A logarithmic axis needs Max and Min above zero.");
        case RangeFault::tooNarrow:
            return QStringLiteral("Max and Min lie too close together.");
        case RangeFault::tooWide:
            return QStringLiteral("Max and Min must lie between -1e+300 and 1e+300.");
    }
    return {};
}

CAxis::CAxis(AxisSide side) : side_(side) {
    look_.titleFont = theme::font(11);
    look_.labelFont = theme::font(11);
}

QString CAxis::name() const {
    switch (side_) {
        case AxisSide::left:
            return QStringLiteral("Left Axis");
        case AxisSide::bottom:
            return QStringLiteral("Bottom Axis");
        case AxisSide::right:
            return QStringLiteral("Right Axis");
        case AxisSide::top:
            return QStringLiteral("Top Axis");
    }
    return {};
}

RangeFault CAxis::check(AxisRange range, AxisScale scale) {
    if (!std::isfinite(range.minimum) || !std::isfinite(range.maximum)) {
        return RangeFault::notANumber;
    }
    if (range.maximum <= range.minimum) {
        return RangeFault::maxNotAboveMin;
    }
    if (std::max(std::abs(range.minimum), std::abs(range.maximum)) > widest) {
        return RangeFault::tooWide;
    }
    if (scale == AxisScale::logarithmic && range.minimum <= 0) {
        return RangeFault::notPositive;
    }
    if (scale == AxisScale::logarithmic && range.minimum < narrowest) {
        return RangeFault::tooWide;
    }
    return isTooNarrow(range) ? RangeFault::tooNarrow : RangeFault::none;
}

RangeFault CAxis::setRange(AxisRange range) {
    const RangeFault fault = check(range, scale_);
    if (fault == RangeFault::none) {
        range_ = range;
        automatic_ = false;
    }
    return fault;
}

RangeFault CAxis::setScale(AxisScale scale) {
    const RangeFault fault = check(range_, scale);
    if (fault != RangeFault::none && !automatic_) {
        return fault;
    }
    scale_ = scale;
    if (fault != RangeFault::none) {
        range_ = {1, 10};
    }
    return RangeFault::none;
}

void CAxis::setLook(const AxisLook& look) {
    look_ = look;
    look_.majorTicks = std::clamp(look.majorTicks, 0, AxisLook::mostMajorTicks);
    look_.minorTicks = std::clamp(look.minorTicks, 0, AxisLook::mostMinorTicks);
    wasShown_ = wasShown_ || isShown();
}

bool CAxis::fit(std::optional<AxisRange> extent, bool exact) {
    if (!automatic_ || !extent) {
        return false;
    }
    const AxisRange grown =
        scale_ == AxisScale::linear ? grownLinear(*extent, look_, exact) : grownLogarithmic(*extent, exact);
    if (grown == range_ || check(grown, scale_) != RangeFault::none) {
        return false;
    }
    range_ = grown;
    return true;
}

double CAxis::fraction(double value) const {
    constexpr double nowhere = std::numeric_limits<double>::quiet_NaN();
    // Far enough outside to be off every screen, near enough to calculate with.
    constexpr double farOff = 1e12;
    if (!std::isfinite(value)) {
        return nowhere;
    }
    if (scale_ == AxisScale::linear) {
        // Halves, so that the difference of two huge values stays finite.
        const double share = (value / 2 - range_.minimum / 2) / (range_.maximum / 2 - range_.minimum / 2);
        return std::clamp(share, -farOff, farOff);
    }
    if (value <= 0) {
        return nowhere;
    }
    const double low = std::log10(range_.minimum);
    return (std::log10(value) - low) / (std::log10(range_.maximum) - low);
}

double CAxis::valueAt(double fraction) const {
    if (scale_ == AxisScale::linear) {
        return range_.minimum + fraction * (range_.maximum - range_.minimum);
    }
    const double low = std::log10(range_.minimum);
    return std::pow(10.0, low + fraction * (std::log10(range_.maximum) - low));
}

TickSet CAxis::ticks(int maxMajor) const {
    return scale_ == AxisScale::linear ? linearTicks(range_, maxMajor, look_.minorTicks, look_.steps)
                                       : logarithmicTicks(range_, maxMajor, look_.minorTicks);
}

}  // namespace tessavo
