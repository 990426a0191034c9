#pragma once

#include <optional>

#include "dsp/filter_requests.h"
#include "dsp/section.h"

namespace tessavo {

/// Designs an equalizer band by the bilinear transform of its analog prototype, with the pre-warped frequency
/// K = tan(pi f / fs).
///
/// The formulas are those of U. Zoelzer, "Digital Audio Signal Processing", for second-order shelving and
/// peak filters, with 1 / Q in place of sqrt(2) in the shelves. A cut is the exact inverse of the boost by as
/// many dB.
/// \param request what to design
/// \param samplingRateHz the rate that the pre-warping is for
/// \return nothing for a type without a formula
std::optional<Section> bilinearBand(const BandRequest& request, double samplingRateHz);

/// Designs a second-order Butterworth high-pass or low-pass (Q = 1 / sqrt(2)) by the bilinear transform.
/// \param request what to design
/// \param samplingRateHz the rate that the pre-warping is for
Section bilinearCrossover(const CrossoverRequest& request, double samplingRateHz);

/// Designs an equalizer band by the matched z-transform at 44100 Hz: each pole and zero s of the analog
/// prototype becomes exp(s T), where T is the sampling period. b0 is 1, and the gain is not normalised
/// afterwards.
/// \return nothing for a type without a formula
std::optional<Section> matchedBand(const BandRequest& request);

/// Designs a second-order Butterworth high-pass or low-pass by the matched z-transform at 44100 Hz. The
/// low-pass, whose analog prototype has no zeros, gets two at -exp(-T) with T in seconds, close to -1.
Section matchedCrossover(const CrossoverRequest& request);

/// Digital coefficients (1, c1, c2) that replace the monic analog quadratic s^2 + p s + q.
struct MappedQuadratic {
    double c1 = 0;
    double c2 = 0;
};

/// Maps the roots of s^2 + p s + q into the z-plane at 44100 Hz.
///
/// Where the roots are a complex pair, c2 is the pair's radius and not the square of it, as a textbook has
/// it. This is no slip: the target's filters are tuned to it. A real pair is mapped as in textbooks.
MappedQuadratic mapQuadratic(double p, double q);

}  // namespace tessavo
