#pragma once

#include <cstdint>
#include <optional>

#include "dsp/section.h"

namespace tessavo {

/// What a band generator is asked for, unpacked from its arguments.
struct BandRequest {
    std::uint8_t type = 0;   ///< BandType code
    double frequencyHz = 0;  ///< -32768 to 32767
    double gainDb = 0;       ///< sign tells boost (0 and above) from cut
    double q = 1;            ///< quality factor
    double linearGain = 1;   ///< V = 10^(|gain|/20), rounded to single precision

    /// \param kindWord see IcoefficientGenerator::computeBand
    static BandRequest unpack(std::int32_t kindWord, float gainDb, float q);
    [[nodiscard]] bool boosts() const { return gainDb >= 0.0; }
};

/// What a crossover generator is asked for, unpacked from its arguments.
struct CrossoverRequest {
    bool lowPass = false;
    double frequencyHz = 0;  ///< -32768 to 32767

    /// \param kindWord see IcoefficientGenerator::computeCrossover
    static CrossoverRequest unpack(std::int32_t kindWord);
};

/// Bilinear transform of the analog prototype with K = tan(pi f / fs); boost and cut are exact inverses.
/// \return nothing for a type without a formula.
std::optional<Section> bilinearBand(const BandRequest& request, double samplingRateHz);

/// Bilinear second-order Butterworth filter.
Section bilinearCrossover(const CrossoverRequest& request, double samplingRateHz);

/// Matched z-transform of the analog prototype at 44100 Hz: poles and zeros are mapped one by one, b0 is 1
/// and no gain normalisation follows. \return nothing for a type without a formula.
std::optional<Section> matchedBand(const BandRequest& request);

/// Matched second-order Butterworth filter at 44100 Hz.
Section matchedCrossover(const CrossoverRequest& request);

/// Digital coefficients (1, c1, c2) that replace the monic analog quadratic s^2 + p s + q.
struct MappedQuadratic {
    double c1 = 0;
    double c2 = 0;
};

/// Maps the roots of s^2 + p s + q into the z-plane. A complex pair sets c2 to the pair's radius and not to
/// its square, unlike a real pair: the target's filters are tuned to that.
MappedQuadratic mapQuadratic(double p, double q);

}  // namespace tessavo
