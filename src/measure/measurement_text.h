#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "measure/level_curve.h"

namespace tessavo {

/// Largest file of a measurement that is read, in bytes.
inline constexpr std::size_t mostMeasurementBytes = 16U << 20U;

/// Columns of a table, counted from 1.
struct MeasurementColumns {
    std::size_t frequency = 1;
    std::size_t level = 2;
};

/// What a text with a measurement holds.
struct MeasurementText {
    LevelCurve curve{};  ///< its points by rising frequency, without 0 Hz; empty where there is a trouble
    std::size_t skippedLines = 0;  ///< lines behind the first row of data that are neither blank nor data
    std::string trouble{};  ///< why it cannot be read, as a sentence for a person; empty where it was read
    std::size_t troubleLine = 0;    ///< from 1; 0 where the trouble is the whole text's
    std::size_t troubleColumn = 0;  ///< the character in that line, from 1; 0 where it is the whole line's
};

/// Reads a measurement, a target curve or the calibration of a microphone: rows of frequency, level and perhaps phase.
///
/// - Comments begin with '*', '#', '%', ';' or a quotation mark; what stands before the first row of numbers is a
///   heading, whatever it begins with.
/// - Columns are parted by tabs, blanks, commas or semicolons, as most lines are rows; an empty cell between tabs, commas
///   or semicolons is one. A comma is the decimal sign where nothing else makes sense of the file, and so is one in every
///   frequency; otherwise the mark that is not the decimal sign may part the thousands of a frequency.
/// - Rows may stand in any order. Rows of one frequency become their mean; a row of 0 Hz is left out. Rows with another
///   frequency than 1e-6 to 1e9 Hz or with a level beyond 1000 dB are no data. A heading in kHz is understood.
/// - There is a phase where a heading names it; without a heading, where there are three columns and the third turns by more
///   than 30 degrees somewhere and is not another level. Where columns were chosen there is none. A row without a phase has
///   that of the straight line between its neighbours; where most rows have none, there is none.
/// - Refused are impedances, impulse responses and coherences, texts without data, texts with one frequency, bytes that are
///   no text and more than mostMeasurementBytes. A heading tells what they are, or else the numbers.
/// Time and memory go with the length of the text, however its lines are made.
/// \param bytes the file, in UTF-8, Latin-1 or broken characters
/// \param columns where frequency and level stand; otherwise they are the first two, or those that a heading names
[[nodiscard]] MeasurementText readMeasurement(std::string_view bytes,
                                              std::optional<MeasurementColumns> columns = std::nullopt);

}  // namespace tessavo
