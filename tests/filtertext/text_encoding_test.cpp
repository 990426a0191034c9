#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "filter_lines.h"
#include "filtertext/readers.h"

namespace tessavo {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(TextEncoding, Utf8StaysAsItIsWithoutItsMark) {
    EXPECT_EQ(utf8Of("K\u00e4se \u2212 \U0001F600"), "K\u00e4se \u2212 \U0001F600");
    EXPECT_EQ(utf8Of("\xEF\xBB\xBF"
                     "abc"),
              "abc");
    EXPECT_EQ(utf8Of("\xEF\xBB\xBF"), "");
    EXPECT_EQ(utf8Of(""), "");
}

TEST(TextEncoding, WhatIsNotUtf8IsLatin1) {
    EXPECT_EQ(utf8Of("K\xE4se"), "K\u00e4se");
    EXPECT_EQ(utf8Of("1\xA0"
                     "067"),
              "1\u00a0067");
    EXPECT_EQ(utf8Of("\xFF"), "\u00ff");
}

TEST(TextEncoding, ForbiddenFormsOfUtf8AreLatin1) {
    // Overlong forms, a half of a surrogate pair, a code beyond the last one, a lone continuation, a cut end.
    for (const std::string& bytes :
         {"\xC0\xAF"s, "\xC1\xBF"s, "\xE0\x80\x80"s, "\xF0\x80\x80\x80"s, "\xED\xA0\x80"s,
          "\xF4\x90\x80\x80"s, "\xF8\x88\x80\x80\x80"s, "\x80"s, "a\xE2\x88"s}) {
        std::string latin1;
        for (const char byte : bytes) {
            const auto code = static_cast<unsigned char>(byte);
            if (code < 0x80U) {
                latin1 += byte;
            } else {
                latin1 += static_cast<char>(0xC0U | (code >> 6U));
                latin1 += static_cast<char>(0x80U | (code & 0x3FU));
            }
        }
        EXPECT_EQ(utf8Of(bytes), latin1);
    }
}

TEST(TextEncoding, LinesEndInEveryUsualWay) {
    EXPECT_THAT(linesOf("a\nb\r\nc\r\r\nd\re"), ElementsAre("a", "b", "c", "d", "e"));
    EXPECT_THAT(linesOf("a\n"), ElementsAre("a"));
    EXPECT_THAT(linesOf("a\r\r\n"), ElementsAre("a"));
    EXPECT_THAT(linesOf("\n\na"), ElementsAre("", "", "a"));
    EXPECT_THAT(linesOf("\r\n\r\na"), ElementsAre("", "", "a"));
    EXPECT_THAT(linesOf("a\r\rb"), ElementsAre("a", "", "b"));
    EXPECT_THAT(linesOf(""), IsEmpty());
    EXPECT_THAT(linesOf("\n"), ElementsAre(""));
}

TEST(TextEncoding, TheMarkIsNoPartOfTheFirstLine) {
    const FilterText text = readFilterText(
        "\xEF\xBB\xBF"
        "Filter 1: ON PK Fc x Hz Gain -3.0 dB Q 2");
    ASSERT_EQ(text.lines.size(), 1U);
    EXPECT_EQ(text.lines[0].text, "Filter 1: ON PK Fc x Hz Gain -3.0 dB Q 2");
    expectError(text.lines[0], 20, "x");
}

TEST(TextEncoding, ColumnsCountCharactersNotBytes) {
    const std::string latin1 = "Filter\xA0\xA0 1: ON PK Fc 100 Hz Gain z dB Q 2\nNote: K\xE4se\n";
    const FilterText text = readFilterText(latin1);
    ASSERT_EQ(text.lines.size(), 2U);
    expectError(text.lines[0], columnOfPart(latin1, "z dB"), "z");
    EXPECT_EQ(text.lines[1].text, "Note: K\u00e4se");
}

TEST(TextEncoding, Utf16IsRefusedWithAReason) {
    const std::string plain = "Filter 1: ON PK Fc 100 Hz Gain -3.0 dB Q 2\r\n";
    for (const bool isBigEndian : {false, true}) {
        for (const bool hasMark : {false, true}) {
            std::string bytes = !hasMark ? "" : isBigEndian ? "\xFE\xFF" : "\xFF\xFE";
            for (const char character : plain) {
                bytes += isBigEndian ? "\0"s + character : character + "\0"s;
            }
            const FilterText text = readFilterText(bytes);
            EXPECT_NE(text.trouble, "");
            EXPECT_THAT(filtersOf(text), IsEmpty());
        }
    }
}

TEST(TextEncoding, BinaryFilesAreRefused) {
    const std::string line = "Filter 1: ON PK Fc 100 Hz Gain -3.0 dB Q 2";
    const FilterText text = readFilterText(line + "\n\0\n"s + line);
    EXPECT_NE(text.trouble, "");
    EXPECT_THAT(filtersOf(text), IsEmpty());
}

}  // namespace
}  // namespace tessavo
