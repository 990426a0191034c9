#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tessavo {

inline constexpr std::size_t surroundModeCount = 3;  ///< music club, concert hall, stadium
inline constexpr std::size_t roomSizeCount = 5;      ///< from the smallest to the largest

/// Delay size 1 of the surround processing in milliseconds, by surround mode and room size.
using SurroundDelays = std::array<std::array<std::uint16_t, roomSizeCount>, surroundModeCount>;

/// The delays that the application starts with: they grow with the mode and with the room.
inline constexpr SurroundDelays startingSurroundDelays{{
    {0, 8, 16, 24, 32},    // music club
    {8, 16, 24, 32, 40},   // concert hall
    {16, 24, 32, 40, 48},  // stadium
}};

}  // namespace tessavo
