#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "base/md5.h"
#include "history/step.h"

namespace tessavo {

/// What stands beside the bytes of a kept version.
struct VersionNote {
    std::filesystem::path path;  ///< where the bytes stood, whole
    WallTime time;               ///< when they were kept; microseconds count
    std::uintmax_t size = 0;     ///< how many there are
    Md5Digest digest{};          ///< of the bytes

    friend bool operator==(const VersionNote&, const VersionNote&) = default;
};

/// The note as a text of lines in ASCII, with a digest of its own at the end.
[[nodiscard]] std::string noteText(const VersionNote& note);

/// \return nothing when a single byte differs from what noteText() gave
[[nodiscard]] std::optional<VersionNote> readNote(std::string_view text);

}  // namespace tessavo
