#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <limits>
#include <memory>
#include <string_view>

#include "dsp/coeff_bzt2.h"
#include "dsp/coeff_bztmzt.h"
#include "dsp/coeff_mzt.h"

namespace tessavo::test {

enum class Generator { bzt, mzt, mixed };

inline constexpr std::array<Generator, 3> allGenerators{Generator::bzt, Generator::mzt, Generator::mixed};

inline std::unique_ptr<IcoefficientGenerator> makeGenerator(Generator which,
                                                            std::function<void(std::string_view)> warn = {}) {
    switch (which) {
        case Generator::bzt:
            return std::make_unique<coeffBZT2>(std::move(warn));
        case Generator::mzt:
            return std::make_unique<coeffMZT>(std::move(warn));
        default:
            return std::make_unique<coeffBZTMZT>(std::move(warn));
    }
}

/// What a word holds before a generator runs, and keeps where the conversion stopped before it.
inline constexpr std::int32_t untouched = -7;
inline constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
inline constexpr float infinite = std::numeric_limits<float>::infinity();

using Codes = std::initializer_list<std::uint8_t>;
using Frequencies = std::initializer_list<std::uint16_t>;
using Words = std::array<std::int32_t, 5>;

inline Words wordsOf(const BiquadWords& section) {
    return {section.b0, section.b1, section.b2, section.a1, section.a2};
}

constexpr std::int32_t kindWordOf(std::uint8_t low, std::uint8_t second, std::uint16_t frequencyHz) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(low) |
                                     static_cast<std::uint32_t>(second) << 8U |
                                     static_cast<std::uint32_t>(frequencyHz) << 16U);
}

struct Computed {
    bool converted;
    BiquadWords section;
};

inline Computed computeBand(IcoefficientGenerator& generator, std::uint8_t type, std::uint16_t frequencyHz,
                            float gainDb, float q) {
    Computed result{false, {untouched, untouched, untouched, untouched, untouched}};
    result.converted = generator.computeBand(kindWordOf(type, 0, frequencyHz), gainDb, q, 0, result.section);
    return result;
}

inline Computed computeCrossover(IcoefficientGenerator& generator, std::uint8_t kind,
                                 std::uint16_t frequencyHz) {
    Computed result{false, {untouched, untouched, untouched, untouched, untouched}};
    result.converted = generator.computeCrossover(kindWordOf(1, kind, frequencyHz), 0, result.section);
    return result;
}

/// Rows of golden_words.inc. The gains are linear: at 0 Hz, at the corner or centre, at half the sampling
/// rate.
struct GoldenBand {
    Generator generator;
    std::uint8_t type;
    std::uint16_t frequencyHz;
    float gainDb;
    float q;
    bool converted;
    Words words;
    double gainAtZero;
    double gainAtCorner;
    double gainAtHalfRate;
};

struct GoldenEdgeBand {
    Generator generator;
    std::uint8_t type;
    std::uint16_t frequencyHz;
    float gainDb;
    float q;
    bool converted;
    Words words;
};

struct GoldenCrossover {
    Generator generator;
    std::uint8_t kind;
    std::uint16_t frequencyHz;
    bool converted;
    Words words;
    double gainAtZero;
    double gainAtCorner;
    double gainAtHalfRate;
};

struct GoldenEdgeCrossover {
    Generator generator;
    std::uint8_t kind;
    std::uint16_t frequencyHz;
    bool converted;
    Words words;
};

}  // namespace tessavo::test
