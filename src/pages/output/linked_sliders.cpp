#include "pages/output/linked_sliders.h"

#include <algorithm>
#include <cmath>

#include "base/saturate.h"

namespace tessavo {

namespace {

int stepsOf(double value, int scale) {
    return truncateTo<int>(std::round(value * scale));
}

}  // namespace

LinkedSliders::LinkedSliders(double lower, double upper, const std::array<int, count>& scales) {
    for (std::size_t i = 0; i < count; ++i) {
        sliders_[i].scale = scales[i];
        sliders_[i].minimum = -stepsOf(upper, scales[i]);
        sliders_[i].maximum = -stepsOf(lower, scales[i]);
        setPosition(i, 0);
    }
}

void LinkedSliders::setPosition(std::size_t slider, int position) {
    Slider& set = sliders_[slider];
    set.lastPosition = std::clamp(position, set.minimum, set.maximum);
}

double LinkedSliders::value(std::size_t slider) const {
    const Slider& asked = sliders_[slider];
    return asked.lastPosition == 0 ? 0 : -static_cast<double>(asked.lastPosition) / asked.scale;
}

LinkedSliders::Move LinkedSliders::move(std::size_t slider, int position, const Groups& groups) {
    Move result;
    Slider& moved = sliders_[slider];
    position = std::clamp(position, moved.minimum, moved.maximum);
    const double change = (static_cast<double>(moved.lastPosition) - position) / moved.scale;

    std::array<int, count> targets{};
    for (std::size_t j = 0; j < count; ++j) {
        targets[j] = sliders_[j].lastPosition;
        if (j == slider || groups[j] < 0 || groups[j] != groups[slider]) {
            continue;
        }
        targets[j] -= stepsOf(change, sliders_[j].scale);
        if (targets[j] < sliders_[j].minimum || targets[j] > sliders_[j].maximum) {
            result.refused = true;
            return result;
        }
    }
    targets[slider] = position;
    for (std::size_t j = 0; j < count; ++j) {
        result.followed[j] = j != slider && targets[j] != sliders_[j].lastPosition;
        sliders_[j].lastPosition = targets[j];
    }
    return result;
}

}  // namespace tessavo
