#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "text/decimal_sign.h"

namespace tessavo {

/// A value of a filter as it stands in a line, before the decimal sign of the file is known.
struct WrittenValue {
    bool isThere = false;    ///< something stands in its place, whether it can be read or not
    std::size_t column = 0;  ///< from 1: where it stands, or would
    NumberUse use = NumberUse::other;
    std::string number;   ///< as in WrittenNumber::text; empty where it cannot be read
    std::string quoted;   ///< what stands there, in quotation marks
    std::string problem;  ///< why it cannot be read, whatever the decimal sign; empty where it may be
    double scale = 1;     ///< of its unit
};

/// What a line says of whether its filter plays.
enum class WrittenState : std::uint8_t { on, off, missing };

/// A filter as it stands in a line or in a row of a table.
struct WrittenFilter {
    WrittenState state = WrittenState::missing;
    std::size_t stateColumn = 0;
    std::string type;  ///< as written; empty where there is none
    std::size_t typeColumn = 0;
    WrittenValue frequency{};
    WrittenValue gain{};
    WrittenValue q{};
    WrittenValue octaves{};          ///< bandwidth
    WrittenValue slope{};            ///< in dB per octave, of a shelf or a crossover
    WrittenValue secondFrequency{};  ///< of what is two filters in one
    std::string shape;               ///< of a crossover, as written: "L-R", "BU"
    std::size_t endColumn = 0;       ///< where what is missing would stand
    std::string problem;             ///< what else cannot be read; empty where nothing is
    std::size_t problemColumn = 0;   ///< where
};

/// Notes what else cannot be read; the first such thing stays.
void noteProblem(WrittenFilter& filter, std::size_t column, std::string problem);

/// Counts what the numbers of a filter tell of the decimal sign.
void addVotes(const WrittenFilter& filter, DecimalSignVotes& votes);

/// The number of a value.
/// \return nothing where it is missing or cannot be read
[[nodiscard]] std::optional<double> numberOf(const WrittenValue& value, char decimalSign);

/// Why numberOf() gives nothing for a value that is there: "\"12k5\" is not a number".
[[nodiscard]] std::string problemOf(const WrittenValue& value, char decimalSign);

}  // namespace tessavo
