#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "params/file_notes.h"

namespace tessavo {

/// What stands behind the name of a settings file in that of its notes.
inline constexpr std::string_view notesSuffix = ".notes.json";

/// Longest file of notes in bytes; far more than the longest notes need.
inline constexpr std::size_t notesFileLimit = std::size_t{1024} * 1024;

/// Why a file gives no notes.
enum class NotesTrouble : std::uint8_t {
    missing,     ///< there is no such file
    unreadable,  ///< no permission, or no regular file
    damaged,     ///< no notes, or longer than they may be
    newer,       ///< a later version of the program wrote it
};

/// Where the notes of a settings file stand: "car.notes.json" beside "car.eqs". Only the ending ".eqs", in
/// capitals or not, is left out, so that files with other endings have other notes.
[[nodiscard]] std::filesystem::path notesPathOf(const std::filesystem::path& settings);

/// The text of a file of notes: JSON in UTF-8, as docs/formats.md tells.
[[nodiscard]] std::string notesJson(const FileNotes& notes);

/// What the bytes of a file of notes say: all of it or nothing. Never throws, whatever the bytes are.
[[nodiscard]] std::variant<FileNotes, NotesTrouble> notesFrom(std::span<const std::uint8_t> bytes);

/// The same for a file. Never waits for anybody.
[[nodiscard]] std::variant<FileNotes, NotesTrouble> readNotes(const std::filesystem::path& file);

/// Writes the notes of a settings file beside it, in place of those that stand there, to be read by whoever may
/// read the settings.
/// \return false, and what stands there stays, where the folder or the disk takes no file
[[nodiscard]] bool writeNotes(const std::filesystem::path& settings, const FileNotes& notes);

}  // namespace tessavo
