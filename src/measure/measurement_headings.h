#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace tessavo {

// What the lines above the numbers tell of them.

/// What a column is called.
enum class ColumnName { other, frequency, level, phase, impedance, coherence, time };

/// A place in a text, line and character from 1; 0 for none.
struct TextPlace {
    std::size_t line = 0;
    std::size_t column = 0;
};

/// The names of the columns, as far as a line tells them.
struct ColumnHeading {
    std::size_t frequency = 1;  ///< columns, from 1
    std::size_t level = 2;
    std::size_t phase = 0;                     ///< 0 where none is named
    double frequencyScale = 1.0;               ///< 1000 for kHz
    ColumnName firstName = ColumnName::other;  ///< time where the first column is no frequency
    ColumnName levelName = ColumnName::other;  ///< what the level is called
    TextPlace firstPlace{};
    TextPlace levelPlace{};
};

/// Looks for the line that names the columns; the last of the lines above the numbers that does.
/// \param lines above the first row, in UTF-8
/// \param columnCount of the rows
/// \param levelColumn that was chosen, from 1; nothing where the heading may say which it is
[[nodiscard]] std::optional<ColumnHeading> columnHeadingOf(std::span<const std::string_view> lines,
                                                           std::size_t columnCount,
                                                           std::optional<std::size_t> levelColumn);

/// Where some small letters stand in the lines above the numbers; a line of 0 where they do not.
[[nodiscard]] TextPlace placeOf(std::span<const std::string_view> lines, std::string_view words);

}  // namespace tessavo
