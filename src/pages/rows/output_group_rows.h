#pragma once

#include <array>

#include "pages/rows/control_row.h"

namespace tessavo {

/// What tells the two rows of sliders on the page "Output Group" apart.
struct GroupRow {
    const char* title;
    const char* name;  ///< behind "Channel n", for screen readers
    FieldId value;
    FieldId group;
    int top;
    int sliderHeight;
    int firstSlider;  ///< numbers go by slider position
    int firstGroup;
    int firstDistance;  ///< of the boxes of centimetres, 0 for a row without
    std::array<int, channelCount> edits;
    std::string_view effect;
};

inline constexpr std::array<GroupRow, 2> groupRows{{{"Output Gain",
                                                     "gain",
                                                     FieldId::groupGain,
                                                     FieldId::gainGroup,
                                                     8,
                                                     134,
                                                     1364,
                                                     1157,
                                                     0,
                                                     {1398, 1399, 1397, 1396, 1400, 1395, 1401, 1404},
                                                     "added to the channel's volume"},
                                                    {"Output Delay",
                                                     "delay",
                                                     FieldId::groupDelay,
                                                     FieldId::delayGroup,
                                                     302,
                                                     118,
                                                     1372,
                                                     1165,
                                                     1413,
                                                     {1405, 1406, 1407, 1408, 1409, 1410, 1411, 1412},
                                                     "added to the channel's delay"}}};

/// Rows of the page "Output Group". Its sliders move together in a way that no field tells, so the page
/// itself keeps them in step.
[[nodiscard]] const ControlRows& outputGroupRows();

}  // namespace tessavo
