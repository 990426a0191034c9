#pragma once

#include <optional>

#include "dsp/section.h"
#include "filtertext/filter_forms.h"

namespace tessavo {

// Formulas of R. Bristow-Johnson, "Cookbook formulae for audio equalizer biquad filter coefficients", and the exact way
// from its forms to those of the target's bilinear method and back. Rates are in Hz.

/// The rate at which a text that tells none is converted.
inline constexpr double textSamplingRateHz = 49500.0;

/// Whether a filter can be converted at a rate: frequency above 0 and below half the rate, Q above 0, all finite.
[[nodiscard]] bool isConvertible(const CookbookFilter& filter, double samplingRateHz);

/// The section of a cookbook filter; one of 4th order is this section twice.
/// \param filter one that is convertible at this rate
[[nodiscard]] Section cookbookSection(const CookbookFilter& filter, double samplingRateHz);

/// The shelf slope S of a slope in dB per octave: 12 dB are S = 1.
[[nodiscard]] constexpr double slopeOfDecibels(double decibelsPerOctave) {
    return decibelsPerOctave / 12.0;
}

/// The Q of a shelf of slope S: 1/Q^2 = (A + 1/A)(1/S - 1) + 2 with A = 10^(|gain|/40).
/// \param slope S, above 0
/// \return nothing where there is no such shelf: for slopes so far above 1 that the right side is not above 0
[[nodiscard]] std::optional<double> shelfQOfSlope(double slope, double gainDb);

/// The slope S of a shelf with a Q: the inverse of shelfQOfSlope().
/// \return nothing where no finite slope above 0 gives this Q
[[nodiscard]] std::optional<double> shelfSlopeOfQ(double q, double gainDb);

/// The centre of a shelf that is given by its corner: corner * 10^(|gain|/(80 S)) for a low shelf,
/// corner * 10^(-|gain|/(80 S)) for a high one.
/// \param shape a shelf
/// \param slope S, above 0
[[nodiscard]] double shelfCentre(FilterShape shape, double cornerHz, double gainDb, double slope);

/// The Q of a peak with a bandwidth of so many octaves: 1/(2 sinh(ln 2 / 2 * octaves * w / sin w)), w = 2 pi f / fs.
/// \param octaves above 0
/// \param frequencyHz above 0 and below half the rate
[[nodiscard]] double peakQOfBandwidth(double octaves, double frequencyHz, double samplingRateHz);

/// The filter of the target that responds as this one does, with the bilinear method and before it is put on steps.
///
/// A peak keeps frequency and gain, and its Q becomes Q * 10^(|gain|/40). A shelf keeps gain and Q, and moves so that
/// tan(pi f'/fs) = tan(pi f/fs) * 10^(-|gain|/80) for a low one, * 10^(|gain|/80) for a high one. A crossover is designed
/// for 44100 Hz and runs at 49500 Hz: its frequency becomes f * 44100/49500, whatever the rate of the text.
/// \param filter one that is convertible at this rate
/// \param samplingRateHz the rate that the text means
[[nodiscard]] DeviceFilter toDevice(const CookbookFilter& filter, double samplingRateHz);

/// The inverse of toDevice(): what another program must be told so that it does what the target does.
/// \param samplingRateHz the rate that the other program runs at
[[nodiscard]] CookbookFilter toCookbook(const DeviceFilter& filter, double samplingRateHz);

/// Level of a section at a frequency.
/// \param hz 0 to half the rate
/// \return in dB; minus infinity where nothing passes
[[nodiscard]] double sectionLevelDb(const Section& section, double hz, double samplingRateHz);

/// How much a filter does: the integral of |dB| over the base-2 logarithm of the frequency, from 20 Hz to 20 kHz or to half the
/// rate, in dB octaves.
/// \param filter one that is convertible at this rate
[[nodiscard]] double filterWeight(const CookbookFilter& filter, double samplingRateHz);

}  // namespace tessavo
