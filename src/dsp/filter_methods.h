#pragma once

#include <array>
#include <string_view>

namespace tessavo {

/// Names of the filter methods as the filter mode numbers them: bilinear, matched, and the mean of both.
inline constexpr std::array<std::string_view, 3> filterMethodNames{"BZT", "MZT", "BZT/MZT"};

}  // namespace tessavo
