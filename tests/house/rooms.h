#pragma once

#include <span>
#include <string_view>

namespace tessavo::house {

/// A room of the house: a folder below src/ with a floor of its own.
struct Room {
    std::string_view folder;
    int floor;
    bool knowsTheToolkit;    ///< stands in the window's libraries
    std::string_view holds;  ///< in a few words
};

/// All rooms, from the lowest floor up.
[[nodiscard]] std::span<const Room> houseRooms();

}  // namespace tessavo::house
