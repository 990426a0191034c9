#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "filter_lines.h"

namespace tessavo {
namespace {

TEST(TextDecimals, TheSignIsDecidedForTheFileAsAWhole) {
    const struct {
        const char* text;
        char sign;
        double frequencyHz;  ///< of the last line
    } cases[] = {
        {"Filter: ON PK Fc 91,9 Hz Gain -3 dB Q 2\nFilter: ON LP Fc 8.000 Hz", ',', 8000},
        {"Filter: ON PK Fc 91.9 Hz Gain -3 dB Q 2\nFilter: ON LP Fc 8,000 Hz", '.', 8000},
        {"Filter: ON LP Fc 8.000 Hz", '.', 8},
        {"Filter: ON LP Fc 8,000 Hz", '.', 8000},
        {"Room EQ V5,01\nFilter: ON LP Fc 8.000 Hz", ',', 8000},
        {"Room EQ V5.01\nFilter: ON LP Fc 8,000 Hz", '.', 8000},
        {"Room EQ V5,01\nFilter: ON LP Fc 91.9 Hz", '.', 91.9},
        {"Room EQ V5,01\nFilter: ON LP Fc 91,9 Hz", ',', 91.9},
        {"Filter: ON PK Fc 100 Hz Gain -3,000 dB Q 2\nFilter: ON LP Fc 8.000 Hz", ',', 8000},
        {"Filter: ON PK Fc 100 Hz Gain -3 dB Q 2,500\nFilter: ON LP Fc 8.000 Hz", ',', 8000},
        {"Preamp: -4,9 dB\nFilter: ON LP Fc 8.000 Hz", ',', 8000},
        {"Filter: ON LP Fc 1,234.5 Hz", '.', 1234.5},
        {"Filter: ON LP Fc 1.234,5 Hz", ',', 1234.5},
        {"Filter: ON LP Fc 1.234,567 Hz", ',', 1234.567},
        {"Filter: ON LP Fc 1,5 kHz", ',', 1500},
        {"Filter: ON PK Fc 91,9 Hz Gain 1 dB Q 2\nFilter: ON PK Fc 9,9 Hz Gain 2,5 dB Q 2\n"
         "Filter: ON PK Fc 9 Hz Gain 2.5 dB Q 2\nFilter: ON LP Fc 8.000 Hz",
         ',', 8000},
        {"# Gain 4,5 dB\n# 4,6 4,7 4,8\nFilter: ON LP Fc 8.000 Hz", '.', 8},
    };
    for (const auto& [text, sign, frequencyHz] : cases) {
        const FilterText read = readFilterText(text);
        EXPECT_EQ(read.decimalSign, sign) << text;
        ASSERT_FALSE(read.lines.empty());
        ASSERT_TRUE(read.lines.back().source) << text;
        EXPECT_EQ(read.lines.back().source->frequencyHz, frequencyHz) << text << read.lines.back().reason;
        EXPECT_EQ(read.lines.back().kind, FilterLineKind::crossover) << text;
    }
}

TEST(TextDecimals, AsOftenOneAsTheOtherIsAPoint) {
    const std::string line = "Filter: ON PK Fc 91,9 Hz Gain -3.5 dB Q 2";
    const FilterText text = readFilterText(line);
    EXPECT_EQ(text.decimalSign, '.');
    ASSERT_EQ(text.lines.size(), 1U);
    expectError(text.lines[0], columnOfPart(line, "91,9"), "91,9");
    ASSERT_TRUE(text.lines[0].source);
    EXPECT_EQ(text.lines[0].source->type, "PK");
    EXPECT_FALSE(text.lines[0].source->frequencyHz);
    EXPECT_EQ(text.lines[0].source->gainDb, -3.5);
    EXPECT_EQ(text.lines[0].source->q, 2.0);
}

TEST(TextDecimals, BlanksOfEveryKindStandForThousands) {
    for (const std::string blank : {"\u00a0", "\u202f", " ", "\xA0"}) {
        const std::string note = blank == "\xA0" ? "Note \xE4\n" : "Note \u00e4\n";
        std::string lines = "Filter 1: ON PK Fc 1";
        lines.append(blank).append("067 Hz Gain -3.0 dB Q 2.00\n").append(note);
        const FilterLine filter = onlyFilter(lines);
        expectMeaning(filter, {FilterShape::peak, 1067, -3, 2, 2});
        EXPECT_EQ(filter.source.value().frequencyHz, 1067.0);
    }
    for (const std::string blank : {"\u00a0", "\u202f", " "}) {
        EXPECT_EQ(onlyFilter("Filter: ON LP Fc 12" + blank + "067,5 Hz").source.value().frequencyHz, 12067.5);
    }
}

TEST(TextDecimals, SignsOfBothKindsAreRead) {
    EXPECT_EQ(onlyFilter("Filter: ON PK Fc 100 Hz Gain +3,0 dB Q 2").source.value().gainDb, 3.0);
    EXPECT_EQ(onlyFilter("Filter: ON PK Fc 100 Hz Gain \u22123,5 dB Q 2").source.value().gainDb, -3.5);
    EXPECT_EQ(onlyFilter("Filter: ON PK Fc 100 Hz Gain +0.0 dB Q 2").source.value().gainDb, 0.0);
    EXPECT_EQ(onlyFilter("Filter: ON PK Fc 100 Hz Gain -.5 dB Q 2").source.value().gainDb, -0.5);
}

TEST(TextDecimals, WhatIsNoNumberIsAnErrorAtItsColumn) {
    const struct {
        const char* frequency;
        const char* gain;
        const char* q;
        const char* wrong;
    } cases[] = {
        {"12k5 Hz", "-3.0", "2.00", "12k5"},   {"abc Hz", "-3.0", "2.00", "abc"},
        {"1.2.3 Hz", "-3.0", "2.00", "1.2.3"}, {"10,67 Hz", "-3.0", "2.00", "10,67"},
        {"1,06 Hz", "-3.0", "2.00", "1,06"},   {"1,0678 Hz", "-3.0", "2.00", "1,0678"},
        {",067 Hz", "-3.0", "2.00", ",067"},   {"100 Hz", "3-0", "2.00", "3-0"},
        {"100 Hz", "--3.0", "2.00", "--3.0"},  {"100 Hz", "nan", "2.00", "nan"},
        {"100 Hz", "inf", "2.00", "inf"},      {"100 Hz", "0x10", "2.00", "0x10"},
        {"100 Hz", "1,000", "2.00", "1,000"},  {"100 Hz", "-3.0", "two", "two"},
        {"100 Hz", "-3.0", "2,0", "2,0"},      {"100 Hz", "-3.0", "2..0", "2..0"},
    };
    for (const auto& [frequency, gain, q, wrong] : cases) {
        const std::string line =
            std::string("Filter 1: ON PK Fc ") + frequency + " Gain " + gain + " dB Q " + q;
        const FilterText text = readFilterText("Filter: ON PK Fc 10.5 Hz Gain 1.5 dB Q 1.5\n" + line);
        EXPECT_EQ(text.decimalSign, '.');
        ASSERT_EQ(text.lines.size(), 2U);
        expectError(text.lines[1], columnOfPart(line, wrong), wrong);
    }
}

TEST(TextDecimals, BlanksAreThousandsOnlyBeforeThreeDigits) {
    for (const std::string frequency : {"10 67", "1 0678", "1 06", "1 067 12"}) {
        const std::string line = "Filter 1: ON PK Fc " + frequency + " Hz Gain -3.0 dB Q 2.00";
        const FilterLine filter = onlyFilter(line);
        EXPECT_EQ(filter.kind, FilterLineKind::error) << line;
        EXPECT_GE(filter.column, 20U) << line;
        EXPECT_LT(filter.column, 20U + frequency.size()) << line;
    }
    EXPECT_EQ(onlyFilter("Filter: ON LP Fc 1 234 567 Hz").source.value().frequencyHz, 1234567.0);
}

TEST(TextDecimals, NumbersBeyondEveryRangeAreErrorsOrTold) {
    const std::string digits(400, '9');
    for (const std::string& line : {"Filter: ON PK Fc " + digits + " Hz Gain -3 dB Q 2",
                                    "Filter: ON PK Fc 100 Hz Gain " + digits + " dB Q 2",
                                    "Filter: ON PK Fc 100 Hz Gain 3 dB Q " + digits}) {
        const FilterLine filter = onlyFilter(line);
        EXPECT_EQ(filter.kind, FilterLineKind::error) << filter.reason;
        EXPECT_EQ(filter.column, columnOfPart(line, digits));
    }
}

}  // namespace
}  // namespace tessavo
