#pragma once

#include <array>
#include <memory>
#include <string_view>

#include "dsp/icoefficient_generator.h"

namespace tessavo {

/// Names of the filter methods as the filter mode numbers them: bilinear, matched, and the mean of both.
inline constexpr std::array<std::string_view, 3> filterMethodNames{"BZT", "MZT", "BZT/MZT"};

/// One generator of each filter method, by filter mode.
using FilterMethods = std::array<std::unique_ptr<IcoefficientGenerator>, filterMethodNames.size()>;

/// Makes one generator of each method, each with a warning of its own to give.
/// \param warn shows the warning; empty to warn nobody
[[nodiscard]] FilterMethods makeFilterMethods(const IcoefficientGenerator::Warn& warn = {});

}  // namespace tessavo
