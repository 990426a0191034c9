#include "plot/chart/number_text.h"

#include <QString>
#include <array>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <gtest/gtest.h>
#include <limits>

namespace tessavo {
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
    EXPECT_EQ(parseNumber(u"0.5"), 0.5);
    std::setlocale(LC_ALL, "C");
}

TEST(NumberText, ReadsWhatPeopleType) {
    EXPECT_EQ(parseNumber(u" 18 "), 18.0);
    EXPECT_EQ(parseNumber(u"+6"), 6.0);
    EXPECT_EQ(parseNumber(u"-6.5"), -6.5);
    EXPECT_EQ(parseNumber(u"-6,5"), -6.5);
    EXPECT_EQ(parseNumber(u"2e4"), 20000.0);
    EXPECT_EQ(parseNumber(u".5"), 0.5);
}

TEST(NumberText, RefusesWhatIsNoNumber) {
    for (const QStringView text :
         {QStringView(), QStringView(u" "), QStringView(u"abc"), QStringView(u"1 2"), QStringView(u"12dB"),
          QStringView(u"+-5"), QStringView(u"++5"), QStringView(u"--5"), QStringView(u"1,000,000"),
          QStringView(u"1.000,5"), QStringView(u"0x10"), QStringView(u"-"), QStringView(u"1e999")}) {
        EXPECT_FALSE(parseNumber(text).has_value()) << text.toString().toStdString();
    }
}

}  // namespace
}  // namespace tessavo
