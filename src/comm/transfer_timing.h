#pragma once

#include "comm/clock.h"

namespace tessavo::timing {

inline constexpr Milliseconds lockWait{5000};
inline constexpr Milliseconds requestWait{2500};  ///< for the target's request byte
inline constexpr Milliseconds flushWait{1};       ///< quiet line that ends the flushing of old input
inline constexpr Milliseconds writeWait{800};
inline constexpr Milliseconds pauseAfterBlock{200};
inline constexpr Milliseconds answerWait{2500};
inline constexpr Milliseconds pauseAfterAnswer{50};
inline constexpr Milliseconds replyWait{10000};

inline constexpr Milliseconds workerPeriod{250};
inline constexpr Milliseconds pauseBeforeConfirmation{1000};

}  // namespace tessavo::timing
