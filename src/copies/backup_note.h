#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/md5.h"
#include "comm/target_commands.h"
#include "copies/target_sets.h"
#include "history/step.h"

namespace tessavo {

/// What backup.json says. docs/formats.md describes its text.
struct BackupNote {
    /// What it says of a set that was read.
    struct Set {
        Md5Digest digest{};  ///< of the 4096 bytes of its file
        bool sound = false;  ///< the image in it has its right digest

        friend bool operator==(const Set&, const Set&) = default;
    };
    WallTime time;  ///< whole seconds count
    std::string port;
    std::optional<TargetVersions> versions;
    std::array<std::optional<Set>, targetSetNumbers.size()> sets;  ///< in the order of targetSetNumbers
};

/// Bytes that backup.json has at most.
inline constexpr std::size_t backupNoteLimit = 65536;

/// The name of the file with a set of the target: "set3.reply", "default.reply".
[[nodiscard]] std::string replyFileName(std::uint8_t targetSet);

/// The text in UTF-8, its keys sorted.
[[nodiscard]] std::string backupText(const BackupNote& note);

struct BackupNoteRead {
    std::optional<BackupNote> note;
    std::string trouble;  ///< why there is none, as a sentence without its full stop
};
/// Takes what backupText() gives, in any layout, and nothing else: no entry may be missing, unknown, of
/// another kind or there twice.
[[nodiscard]] BackupNoteRead readBackupText(std::string_view text);

}  // namespace tessavo
