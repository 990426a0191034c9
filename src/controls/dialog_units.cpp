#include "controls/dialog_units.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace tessavo {
namespace {

constexpr int fontWidth = 6;
constexpr int fontHeight = 13;

/// units x numerator / denominator, rounded half away from zero.
constexpr int scaled(std::int64_t units, int numerator, int denominator) {
    const std::int64_t half = units < 0 ? -denominator / 2 : denominator / 2;
    const std::int64_t pixels = (units * numerator + half) / denominator;
    return static_cast<int>(std::clamp<std::int64_t>(pixels, std::numeric_limits<int>::min() / 2,
                                                     std::numeric_limits<int>::max() / 2));
}

constexpr int across(std::int64_t units) {
    return scaled(units, fontWidth, 4);
}

constexpr int down(std::int64_t units) {
    return scaled(units, fontHeight, 8);
}

}  // namespace

QRect dialogUnits(int x, int y, int width, int height) {
    const int left = across(x);
    const int top = down(y);
    return {left, top, across(std::int64_t{x} + width) - left, down(std::int64_t{y} + height) - top};
}

}  // namespace tessavo
