#pragma once

#include "pages/rows/control_row.h"

namespace tessavo {

/// Numbers of the controls of the channel configuration page.
namespace audio_router_id {
inline constexpr int firstSource = 5001;  ///< 5001 to 5008 by page position
inline constexpr int lineOutUse = 5011;
inline constexpr int turnOffDelayOn = 5021;
inline constexpr int turnOffDelaySlider = 5022;
inline constexpr int turnOffDelayEdit = 5023;
inline constexpr int surround = 5031;
inline constexpr int surroundLamp = 5032;
inline constexpr int surroundState = 5033;
inline constexpr int surroundMode = 5034;
inline constexpr int roomSize = 5035;
inline constexpr int delaySize1 = 5036;
inline constexpr int delaySize2 = 5037;
inline constexpr int rearForSurround = 5038;
inline constexpr int surroundNote = 5039;
inline constexpr int firstDecoderGainSlider = 5041;  ///< center, panorama, hall effect, rear to front mix
inline constexpr int firstDecoderGainEdit = 5051;
}  // namespace audio_router_id

/// Where the name of a surround mode stands.
[[nodiscard]] constexpr Bounds surroundModeBounds(int mode) {
    return {534, 106 + 21 * mode, 130, 16};
}

/// Rows of the page "Channel Config".
[[nodiscard]] const ControlRows& audioRouterRows();

}  // namespace tessavo
