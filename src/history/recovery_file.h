#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <variant>
#include <vector>

#include "history/document.h"
#include "history/history.h"

namespace tessavo {

/// Most steps in each direction that a recovery file takes.
inline constexpr std::size_t recoveryStepLimit = 100;

/// Longest text of a step in a recovery file, in bytes of UTF-8.
inline constexpr std::size_t recoveryTextLimit = 1024;

/// Longest recovery file in bytes: all its steps may have changed every byte.
inline constexpr std::size_t recoveryFileLimit = std::size_t{24} * 1024 * 1024;

/// What a later run of the program needs to go on where this one ended. Does not change once it is made, so
/// that any thread may read it.
struct RecoveryState {
    std::unique_ptr<const History::Trail> trail;  ///< never null
    std::uint32_t filterMode = 0;                 ///< index of filterMethodNames
    std::filesystem::path documentPath;           ///< settings file that the sets belong to; empty for none
    /// What is known of that file; nothing in a recovery file of a version of the program that kept none. A
    /// recovery file without a settings file has none.
    std::optional<DocumentMemory> documentMemory;
    WallTime time;              ///< when it was like this; kept in milliseconds
    std::uint64_t process = 0;  ///< number of the process that wrote it
    bool isSaved = false;       ///< the document holds the same: there is nothing to restore
};

/// Why a recovery file gives no state.
enum class RecoveryTrouble : std::uint8_t {
    unreadable,  ///< missing, no permission, no regular file
    damaged,     ///< not whole, or no recovery file at all
    newer,       ///< whole, but a later version of the program wrote it
};

/// The bytes of a recovery file. Of the steps it takes those next to the state, at most `recoveryStepLimit` in
/// each direction. Texts are cut at `recoveryTextLimit`, and what is no UTF-8 in them becomes U+FFFD.
[[nodiscard]] std::vector<std::uint8_t> encodeRecovery(const RecoveryState& state);

/// What the bytes of a recovery file say. All of it or nothing: whatever was cut off or changed is recognised,
/// and History::adopt takes every trail that comes out of it.
[[nodiscard]] std::variant<RecoveryState, RecoveryTrouble> decodeRecovery(
    std::span<const std::uint8_t> bytes);

/// The same for a file. Never waits for anybody.
[[nodiscard]] std::variant<RecoveryState, RecoveryTrouble> readRecovery(const std::filesystem::path& path);

}  // namespace tessavo
