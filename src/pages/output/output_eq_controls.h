#pragma once

#include <array>

#include "controls/theme.h"
#include "params/field_table.h"

/// Numbers, names and colours of the controls of the output equalizer page, as tables.
namespace tessavo::output_eq_controls {

struct SliderIds {
    int slider;
    int edit;
};

/// Numbers of the controls of a band: check box, list of types, then frequency, gain and quality.
struct BandIds {
    int enabled;
    int type;
    std::array<SliderIds, 3> sliders;
};

inline constexpr std::array<BandIds, bandCount> bandIds{{
    {1098, 1269, {{{2000, 1111}, {1112, 1116}, {1117, 1121}}}},
    {1099, 1270, {{{1107, 1110}, {1010, 1115}, {1009, 1120}}}},
    {1034, 1271, {{{1014, 1109}, {1016, 1114}, {1015, 1119}}}},
    {1035, 1272, {{{1020, 1108}, {1022, 1113}, {1021, 1118}}}},
    {1036, 1161, {{{1026, 1049}, {1028, 1050}, {1027, 1051}}}},
    {1100, 1162, {{{2001, 1123}, {1126, 1124}, {1127, 1125}}}},
    {1101, 1163, {{{1128, 1129}, {1011, 1130}, {1012, 1131}}}},
    {1037, 1164, {{{1017, 1132}, {1018, 1133}, {1019, 1134}}}},
}};

/// What the three sliders of a band stand for, from left to right.
struct BandColumn {
    FieldId field;
    const char* head;
    const char* unit;
    const char* name;
    QRgb color;
};

inline constexpr std::array<BandColumn, 3> bandColumns{{
    {FieldId::bandFrequency, "Freq", "Hz", "frequency", theme::frequency},
    {FieldId::bandGain, "Gain", "dB", "gain", theme::level},
    {FieldId::bandQ, "Q", "Q", "Q", theme::quality},
}};

struct CrossoverIds {
    int enabled;
    int kind;
    int order;
    SliderIds frequency;
};

inline constexpr std::array<CrossoverIds, crossoverCount> crossoverIds{
    {{1438, 1167, 1165, {1063, 1064}}, {1437, 1168, 1166, {1069, 1070}}}};

/// Groups of bands that the record has no room for: created, hidden, never shown.
struct HiddenBandIds {
    const char* title;
    std::array<SliderIds, 3> sliders;
    int disabled;
};

inline constexpr std::array<HiddenBandIds, 2> hiddenBands{
    {{"Filter 9 Properties", {{{1023, 1135}, {1024, 1136}, {1025, 1137}}}, 1038},
     {"Filter 10 Properties", {{{1029, 1052}, {1030, 1059}, {1031, 1071}}}, 1039}}};

struct LimiterColumn {
    FieldId field;
    const char* head;
    const char* name;
    SliderIds ids;
};

inline constexpr std::array<LimiterColumn, 3> limiterColumns{{
    {FieldId::limiterGain, "Gain", "Limiter gain", {1346, 1347}},
    {FieldId::limiterActivateLevel, "Activate\nLevel", "Limiter activate level", {1355, 1356}},
    {FieldId::limiterDeactivateLevel, "Deactivate\nLevel", "Limiter deactivate level", {1353, 1354}},
}};

struct LimiterTime {
    FieldId field;
    const char* caption;
    const char* name;
    int edit;
    int y;  ///< of the edit box
};

inline constexpr std::array<LimiterTime, 2> limiterTimes{{
    {FieldId::limiterAttack, "Attacktime", "Limiter attack time", 1358, 502},
    {FieldId::limiterRelease, "Releasetime", "Limiter release time", 1359, 556},
}};

inline constexpr int limiterDisabledId = 1357;
inline constexpr SliderIds volumeIds{1076, 1081};
inline constexpr int invertPhaseId = 1088;
inline constexpr SliderIds delayIds{1243, 1244};
inline constexpr int delayDistanceId = 1041;
inline constexpr int allFiltersId = 1122;
inline constexpr int resetChannelId = 1258;
inline constexpr int calibrateId = 1254;

inline constexpr std::size_t lastBand = bandCount - 1;

}  // namespace tessavo::output_eq_controls
