#include "measure/measurement_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "measure/measurement_headings.h"
#include "measure/measurement_kinds.h"
#include "measure/measurement_rows.h"
#include "text/line_text.h"
#include "text/text_encoding.h"

namespace tessavo {

namespace {

constexpr double leastFrequencyHz = 1e-6;
constexpr double mostFrequencyHz = 1e9;
constexpr double mostLevelDb = 1000.0;
constexpr double mostPhaseDegrees = 1e6;
constexpr std::size_t thirdColumn = 3;
constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

constexpr std::string_view noRows =
    "There is no row of numbers in it; a measurement has a frequency and a level in each row.";
constexpr std::string_view impedance = "It is an impedance in ohms; a measurement has levels in dB.";
constexpr std::string_view impulse =
    "It is an impulse response over time; a measurement has levels over the frequency. Export the frequency "
    "response instead.";
constexpr std::string_view coherence = "It is a coherence; a measurement has levels in dB.";

MeasurementText troubled(std::string_view trouble, TextPlace place = {}) {
    MeasurementText text;
    text.trouble = trouble;
    text.troubleLine = place.line;
    text.troubleColumn = place.column;
    return text;
}

/// The place of a byte; the last line of what is before it is its line.
TextPlace placeOfByte(std::string_view bytes, std::size_t at) {
    const std::string before = utf8Of(bytes.substr(0, at)).append("|");
    const std::vector<std::string_view> lines = linesOf(before);
    return {lines.size(), LineText(lines.back()).plain().size()};
}

/// Phases of points, whole turns apart from those that stand there; NaN where there is none.
std::vector<double> filledPhases(std::span<const MeasuredPoint> points) {
    LevelCurve known;
    std::vector<double> degrees;
    std::vector<double> frequencies;
    for (const MeasuredPoint& point : points) {
        frequencies.push_back(point.frequencyHz);
        if (std::isfinite(point.third)) {
            known.frequenciesHz.push_back(point.frequencyHz);
            degrees.push_back(point.third);
        }
    }
    if (degrees.empty() || 2 * degrees.size() < points.size()) {
        return {};
    }
    known.levelsDb = unwrappedDegrees(degrees);
    return unwrappedDegrees(resampled(known, frequencies).levelsDb);
}

/// The mean of points of one frequency. Their phases are brought within half a turn of the first one.
MeasuredPoint meanOf(std::span<const MeasuredPoint> points) {
    MeasuredPoint mean = {points.front().frequencyHz, 0.0, noNumber};
    std::vector<double> degrees;
    for (const MeasuredPoint& point : points) {
        mean.levelDb += point.levelDb / static_cast<double>(points.size());
        if (std::isfinite(point.third)) {
            degrees.push_back(degrees.empty()
                                  ? point.third
                                  : degrees.front() + std::remainder(point.third - degrees.front(), 360.0));
        }
    }
    if (!degrees.empty()) {
        mean.third = 0.0;
        for (const double phase : degrees) {
            mean.third += phase / static_cast<double>(degrees.size());
        }
    }
    return mean;
}

/// Points by rising frequency, one for each.
std::vector<MeasuredPoint> mergedPoints(std::vector<MeasuredPoint> points) {
    std::ranges::stable_sort(points, {}, &MeasuredPoint::frequencyHz);
    std::vector<MeasuredPoint> merged;
    merged.reserve(points.size());
    for (std::size_t begin = 0; begin < points.size();) {
        std::size_t end = begin + 1;
        while (end < points.size() && points[end].frequencyHz == points[begin].frequencyHz) {
            ++end;
        }
        merged.push_back(end == begin + 1 ? points[begin]
                                          : meanOf(std::span(points).subspan(begin, end - begin)));
        begin = end;
    }
    return merged;
}

class MeasurementReader {
 public:
    MeasurementReader(std::vector<std::string_view> lines, std::optional<MeasurementColumns> chosen)
        : lines_(std::move(lines)), chosen_(chosen), columns_(chosen.value_or(MeasurementColumns{})) {}

    MeasurementText read() {
        const auto form = formOf(lines_, columns_);
        if (!form) {
            return chosen_ ? missingColumn() : withoutRows();
        }
        form_ = *form;
        firstRow_ = firstRowIn(columns_);
        const std::size_t count = columnCount();
        const auto above = std::span(lines_).first(firstRow_);
        heading_ = columnHeadingOf(above, count, chosen_ ? std::optional(chosen_->level) : std::nullopt);
        if (heading_ && !chosen_ && heading_->firstName != ColumnName::time) {
            columns_ = {heading_->frequency, heading_->level};
        }
        third_ = thirdColumnOf(count);
        readRows();
        if (points_.empty()) {
            return troubled(hasZeroRows_ ? "There is no frequency above 0 Hz in it." : noRows);
        }
        points_ = mergedPoints(std::move(points_));
        if (auto refused = refusal()) {
            return *std::move(refused);
        }
        if (points_.size() == 1) {
            return troubled("There is only one frequency in it; a measurement has two or more.",
                            {firstDataLine_, 0});
        }
        return result();
    }

 private:
    [[nodiscard]] std::size_t firstRowIn(const MeasurementColumns& columns) {
        std::size_t index = 0;
        while (index < lines_.size() && !isRow(LineText(lines_[index]).plain(), form_, columns, cells_)) {
            ++index;
        }
        return index;
    }

    /// How many columns most of the rows have.
    [[nodiscard]] std::size_t columnCount() {
        constexpr std::size_t mostCounted = 64;
        std::array<std::size_t, mostCounted + 1> rows{};
        for (std::size_t index = firstRow_; index < lines_.size(); ++index) {
            const LineText line(lines_[index]);
            if (isRow(line.plain(), form_, columns_, cells_)) {
                ++rows[std::min(cells_.size(), mostCounted)];
            }
        }
        return static_cast<std::size_t>(std::ranges::max_element(rows) - rows.begin());
    }

    /// The column of the phase, or what may be one; 0 for none.
    [[nodiscard]] std::size_t thirdColumnOf(std::size_t columnCount) const {
        if (heading_) {
            return heading_->phase;
        }
        const bool areFirst = columns_.frequency == 1 && columns_.level == 2;
        return areFirst && columnCount == thirdColumn ? thirdColumn : 0;
    }

    void readRows() {
        for (std::size_t index = firstRow_; index < lines_.size(); ++index) {
            const LineText line(lines_[index]);
            if (isBlankLine(line.plain())) {
                continue;
            }
            if (readRow(line.plain())) {
                firstDataLine_ = firstDataLine_ == 0 ? index + 1 : firstDataLine_;
            } else if (firstDataLine_ > 0) {
                ++skippedLines_;
            }
        }
    }

    [[nodiscard]] std::optional<double> numberIn(std::string_view plain, std::size_t column,
                                                 NumberUse use) const {
        return column >= 1 && column <= cells_.size()
                   ? cellNumber(cells_[column - 1].of(plain), use, form_.decimalSign)
                   : std::nullopt;
    }

    /// \return whether the line is data
    bool readRow(std::string_view plain) {
        if (!isRow(plain, form_, columns_, cells_)) {
            return false;
        }
        const double scale = heading_ ? heading_->frequencyScale : 1.0;
        const double frequencyHz =
            numberIn(plain, columns_.frequency, NumberUse::frequency).value_or(-1.0) * scale;
        const double levelDb = numberIn(plain, columns_.level, NumberUse::other).value_or(noNumber);
        const bool isZero = frequencyHz == 0.0;
        const bool isInRange = frequencyHz >= leastFrequencyHz && frequencyHz <= mostFrequencyHz;
        if (!(std::abs(levelDb) <= mostLevelDb) || (!isZero && !isInRange)) {
            return false;
        }
        hasZeroRows_ = hasZeroRows_ || isZero;
        if (!isZero) {
            const double third = numberIn(plain, third_, NumberUse::other).value_or(noNumber);
            points_.push_back({frequencyHz, levelDb, std::abs(third) <= mostPhaseDegrees ? third : noNumber});
        }
        return true;
    }

    [[nodiscard]] std::optional<MeasurementText> refusal() const {
        const auto above = std::span(lines_).first(firstRow_);
        if (heading_ && heading_->firstName == ColumnName::time) {
            return troubled(impulse, heading_->firstPlace);
        }
        if (heading_ && heading_->levelName == ColumnName::impedance) {
            return troubled(impedance, heading_->levelPlace);
        }
        if (heading_ && heading_->levelName == ColumnName::coherence) {
            return troubled(coherence, heading_->levelPlace);
        }
        if (heading_ && heading_->levelName == ColumnName::level) {
            return std::nullopt;
        }
        constexpr double fullScale = 2.0;
        if (const TextPlace place = placeOf(above, "impulse response");
            place.line > 0 && areLevelsWithin(points_, -fullScale, fullScale)) {
            return troubled(impulse, place);
        }
        if (const TextPlace place = placeOf(above, "impedance");
            place.line > 0 && areLevelsWithin(points_, 0.0, mostLevelDb)) {
            return troubled(impedance, place);
        }
        if (const TextPlace place = placeOf(above, "coherence");
            place.line > 0 && areLevelsWithin(points_, 0.0, 1.0)) {
            return troubled(coherence, place);
        }
        if (areOhms(points_)) {
            return troubled(impedance);
        }
        return areSamples(points_) ? std::optional(troubled(impulse)) : std::nullopt;
    }

    MeasurementText result() {
        MeasurementText text;
        text.skippedLines = skippedLines_;
        const bool hasPhase = third_ > 0 && !chosen_ && (heading_ || isPhaseColumn(points_));
        text.curve.phasesDegrees = hasPhase ? filledPhases(points_) : std::vector<double>();
        for (const MeasuredPoint& point : points_) {
            text.curve.frequenciesHz.push_back(point.frequencyHz);
            text.curve.levelsDb.push_back(point.levelDb);
        }
        return text;
    }

    /// What is wrong where no line has numbers in the columns that were chosen.
    MeasurementText missingColumn() {
        const MeasurementColumns first;
        const auto form = formOf(lines_, first);
        if (!form) {
            return withoutRows();
        }
        form_ = *form;
        const std::size_t row = firstRowIn(first);
        for (const std::size_t column : {columns_.frequency, columns_.level}) {
            if (column > cells_.size()) {
                const std::string count = std::to_string(cells_.size());
                return troubled(std::string("There is no column ")
                                    .append(std::to_string(column))
                                    .append("; this row has ")
                                    .append(count)
                                    .append("."),
                                {row + 1, 0});
            }
            const LineText line(lines_[row]);
            if (!numberIn(line.plain(), column, NumberUse::frequency)) {
                return troubled(
                    std::string("There is no number in column ").append(std::to_string(column)).append("."),
                    {row + 1, cells_[column - 1].begin + 1});
            }
        }
        return troubled(noRows);
    }

    /// What is wrong where no line has two columns of numbers.
    [[nodiscard]] MeasurementText withoutRows() const {
        constexpr std::size_t fewestSamples = 8;
        std::size_t samples = 0;
        bool areSmall = true;
        for (const std::string_view source : lines_) {
            const LineText line(source);
            const std::string_view plain = line.plain();
            const std::size_t begin = afterBlanks(plain, 0, plain.size());
            const std::size_t end = afterWord(plain, begin, plain.size());
            const std::string_view word = plain.substr(begin, end - begin);
            auto value =
                isBlankLine(plain.substr(end)) ? cellNumber(word, NumberUse::other, '.') : std::nullopt;
            value =
                value || !isBlankLine(plain.substr(end)) ? value : cellNumber(word, NumberUse::other, ',');
            samples += value ? 1U : 0U;
            areSmall = areSmall && (!value || std::abs(*value) <= 2.0);
        }
        if (const TextPlace place = placeOf(lines_, "impulse response"); place.line > 0) {
            return troubled(impulse, place);
        }
        return troubled(samples >= fewestSamples && areSmall ? impulse : noRows);
    }

    std::vector<std::string_view> lines_;
    std::optional<MeasurementColumns> chosen_;
    MeasurementColumns columns_;
    TableForm form_;
    std::optional<ColumnHeading> heading_;
    std::vector<Cell> cells_;  ///< of the line that was last looked at
    std::vector<MeasuredPoint> points_;
    std::size_t firstRow_ = 0;  ///< index of the line
    std::size_t third_ = 0;
    std::size_t firstDataLine_ = 0;  ///< from 1; 0 before it
    std::size_t skippedLines_ = 0;
    bool hasZeroRows_ = false;
};

}  // namespace

MeasurementText readMeasurement(std::string_view bytes, std::optional<MeasurementColumns> columns) {
    if (columns && (columns->frequency == 0 || columns->level == 0)) {
        return troubled("Columns are counted from 1.");
    }
    if (columns && columns->frequency == columns->level) {
        return troubled("Frequency and level stand in two columns, not in one.");
    }
    if (bytes.size() > mostMeasurementBytes) {
        return troubled("It has more than 16 MiB; measurements are smaller.");
    }
    if (const std::size_t zero = bytes.find('\0'); zero != std::string_view::npos) {
        return troubled("It is no text: a byte of it is zero. A text in UTF-16 must be saved as UTF-8.",
                        placeOfByte(bytes, zero));
    }
    const std::string text = utf8Of(bytes);
    std::vector<std::string_view> lines = linesOf(text);
    if (std::ranges::all_of(lines, isBlankLine)) {
        return troubled("It is empty.");
    }
    return MeasurementReader(std::move(lines), columns).read();
}

}  // namespace tessavo
