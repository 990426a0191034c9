#include "text/text_encoding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

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

}  // namespace
}  // namespace tessavo
