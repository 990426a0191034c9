#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "cli/reporter.h"
#include "measure/measurement_text.h"
#include "measure/smoothing.h"

namespace tessavo::cli {

/// Reads a measurement, a target curve or the calibration of a microphone. Reports what fails, with the line and the column
/// where they are known.
/// \param file its path in UTF-8
/// \param columns where frequency and level stand; nothing where they are to be found
/// \return what was read, with at least one point; nothing when it fails
[[nodiscard]] std::optional<MeasurementText> loadMeasurement(const std::string& file,
                                                             std::optional<MeasurementColumns> columns,
                                                             Reporter& reporter);

/// Reads measurements, takes off each what the microphone adds, takes the mean of their power where they are several, and
/// smooths that. Reports what fails.
/// \param files at least one
/// \param columns of all of them
/// \param calibrationFile what the microphone adds; empty for nothing. The columns are not its own.
/// \param skippedLines takes how many lines of the measurements were neither blank nor data
/// \return nothing when it fails
[[nodiscard]] std::optional<LevelCurve> loadMeasurements(std::span<const std::string> files,
                                                         std::optional<MeasurementColumns> columns,
                                                         const std::string& calibrationFile,
                                                         Smoothing smoothing, Reporter& reporter,
                                                         std::size_t& skippedLines);

}  // namespace tessavo::cli
