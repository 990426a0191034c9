#include "response/frequency_grid.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "dsp/filter_kind.h"

namespace tessavo {

namespace {

constexpr double rateHz = responseSamplingRateHz;

void place(double frequencyHz, FrequencyGrid::Block& block, std::size_t lane) {
    // Both this remainder and the distance from half the rate are exact.
    const double reducedHz = std::remainder(frequencyHz, rateHz);
    const double magnitudeHz = std::fabs(reducedHz);
    const bool nearZero = magnitudeHz <= rateHz / 4.0;
    const double distanceHz = nearZero ? magnitudeHz : rateHz / 2.0 - magnitudeHz;
    const CirclePoint point = circlePoint(distanceHz / rateHz);
    const double half = std::sin(std::numbers::pi * distanceHz / rateHz);
    block.side[lane] = nearZero ? 1.0 : -1.0;
    block.halfAngleSquare[lane] = half * half;
    block.cosine[lane] = nearZero ? point.cosine : -point.cosine;
    block.sine[lane] = std::copysign(point.sine, reducedHz);
    block.coarseHz[lane] = static_cast<double>(static_cast<float>(reducedHz));
    block.fineHz[lane] = reducedHz - block.coarseHz[lane];
}

}  // namespace

CirclePoint circlePoint(double turns) {
    const double quarters = std::nearbyint(4.0 * turns);
    const double angle = 2.0 * std::numbers::pi * (turns - quarters / 4.0);
    const CirclePoint rest{std::cos(angle), std::sin(angle)};
    if (quarters == 0.0) {
        return rest;
    }
    if (quarters == 1.0) {
        return {-rest.sine, rest.cosine};
    }
    if (quarters == -1.0) {
        return {rest.sine, -rest.cosine};
    }
    return {-rest.cosine, -rest.sine};
}

FrequencyGrid::FrequencyGrid(std::vector<double> frequenciesHz)
    : frequenciesHz_(std::move(frequenciesHz)), blocks_((frequenciesHz_.size() + lanes - 1) / lanes) {
    for (std::size_t i = 0; i < blocks_.size() * lanes; ++i) {
        place(i < frequenciesHz_.size() ? frequenciesHz_[i] : 0.0, blocks_[i / lanes], i % lanes);
    }
}

std::optional<FrequencyGrid> FrequencyGrid::of(std::span<const double> frequenciesHz) {
    const auto isUsable = [](double hertz) { return std::isfinite(hertz) && hertz >= 0.0; };
    if (!std::ranges::all_of(frequenciesHz, isUsable)) {
        return std::nullopt;
    }
    return FrequencyGrid(std::vector<double>(frequenciesHz.begin(), frequenciesHz.end()));
}

FrequencyGrid FrequencyGrid::logarithmic(double lowestHz, double highestHz, std::size_t count) {
    std::vector<double> frequenciesHz(count);
    const double octaves = std::log2(highestHz / lowestHz);
    for (std::size_t i = 0; i < count; ++i) {
        const double part = static_cast<double>(i) / static_cast<double>(count - 1);
        frequenciesHz[i] = lowestHz * std::exp2(octaves * part);
    }
    frequenciesHz.front() = lowestHz;
    frequenciesHz.back() = highestHz;
    return FrequencyGrid(std::move(frequenciesHz));
}

}  // namespace tessavo
