#include "filtertext/yaml_values.h"

#include <gtest/gtest.h>

#include "text/shown_text.h"

namespace tessavo {
namespace {

YamlNode plain(std::string text) {
    YamlNode node;
    node.text = std::move(text);
    node.isPlain = true;
    return node;
}

YamlNode inQuotes(std::string text) {
    YamlNode node = plain(std::move(text));
    node.isPlain = false;
    return node;
}

YamlNode of(YamlKind kind) {
    YamlNode node;
    node.kind = kind;
    return node;
}

TEST(YamlValues, NumbersAreDecimal) {
    const std::pair<const char*, double> numbers[]{
        {"1", 1.0},      {"-3.2", -3.2},   {"+4", 4.0},      {".5", 0.5},  {"-.5", -0.5},  {"5.", 5.0},
        {"1e3", 1000.0}, {"1E+3", 1000.0}, {"2.5e-1", 0.25}, {"007", 7.0}, {"+.5e1", 5.0}, {"-0", 0.0}};
    for (const auto& [text, number] : numbers) {
        EXPECT_EQ(numberIn(plain(text)), number) << text;
        EXPECT_EQ(numberIn(inQuotes(text)), number) << text;
    }
}

TEST(YamlValues, WhatIsNoDecimalNumberIsRefused) {
    for (const char* text :
         {"",     " 1",  "1 ",  "1,5",   "1_000", "0x10", "0o7",  ".inf", "-.inf",
          ".nan", "inf", "nan", "1e999", "+-1",   "--1",  "++1",  "+",    "-",
          ".",    "e5",  "1e",  "1.2.3", "1:30",  "1 Hz", "true", "~",    "\xEF\xBC\x91"}) {
        EXPECT_EQ(numberIn(plain(text)), std::nullopt) << text;
    }
    EXPECT_EQ(numberIn(of(YamlKind::sequence)), std::nullopt);
    EXPECT_EQ(numberIn(of(YamlKind::mapping)), std::nullopt);
    EXPECT_EQ(numberIn(plain(std::string(64, '0'))), 0.0);
    EXPECT_EQ(numberIn(plain(std::string(65, '0'))), std::nullopt);
}

TEST(YamlValues, CountsAreWholeAndNotNegative) {
    EXPECT_EQ(countIn(plain("0")), 0U);
    EXPECT_EQ(countIn(inQuotes("12")), 12U);
    for (const char* text : {"", "-1", "1.0", "1e1", "+1", "99999999999999999999", "a"}) {
        EXPECT_EQ(countIn(plain(text)), std::nullopt) << text;
    }
    EXPECT_EQ(countIn(of(YamlKind::sequence)), std::nullopt);
}

TEST(YamlValues, FlagsAreTrueOrFalse) {
    for (const char* text : {"true", "True", "TRUE"}) {
        EXPECT_EQ(flagIn(plain(text)), true) << text;
        EXPECT_EQ(flagIn(inQuotes(text)), std::nullopt) << text;
    }
    for (const char* text : {"false", "False", "FALSE", "", "~", "null", "Null", "NULL"}) {
        EXPECT_EQ(flagIn(plain(text)), false) << text;
        EXPECT_EQ(flagIn(inQuotes(text)), std::nullopt) << text;
    }
    for (const char* text : {"yes", "no", "on", "off", "1", "0", "tRUE"}) {
        EXPECT_EQ(flagIn(plain(text)), std::nullopt) << text;
    }
    EXPECT_EQ(flagIn(of(YamlKind::mapping)), std::nullopt);
}

TEST(YamlValues, NullIsPlainAndWhatIsThereIsFound) {
    auto read = readYamlTree("{a: null, b: '', c: ~, d: [], e: , f: 'null'}");
    const YamlTree& tree = std::get<YamlTree>(read);
    const YamlNode& root = tree.nodes.at(tree.root);
    for (const char* key : {"a", "c", "e", "z", ""}) {
        EXPECT_EQ(valueOf(tree, root, key), nullptr) << key;
    }
    for (const char* key : {"b", "d", "f"}) {
        EXPECT_NE(valueOf(tree, root, key), nullptr) << key;
    }
    EXPECT_EQ(valueOf(tree, *valueOf(tree, root, "d"), "a"), nullptr);
}

TEST(YamlValues, ShownTextsAreShortAndOnOneLine) {
    EXPECT_EQ(shownText("a\nb\r\nc\td\x7F"
                        "e"),
              "a b  c d e");
    EXPECT_EQ(shownText(std::string("a\0b", 3)), "a b");
    EXPECT_EQ(shownText("a\xC2\x85"
                        "b\xC2\x9B"
                        "c\xE2\x80\xA8"
                        "d\xE2\x80\xA9"
                        "e\xC2\xA0"
                        "f"),
              "a b c d e\xC2\xA0"
              "f");
    EXPECT_EQ(shownText(std::string(120, 'x')), std::string(120, 'x'));
    EXPECT_EQ(shownText(std::string(121, 'x')), std::string(120, 'x') + "\xE2\x80\xA6");
    // No character is cut in two.
    EXPECT_EQ(shownText(std::string(119, 'x') + "\xC3\xA4" + "x"), std::string(119, 'x') + "\xE2\x80\xA6");
    EXPECT_EQ(shownText(std::string(118, 'x') + "\xC3\xA4" + "x"),
              std::string(118, 'x') + "\xC3\xA4" + "\xE2\x80\xA6");
    EXPECT_EQ(shownText(std::string(117, 'x') + "\xF0\x9D\x84\x9E" + "x"),
              std::string(117, 'x') + "\xE2\x80\xA6");
}

TEST(YamlValues, NodesAreShownByWhatTheyAre) {
    EXPECT_EQ(shownNode(plain("a\nb")), "\"a b\"");
    EXPECT_EQ(shownNode(of(YamlKind::sequence)), "a list");
    EXPECT_EQ(shownNode(of(YamlKind::mapping)), "a map");
}

}  // namespace
}  // namespace tessavo
