#include "cli/measurement_files.h"

#include <string_view>
#include <utility>
#include <vector>

#include "base/raw_file.h"
#include "cli/file_access.h"

namespace tessavo::cli {

std::optional<MeasurementText> loadMeasurement(const std::string& file,
                                               std::optional<MeasurementColumns> columns,
                                               Reporter& reporter) {
    // One byte more tells the reader that there is more than it takes.
    const auto start = readFileStart(pathOf(file), mostMeasurementBytes + 1);
    if (!start) {
        reporter.error(std::string(file).append(": ").append(readTrouble(file)));
        return std::nullopt;
    }
    const std::string_view bytes(reinterpret_cast<const char*>(start->bytes.data()), start->bytes.size());
    MeasurementText text = readMeasurement(bytes, columns);
    if (!text.trouble.empty()) {
        reporter.error(placedText(file, text.troubleLine, text.troubleColumn, text.trouble));
        return std::nullopt;
    }
    return text;
}

std::optional<LevelCurve> loadMeasurements(std::span<const std::string> files,
                                           std::optional<MeasurementColumns> columns,
                                           const std::string& calibrationFile, Smoothing smoothing,
                                           Reporter& reporter, std::size_t& skippedLines) {
    skippedLines = 0;
    std::optional<MeasurementText> microphone;
    if (!calibrationFile.empty()) {
        microphone = loadMeasurement(calibrationFile, std::nullopt, reporter);
        if (!microphone) {
            return std::nullopt;
        }
    }
    std::vector<LevelCurve> curves;
    for (const std::string& file : files) {
        auto text = loadMeasurement(file, columns, reporter);
        if (!text) {
            return std::nullopt;
        }
        skippedLines += text->skippedLines;
        curves.push_back(microphone ? calibrated(text->curve, microphone->curve) : std::move(text->curve));
    }
    const auto mean = powerMean(curves);
    if (!mean) {
        reporter.error("The measurements have no range of frequencies in common.");
        return std::nullopt;
    }
    return smoothed(*mean, smoothing);
}

}  // namespace tessavo::cli
