#pragma once

#include <array>
#include <cstddef>
#include <optional>

#include "dsp/icoefficient_generator.h"
#include "measure/level_curve.h"
#include "measure/smoothing.h"
#include "params/channels.h"
#include "params/parameter_image.h"

namespace tessavo {

/// What a fit may do.
struct FitLimits {
    double fromHz = 20.0;  ///< the range that counts; see defaultFitRange()
    double toHz = 20000.0;
    std::array<bool, bandCount> bands{true, true, true, true,
                                      true, true, true, true};  ///< those that may be used
    double mostBoostDb = 12.0;  ///< 0 or above; also that of all bands together, from 20 Hz to 20 kHz
    double mostCutDb = 12.0;    ///< 0 or above; of one band
    double highestQ = 8.0;      ///< 0.1 or above
    Smoothing smoothing{6};     ///< of the measurement, before anything is compared with it
};

/// Frequencies between which a channel is fitted, in Hz.
struct FitRange {
    double fromHz = 0;
    double toHz = 0;
};

/// The pass band between the enabled crossovers of a channel, from 20 Hz to 20 kHz without them, held to the measurement.
/// \return nothing where the measurement has no two frequencies there
[[nodiscard]] std::optional<FitRange> defaultFitRange(const ChannelImageBlock& channel,
                                                      const LevelCurve& measurement);

/// What a fit found.
struct BandFit {
    /// All bands of the channel: the first ones of those that may be used hold the filters, by rising frequency, and every other
    /// band is off and otherwise as it was.
    std::array<EqBandParams, bandCount> bands{};
    double rmsBeforeDb = 0;  ///< of measurement and channel without any band about the target, over the range
    double rmsAfterDb = 0;   ///< the same with these bands; never above rmsBeforeDb
    double levelDb =
        0;  ///< what brings the target to measurement and channel with these bands: target + level is met
    double peakBoostDb = 0;  ///< highest level of these bands together, from 20 Hz to 20 kHz; 0 or above
    std::size_t points = 0;  ///< frequencies of the range at which it was judged
};

/// Finds bands that bring a measurement to a target: RMS(measurement + response - target - level) over the range becomes least,
/// every part of an octave counting alike. The level is free.
///
/// The response is that of the channel as the target plays it: fixed-point words of the method, crossovers that are enabled
/// included. The bands stand on the steps of the target. Damped least squares (Levenberg-Marquardt) from several beginnings, then a
/// search on the steps. The same input gives the same bands.
///
/// No boost goes into a null of the measurement that is narrower than a sixth of an octave and deeper than 6 dB; of two solutions
/// within 0.1 dB that one is taken in which no two bands fight each other: opposite signs within half an octave, both over 6 dB.
/// \param channel gain and crossovers as they are; its bands do not matter
/// \param measurement not smoothed, with at least two points
/// \param limits fromHz below toHz, both from 20 Hz to 20 kHz
[[nodiscard]] BandFit fitBands(const ChannelImageBlock& channel, const LevelCurve& measurement,
                               const LevelCurve& target, const FitLimits& limits,
                               const IcoefficientGenerator& method);

}  // namespace tessavo
