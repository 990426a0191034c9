#pragma once

#include <QString>

#include "history/step.h"

namespace tessavo {

// A time as the clock on the wall shows it, in the same form whatever the language of the system.

/// "2026-11-22 10:21:05".
[[nodiscard]] QString dayAndTimeText(WallTime time);
/// "10:21:05", and with its day in front where that is another one than that of `now`.
[[nodiscard]] QString secondText(WallTime time, WallTime now);
/// "10:21", and "10:21 on 2026-11-22" where that is another day than that of `now`.
[[nodiscard]] QString minuteText(WallTime time, WallTime now);

}  // namespace tessavo
