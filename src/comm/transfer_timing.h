#pragma once

#include "comm/clock.h"

// The pauses and time-outs of an exchange. Each is part of the protocol and not to
// be tuned.
namespace tessavo::timing {

inline constexpr Milliseconds lockWait{5000};        ///< for the end of another exchange
inline constexpr Milliseconds requestWait{2500};     ///< for the target's request byte
inline constexpr Milliseconds flushWait{1};          ///< quiet line that ends the flushing of old input
inline constexpr Milliseconds writeWait{800};        ///< for the line to take a frame or a control byte
inline constexpr Milliseconds pauseAfterBlock{200};  ///< between a block of a message and its answer
inline constexpr Milliseconds answerWait{2500};      ///< for the answer to a block, a request, a disconnect
inline constexpr Milliseconds pauseAfterAnswer{50};  ///< behind each answer to a block
inline constexpr Milliseconds replyWait{10000};      ///< for the whole reply frame

inline constexpr Milliseconds workerPeriod{250};              ///< between two looks of the live worker
inline constexpr Milliseconds pauseBeforeConfirmation{1000};  ///< between an image and its confirmation

}  // namespace tessavo::timing
