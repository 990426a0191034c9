#pragma once

#include <algorithm>

namespace tessavo {

/// Truncates a number towards zero into [minimum, maximum]. Values outside give the nearer limit, NaN gives
/// the minimum.
[[nodiscard]] constexpr int wholeWithin(double value, int minimum, int maximum) {
    if (!(value > minimum)) {
        return minimum;
    }
    return value >= maximum ? maximum : static_cast<int>(value);
}

/// The way of a slider's thumb. All lengths are pixels along the slider, counted from its left or top end.
struct SliderTrack {
    double extent = 0;      ///< whole length of the control
    double nearMargin = 0;  ///< what the thumb leaves free at the left or top end
    double farMargin = 0;   ///< what it leaves free at the right or bottom end
    double thumb = 0;       ///< length of the thumb

    /// How far the thumb's centre can move; zero or less when the control is too small for its thumb.
    [[nodiscard]] double travel() const { return extent - farMargin - nearMargin - thumb; }

    /// The pixel nearest to `pixel` that the thumb's centre can take.
    [[nodiscard]] double clampPixel(double pixel) const {
        const double lowest = nearMargin + thumb / 2;
        return std::clamp(pixel, lowest, std::max(lowest, extent - farMargin - thumb / 2));
    }

    /// Position for a thumb centred on `pixel`, truncated towards zero, within [minimum, maximum].
    [[nodiscard]] int positionAt(double pixel, int minimum, int maximum) const {
        if (travel() <= 0) {
            return minimum;
        }
        const double range = static_cast<double>(maximum) - minimum;
        return wholeWithin((pixel - thumb / 2 - nearMargin) / travel() * range + minimum, minimum, maximum);
    }

    /// Pixel on which the thumb is centred at a position.
    [[nodiscard]] double pixelOf(int position, int minimum, int maximum) const {
        const double range = static_cast<double>(maximum) - minimum;
        const double share = range > 0 ? (static_cast<double>(position) - minimum) / range : 0;
        return nearMargin + thumb / 2 + share * std::max(0.0, travel());
    }
};

}  // namespace tessavo
