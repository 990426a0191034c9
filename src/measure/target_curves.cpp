#include "measure/target_curves.h"

#include <array>
#include <cstddef>

namespace tessavo {

namespace {

constexpr std::array<NamedTarget, 5> targets = {{
    {"flat", "Flat"},
    {"car-strong", "Car, strong bass"},
    {"car-medium", "Car, medium bass"},
    {"car-soft", "Car, soft treble"},
    {"room", "Room, -1 dB an octave"},
}};

}  // namespace

std::span<const NamedTarget> namedTargets() {
    return targets;
}

std::optional<LevelCurve> targetNamed(std::string_view name) {
    if (name == "flat") {
        return LevelCurve{{20.0, 20000.0}, {0.0, 0.0}, {}};
    }
    if (name == "car-strong") {
        return LevelCurve{{60.0, 160.0, 3000.0, 20000.0}, {9.0, 0.0, 0.0, -6.0}, {}};
    }
    if (name == "car-medium") {
        return LevelCurve{{40.0, 250.0, 20000.0}, {6.0, 1.0, -5.0}, {}};
    }
    if (name == "car-soft") {
        return LevelCurve{{125.0, 200.0, 20000.0}, {6.0, 0.0, -9.0}, {}};
    }
    if (name == "room") {
        // Whole octaves about 1 kHz, from below 1 Hz to beyond whatever is measured.
        return LevelCurve{{1000.0 / 1024.0, 1000.0, 128000.0}, {10.0, 0.0, -7.0}, {}};
    }
    return std::nullopt;
}

double anchorDb(const LevelCurve& curve, const LevelCurve& target, std::span<const double> frequenciesHz) {
    if (frequenciesHz.empty()) {
        return 0.0;
    }
    const LevelCurve measured = resampled(curve, frequenciesHz);
    const LevelCurve wanted = resampled(target, frequenciesHz);
    double sumDb = 0.0;
    for (std::size_t i = 0; i < frequenciesHz.size(); ++i) {
        sumDb += measured.levelsDb[i] - wanted.levelsDb[i];
    }
    return sumDb / static_cast<double>(frequenciesHz.size());
}

}  // namespace tessavo
