#include "text/decimal_sign.h"

#include <gtest/gtest.h>
#include <string>

namespace tessavo {
namespace {

constexpr NumberUse frequency = NumberUse::frequency;
constexpr NumberUse other = NumberUse::other;

TEST(DecimalSign, NumbersAreFoundAsFarAsTheyReach) {
    struct Case {
        std::string_view line;
        NumberUse use;
        std::string_view text;
        std::size_t end;
    };
    for (const Case& one : {Case{"100", other, "100", 3},
                            {"-3.0 dB", other, "-3.0", 4},
                            {"- 3.0 dB", other, "-3.0", 5},
                            {"+3", other, "+3", 2},
                            {".5", other, ".5", 2},
                            {"1,067.5Hz", frequency, "1,067.5", 7},
                            {"1 067 Hz", frequency, "1 067", 5},
                            {"1'067", frequency, "1 067", 5},
                            {"1 067", other, "1", 1},
                            {"1 06", frequency, "1", 1},
                            {"1 0670", frequency, "1", 1},
                            {"100, Gain", frequency, "100", 4},
                            {"1e3", other, "1e3", 3},
                            {"1e+3", other, "1e+3", 4},
                            {"1e", other, "1", 1},
                            {"1..5", other, "1", 2},
                            {"0x10", other, "0", 1},
                            {"12k5", frequency, "12", 2}}) {
        const auto number = numberAt(one.line, 0, one.line.size(), one.use);
        ASSERT_TRUE(number) << one.line;
        EXPECT_EQ(number->text, one.text) << one.line;
        EXPECT_EQ(number->begin, 0U);
        EXPECT_EQ(number->end, one.end) << one.line;
    }
    for (const std::string_view none :
         {"", "-", ".", "-.", "nan", "inf", "-inf", "Hz", " 1", "--1", "+-1", "e3"}) {
        EXPECT_FALSE(numberAt(none, 0, none.size(), frequency)) << none;
    }
    EXPECT_EQ(numberAt("12345", 1, 3, other)->text, "23");
}

TEST(DecimalSign, TheOtherMarkPartsThousandsOfAFrequencyAndNothingElse) {
    EXPECT_EQ(valueOf("1,067", frequency, '.'), 1067.0);
    EXPECT_EQ(valueOf("1.067", frequency, '.'), 1.067);
    EXPECT_EQ(valueOf("1.067", frequency, ','), 1067.0);
    EXPECT_EQ(valueOf("1 067,5", frequency, ','), 1067.5);
    EXPECT_EQ(valueOf("1 067.5", frequency, '.'), 1067.5);
    EXPECT_EQ(valueOf("12,067.5", frequency, '.'), 12067.5);
    EXPECT_EQ(valueOf("1.234.567", frequency, ','), 1234567.0);
    EXPECT_EQ(valueOf("+1.5", other, '.'), 1.5);
    EXPECT_EQ(valueOf("-,5", other, ','), -0.5);
    EXPECT_EQ(valueOf("1,5e3", other, ','), 1500.0);
    for (const std::string_view wrong :
         {"1,06", "1,0670", "1234,567", "0,567", "1,067,5", "1,067 500", "1.5.5", "1.5,500", ",567"}) {
        EXPECT_FALSE(valueOf(wrong, frequency, '.')) << wrong;
    }
    for (const std::string_view wrong : {"1,067", "1,5", "1 067", "", "-", "1e999", "-1e999", "1.5.5"}) {
        EXPECT_FALSE(valueOf(wrong, other, '.')) << wrong;
    }
}

char signAfter(std::initializer_list<std::pair<std::string_view, NumberUse>> numbers, char header = '.') {
    DecimalSignVotes votes;
    votes.addHeader(header);
    for (const auto& [number, use] : numbers) {
        votes.add(number, use);
    }
    return votes.sign();
}

TEST(DecimalSign, IsWhatMoreNumbersTell) {
    EXPECT_EQ(signAfter({}), '.');
    EXPECT_EQ(signAfter({}, ','), ',');
    EXPECT_EQ(signAfter({{"91,9", frequency}}), ',');
    EXPECT_EQ(signAfter({{"91.9", frequency}}, ','), '.');
    EXPECT_EQ(signAfter({{"8.000", frequency}}, ','), ',');
    EXPECT_EQ(signAfter({{"8,000", frequency}}), '.');
    EXPECT_EQ(signAfter({{"0,500", frequency}}), ',');
    EXPECT_EQ(signAfter({{"1234,500", frequency}}), ',');
    EXPECT_EQ(signAfter({{"1,388", other}}), ',');
    EXPECT_EQ(signAfter({{"12.000,5", frequency}}), ',');
    EXPECT_EQ(signAfter({{"12,000.567", frequency}}, ','), '.');
    EXPECT_EQ(signAfter({{"1.000.000", frequency}}, ','), ',');
    EXPECT_EQ(signAfter({{"1,5", other}, {"1.5", other}}, ','), '.');
    EXPECT_EQ(signAfter({{"1,5", other}, {"1.5", other}, {"2,5", other}}), ',');
    EXPECT_EQ(signAfter({{"1,5", other}, {"1.5", other}, {"2.5", other}}), '.');
    EXPECT_EQ(signAfter({{"100", frequency}, {"-3", other}}, ','), ',');
}

}  // namespace
}  // namespace tessavo
