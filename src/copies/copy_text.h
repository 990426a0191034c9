#pragma once

#include <string>
#include <string_view>

#include "copies/restore.h"
#include "copies/target_copy.h"

namespace tessavo {

/// What has to be said before a restore begins.
inline constexpr std::string_view playsInTurnText =
    "The target plays each set in turn while it is restored. Turn the amplifiers off or down first.";

/// What an exchange is for: "reading set 3", "sending set 3 live".
[[nodiscard]] std::string copyActText(CopyAct act, std::uint8_t targetSet);
/// What is wrong with a set of a backup: "set 3: the target sent it with a wrong digest"; empty for a sound
/// one.
[[nodiscard]] std::string troubleText(const SetCopy& set);
/// "The target plays set 3 of the copy now."
[[nodiscard]] std::string playsNowText(const PlaysNow& plays);
/// "set 3: restored, read back and compared"
[[nodiscard]] std::string restoredText(const RestoreReport::Row& row);
/// Why a restore has ended before its end; empty for one that is done.
[[nodiscard]] std::string restoreEndText(const RestoreReport& report);
/// "set 3: differs in 12 of 3384 bytes"
[[nodiscard]] std::string comparisonText(const Comparison& comparison);

}  // namespace tessavo
