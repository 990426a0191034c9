#pragma once

#include "comm/clip_layout.h"
#include "pages/rows/control_row.h"

namespace tessavo {

/// Numbers of the clip detection page's controls.
namespace clip_id {

inline constexpr int onOff = 1369;
inline constexpr int state = 1379;
inline constexpr int stateLamp = 1374;
inline constexpr int lastAnswer = 1373;
inline constexpr int switchGroup = 1360;
inline constexpr int firstColumn = 1361;     ///< by stage
inline constexpr int firstAmplifier = 1365;  ///< by row

/// The two pictures of an indicator, shown and hidden one by one.
struct LightIds {
    int clipping;
    int notClipping;
};

/// \param row see ClipStage
[[nodiscard]] constexpr LightIds light(std::size_t stage, std::size_t row) {
    constexpr std::array<LightIds, clipStages.size()> first{
        {{1386, 1392}, {1380, 1398}, {1404, 1412}, {1420, 1428}}};
    const int number = static_cast<int>(row);
    return {first[stage].clipping + number, first[stage].notClipping + number};
}

/// By row. The target pairs each amplifier's quiet picture with the other row.
inline constexpr std::array<LightIds, clipAmplifierNames.size()> amplifiers{{{1376, 1377}, {1375, 1378}}};

}  // namespace clip_id

/// Left and width of a stage's column.
[[nodiscard]] constexpr Bounds clipColumnPlace(std::size_t stage) {
    return {252 * static_cast<int>(stage), 80, 228, 424};
}

/// Rows of the page "Clip Detection". Those of its own are the pictures of the indicators: socket, quiet and
/// clipping, upon each other. A small indicator's are 34 wide.
[[nodiscard]] const ControlRows& clipRows();

}  // namespace tessavo
