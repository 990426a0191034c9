#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "filtertext/filter_table.h"
#include "said_lines.h"

namespace tessavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view head =
    "Number Enabled Control Type Frequency(Hz) Gain(dB) Q Bandwidth(Hz) TargetT60(ms) Shape Slope_dB/oct "
    "Frequency2(Hz) Q2 "
    "Slope2_dB/oct";

/// A table with another mark between the cells of its head and of its rows, which stand here with '|'.
std::vector<std::string> saidOfTable(char parting, std::string rows) {
    std::string text(head);
    std::ranges::replace(text, ' ', parting);
    std::ranges::replace(rows, '|', parting);
    return said(readTextLines(text.append("\n").append(rows), {}));
}

std::string saidOfRow(char parting, std::string row) {
    const auto lines = saidOfTable(parting, std::move(row));
    return lines.size() == 1 ? lines.front() : std::string("not one row");
}

constexpr std::string_view everyParting = " \t,;";

TEST(FilterTableRows, RowsAreReadWhateverPartsTheirCells) {
    for (const char parting : everyParting) {
        EXPECT_THAT(
            saidOfTable(
                parting,
                "1|True|Auto|PK|52.00|-7.80|3.760|13.83\n2|True|Manual|Modal|1315|3.50|4.810|273.4|300\n"
                "3|False|Auto|PK|95.0|11.5|6.1|15.57\n4|True|Auto|None\n5|False|Auto|None\n6|TRUE|Auto|LSQ|"
                "100|3|0.5"),
            ElementsAre("band PK 52 -7.8 3.76 = peak 52 -7.8 3.76",
                        "band Modal 1315 3.5 4.81 = peak 1315 3.5 4.81",
                        "off PK 95 11.5 6.1 = peak 95 11.5 6.1", "empty None - - -", "empty None - - -",
                        "band LSQ 100 3 0.5 = low-shelf 100 3 0.5"))
            << parting;
    }
}

TEST(FilterTableRows, ColumnsAreFoundByTheirNames) {
    EXPECT_THAT(said(readTextLines(
                    "Type,Q,Gain (dB),Frequency (Hz),Enabled\nPK,2.0,-3.0,100,True\nHP,,,80,false", {})),
                ElementsAre("band PK 100 -3 2 = peak 100 -3 2", "off HP 80 - - = high-pass 80 0 0.707107"));
    EXPECT_THAT(said(readTextLines("Number Type Frequency (Hz) Gain (dB) Q\n1 PK 100 -3.0 2.0", {})),
                ElementsAre("band PK 100 -3 2 = peak 100 -3 2"));
    EXPECT_THAT(
        said(readTextLines("NUMBER;ENABLED;TYPE;FREQUENCY(HZ);GAIN(DB);Q\n1;true;pk;100;-3,5;2,0", {})),
        ElementsAre("band pk 100 -3.5 2 = peak 100 -3.5 2"));
}

TEST(FilterTableRows, RowsWithoutAHeadHaveTheUsualColumns) {
    EXPECT_EQ(saidOf("1 True Auto PK 52.00 -7.80 3.760 13.83"), "band PK 52 -7.8 3.76 = peak 52 -7.8 3.76");
    EXPECT_EQ(saidOf("  1\tTrue\tAuto\tPK\t52,00\t-7,80\t3,760"), "band PK 52 -7.8 3.76 = peak 52 -7.8 3.76");
    EXPECT_EQ(saidOf("1,True,Auto,PK,52.00,-7.80,3.760"), "band PK 52 -7.8 3.76 = peak 52 -7.8 3.76");
    EXPECT_EQ(saidOf("1 True Auto None"), "empty None - - -");
    EXPECT_EQ(saidOf("1 True story of PK"), "none");
}

TEST(FilterTableRows, CellsMayBeQuoted) {
    EXPECT_EQ(saidOfRow(',', "\"1\"|\"True\"|\"Auto\"|\"PK\"|\"91,9\"|\"-7,80\"|\"3,760\"|\"13,83\""),
              "band PK 91.9 -7.8 3.76 = peak 91.9 -7.8 3.76");
    EXPECT_EQ(saidOfRow(',', "1|True|\"He said \"\"auto, please\"\"\"|PK|100|-7.80|3.760"),
              "band PK 100 -7.8 3.76 = peak 100 -7.8 3.76");
    EXPECT_EQ(saidOfRow(' ', "1|True|\"by hand\"|PK|100|-7.80|3.760"),
              "band PK 100 -7.8 3.76 = peak 100 -7.8 3.76");
    EXPECT_EQ(saidOfRow(',', "1|True|Auto|PK|100|-7.80|\"3.760"),
              "band PK 100 -7.8 3.76 = peak 100 -7.8 3.76");
    EXPECT_THAT(
        said(readTextLines(
            "\"Number\",\"Enabled\",\"Type\",\"Frequency(Hz)\",\"Gain(dB)\",\"Q\"\n1,True,PK,100,-7.80,3.760",
            {})),
        ElementsAre("band PK 100 -7.8 3.76 = peak 100 -7.8 3.76"));
}

TEST(FilterTableRows, BlanksPartThousandsInCellsThatOtherMarksPart) {
    EXPECT_EQ(saidOfRow('\t', "1|True|Auto|PK|1 315|-7,80|3,760"),
              "band PK 1315 -7.8 3.76 = peak 1315 -7.8 3.76");
    EXPECT_EQ(saidOfRow(' ', "1|True|Auto|PK|1\u00A0315|-7,80|3,760"),
              "band PK 1315 -7.8 3.76 = peak 1315 -7.8 3.76");
    EXPECT_EQ(saidOfRow(';', "1|True|Auto|PK|1.315|-7,80|3,760"),
              "band PK 1315 -7.8 3.76 = peak 1315 -7.8 3.76");
}

TEST(FilterTableRows, BlocksAndOtherLinesAreNoFilters) {
    std::string text("Generic\n");
    text.append(head).append(
        "\n1 True Auto PK 52.00 -7.80 3.760 13.83\nIndividual max boost 6.0 dB\nOverall_max_boost 6.00\n");
    text.append(
        "Compound_filters\n1 True Auto None\n2 True Auto None\nCrossover_filters\n1 True Auto None\n\n6.0 "
        "3.0");
    const FilterText read = readTextLines(text, {});
    EXPECT_THAT(said(read), ElementsAre("band PK 52 -7.8 3.76 = peak 52 -7.8 3.76", "empty None - - -",
                                        "empty None - - -", "empty None - - -"));
    EXPECT_EQ(read.lines.size(), 12U);
    EXPECT_EQ(read.lines.at(2).line, 3U);
    EXPECT_EQ(read.lines.at(2).text, "1 True Auto PK 52.00 -7.80 3.760 13.83");
    EXPECT_EQ(read.trouble, "");
}

TEST(FilterTableRows, TwoFiltersInOneRowAreRefused) {
    for (const char parting : {'\t', ',', ';'}) {
        EXPECT_EQ(saidOfRow(parting, "1|True|Auto|L-T|60.0||0.9|||||30.0|0.5|"),
                  "unsupported L-T 60 - 0.9: two filters in one, with a second frequency; the target has "
                  "none such");
        EXPECT_EQ(saidOfRow(parting, "1|True|Auto|LP-HP|60.0|||||BU|24|300.0||24"),
                  "unsupported LP-HP 60 - -: two filters in one, with a second frequency; the target has "
                  "none such");
        EXPECT_EQ(
            saidOfRow(parting, "1|True|Auto|PK|60.0|3.0|1.0|||||300.0|2.0"),
            "unsupported PK 60 3 1: two filters in one, with a second frequency; the target has none such");
        EXPECT_EQ(saidOfRow(parting, "1|True|Auto|PK|60.0|3.0|1.0|||||0.00|"),
                  "band PK 60 3 1 = peak 60 3 1");
    }
}

TEST(FilterTableRows, CrossoversHaveAShapeAndASlope) {
    struct Case {
        std::string_view cells;
        std::string_view said;
    };
    for (const Case& one :
         {Case{"HP|80.0|||||BU|12", "crossover HP 80 - - = high-pass 80 0 0.707107"},
          Case{"LP|80.0|||||L-R|24", "crossover LP 80 - - = low-pass 80 0 0.707107 x4"},
          Case{"LP|80.0|||||LR|24.0", "crossover LP 80 - - = low-pass 80 0 0.707107 x4"},
          Case{"HP|80.0|||||BU|24",
               "crossover HP 80 - - = high-pass 80 0 0.707107 x4: a Butterworth of 24 dB per octave; the "
               "target's is a Linkwitz-Riley"},
          Case{"HP|80.0|||||L-R|12",
               "unsupported HP 80 - -: a Linkwitz-Riley of 12 dB per octave; the target has Butterworth of "
               "12 and Linkwitz-Riley of 24 "
               "dB per octave"},
          Case{"HP|80.0|||||BU|18",
               "unsupported HP 80 - -: a Butterworth of 18 dB per octave; the target has Butterworth of 12 "
               "and Linkwitz-Riley of 24 dB "
               "per octave"},
          Case{"HP|80.0|||||BE|12",
               "unsupported HP 80 - -: a Bessel of 12 dB per octave; the target has Butterworth of 12 and "
               "Linkwitz-Riley of 24 dB per "
               "octave"},
          Case{"HP|80.0|||||Wah|12", "unsupported HP 80 - -: \"Wah\" is no known shape of a crossover"},
          Case{"HP|80.0", "crossover HP 80 - - = high-pass 80 0 0.707107"},
          Case{"High_pass|80.0|||||BU|12", "crossover High_pass 80 - - = high-pass 80 0 0.707107"},
          Case{"LPQ|80.0||0.5", "crossover LPQ 80 - 0.5 = low-pass 80 0 0.5"}}) {
        for (const char parting : everyParting) {
            EXPECT_EQ(saidOfRow(parting, std::string("1|True|Auto|").append(one.cells)), one.said) << parting;
        }
    }
    // Blanks that stand for no empty cells.
    EXPECT_EQ(saidOfRow(' ', "1 True Auto HP 80.0 L-R 24"),
              "crossover HP 80 - - = high-pass 80 0 0.707107 x4");
    EXPECT_EQ(saidOfRow(' ', "1   True  Auto  HP   80.0   L-R   24"),
              "crossover HP 80 - - = high-pass 80 0 0.707107 x4");
    EXPECT_EQ(saidOfRow(' ', "1 True Auto HP 80.0 L-R"), "error@24 HP 80 - -: the slope is missing");
}

TEST(FilterTableRows, SlopesOfShelvesStandInTheirTypeOrTheirColumn) {
    EXPECT_EQ(saidOfRow(' ', "1|True|Auto|LS|12dB|2000|-5.0"),
              "band LS 12dB 2000 -5 - = low-shelf 2309.56 -5 0.707107");
    EXPECT_EQ(saidOfRow(',', "1|True|Auto|LS 12dB|2000|-5.0"),
              "band LS 12dB 2000 -5 - = low-shelf 2309.56 -5 0.707107");
    EXPECT_EQ(saidOfRow('\t', "1|True|Auto|LS_12dB|2000|-5.0"),
              "band LS_12dB 2000 -5 - = low-shelf 2309.56 -5 0.707107");
    EXPECT_EQ(saidOfRow(',', "1|True|Auto|LS|2000|-5.0|||||12"),
              "band LS 2000 -5 - = low-shelf 2309.56 -5 0.707107");
    EXPECT_EQ(saidOfRow(',', "1|True|Auto|LSQ|2000|-5.0|0.5||||12"),
              "band LSQ 2000 -5 0.5 = low-shelf 2000 -5 0.5");
}

TEST(FilterTableRows, WhatCannotBeReadIsAnErrorWithItsPlace) {
    EXPECT_EQ(saidOfRow(' ', "1 True Auto PK 52.00"), "error@21 PK 52 - -: the gain is missing");
    EXPECT_EQ(saidOfRow(' ', "1 True Auto PK"), "error@15 PK - - -: the frequency is missing");
    EXPECT_EQ(saidOfRow(' ', "1 True Auto"), "error@12: the type is missing");
    EXPECT_EQ(saidOfRow(' ', "1 True Auto PK 52.00 -7.80"), "error@27 PK 52 -7.8 -: the Q is missing");
    EXPECT_EQ(saidOfRow(',', "1,True,Auto,PK,12k5,-7.80,3"),
              "error@16 PK - -7.8 3: \"12k5\" is not a number");
    EXPECT_EQ(saidOfRow(',', "1,True,Auto,PK,100,-7.80 x,3"),
              "error@20 PK 100 -7.8 3: \"-7.80 x\" is not a number");
    EXPECT_EQ(saidOfRow(',', "1,maybe,Auto,PK,100,-7.80,3"), "error@3 PK 100 -7.8 3: neither True nor False");
    EXPECT_EQ(saidOfRow(',', "1,True,Auto,Wah,100,-7.80,3"),
              "unsupported Wah 100 -7.8 3: \"Wah\" is no type that is known");
    EXPECT_EQ(saidOfRow(',', "1,True,Auto,NO,100"), "unsupported NO 100 - -: a notch; the target has none");
}

TEST(FilterTableRows, CommasForDecimalsBetweenCommasAreNotMisread) {
    EXPECT_EQ(saidOfRow(',', "1,True,Auto,PK,52,00,7,80,3,760,13,83"),
              "error@29 PK 52 0 7: \"760\" stands where the shape should");
    EXPECT_EQ(saidOfRow(',', "1,True,Auto,PK,52,3,7,,,,,,,,5"),
              "error@30 PK 52 3 7: more cells than the head of the table has");
}

TEST(FilterTableRows, ASecondHeadCountsFromThereOn) {
    EXPECT_THAT(said(readTextLines("Number,Enabled,Type,Frequency,Gain,Q\n1,True,PK,100,3.0,2.0\n"
                                   "Number;Enabled;Type;Q;Gain;Frequency\n1;True;PK;2.0;3.0;100",
                                   {})),
                ElementsAre("band PK 100 3 2 = peak 100 3 2", "band PK 100 3 2 = peak 100 3 2"));
    EXPECT_THAT(said(readTextLines("Type and frequency are told by the maker\n1 is no row", {})), IsEmpty());
}

}  // namespace
}  // namespace tessavo
