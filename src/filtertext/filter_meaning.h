#pragma once

#include "filtertext/filter_text.h"
#include "filtertext/written_filter.h"

namespace tessavo {

/// Gives a line its kind, source, meaning, reason and column from what stands in it: shelves by their centre, everything with
/// the cookbook's Q.
/// \param stateWords what a missing state is called: "ON nor OFF"
void readMeaning(const WrittenFilter& filter, char decimalSign, std::string_view stateWords,
                 FilterLine& line);

/// The gain of a preamp.
/// \param line gets kind, column and reason where it cannot be read, else the reason says what it is
/// \return nothing where it cannot be read
std::optional<double> readPreamp(const WrittenValue& written, char decimalSign, FilterLine& line);

}  // namespace tessavo
