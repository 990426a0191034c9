#pragma once

#include <array>
#include <cstddef>

namespace tessavo {

/// A row of vertical sliders, some of which move together: those whose groups have the same selection follow
/// each other by the same amount. A move that would take any of them over a bound is refused for all.
///
/// A slider's value is −position / scale. Values count in the slider's own steps, so that moves to and fro
/// lose nothing.
class LinkedSliders {
 public:
    static constexpr std::size_t count = 8;

    /// The range of every slider is −(upper × scale) to −(lower × scale).
    ///
    /// \param scales steps to a unit of value, for each slider; above 0
    LinkedSliders(double lower, double upper, const std::array<int, count>& scales);

    /// Selections of the row's groups; below 0 for a slider without one, which is never linked.
    using Groups = std::array<int, count>;

    struct Move {
        bool refused = false;
        /// Sliders that went elsewhere by their link; never the one that was moved.
        std::array<bool, count> followed{};
    };

    /// A slider was set to a position that is not a move: nothing follows. The position is clamped.
    void setPosition(std::size_t slider, int position);

    /// A slider has moved to a position, which is clamped. After a refused move it is where it was before.
    Move move(std::size_t slider, int position, const Groups& groups);

    /// Where a slider stands now.
    [[nodiscard]] int position(std::size_t slider) const { return sliders_[slider].lastPosition; }
    /// The last value.
    [[nodiscard]] double value(std::size_t slider) const;

 private:
    struct Slider {
        int scale = 1;
        int minimum = 0;
        int maximum = 0;
        int lastPosition = 0;
    };

    std::array<Slider, count> sliders_;
};

}  // namespace tessavo
