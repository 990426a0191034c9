#pragma once

#include <cstdint>

namespace tessavo {

/// What a band generator is asked for, unpacked from its arguments.
struct BandRequest {
    std::uint8_t type = 0;  ///< BandType code; a code without a type is possible
    double frequencyHz =
        0;              ///< centre or corner frequency, -32768 to 32767; the argument has 16 bits with a sign
    double gainDb = 0;  ///< 0 and above boosts, below 0 cuts
    double q = 1;       ///< quality factor
    double linearGain = 1;  ///< V = 10^(|gain|/20), rounded to single precision

    /// \param kindWord see IcoefficientGenerator::computeBand
    static BandRequest unpack(std::int32_t kindWord, float gainDb, float q);
    [[nodiscard]] bool boosts() const { return gainDb >= 0.0; }
};

/// What a crossover generator is asked for, unpacked from its arguments.
struct CrossoverRequest {
    bool lowPass = false;
    double frequencyHz = 0;  ///< corner frequency, -32768 to 32767

    /// \param kindWord see IcoefficientGenerator::computeCrossover
    static CrossoverRequest unpack(std::int32_t kindWord);
};

}  // namespace tessavo
