#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace tessavo {

/// Entries that the target sends for each stage, one byte each; 0 where the signal does not clip.
inline constexpr std::size_t clipEntryCount = 8;

inline constexpr std::array<std::string_view, 6> clipInputNames{
    "Vorne Links", "Vorne Rechts", "Hinten Links", "Hinten Rechts", "Line-In Links", "Line-In Rechts"};
inline constexpr std::array<std::string_view, 8> clipChannelNames{"Kanal 1", "Kanal 2", "Kanal 3", "Kanal 4",
                                                                  "Kanal 5", "Kanal 6", "Kanal 7", "Kanal 8"};

/// Index into clipInputNames of each entry: inputs come in the order of their rows, the entries behind them carry
/// nothing.
inline constexpr std::array<std::size_t, clipInputNames.size()> clipInputRows{0, 1, 2, 3, 4, 5};
/// Index into clipChannelNames of each entry. The target's order is that of no other numbering of the channels.
inline constexpr std::array<std::size_t, clipEntryCount> clipChannelRows{3, 7, 0, 4, 1, 5, 2, 6};

/// One stage of the signal's way and the names of what can clip there.
struct ClipStage {
    std::string_view caption;
    std::span<const std::string_view> names;  ///< by row
    std::span<const std::size_t> rows;        ///< row of each entry; further entries carry nothing
};

/// In the order in which the target sends them, in front of the amplifiers.
inline constexpr std::array<ClipStage, 4> clipStages{
    {{"ADC", clipInputNames, clipInputRows},
     {"Input EQ", clipInputNames, clipInputRows},
     {"Signal Processing", clipChannelNames, clipChannelRows},
     {"Output EQ", clipChannelNames, clipChannelRows}}};

/// One byte each, behind the stages.
inline constexpr std::array<std::string_view, 2> clipAmplifierNames{"Amplifier 1", "Amplifier 2"};

/// Size of a clip state as the target sends it.
inline constexpr std::size_t clipStateSize = clipStages.size() * clipEntryCount + clipAmplifierNames.size();

}  // namespace tessavo
