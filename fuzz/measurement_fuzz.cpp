#include <cmath>
#include <cstdint>
#include <string_view>

#include "check.h"
#include "measure/measurement_text.h"

// Any bytes as a measurement; the first byte tells which columns are chosen.

using namespace tessavo;

namespace {

void checkCurve(const LevelCurve& curve) {
    fuzz::check(curve.frequenciesHz.size() >= 2, "a measurement has two points or more");
    fuzz::check(curve.levelsDb.size() == curve.frequenciesHz.size(), "each frequency has a level");
    fuzz::check(curve.phasesDegrees.empty() || curve.phasesDegrees.size() == curve.levelsDb.size(),
                "each frequency has a phase, or none has");
    double before = 0.0;
    for (const double frequencyHz : curve.frequenciesHz) {
        fuzz::check(std::isfinite(frequencyHz) && frequencyHz > before, "frequencies rise from above 0");
        before = frequencyHz;
    }
    for (std::size_t index = 0; index < curve.levelsDb.size(); ++index) {
        fuzz::check(std::abs(curve.levelsDb[index]) <= 1000.0, "levels are those of data");
        if (curve.hasPhase()) {
            fuzz::check(std::isfinite(curve.phasesDegrees[index]), "phases are finite");
            fuzz::check(index == 0 || std::abs(curve.phasesDegrees[index] - curve.phasesDegrees[index - 1]) <
                                          180.0 + 1e-6,
                        "phases are unwrapped");
        }
        fuzz::check(levelAt(curve, curve.frequenciesHz[index]) == curve.levelsDb[index],
                    "a point has its level");
    }
}

void checkReading(std::string_view bytes, std::optional<MeasurementColumns> columns) {
    const MeasurementText text = readMeasurement(bytes, columns);
    fuzz::check(text.troubleColumn == 0 || text.troubleLine > 0, "a column is one of a line");
    if (text.trouble.empty()) {
        checkCurve(text.curve);
        fuzz::check(text.troubleLine == 0, "only trouble has a place");
        fuzz::check(!columns || !text.curve.hasPhase(), "chosen columns have no phase");
        fuzz::check(text.skippedLines <= bytes.size(), "no line is skipped that is not there");
    } else {
        fuzz::check(text.curve.frequenciesHz.empty() && text.curve.levelsDb.empty() && !text.curve.hasPhase(),
                    "trouble leaves no curve");
        fuzz::check(text.troubleLine <= bytes.size() + 1, "the place is in the text");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    checkReading(bytes, std::nullopt);
    if (size > 0) {
        const auto choice = static_cast<unsigned>(data[0]);
        checkReading(bytes, MeasurementColumns{choice % 4U, (choice / 4U) % 4U});
    }
    return 0;
}
