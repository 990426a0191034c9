#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "filtertext/readers.h"
#include "text/text_encoding.h"

namespace tessavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(TextLinesEncoding, Utf8StaysAsItIs) {
    for (const std::string_view text : {"", "abc", "\xC2\xA0", "\xE2\x88\x92", "\xED\x9F\xBF", "\xEE\x80\x80",
                                        "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF", "\xEF\xBF\xBF"}) {
        EXPECT_EQ(utf8Of(text), text);
    }
}

TEST(TextLinesEncoding, AMarkIsTakenOffOnce) {
    EXPECT_EQ(utf8Of("\xEF\xBB\xBF"
                     "Filter"),
              "Filter");
    EXPECT_EQ(utf8Of("\xEF\xBB\xBF\xEF\xBB\xBF"), "\xEF\xBB\xBF");
    EXPECT_EQ(utf8Of("a\xEF\xBB\xBF"), "a\xEF\xBB\xBF");
}

TEST(TextLinesEncoding, WhatIsNotUtf8IsLatin1) {
    EXPECT_EQ(utf8Of("1\xA0"
                     "067 \xE4"),
              "1\xC2\xA0"
              "067 \xC3\xA4");
    // Cut, too long, half of a pair, beyond the last character, a byte that never occurs, one that continues nothing.
    EXPECT_EQ(utf8Of("\xC2"), "\xC3\x82");
    EXPECT_EQ(utf8Of("\xE2\x88"), "\xC3\xA2\xC2\x88");
    EXPECT_EQ(utf8Of("\xF0\x90\x80"), "\xC3\xB0\xC2\x90\xC2\x80");
    EXPECT_EQ(utf8Of("\xC0\xAF"), "\xC3\x80\xC2\xAF");
    EXPECT_EQ(utf8Of("\xE0\x9F\xBF"), "\xC3\xA0\xC2\x9F\xC2\xBF");
    EXPECT_EQ(utf8Of("\xF0\x8F\xBF\xBF"), "\xC3\xB0\xC2\x8F\xC2\xBF\xC2\xBF");
    EXPECT_EQ(utf8Of("\xED\xA0\x80"), "\xC3\xAD\xC2\xA0\xC2\x80");
    EXPECT_EQ(utf8Of("\xF4\x90\x80\x80"), "\xC3\xB4\xC2\x90\xC2\x80\xC2\x80");
    EXPECT_EQ(utf8Of("\xFF"), "\xC3\xBF");
    EXPECT_EQ(utf8Of("\x80"), "\xC2\x80");
}

TEST(TextLinesEncoding, EveryByteAloneBecomesUtf8) {
    for (int code = 0; code < 256; ++code) {
        const std::string text = utf8Of(std::string(1, static_cast<char>(code)));
        EXPECT_EQ(text.size(), code < 128 ? 1U : 2U) << code;
        EXPECT_EQ(utf8Of(text), text) << code;
    }
}

TEST(TextLinesEncoding, LinesEndInEveryWay) {
    EXPECT_THAT(linesOf("a\nb\r\nc\rd\r\r\ne"), ElementsAre("a", "b", "c", "d", "e"));
    EXPECT_THAT(linesOf("a\n"), ElementsAre("a"));
    EXPECT_THAT(linesOf("a\r\n"), ElementsAre("a"));
    EXPECT_THAT(linesOf("a\r\r\n"), ElementsAre("a"));
    EXPECT_THAT(linesOf("a\r"), ElementsAre("a"));
    EXPECT_THAT(linesOf("a"), ElementsAre("a"));
    EXPECT_THAT(linesOf(""), IsEmpty());
    EXPECT_THAT(linesOf("\n"), ElementsAre(""));
    EXPECT_THAT(linesOf("\n\n"), ElementsAre("", ""));
    EXPECT_THAT(linesOf("\n\ra"), ElementsAre("", "", "a"));
    EXPECT_THAT(linesOf("\r\r"), ElementsAre("", ""));
    EXPECT_THAT(linesOf("a\r\r\r\nb"), ElementsAre("a", "", "b"));
}

TEST(TextLinesEncoding, YamlHasOneOfItsKeysWithoutAnIndent) {
    for (const std::string_view text :
         {"filters:", "filters:\n  a:", "pipeline:\r\n", "---\ndevices:\n  samplerate: 48000",
          "filters: # all", "filters:  ", "filters: {}", "pipeline: []", "title: x\nfilters:\n"}) {
        EXPECT_TRUE(looksLikeYaml(text)) << text;
    }
    for (const std::string_view text :
         {"", "Filter 1: ON PK", " filters:", "filters", "Filters:", "my filters:", "filters: of the car",
          "filters:bass", "# filters:", "Filter Settings file\n\nNotes:filters:"}) {
        EXPECT_FALSE(looksLikeYaml(text)) << text;
    }
}

}  // namespace
}  // namespace tessavo
