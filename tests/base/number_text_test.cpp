#include "base/number_text.h"

#include <array>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <gtest/gtest.h>
#include <limits>

namespace tessavo::test {
namespace {

TEST(NumberText, WritesAsPercentG) {
    EXPECT_EQ(shortNumber(0), "0");
    EXPECT_EQ(shortNumber(20), "20");
    EXPECT_EQ(shortNumber(-3), "-3");
    EXPECT_EQ(shortNumber(0.1), "0.1");
    EXPECT_EQ(shortNumber(1.0 / 3), "0.333333");
    EXPECT_EQ(shortNumber(123456789), "1.23457e+08");
    EXPECT_EQ(shortNumber(1e6), "1e+06");
    EXPECT_EQ(shortNumber(0.00001), "1e-05");
    EXPECT_EQ(shortNumber(-1e-300), "-1e-300");
    EXPECT_EQ(shortNumber(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(shortNumber(std::numeric_limits<double>::quiet_NaN()), "nan");
}

TEST(NumberText, AgreesWithThePrintfOfTheCLocale) {
    ASSERT_STREQ(std::setlocale(LC_NUMERIC, "C"), "C");
    std::uint64_t seed = 7;
    for (int n = 0; n < 20000; ++n) {
        seed = seed * 6364136223846793005U + 1442695040888963407U;
        const double mantissa = static_cast<double>(seed >> 11U) / 9007199254740992.0 - 0.5;
        const double value = mantissa * std::pow(10.0, n % 600 - 300);
        std::array<char, 40> expected{};
        std::snprintf(expected.data(), expected.size(), "%g", value);
        ASSERT_EQ(shortNumber(value), expected.data());
    }
}

TEST(NumberText, DoesNotFollowTheLocale) {
    // Whichever of these the machine has writes a comma.
    const char* chosen = nullptr;
    for (const char* const name : {"de_DE.UTF-8", "fr_FR.UTF-8", "de_DE", "C"}) {
        chosen = std::setlocale(LC_ALL, name);
        if (chosen != nullptr) {
            break;
        }
    }
    ASSERT_NE(chosen, nullptr);
    EXPECT_EQ(shortNumber(0.5), "0.5");
    EXPECT_EQ(shortestText(0.5), "0.5");
    EXPECT_EQ(fixedText(0.5, 1), "0.5");
    EXPECT_EQ(typedNumber("0.5"), 0.5);
    EXPECT_EQ(finiteNumber("0.5"), 0.5);
    std::setlocale(LC_ALL, "C");
}

TEST(NumberText, ReadsWhatPeopleType) {
    EXPECT_EQ(typedNumber(" 18 "), 18.0);
    EXPECT_EQ(typedNumber("+6"), 6.0);
    EXPECT_EQ(typedNumber("-6.5"), -6.5);
    EXPECT_EQ(typedNumber("-6,5"), -6.5);
    EXPECT_EQ(typedNumber("2e4"), 20000.0);
    EXPECT_EQ(typedNumber(".5"), 0.5);
}

TEST(NumberText, RefusesWhatIsNoNumber) {
    for (const std::string_view text : {"", " ", "abc", "1 2", "12dB", "+-5", "++5", "--5", "1,000,000",
                                        "1.000,5", "0x10", "-", "1e999", "\t \t", "+", ",", "1\n"}) {
        EXPECT_FALSE(typedNumber(text).has_value()) << text;
    }
}

TEST(NumberText, TheStartOfATextIsReadByTheSameRules) {
    struct Case {
        std::string_view text;
        double value;
        bool isWhole;
    };
    constexpr double infinite = std::numeric_limits<double>::infinity();
    for (const Case& each :
         {Case{" 18 ", 18, true}, Case{"+6", 6, true}, Case{"-6,5 dB", -6.5, false},
          Case{"1,000,000", 1, false}, Case{".5e1x", 5, false}, Case{"1e999", infinite, true},
          Case{"-1e999 dB", -infinite, false}, Case{"-1e-999", 0, true}}) {
        const NumberStart start = numberAtStart(each.text);
        EXPECT_TRUE(start.isThere) << each.text;
        EXPECT_EQ(start.value, each.value) << each.text;
        EXPECT_EQ(start.isWhole, each.isWhole) << each.text;
    }
    EXPECT_EQ(numberAtStart("-0." + std::string(400, '0') + "1 dB").value, 0);
    EXPECT_EQ(numberAtStart(std::string(400, '9') + ".5 dB").value, infinite);
    for (const std::string_view text : {"", " ", "abc", "+-5", "++5", "--5", "-", "e5", ",", "dB 5"}) {
        const NumberStart start = numberAtStart(text);
        EXPECT_FALSE(start.isThere || start.isWhole) << text;
        EXPECT_EQ(start.value, 0) << text;
    }
}

TEST(NumberText, TheShortestTextReadsBackAsTheSameNumber) {
    EXPECT_EQ(shortestText(-6.0), "-6");
    EXPECT_EQ(shortestText(0.1), "0.1");
    EXPECT_EQ(shortestText(0.1F), "0.1");
    EXPECT_EQ(shortestText(1e30), "1e+30");
    EXPECT_EQ(shortestText(std::numeric_limits<double>::quiet_NaN()), "nan");
    EXPECT_EQ(shortestText(-std::numeric_limits<float>::infinity()), "-inf");
    for (const double value : {std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min(),
                               -std::numeric_limits<double>::min(), 1.0 / 3, -0.0}) {
        const auto read = finiteNumber(shortestText(value));
        ASSERT_TRUE(read.has_value());
        EXPECT_EQ(std::signbit(*read), std::signbit(value));
        EXPECT_EQ(*read, value);
    }
}

TEST(NumberText, APlainTextHasNoExponentAndReadsBackAsTheSameNumber) {
    EXPECT_EQ(plainText(-6.0), "-6");
    EXPECT_EQ(plainText(0.1), "0.1");
    EXPECT_EQ(plainText(2.5e-7), "0.00000025");
    EXPECT_EQ(plainText(1e22), "10000000000000000000000");
    EXPECT_EQ(plainText(0.0), "0");
    EXPECT_EQ(plainText(-0.0), "0");
    using Limits = std::numeric_limits<double>;
    for (const double value : {Limits::max(), Limits::denorm_min(), -Limits::min(), 1.2345678901234567e-7,
                               1e30, -1.2345678901234567e-300, 1.0 / 3}) {
        const std::string text = plainText(value);
        EXPECT_EQ(text.find_first_not_of("-.0123456789"), std::string::npos) << text;
        EXPECT_EQ(finiteNumber(text), value) << text;
    }
}

TEST(NumberText, WritesAsPercentF) {
    ASSERT_STREQ(std::setlocale(LC_NUMERIC, "C"), "C");
    for (const double value : {0.0, 0.05, -0.05, 0.25, 2.5, -17.96, 1e300, std::numeric_limits<double>::max(),
                               1e-300, -std::numeric_limits<double>::infinity()}) {
        for (int decimals = 0; decimals <= 17; ++decimals) {
            std::array<char, 400> expected{};
            std::snprintf(expected.data(), expected.size(), "%.*f", decimals, value);
            EXPECT_EQ(fixedText(value, decimals), expected.data());
        }
    }
}

TEST(NumberText, HexadecimalDigitsAreUpperCaseAndPadded) {
    EXPECT_EQ(hexNumber(0x10006, 8), "00010006");
    EXPECT_EQ(hexNumber(0xDEADBEEF, 8), "DEADBEEF");
    EXPECT_EQ(hexNumber(0, 2), "00");
    EXPECT_EQ(hexNumber(0xABC, 2), "ABC");
    EXPECT_EQ(hexNumber(0xF, 0), "F");
}

TEST(NumberText, AFiniteNumberIsTheWholeText) {
    EXPECT_EQ(finiteNumber("-6.5"), -6.5);
    EXPECT_EQ(finiteNumber("2e4"), 20000.0);
    EXPECT_EQ(finiteNumber("007"), 7.0);
    for (const std::string_view text : {"", " 1", "1 ", "+1", "1,5", "0x10", "inf", "-inf", "nan", "-nan",
                                        "1e999", "1e-999", "--1", ".", "1dB"}) {
        EXPECT_FALSE(finiteNumber(text).has_value()) << text;
    }
}

TEST(NumberText, AWholeNumberFitsItsTypeAndIsTheWholeText) {
    EXPECT_EQ(wholeNumber<std::uint8_t>("255"), 255);
    EXPECT_EQ(wholeNumber<std::int8_t>("-128"), -128);
    EXPECT_EQ(wholeNumber<std::uint32_t>("4294967295"), 4294967295U);
    EXPECT_EQ(wholeNumber<std::uint32_t>("fF", 16), 255U);
    EXPECT_FALSE(wholeNumber<std::uint8_t>("256").has_value());
    EXPECT_FALSE(wholeNumber<std::int8_t>("-129").has_value());
    EXPECT_FALSE(wholeNumber<std::uint32_t>("4294967296").has_value());
    for (const std::string_view text : {"", "-1", "+1", " 1", "1 ", "1.0", "1e3", "0x1", "one"}) {
        EXPECT_FALSE(wholeNumber<std::uint32_t>(text).has_value()) << text;
    }
}

TEST(NumberText, APrefixMakesANumberHexadecimal) {
    EXPECT_EQ(prefixedNumber<std::uint32_t>("0x00010006"), 0x10006U);
    EXPECT_EQ(prefixedNumber<std::uint32_t>("0XFFFFFFFF"), 0xFFFFFFFFU);
    EXPECT_EQ(prefixedNumber<std::uint32_t>("010"), 10U);
    for (const std::string_view text : {"", "0x", "0X", "x1", "0x100000000", "0x-1", "0x0x1", "0xG", "FF"}) {
        EXPECT_FALSE(prefixedNumber<std::uint32_t>(text).has_value()) << text;
    }
}

}  // namespace
}  // namespace tessavo::test
