#pragma once

#include <cmath>
#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "filtertext/filter_text.h"

namespace tessavo {

/// The lines of a text that speak of filters.
inline std::vector<FilterLine> filtersOf(const FilterText& text) {
    std::vector<FilterLine> filters;
    for (const FilterLine& line : text.lines) {
        if (line.kind != FilterLineKind::none) {
            filters.push_back(line);
        }
    }
    return filters;
}

/// The only line of a text that speaks of a filter.
inline FilterLine onlyFilter(std::string_view bytes) {
    const std::vector<FilterLine> filters = filtersOf(readFilterText(bytes));
    EXPECT_EQ(filters.size(), 1U) << bytes;
    return filters.empty() ? FilterLine{} : filters.front();
}

/// Column, from 1, of the first place of an ASCII text where a part of it stands.
inline std::size_t columnOfPart(std::string_view text, std::string_view part) {
    const std::size_t offset = text.find(part);
    EXPECT_NE(offset, std::string_view::npos) << part;
    return offset + 1;
}

/// The cookbook's Q of a shelf of slope S.
inline double shelfQ(double slope, double gainDb) {
    const double a = std::pow(10.0, std::abs(gainDb) / 40.0);
    return 1.0 / std::sqrt((a + 1.0 / a) * (1.0 / slope - 1.0) + 2.0);
}

/// Whether a line means this filter.
inline void expectMeaning(const FilterLine& line, const CookbookFilter& filter) {
    EXPECT_EQ(line.kind, isBand(filter.shape) ? FilterLineKind::band : FilterLineKind::crossover)
        << line.text << ": " << line.reason;
    EXPECT_EQ(line.column, 0U) << line.text;
    ASSERT_TRUE(line.meaning) << line.text;
    EXPECT_EQ(line.meaning->shape, filter.shape) << line.text;
    EXPECT_NEAR(line.meaning->frequencyHz, filter.frequencyHz, 1e-9 * filter.frequencyHz) << line.text;
    EXPECT_NEAR(line.meaning->gainDb, filter.gainDb, 1e-12) << line.text;
    EXPECT_NEAR(line.meaning->q, filter.q, 1e-9) << line.text;
    EXPECT_EQ(line.meaning->order, filter.order) << line.text;
    EXPECT_TRUE(line.device) << line.text;
}

/// Whether a line cannot be read, from this column on, with this word in the reason.
inline void expectError(const FilterLine& line, std::size_t column, std::string_view word) {
    EXPECT_EQ(line.kind, FilterLineKind::error) << line.text;
    EXPECT_EQ(line.column, column) << line.text << ": " << line.reason;
    EXPECT_NE(line.reason.find(word), std::string::npos) << line.text << ": " << line.reason;
    EXPECT_FALSE(line.meaning) << line.text;
    EXPECT_FALSE(line.device) << line.text;
}

}  // namespace tessavo
