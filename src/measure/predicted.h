#pragma once

#include <span>

#include "measure/level_curve.h"
#include "response/channel_model.h"

namespace tessavo {

/// What the microphone would show: a measurement times what its channel does. At the measurement's own frequencies, with a
/// phase where it has one. A level where nothing passes is the lowest that is told, -300 dB.
[[nodiscard]] LevelCurve predicted(const LevelCurve& measurement, const ChannelModel& channel);

/// Sum of what the microphone would show of several channels.
struct PredictedSum {
    LevelCurve curve{};
    bool isComplex = false;  ///< waves were added, with their phases; otherwise powers
};

/// Adds predicted curves: as waves where all have a phase, else as powers. Over the frequencies that all of them have, those of
/// the first curve; empty where there are none.
[[nodiscard]] PredictedSum predictedSum(std::span<const LevelCurve> predictedCurves);

}  // namespace tessavo
