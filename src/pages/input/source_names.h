#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <string_view>

namespace tessavo {

/// The sources that can feed an output channel, by the number that a set holds.
inline constexpr std::array<std::string_view, 14> sourceNames{
    "Silenced",   "FrontLeft",      "FrontRight",      "Center",           "RearLeft",
    "RearRight",  "Subwoofer",      "FrontLeftCenter", "FrontRightCenter", "LeftTotal",
    "RightTotal", "LeftRightTotal", "RearLeftTotal",   "RearRightTotal"};

/// Name of a source; a number without one as it is.
[[nodiscard]] QString sourceName(std::uint8_t source);

/// At most three letters for places too narrow for the name; a dash for a silenced channel.
[[nodiscard]] QString shortSourceName(std::uint8_t source);

}  // namespace tessavo
