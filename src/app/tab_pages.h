#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

#include "controls/tab_dialog.h"

namespace tessavo {

/// Pages of the main view in tab order.
enum class Page : std::uint8_t {
    inputEqualizer,
    channelConfig,
    outputEqualizer,
    outputGroup,
    clipDetection,
    communication
};

inline constexpr std::size_t pageCount = 6;

/// Makes the page of a tab. Its caller takes it over.
using PageFactory = std::function<CTabDialog*(Page)>;

inline constexpr std::array<std::string_view, pageCount> tabTitles{"Equalizing Input",  "Channel Config",
                                                                   "Equalizing Output", "Output Group",
                                                                   "Clip Detection",    "Communication"};

/// Titles of the plot window by tab; the last belongs to no tab.
inline constexpr std::array<std::string_view, pageCount + 1> plotTitles{
    "InputEQ Graph", "No Plot", "OutputEQ Graph", "No Plot", "Loudness", "TAVO curve", "Volume Curve"};

}  // namespace tessavo
