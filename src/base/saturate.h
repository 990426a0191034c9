#pragma once

#include <concepts>
#include <limits>

namespace tessavo {

/// Truncates a number towards zero into an integer type. Values outside the type's range give its nearest
/// limit, NaN gives 0; a plain cast would be undefined for both.
template <std::integral Integer>
[[nodiscard]] constexpr Integer truncateTo(double value) noexcept {
    // The limits of the 64-bit types round up to a power of two as doubles, hence >= at the top.
    constexpr auto lowest = static_cast<double>(std::numeric_limits<Integer>::min());
    constexpr auto highest = static_cast<double>(std::numeric_limits<Integer>::max());
    if (value != value) {
        return 0;
    }
    if (value <= lowest) {
        return std::numeric_limits<Integer>::min();
    }
    if (value >= highest) {
        return std::numeric_limits<Integer>::max();
    }
    return static_cast<Integer>(value);
}

}  // namespace tessavo
