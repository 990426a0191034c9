#pragma once

#include "pages/rows/control_row.h"

namespace tessavo {

/// Numbers of the main view's own controls.
namespace view_id {
inline constexpr int setSelector = 3001;
inline constexpr int setName = 3002;
inline constexpr int eqMode = 3003;
inline constexpr int filterMode = 3004;
inline constexpr int showPlot = 3005;
inline constexpr int tabs = 3006;
inline constexpr int recordMark = 3007;
inline constexpr int firstChannelFlag = 3011;  ///< flags 1 to 8

/// \param channel record channel
[[nodiscard]] constexpr int channelFlag(std::size_t channel) {
    return firstChannelFlag - 1 + channelCheckBoxMap[channel];
}
}  // namespace view_id

/// Rows of what stands above every page. The mark of sets without a valid record, the box of the set's name
/// and the tabs are the view's own controls.
[[nodiscard]] const ControlRows& headerRows();

}  // namespace tessavo
