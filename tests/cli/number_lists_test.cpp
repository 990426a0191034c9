#include "cli/number_lists.h"

#include <gtest/gtest.h>

namespace tessavo::test {

using namespace cli;

namespace {

TEST(ChannelList, KeepsItsOrder) {
    EXPECT_EQ(channelList("3"), (std::vector<PagePosition>{{2}}));
    EXPECT_EQ(channelList("8,1,2"), (std::vector<PagePosition>{{7}, {0}, {1}}));
    EXPECT_EQ(channelList("1,2,3,4,5,6,7,8")->size(), 8U);
}

TEST(ChannelList, RefusesOtherChannelsRepeatedOnesAndOtherTexts) {
    for (const char* text : {"", ",", "1,", ",1", "1,,2", "0", "9", "256", "257", "1,2,1", "-1", "+1", " 1",
                             "1 ", "1.0", "one", "1;2"}) {
        EXPECT_FALSE(channelList(text)) << text;
    }
}

TEST(BandList, TakesBandsAndRangesInTheirOrder) {
    using Bands = std::vector<std::size_t>;
    EXPECT_EQ(bandList("3"), (Bands{2}));
    EXPECT_EQ(bandList("1-8"), (Bands{0, 1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(bandList("8,1-3,5-5"), (Bands{7, 0, 1, 2, 4}));
    EXPECT_EQ(bandList("1,2,3,4,5,6,7,8")->size(), 8U);
}

TEST(BandList, RefusesOtherBandsRepeatedOnesFallingRangesAndOtherTexts) {
    for (const char* text :
         {"",      ",",     "1,",  ",1",  "1,,2",  "0",     "9",       "256", "257", "0-3",
          "7-9",   "1-257", "3-1", "1,1", "1-3,2", "2,1-3", "1-2,2-3", "-",   "1-",  "-1",
          "1-2-3", "1--2",  "+1",  " 1",  "1 ",    "1 - 2", "1.0",     "one", "1;2", "1..3"}) {
        EXPECT_FALSE(bandList(text)) << text;
    }
}

TEST(FrequencyList, TakesEveryFrequencyInItsOrder) {
    EXPECT_EQ(frequencyList("0"), (std::vector<double>{0}));
    EXPECT_EQ(frequencyList("1000.5,20,2e4,20"), (std::vector<double>{1000.5, 20, 20000, 20}));
    EXPECT_EQ(frequencyList("1e300"), (std::vector<double>{1e300}));
}

TEST(FrequencyList, RefusesNegativeOnesAndOtherTexts) {
    for (const char* text : {"", ",", "20,", ",20", "20,,30", "-1", "-1e-300", "inf", "nan", "1e999", "0x10",
                             "+5", " 20", "20 ", "20 Hz", "1k", "20;30"}) {
        EXPECT_FALSE(frequencyList(text)) << text;
    }
}

TEST(ColumnPair, TakesTwoColumnsInTheirOrder) {
    const auto columns = columnPair("12,3");
    ASSERT_TRUE(columns);
    EXPECT_EQ(columns->frequency, 12U);
    EXPECT_EQ(columns->level, 3U);
    EXPECT_TRUE(columnPair("1,2"));
}

TEST(ColumnPair, RefusesNoColumnsOneTwiceAndOtherTexts) {
    for (const char* text : {"", "1", "1,", ",1", "0,1", "1,0", "1,1", "1,01", "1,2,3", "-1,2", "+1,2",
                             " 1,2", "1, 2", "1.0,2", "a,b", "1;2", "1,99999999999999999999999"}) {
        EXPECT_FALSE(columnPair(text)) << text;
    }
}

TEST(PositionList, HasAValueOrNoneForEveryChannel) {
    using Values = std::vector<std::optional<double>>;
    EXPECT_EQ(positionList("112,142.5,116,138,124,148,96,245"),
              (Values{112, 142.5, 116, 138, 124, 148, 96, 245}));
    EXPECT_EQ(
        positionList("-,0,-,1e3,-,100000,-,-"),
        (Values{std::nullopt, 0, std::nullopt, 1000, std::nullopt, 100000, std::nullopt, std::nullopt}));
}

TEST(PositionList, RefusesFewerMoreAndOtherTexts) {
    for (const char* text :
         {"", "1", "1,2,3,4,5,6,7", "1,2,3,4,5,6,7,8,9", "1,2,3,4,5,6,7,", ",1,2,3,4,5,6,7", "1,2,3,,5,6,7,8",
          "-,-,-,-,-,-,-,-", "1,2,3,4,5,6,7,-8", "1,2,3,4,5,6,7,--", "1,2,3,4,5,6,7,nan", "1,2,3,4,5,6,7,inf",
          "1,2,3,4,5,6,7,8cm", "1, 2,3,4,5,6,7,8", "1;2;3;4;5;6;7;8", "1,2,3,4,5,6,7,100000.1",
          "1,2,3,4,5,6,7,1e999"}) {
        EXPECT_FALSE(positionList(text)) << text;
    }
}

}  // namespace
}  // namespace tessavo::test
