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
///     10 log10 ( sum over channels of g^2 / ln(10000 / 100) * integral |I(f)|^2 |C(f)|^2 d(ln f) )
///
/// g is the channel's gain word as a factor: volume and group gain within their range. I is the response of the
/// input words, or 1 where the image bypasses the input equalizer; C is that of the channel's band and crossover
/// words in the image. Both are those of plainResponse() before it truncates: a band that is off counts as its words
/// say, a crossover of 4th order once, and where a response is undefined it is 0 dB. The integral is formed by the
/// trapezoidal rule over the points of a curve.
///
/// The channels' powers are added, whatever their phases and delays are; channels whose source is "Silenced" are left
/// out. So are "Gain", "Preamp", "Poweramp" and "Line-In Gain", limiters and compressor.
///
/// \param inputWords in the order of TuningState::inputWords()
/// \return minus infinity where nothing is heard; not finite either where the words make a section that never ends
[[nodiscard]] double loudnessDb(const ParameterImage& image,
                                std::span<const BiquadWords, inputSectionCount> inputWords);

/// Whether a channel has a source in this image, that is another one than "Silenced".
[[nodiscard]] bool hasSource(const ParameterImage& image, RecordChannel channel);

}  // namespace tessavo
