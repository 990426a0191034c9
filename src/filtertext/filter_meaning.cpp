#include "filtertext/filter_meaning.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/number_text.h"
#include "filtertext/filter_types.h"

namespace tessavo {

namespace {

// Beyond these nobody means a filter, and the formulas run out of doubles.
constexpr double largestGainDb = 1000.0;
constexpr double largestFrequencyHz = 1e9;
constexpr double largestQ = 1e6;
constexpr double mostOctaves = 100.0;
constexpr double slopeOfBareShelf = 0.9;
constexpr double secondOrderSlopeDb = 12.0;
constexpr double fourthOrderSlopeDb = 24.0;

/// The values of a filter whose line can be read.
struct ReadValues {
    std::optional<double> frequencyHz;
    std::optional<double> gainDb;
    std::optional<double> q;
    std::optional<double> octaves;
    std::optional<double> slopeDb;
};

/// A value with what must hold for it.
struct Wanted {
    const WrittenValue* value = nullptr;
    std::string_view name;
    bool isNeeded = false;
    bool isPositive = true;
    double largest = largestQ;
};

void fail(FilterLine& line, std::size_t column, std::string reason) {
    line.kind = FilterLineKind::error;
    line.column = column;
    line.reason = std::move(reason);
}

void refuse(FilterLine& line, bool isOff, std::string reason) {
    line.kind = isOff ? FilterLineKind::off : FilterLineKind::unsupported;
    line.reason = std::move(reason);
}

/// Why a number is none for a value; empty where it is one.
std::string rangeProblem(const Wanted& wanted, double number) {
    if (wanted.isPositive && number <= 0.0) {
        return std::string("the ").append(wanted.name).append(" is not above 0");
    }
    if (std::abs(number) > wanted.largest || (wanted.isPositive && number < 1.0 / wanted.largest)) {
        return std::string(wanted.value->quoted).append(" is out of every range");
    }
    return {};
}

/// Why a value cannot be read; empty where it can, or is not there.
std::string problemOf(const Wanted& wanted, char decimalSign) {
    if (!wanted.value->isThere) {
        return {};
    }
    const auto number = numberOf(*wanted.value, decimalSign);
    return number ? rangeProblem(wanted, *number) : problemOf(*wanted.value, decimalSign);
}

/// Finds the first place of a line that cannot be read, else the first value that is missing.
/// \return whether there is none
bool isReadable(const WrittenFilter& filter, const std::array<Wanted, 5>& values, char decimalSign,
                FilterLine& line) {
    std::size_t column = filter.problemColumn;
    std::string problem = filter.problem;
    for (const Wanted& wanted : values) {
        std::string found = problemOf(wanted, decimalSign);
        if (!found.empty() && (problem.empty() || wanted.value->column < column)) {
            column = wanted.value->column;
            problem = std::move(found);
        }
    }
    for (const Wanted& wanted : values) {
        if (problem.empty() && wanted.isNeeded && !wanted.value->isThere) {
            column = wanted.value->column != 0 ? wanted.value->column : filter.endColumn;
            problem = std::string("the ").append(wanted.name).append(" is missing");
        }
    }
    if (problem.empty()) {
        return true;
    }
    fail(line, column, std::move(problem));
    return false;
}

std::string slopeText(double slopeDb) {
    return shortNumber(slopeDb).append(" dB per octave");
}

/// The Q of a peak, from its bandwidth where it tells none.
double peakQ(const ReadValues& values) {
    if (values.q || !values.octaves) {
        return values.q.value_or(butterworthQ);
    }
    // From half the rate on there is no such peak; it is refused for its frequency.
    return *values.frequencyHz < textSamplingRateHz / 2.0
               ? peakQOfBandwidth(*values.octaves, *values.frequencyHz, textSamplingRateHz)
               : butterworthQ;
}

void meanShelf(const FilterType& type, const ReadValues& values, bool isOff, FilterLine& line) {
    const double gainDb = *values.gainDb;
    CookbookFilter meaning{type.shape, *values.frequencyHz, gainDb, values.q.value_or(0.0), 2};
    std::optional<double> slope = slopeOfBareShelf;
    if (values.slopeDb) {
        slope = slopeOfDecibels(*values.slopeDb);
    } else if (values.q) {
        slope = shelfSlopeOfQ(*values.q, gainDb);
    }
    const auto q = values.q || !slope ? values.q : shelfQOfSlope(*slope, gainDb);
    const bool isCorner = !type.isCentre && (values.slopeDb || values.q);
    if (isCorner && slope) {
        meaning.frequencyHz = shelfCentre(type.shape, meaning.frequencyHz, gainDb, *slope);
    }
    if (!q || !slope || !std::isfinite(meaning.frequencyHz) || meaning.frequencyHz <= 0.0) {
        refuse(line, isOff,
               std::string("no shelf of ")
                   .append(shortNumber(gainDb))
                   .append(" dB has ")
                   .append(values.slopeDb ? slopeText(*values.slopeDb) : "this Q"));
        return;
    }
    meaning.q = *q;
    line.meaning = meaning;
}

/// The shape of a crossover in one word; empty for one that is not known.
std::string_view crossoverShape(std::string_view written) {
    struct Shape {
        std::string_view word;
        std::string_view name;
    };
    constexpr std::array shapes{
        Shape{"bu", "Butterworth"},
        Shape{"but", "Butterworth"},
        Shape{"bw", "Butterworth"},
        Shape{"butterworth", "Butterworth"},
        Shape{"l-r", "Linkwitz-Riley"},
        Shape{"lr", "Linkwitz-Riley"},
        Shape{"linkwitz-riley", "Linkwitz-Riley"},
        Shape{"be", "Bessel"},
        Shape{"bessel", "Bessel"},
    };
    const std::string lower = lowerCase(written);
    const auto* const found = std::ranges::find(shapes, lower, &Shape::word);
    return found == shapes.end() ? std::string_view() : found->name;
}

void meanCrossover(const FilterType& type, const WrittenFilter& filter, const ReadValues& values, bool isOff,
                   FilterLine& line) {
    CookbookFilter meaning{type.shape, *values.frequencyHz, 0.0, values.q.value_or(butterworthQ), 2};
    if (!values.slopeDb && filter.shape.empty()) {
        line.meaning = meaning;
        return;
    }
    const std::string_view shape = crossoverShape(filter.shape);
    const double slopeDb = values.slopeDb.value_or(0.0);
    const std::string name =
        std::string(shape.empty() ? "filter" : shape).append(" of ").append(slopeText(slopeDb));
    if (shape.empty() && !filter.shape.empty()) {
        refuse(line, isOff, shortQuote(filter.shape).append(" is no known shape of a crossover"));
    } else if (shape.empty() && slopeDb != secondOrderSlopeDb) {
        refuse(line, isOff, std::string("a ").append(name).append(", whose shape is not told"));
    } else if (slopeDb == secondOrderSlopeDb && (shape == "Butterworth" || shape.empty())) {
        line.meaning = meaning;
    } else if (slopeDb == fourthOrderSlopeDb && (shape == "Butterworth" || shape == "Linkwitz-Riley")) {
        meaning.q = butterworthQ;
        meaning.order = 4;
        line.meaning = meaning;
        line.reason = shape == "Butterworth"
                          ? std::string("a ").append(name).append("; the target's is a Linkwitz-Riley")
                          : std::string();
    } else {
        refuse(line, isOff,
               std::string("a ").append(name).append(
                   "; the target has Butterworth of 12 and Linkwitz-Riley of 24 dB per octave"));
    }
}

/// What a filter with readable values means.
void mean(const FilterType& type, const WrittenFilter& filter, const ReadValues& values, FilterLine& line) {
    const bool isOff = filter.state == WrittenState::off;
    line.kind = isOff                ? FilterLineKind::off
                : isBand(type.shape) ? FilterLineKind::band
                                     : FilterLineKind::crossover;
    if (!isBand(type.shape)) {
        meanCrossover(type, filter, values, isOff, line);
    } else if (type.shape == FilterShape::peak) {
        line.meaning = CookbookFilter{type.shape, *values.frequencyHz, *values.gainDb, peakQ(values), 2};
    } else {
        meanShelf(type, values, isOff, line);
    }
}

/// A filter without what does not count, and with what two values at once forbid among what cannot be read.
WrittenFilter withContradictions(const WrittenFilter& filter, const FilterType& type) {
    WrittenFilter checked = filter;
    const bool isShelf = isBand(type.shape) && type.shape != FilterShape::peak;
    if (filter.slope.isThere && type.shape == FilterShape::peak) {
        noteProblem(checked, filter.slope.column, "a slope, which a peak does not have");
    }
    if (filter.slope.isThere && filter.q.isThere && isShelf) {
        noteProblem(checked, filter.q.column, "both a slope and a Q");
    }
    if (filter.q.isThere) {
        checked.octaves = WrittenValue{};
    } else if (filter.octaves.isThere && type.shape != FilterShape::peak) {
        noteProblem(checked, filter.octaves.column, "a bandwidth, which only a peak has");
    }
    if (!filter.shape.empty() && !filter.slope.isThere && !isBand(type.shape)) {
        noteProblem(checked, filter.slope.column != 0 ? filter.slope.column : filter.endColumn,
                    "the slope is missing");
    }
    return checked;
}

void readValues(const WrittenFilter& filter, const FilterType& type, char decimalSign, FilterLine& line) {
    const bool hasOctaves =
        type.shape == FilterShape::peak && !filter.q.isThere && filter.octaves.column != 0;
    const std::array<Wanted, 5> wanted{
        Wanted{&filter.frequency, "frequency", true, true, largestFrequencyHz},
        Wanted{&filter.gain, "gain", isBand(type.shape), false, largestGainDb},
        Wanted{&filter.q, "Q", type.needsQ && !hasOctaves},
        Wanted{&filter.octaves, "bandwidth", hasOctaves, true, mostOctaves},
        Wanted{&filter.slope, "slope"},
    };
    if (!isReadable(filter, wanted, decimalSign, line)) {
        return;
    }
    const ReadValues values{numberOf(filter.frequency, decimalSign), numberOf(filter.gain, decimalSign),
                            numberOf(filter.q, decimalSign), numberOf(filter.octaves, decimalSign),
                            numberOf(filter.slope, decimalSign)};
    mean(type, filter, values, line);
}

SourceFilter sourceOf(const WrittenFilter& filter, char decimalSign) {
    return {filter.type, numberOf(filter.frequency, decimalSign), numberOf(filter.gain, decimalSign),
            numberOf(filter.q, decimalSign)};
}

}  // namespace

void readMeaning(const WrittenFilter& filter, char decimalSign, std::string_view stateWords,
                 FilterLine& line) {
    if (!filter.type.empty()) {
        line.source = sourceOf(filter, decimalSign);
    }
    if (filter.state == WrittenState::missing) {
        fail(line, filter.stateColumn, std::string("neither ").append(stateWords));
        return;
    }
    if (filter.type.empty()) {
        fail(line, filter.typeColumn, "the type is missing");
        return;
    }
    const bool isOff = filter.state == WrittenState::off;
    const FilterType* const type = filterType(filter.type);
    if (type != nullptr && type->use == TypeUse::nothing) {
        line.kind = FilterLineKind::empty;
    } else if (filter.secondFrequency.isThere) {
        refuse(line, isOff, "two filters in one, with a second frequency; the target has none such");
    } else if (type == nullptr) {
        refuse(line, isOff, shortQuote(filter.type).append(" is no type that is known"));
    } else if (type->use == TypeUse::refused) {
        refuse(line, isOff, std::string(type->reason));
    } else {
        readValues(withContradictions(filter, *type), *type, decimalSign, line);
    }
}

std::optional<double> readPreamp(const WrittenValue& written, char decimalSign, FilterLine& line) {
    const Wanted wanted{&written, "gain", true, false, largestGainDb};
    std::string problem = written.isThere ? problemOf(wanted, decimalSign) : "the gain is missing";
    if (!problem.empty()) {
        fail(line, written.column, std::move(problem));
        return std::nullopt;
    }
    const auto gainDb = numberOf(written, decimalSign);
    line.reason = std::string("a preamp of ").append(shortNumber(*gainDb)).append(" dB");
    return gainDb;
}

}  // namespace tessavo
