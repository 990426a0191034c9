#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "filter_lines.h"

namespace tessavo {
namespace {

using testing::HasSubstr;

const std::string blankHead =
    "Generic\nNumber Enabled Control Type Frequency(Hz) Gain(dB) Q Bandwidth(Hz) TargetT60(ms) Shape "
    "Slope_dB/oct "
    "Frequency2(Hz) Q2 Slope2_dB/oct\n";
const std::string commaHead = "Generic\nNumber,Enabled,Control,Type,Frequency(Hz),Gain(dB),Q,Bandwidth(Hz)\n";

/// The line below a head.
FilterLine rowOf(const std::string& head, const std::string& row) {
    const FilterText text = readFilterText(head + row);
    EXPECT_EQ(text.lines.size(), 3U);
    if (text.lines.size() != 3) {
        return {};
    }
    EXPECT_EQ(text.lines[0].kind, FilterLineKind::none);
    EXPECT_EQ(text.lines[1].kind, FilterLineKind::none);
    return text.lines[2];
}

TEST(FilterTable, RowsApartByBlanksAreRead) {
    const FilterLine row = rowOf(blankHead, "1 True Auto PK 52.00 -7.80 3.760 13.83");
    expectMeaning(row, {FilterShape::peak, 52, -7.8, 3.76, 2});
    ASSERT_TRUE(row.source);
    EXPECT_EQ(row.source->type, "PK");
    EXPECT_EQ(row.source->q, 3.76);
    EXPECT_EQ(row.line, 3U);
    expectMeaning(rowOf(blankHead, "1\tTrue\tAuto\tPK\t1315\t3.50\t4.810\t273.4\r"),
                  {FilterShape::peak, 1315, 3.5, 4.81, 2});
}

TEST(FilterTable, RowsApartByCommasAreRead) {
    expectMeaning(rowOf(commaHead, "1,True,Auto,PK,52.00,-7.80,3.760,13.83"),
                  {FilterShape::peak, 52, -7.8, 3.76, 2});
    expectMeaning(rowOf(commaHead, "1, true, Manual, PEQ, 52.00, -7.80, 3.760"),
                  {FilterShape::peak, 52, -7.8, 3.76, 2});
    expectMeaning(rowOf(commaHead, "1,True,Auto,HS,1000,3.0,,"),
                  {FilterShape::highShelf, 1000, 3, shelfQ(0.9, 3), 2});
}

TEST(FilterTable, ShortRowsOfNoneAreEmpty) {
    for (const char* row : {"11 True Auto None", "11 False Auto None", "11 True Manual None   "}) {
        EXPECT_EQ(rowOf(blankHead, row).kind, FilterLineKind::empty) << row;
    }
    for (const char* row : {"2,True,Auto,None", "2,True,Auto,None,,,,"}) {
        EXPECT_EQ(rowOf(commaHead, row).kind, FilterLineKind::empty) << row;
    }
}

TEST(FilterTable, ARowThatIsNotEnabledIsOff) {
    const FilterLine row = rowOf(blankHead, "1 False Auto PK 52.00 -7.80 3.760 13.83");
    EXPECT_EQ(row.kind, FilterLineKind::off);
    ASSERT_TRUE(row.meaning && row.device);
    EXPECT_EQ(row.meaning->q, 3.76);
}

TEST(FilterTable, MissingAndGarbledCellsAreErrors) {
    const FilterLine shortRow = rowOf(blankHead, "1 True Auto PK 52.00 -7.80");
    EXPECT_EQ(shortRow.kind, FilterLineKind::error);
    EXPECT_THAT(shortRow.reason, HasSubstr("Q"));
    expectError(rowOf(blankHead, "1 True Auto PK 52x0 -7.80 3.760 13.83"), 16, "52x0");
    expectError(rowOf(commaHead, "1,True,Auto,PK,52.00,-7..8,3.760,13.83"), 22, "-7..8");
    EXPECT_EQ(rowOf(commaHead, "1,True,Auto,PK,52.00,,3.760,13.83").kind, FilterLineKind::error);
    EXPECT_EQ(rowOf(commaHead, "1,True,Auto,PK").kind, FilterLineKind::error);
}

TEST(FilterTable, CrossoversOfFourthOrderAreTakenAndOthersRefused) {
    const std::string head =
        "Number,Enabled,Control,Type,Frequency(Hz),Gain(dB),Q,Bandwidth(Hz),TargetT60(ms),Shape,Slope_dB/"
        "oct\n\n";
    for (const char* type : {"LP", "lp"}) {
        const FilterLine row =
            readFilterText(head + "1,True,Auto," + type + ",2000,,,,,L-R,24\n").lines.at(2);
        expectMeaning(row, {FilterShape::lowPass, 2000, 0, std::sqrt(0.5), 4});
        EXPECT_EQ(row.device.value().order, 4);
        EXPECT_EQ(row.device.value().frequencyHz, 1782.0);
    }
    const FilterLine second = readFilterText(head + "1,True,Auto,HP,2000,,,,,BU,12\n").lines.at(2);
    expectMeaning(second, {FilterShape::highPass, 2000, 0, std::sqrt(0.5), 2});
    const FilterLine butterworth = readFilterText(head + "1,True,Auto,HP,2000,,,,,BU,24\n").lines.at(2);
    expectMeaning(butterworth, {FilterShape::highPass, 2000, 0, std::sqrt(0.5), 4});
    EXPECT_THAT(butterworth.reason, HasSubstr("Linkwitz-Riley"));
    for (const char* rest : {"L-R,48", "BE,24", "BU,18", "L-R,12"}) {
        const FilterLine row = readFilterText(head + "1,True,Auto,LP,2000,,,,," + rest + "\n").lines.at(2);
        EXPECT_EQ(row.kind, FilterLineKind::unsupported) << rest;
        EXPECT_NE(row.reason, "") << rest;
    }
}

TEST(FilterTable, ListsOfCoefficientsAreRefusedWithTheirPlace) {
    const FilterText text = readFilterText(
        "biquad1,\nb0=0.997,\nb1=-1.99,\nb2=0.995,\na1=1.99,\na2=-0.992,\nbiquad2,\nb0=0.997,\n"
        "b1=-1.99,\nb2=0.995,\na1=1.99,\na2=-0.99\n");
    EXPECT_THAT(text.trouble, HasSubstr("oefficient"));
    EXPECT_EQ(text.troubleLine, 1U);
    EXPECT_EQ(text.troubleColumn, 1U);
    const std::vector<FilterLine> rows = filtersOf(text);
    ASSERT_EQ(rows.size(), 2U);
    for (const FilterLine& row : rows) {
        EXPECT_EQ(row.kind, FilterLineKind::unsupported);
        EXPECT_NE(row.reason, "");
    }
    EXPECT_EQ(rows[0].line, 1U);
    EXPECT_EQ(rows[1].line, 7U);
}

}  // namespace
}  // namespace tessavo
