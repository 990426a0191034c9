#include <gtest/gtest.h>

#include "filtertext/filter_text.h"
#include "filtertext/readers.h"

namespace tessavo {
namespace {

FilterText read(std::string_view text) {
    return readTextLines(text, {});
}

TEST(DecimalSignOfAText, OfAFileHoldsForEveryLine) {
    const FilterText comma =
        read("Filter 1: ON PK Fc 8.000 Hz Gain -3,0 dB Q 2,00\nFilter 2: ON PK Fc 1.250 Hz Gain -3 dB Q 2");
    EXPECT_EQ(comma.decimalSign, ',');
    EXPECT_EQ(comma.lines.at(0).meaning->frequencyHz, 8000.0);
    EXPECT_EQ(comma.lines.at(0).meaning->gainDb, -3.0);
    EXPECT_EQ(comma.lines.at(1).meaning->frequencyHz, 1250.0);
    const FilterText point =
        read("Filter 1: ON PK Fc 8,000 Hz Gain -3.0 dB Q 2.00\nFilter 2: ON PK Fc 1.250 Hz Gain -3 dB Q 2");
    EXPECT_EQ(point.decimalSign, '.');
    EXPECT_EQ(point.lines.at(0).meaning->frequencyHz, 8000.0);
    EXPECT_EQ(point.lines.at(1).meaning->frequencyHz, 1.25);
}

TEST(DecimalSignOfAText, PreampsAndOffFiltersCountAndProseDoesNot) {
    EXPECT_EQ(
        read("Preamp: -4,9 dB\nFilter: ON PK Fc 1.000 Hz Gain 1 dB Q 1").lines.at(1).meaning->frequencyHz,
        1000.0);
    EXPECT_EQ(read("Filter: OFF PK Fc 91,9 Hz Gain 1 dB Q 1").decimalSign, ',');
    EXPECT_EQ(
        read("Notes: 1,5 and 2,5\n# Preamp: -4,9 dB\nFilter: ON PK Fc 100 Hz Gain 1 dB Q 1").decimalSign,
        '.');
}

TEST(DecimalSignOfAText, TheHeadTellsWhereNumbersDoNot) {
    constexpr std::string_view line = "\nFilter: ON PK Fc 8.000 Hz Gain 1 dB Q 1";
    EXPECT_EQ(read(std::string("Room EQ V5,01").append(line)).lines.at(1).meaning->frequencyHz, 8000.0);
    EXPECT_EQ(read(std::string("Room EQ V5.01").append(line)).lines.at(1).meaning->frequencyHz, 8.0);
    EXPECT_EQ(read(std::string("Room EQ Vx,01").append(line)).decimalSign, '.');
    EXPECT_EQ(read("Room EQ V5,01\nFilter: ON PK Fc 100 Hz Gain 1.5 dB Q 1").decimalSign, '.');
}

TEST(DecimalSignOfAText, ANumberWithTheOtherMarkIsAnErrorAtItsColumn) {
    const FilterText text = read(
        "Filter: ON PK Fc 100 Hz Gain 1,5 dB Q 1,2\nFilter: ON PK Fc 91.9 Hz Gain 1 dB Q 1\n"
        "Filter: ON PK Fc 100 Hz Gain 1.500 dB Q 1,1");
    EXPECT_EQ(text.decimalSign, ',');
    EXPECT_EQ(text.lines.at(1).kind, FilterLineKind::error);
    EXPECT_EQ(text.lines.at(1).column, 18U);
    EXPECT_EQ(text.lines.at(1).reason,
              "\"91.9\" is not a number with a decimal comma, which the other lines have");
    EXPECT_EQ(text.lines.at(2).kind, FilterLineKind::error);
    EXPECT_EQ(text.lines.at(2).column, 30U);
    EXPECT_FALSE(text.lines.at(2).meaning);
}

}  // namespace
}  // namespace tessavo
