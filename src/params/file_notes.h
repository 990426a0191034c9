#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

#include "params/channels.h"

namespace tessavo {

// Longest texts in UTF-16 units.
inline constexpr std::size_t channelNameLimit = 24;
inline constexpr std::size_t noteLimit = 1024;
inline constexpr std::size_t measurementPathLimit = 260;

/// What a person writes beside the five sets, for the whole settings file: names of the output channels, a
/// note, and which measurement belongs to which channel. Plain bytes without gaps.
///
/// The functions below write valid UTF-16 and fill the rest with zeros; a text that takes all units has no
/// zero behind it. What is not valid becomes U+FFFD; control characters and breaks of lines become spaces,
/// except that the note keeps its lines, each ended by U+000A.
struct FileNotes {
    std::array<std::array<char16_t, channelNameLimit>, channelCount> names{};  ///< by record channel
    std::array<char16_t, noteLimit> note{};
    /// Paths of the channels' measurements, by record channel.
    std::array<std::array<char16_t, measurementPathLimit>, channelCount> measurements{};

    friend bool operator==(const FileNotes&, const FileNotes&) = default;
};

inline constexpr std::size_t fileNotesSize = 6592;  ///< in bytes

static_assert(std::is_trivially_copyable_v<FileNotes> && sizeof(FileNotes) == fileNotesSize &&
                  fileNotesSize == sizeof(char16_t) * (channelCount * channelNameLimit + noteLimit +
                                                       channelCount * measurementPathLimit),
              "without gaps, so that notes can be compared byte by byte");

/// Whether there is nothing to keep.
[[nodiscard]] bool isEmpty(const FileNotes& notes);

/// Name of a channel; empty where it has none.
[[nodiscard]] std::u16string channelName(const FileNotes& notes, RecordChannel channel);
/// Names a channel, without the spaces around the name. A longer name is cut, never between two surrogates.
void setChannelName(FileNotes& notes, RecordChannel channel, std::u16string_view name);

[[nodiscard]] std::u16string noteText(const FileNotes& notes);
/// A longer note is cut as a name is.
void setNoteText(FileNotes& notes, std::u16string_view text);

/// Path of a channel's measurement; empty where it has none.
[[nodiscard]] std::u16string measurementPath(const FileNotes& notes, RecordChannel channel);
/// A longer path is cut as a name is.
void setMeasurementPath(FileNotes& notes, RecordChannel channel, std::u16string_view path);

/// The same notes as the functions above would have written them, whatever the bytes are.
[[nodiscard]] FileNotes wellFormed(const FileNotes& notes);

}  // namespace tessavo
