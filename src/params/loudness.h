#pragma once

#include <span>

#include "dsp/biquad_words.h"
#include "params/channels.h"
#include "params/parameter_image.h"

namespace tessavo {

// Pink noise has the same power in every octave of this range, and none beside it.
inline constexpr int lowestPinkHz = 100;
inline constexpr int highestPinkHz = 10000;

/// How loud a set plays pink noise between 100 Hz and 10 kHz, in dB; 0 is one channel that changes nothing.
///
///     G + 10 log10 ( sum over channels of g^2 / ln(10000 / 100) * integral |I(f)|^2 |C(f)|^2 d(ln f) )
///
/// G is the input level "Gain" in dB. g is the channel's gain word as a factor: volume and group gain within their
/// range. I is the response of the input words, or 1 where the image bypasses the input equalizer; C is that of the
/// channel's band and crossover words in the image. Other than in a plotted curve only what plays counts: bands that
/// are off and crossovers that are not enabled are left out, and a crossover of 4th order is its section twice. Where a
/// response is undefined it is 0 dB. The integral is formed by the trapezoidal rule over the points of a curve.
///
/// The channels' powers are added, whatever their phases and delays are; channels whose source is "Silenced" are left
/// out. So are "Preamp", "Poweramp" and "Line-In Gain", as what is connected decides which of them count, limiters and
/// compressor.
///
/// \param inputWords in the order of TuningState::inputWords()
/// \return minus infinity where nothing is heard; not finite either where the words make a section that never ends
[[nodiscard]] double loudnessDb(const ParameterImage& image,
                                std::span<const BiquadWords, inputSectionCount> inputWords);

/// Whether a channel has a source in this image, that is another one than "Silenced".
[[nodiscard]] bool hasSource(const ParameterImage& image, RecordChannel channel);

}  // namespace tessavo
