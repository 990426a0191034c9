#include "measure/alignment_text.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"

namespace tessavo {

namespace {

// What rounding makes of a whole number must not take it a whole one down, or up.
constexpr double nearlyWhole = 1e-8;

/// Whole centimeters of what is not nothing.
std::string wholeCentimeters(double centimeters) {
    return fixedText(std::max(1.0, centimeters), 0).append(" cm");
}

// What is missing does not read as nothing.
int decimalsOf(double missingMs) {
    return missingMs >= 0.05 ? 1 : missingMs >= 0.005 ? 2 : 3;
}

double missingOf(const std::optional<ChannelAlignment>& channel) {
    return channel ? channel->missingMs : 0;
}

}  // namespace

std::string alignmentResult(const ChannelAlignment& channel, double celsius) {
    if (channel.missingMs > 0) {
        return wholeCentimeters(channel.missingCm).append(" too early");
    }
    if (channel.neededMs == 0) {
        return "the farthest";
    }
    const double offCm = std::abs(channel.givenMs() - channel.neededMs) * speedOfSound(celsius) / 10.0;
    return std::string("within ").append(wholeCentimeters(std::ceil(offCm - nearlyWhole)));
}

std::string shortfallText(const ChannelAlignment& channel) {
    const int decimals = decimalsOf(channel.missingMs);
    return fixedText(channel.neededMs, decimals)
        .append(" ms are needed, ")
        .append(fixedText(mostGroupDelayMs + mostChannelDelayMs, decimals))
        .append(" ms are possible (")
        .append(fixedText(mostGroupDelayMs, 1))
        .append(" ms in the group, ")
        .append(fixedText(mostChannelDelayMs, 1))
        .append(" ms in the channel); ")
        .append(fixedText(channel.missingMs, decimals))
        .append(" ms or ")
        .append(wholeCentimeters(channel.missingCm))
        .append(" are missing.");
}

std::string possibleText(const Alignment& alignment, AlignmentUnit unit) {
    std::string text = allTold(alignment);
    if (unit == AlignmentUnit::centimeters) {
        return text.append(" are in line if the farthest is at ")
            .append(fixedText(std::floor(alignment.farthestPossibleCm + nearlyWhole), 0))
            .append(" cm or nearer");
    }
    return text.append(" are in line if the farthest arrives at ")
        .append(fixedText(std::floor(alignment.farthestPossibleMs * 100.0 + nearlyWhole) / 100.0, 2))
        .append(" ms or sooner");
}

std::string allTold(const Alignment& alignment) {
    static constexpr std::array<const char*, channelCount + 1> words{
        "None",     "The only one", "Both",      "All three", "All four",
        "All five", "All six",      "All seven", "All eight"};
    const auto told =
        std::ranges::count_if(alignment.channels, [](const auto& each) { return each.has_value(); });
    return words.at(static_cast<std::size_t>(told));
}

PagePosition worstOf(const Alignment& alignment) {
    const auto worst = std::ranges::max_element(alignment.channels, {}, missingOf);
    return {static_cast<std::uint8_t>(worst - alignment.channels.begin())};
}

int countMissing(const Alignment& alignment) {
    return static_cast<int>(
        std::ranges::count_if(alignment.channels, [](const auto& each) { return missingOf(each) > 0; }));
}

}  // namespace tessavo
