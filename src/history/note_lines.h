#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "base/md5.h"
#include "history/step.h"

// Notes that stand beside kept files: texts of labelled lines in ASCII, with a digest of their own at the
// end. Any thread.
namespace tessavo::note {

/// 32 upper-case hexadecimal digits.
[[nodiscard]] std::string digestText(const Md5Digest& digest);
/// \return nothing unless the text is 32 hexadecimal digits
[[nodiscard]] std::optional<Md5Digest> digestFrom(std::string_view text);

/// Microseconds since 1970.
[[nodiscard]] std::string timeText(WallTime time);
/// \return nothing for a time that this clock cannot tell
[[nodiscard]] std::optional<WallTime> timeFrom(std::string_view text);

/// A name in ASCII. Whatever the system takes for one comes back unchanged, also what is no text in any
/// encoding.
[[nodiscard]] std::string pathText(const std::filesystem::path& path);
[[nodiscard]] std::filesystem::path pathFrom(std::string_view text);

/// The same for any bytes.
[[nodiscard]] std::string plainText(std::string_view text);
[[nodiscard]] std::string textFrom(std::string_view text);

/// Takes the first line away and gives what stands in it behind its label.
/// \param text goes on behind the line
[[nodiscard]] std::string_view takeLine(std::string_view& text, std::string_view label);

/// The lines with the digest behind them that closes a note.
[[nodiscard]] std::string sealed(std::string lines);
/// The lines of a sealed note behind its first one.
/// \return nothing when a single byte differs from what sealed() gave, or when another line comes first
[[nodiscard]] std::optional<std::string_view> unsealed(std::string_view text, std::string_view firstLine);

}  // namespace tessavo::note
