#include "cli/measurement_command.h"

#include <ostream>

#include "base/number_text.h"
#include "cli/command_line.h"
#include "cli/measurement_files.h"

namespace tessavo::cli {

namespace {

// Zero has no sign.
std::string number(double value) {
    return shortestText(value + 0.0);
}

/// Frequency, level and perhaps phase of a point.
std::string pointText(const LevelCurve& curve, std::size_t point, const char* between) {
    std::string text = number(curve.frequenciesHz[point]);
    text.append(between).append(number(curve.levelsDb[point]));
    if (curve.hasPhase()) {
        text.append(between).append(number(curve.phasesDegrees[point]));
    }
    return text;
}

std::string jsonOf(const LevelCurve& curve, std::size_t skippedLines) {
    std::string text = "{\n  \"points\": ";
    text.append(std::to_string(curve.frequenciesHz.size()));
    text.append(",\n  \"from_hz\": ").append(number(curve.frequenciesHz.front()));
    text.append(",\n  \"to_hz\": ").append(number(curve.frequenciesHz.back()));
    text.append(",\n  \"has_phase\": ").append(curve.hasPhase() ? "true" : "false");
    text.append(",\n  \"skipped_lines\": ").append(std::to_string(skippedLines));
    text.append(",\n  \"curve\": [");
    for (std::size_t i = 0; i < curve.frequenciesHz.size(); ++i) {
        text.append(i == 0 ? "\n    [" : ",\n    [").append(pointText(curve, i, ", ")).append("]");
    }
    return text.append("\n  ]\n}\n");
}

std::string linesOf(const LevelCurve& curve, std::size_t skippedLines) {
    std::string text = "points: ";
    text.append(std::to_string(curve.frequenciesHz.size()));
    text.append("\nfrom: ").append(number(curve.frequenciesHz.front()));
    text.append(" Hz\nto: ").append(number(curve.frequenciesHz.back()));
    text.append(" Hz\nphase: ").append(curve.hasPhase() ? "yes" : "no");
    text.append("\nskipped lines: ").append(std::to_string(skippedLines));
    text.append(curve.hasPhase() ? "\n\nHz dB degrees\n" : "\n\nHz dB\n");
    for (std::size_t i = 0; i < curve.frequenciesHz.size(); ++i) {
        text.append(pointText(curve, i, " ")).append("\n");
    }
    return text;
}

}  // namespace

int runMeasurement(const Arguments& arguments, const CommandContext& context) {
    std::size_t skippedLines = 0;
    const auto curve = loadMeasurements(arguments.measurements, arguments.columns, arguments.calibration,
                                        arguments.smoothing, context.reporter, skippedLines);
    if (!curve) {
        return exit_code::failed;
    }
    context.console.out << (arguments.json ? jsonOf(*curve, skippedLines) : linesOf(*curve, skippedLines));
    return exit_code::done;
}

std::string measurementHelp() {
    return "Of several measurements the mean of their power is taken, 96 points an octave, over the "
           "frequencies "
           "that all of\n"
           "them have; it has no phase. Levels are smoothed by their power; the phase is not smoothed.";
}

}  // namespace tessavo::cli
