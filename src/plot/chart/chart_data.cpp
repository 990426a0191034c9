#include "plot/chart/chart_data.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tessavo {

std::optional<CChartData> CChartData::make(std::span<const double> values, std::span<const int> dimensions) {
    if (dimensions.empty() || std::ranges::any_of(dimensions, [](int size) { return size < 0; })) {
        return std::nullopt;
    }
    std::size_t count = std::ranges::find(dimensions, 0) == dimensions.end() ? 1 : 0;
    for (const int size : dimensions) {
        if (count > values.size()) {
            return std::nullopt;
        }
        count *= static_cast<std::size_t>(size);
    }
    if (count != values.size()) {
        return std::nullopt;
    }
    CChartData data;
    data.values_.assign(values.begin(), values.end());
    data.dimensions_.assign(dimensions.begin(), dimensions.end());
    return data;
}

void CChartData::moveValuesFrom(CChartData&& other) {
    values_ = std::move(other.values_);
    dimensions_ = std::move(other.dimensions_);
}

DataStyle clamped(DataStyle style) {
    style.color |= 0xFF000000U;
    style.lineSize = std::clamp(style.lineSize, 1, 20);
    style.markerSize = std::clamp(style.markerSize, 3, 40);
    style.markerCount = std::clamp(style.markerCount, 1, 10000);
    style.fillOpacity = std::isfinite(style.fillOpacity) ? std::clamp(style.fillOpacity, 0.0, 1.0) : 0.0;
    return style;
}

std::optional<AxisRange> extentOf(std::span<const double> values, bool aboveZeroOnly,
                                  const ValueLimits& limits) {
    std::optional<AxisRange> extent;
    for (const double value : values) {
        if (!limits.hold(value) || (aboveZeroOnly && value <= 0)) {
            continue;
        }
        if (!extent) {
            extent = AxisRange{value, value};
        }
        extent->minimum = std::min(extent->minimum, value);
        extent->maximum = std::max(extent->maximum, value);
    }
    return extent;
}

}  // namespace tessavo
