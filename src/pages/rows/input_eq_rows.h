#pragma once

#include "pages/rows/control_row.h"

namespace tessavo {

/// Numbers of the controls of the input equalizer page.
namespace input_eq_id {
inline constexpr int firstBandSlider = 4001;  ///< ten graphic bands, then bass, middle, treble
inline constexpr int firstBandEdit = 4021;    ///< in the same order
inline constexpr int eqOn = 4041;
inline constexpr int reset = 4042;
inline constexpr int eqNote = 4043;
inline constexpr int firstLevelSlider = 4051;  ///< gain, preamp, poweramp, line-in, suppression, detection
inline constexpr int firstLevelEdit = 4061;
/// Crossover, PONE, compressor lower limit, gain, expander upper limit, expander factor.
inline constexpr int firstCompressorSlider = 4071;
inline constexpr int firstCompressorEdit = 4081;
inline constexpr int compressorDisabled = 4091;
inline constexpr int attackTime = 4092;
inline constexpr int releaseTime = 4093;
}  // namespace input_eq_id

/// Rows of the page "Equalizing Input".
[[nodiscard]] const ControlRows& inputEqRows();

}  // namespace tessavo
