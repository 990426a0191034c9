#include "measure/alignment.h"

#include <algorithm>
#include <cmath>

namespace tessavo {

namespace {

constexpr int tenthsPerMs = 10;
constexpr int mostGroupTenths = static_cast<int>(mostGroupDelayMs * tenthsPerMs);
constexpr int mostChannelTenths = static_cast<int>(mostChannelDelayMs * tenthsPerMs);
constexpr double mostMs = mostGroupDelayMs + mostChannelDelayMs;
// What the arithmetic of times and distances makes of a need of just 4 ms is not missing.
constexpr double leastMissingMs = 1e-9;
constexpr double centimetersPerMeter = 100.0;
constexpr double millisecondsPerSecond = 1000.0;

double centimetersPerMs(double celsius) {
    return speedOfSound(celsius) * centimetersPerMeter / millisecondsPerSecond;
}

ChannelAlignment alignmentOf(double neededMs, double celsius) {
    ChannelAlignment channel;
    channel.neededMs = neededMs;
    const double mostTenths = mostGroupTenths + mostChannelTenths;
    const int tenths = static_cast<int>(std::floor(std::min(neededMs * tenthsPerMs, mostTenths) + 0.5));
    channel.groupTenthMs = std::min(tenths, mostGroupTenths);
    channel.channelTenthMs = tenths - channel.groupTenthMs;
    if (neededMs > mostMs + leastMissingMs) {
        channel.missingMs = neededMs - mostMs;
        channel.missingCm = channel.missingMs * centimetersPerMs(celsius);
    }
    return channel;
}

}  // namespace

double speedOfSound(double celsius) {
    return 331.3 * std::sqrt(1.0 + celsius / 273.15);
}

ArrivalTimes arrivalTimes(const std::array<std::optional<double>, channelCount>& distancesCm,
                          double celsius) {
    ArrivalTimes times;
    for (std::size_t position = 0; position < channelCount; ++position) {
        if (distancesCm[position]) {
            times[position] = *distancesCm[position] / centimetersPerMs(celsius);
        }
    }
    return times;
}

Alignment align(const ArrivalTimes& times, double celsius) {
    Alignment alignment;
    // A channel that was not told is before all that were.
    const auto farthest = std::ranges::max_element(times);
    if (!*farthest) {
        return alignment;
    }
    alignment.farthest = PagePosition{static_cast<std::uint8_t>(farthest - times.begin())};
    double nearestMs = **farthest;
    for (std::size_t position = 0; position < channelCount; ++position) {
        if (const auto& time = times[position]) {
            const ChannelAlignment channel = alignmentOf(**farthest - *time, celsius);
            alignment.isReachable = alignment.isReachable && channel.missingMs == 0;
            alignment.channels[position] = channel;
            nearestMs = std::min(nearestMs, *time);
        }
    }
    alignment.farthestPossibleMs = nearestMs + mostMs;
    alignment.farthestPossibleCm = alignment.farthestPossibleMs * centimetersPerMs(celsius);
    return alignment;
}

void applyAlignment(const Alignment& alignment, ParameterSet& set) {
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        if (const auto& aligned = alignment.channels.at(position)) {
            OutputChannelParams& channel = set.channels.at(recordChannelAt({position}).value);
            channel.groupDelayMs = static_cast<float>(aligned->groupTenthMs / 10.0);
            channel.delayMs = static_cast<float>(aligned->channelTenthMs / 10.0);
        }
    }
}

}  // namespace tessavo
