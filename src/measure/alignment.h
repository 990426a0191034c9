#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "params/channels.h"
#include "params/records.h"

namespace tessavo {

// Alignment: delays that let the sound of all loudspeakers arrive at the seat at one time.

inline constexpr double mostGroupDelayMs = 2.0;    ///< that an alignment gives to a group delay
inline constexpr double mostChannelDelayMs = 2.0;  ///< and to the channel's own
inline constexpr double lowestAirCelsius = -40.0;
inline constexpr double highestAirCelsius = 60.0;
/// Most centimeters or milliseconds that a person tells of a loudspeaker.
inline constexpr double mostToldOfPlace = 100000.0;

/// Speed of sound in dry air of 20 degrees Celsius and others, in metres a second: 331.3 sqrt(1 + t / 273.15).
/// \param celsius lowestAirCelsius to highestAirCelsius
[[nodiscard]] double speedOfSound(double celsius);

/// What becomes of one channel.
struct ChannelAlignment {
    double neededMs = 0;     ///< exactly what lets it arrive with the farthest one; 0 for that
    int groupTenthMs = 0;    ///< 0 to 20: the group delay in tenths of a millisecond
    int channelTenthMs = 0;  ///< 0 to 20: the channel's own delay
    double missingMs = 0;    ///< what is needed beyond the possible 4 ms; 0 where everything is reached
    double missingCm = 0;    ///< the way of sound in that time

    [[nodiscard]] double givenMs() const { return (groupTenthMs + channelTenthMs) / 10.0; }
};

/// Delays of all channels that were told, by page position.
struct Alignment {
    std::array<std::optional<ChannelAlignment>, channelCount> channels{};
    std::optional<PagePosition>
        farthest{};                 ///< the first of the farthest ones; nothing where no channel was told
    bool isReachable = true;        ///< no channel misses anything
    double farthestPossibleMs = 0;  ///< how late the farthest one may arrive so that every channel reaches it
    double farthestPossibleCm = 0;  ///< the way of sound in that time
};

/// Times of arrival at the seat in milliseconds, by page position; a channel that is not told is left as it is.
using ArrivalTimes = std::array<std::optional<double>, channelCount>;

/// The times that sound takes for some distances.
/// \param distancesCm by page position, 0 or above
[[nodiscard]] ArrivalTimes arrivalTimes(const std::array<std::optional<double>, channelCount>& distancesCm,
                                        double celsius);

/// Delays in the steps of the target, 0.1 ms: the group delay first, the rest in the channel's own. A half rounds up. What is
/// needed beyond 4.0 ms is missing.
/// \param times each 0 or above, finite
[[nodiscard]] Alignment align(const ArrivalTimes& times, double celsius);

/// Writes the delays into the record of a set: the group delay and the channel's own of every channel that was told. Groups and
/// everything else stay.
void applyAlignment(const Alignment& alignment, ParameterSet& set);

}  // namespace tessavo
