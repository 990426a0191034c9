#pragma once

#include <algorithm>
#include <array>

#include "pages/rows/control_row.h"

namespace tessavo {

/// Numbers of the controls of the output equalizer page.
namespace output_eq_id {

/// A slider and the box of its number.
struct SliderIds {
    int slider;
    int edit;
};

struct BandIds {
    int enabled;
    int type;
    std::array<SliderIds, 3> sliders;  ///< frequency, gain, Q
};

inline constexpr std::array<BandIds, bandCount> bands{{
    {1098, 1269, {{{2000, 1111}, {1112, 1116}, {1117, 1121}}}},
    {1099, 1270, {{{1107, 1110}, {1010, 1115}, {1009, 1120}}}},
    {1034, 1271, {{{1014, 1109}, {1016, 1114}, {1015, 1119}}}},
    {1035, 1272, {{{1020, 1108}, {1022, 1113}, {1021, 1118}}}},
    {1036, 1161, {{{1026, 1049}, {1028, 1050}, {1027, 1051}}}},
    {1100, 1162, {{{2001, 1123}, {1126, 1124}, {1127, 1125}}}},
    {1101, 1163, {{{1128, 1129}, {1011, 1130}, {1012, 1131}}}},
    {1037, 1164, {{{1017, 1132}, {1018, 1133}, {1019, 1134}}}},
}};

struct CrossoverIds {
    int enabled;
    int kind;
    int order;
    SliderIds frequency;
};

inline constexpr std::array<CrossoverIds, crossoverCount> crossovers{
    {{1438, 1167, 1165, {1063, 1064}}, {1437, 1168, 1166, {1069, 1070}}}};

inline constexpr SliderIds volume{1076, 1081};
inline constexpr int invertPhase = 1088;
inline constexpr int limiterDisabled = 1357;
}  // namespace output_eq_id

/// Numbers of the controls in the group "Channel Selection".
namespace selection_id {
// By page position.
inline constexpr std::array<int, channelCount> radios{1097, 1083, 1084, 1085, 1086, 1087, 1078, 1079};
inline constexpr std::array<int, channelCount> checks{1053, 1054, 1055, 1056, 1057, 1058, 1072, 1073};
inline constexpr std::array<int, channelCount> names{1267, 1268, 1265, 1264, 1263, 1262, 1261, 1260};
inline constexpr int assign = 1077;
inline constexpr int allFilters = 1122;
inline constexpr int resetChannel = 1258;
}  // namespace selection_id

/// Page position that stands in each row of the channel selection, from top to bottom.
inline constexpr std::array<std::uint8_t, channelCount> selectionRows{6, 3, 7, 2, 1, 5, 0, 4};
[[nodiscard]] constexpr int selectionRowOf(PagePosition position) {
    return static_cast<int>(std::ranges::find(selectionRows, position.value) - selectionRows.begin());
}

/// Where a row of the channel selection lies, inside its group.
[[nodiscard]] constexpr Bounds selectionRowPlace(int row) {
    return {6, 32 + 27 * row, 172, 25};
}
/// Where its channel's number, "Ch 1", and its channel's source stand.
[[nodiscard]] constexpr Bounds selectionHeadPlace(int row) {
    return {14, selectionRowPlace(row).y, 36, 25};
}
[[nodiscard]] constexpr Bounds selectionSourcePlace(int row) {
    return {142, selectionRowPlace(row).y, 32, 25};
}
/// Where it says that edits go nowhere.
inline constexpr Bounds selectionNowherePlace{8, 247, 168, 17};

/// "Channel 1" for the first position.
[[nodiscard]] std::string channelName(PagePosition position);

/// Titles of the groups that are switched on and off.
[[nodiscard]] std::string bandTitle(std::size_t band);
[[nodiscard]] std::string crossoverTitle(std::size_t crossover);
inline constexpr const char* limiterTitle = "Limiter";

/// Rows of the page "Equalizing Output".
[[nodiscard]] const ControlRows& outputEqRows();

/// Rows of its group "Channel Selection", inside that group.
[[nodiscard]] const ControlRows& channelSelectionRows();

}  // namespace tessavo
