#include "filtertext/yaml_tree.h"

#include <gtest/gtest.h>
#include <yaml.h>

namespace tessavo {
namespace {

YamlTree treeOf(std::string_view text) {
    auto read = readYamlTree(text);
    if (const auto* trouble = std::get_if<YamlTrouble>(&read)) {
        ADD_FAILURE() << trouble->text;
        return {};
    }
    return std::get<YamlTree>(std::move(read));
}

/// What is wrong with a text: its sentence with line and column in front.
std::string troubleOf(std::string_view text) {
    const auto read = readYamlTree(text);
    const auto* trouble = std::get_if<YamlTrouble>(&read);
    if (trouble == nullptr) {
        return {};
    }
    return std::to_string(trouble->place.line)
        .append(":")
        .append(std::to_string(trouble->place.column))
        .append(": ")
        .append(trouble->text);
}

const YamlNode& item(const YamlTree& tree, const YamlNode& node, std::size_t index) {
    return tree.nodes.at(node.items.at(index));
}

const YamlNode& item(const YamlTree& tree, std::size_t index) {
    return item(tree, tree.nodes.at(tree.root), index);
}

std::string repeated(std::string_view text, std::size_t times) {
    std::string all;
    for (std::size_t time = 0; time < times; ++time) {
        all.append(text);
    }
    return all;
}

TEST(YamlTree, TheLibraryIsThePinnedOne) {
    EXPECT_STREQ(yaml_get_version_string(), "0.2.5");
}

TEST(YamlTree, KeepsKindsTextsAndPlaces) {
    const YamlTree tree = treeOf("a: 1\nb: \"2\"\nc:\n  - x\n  - {y: 'z'}\n");
    const YamlNode& root = tree.nodes.at(tree.root);
    EXPECT_EQ(root.kind, YamlKind::mapping);
    ASSERT_EQ(root.items.size(), 6U);
    EXPECT_EQ(item(tree, 0).text, "a");
    EXPECT_TRUE(item(tree, 1).isPlain);
    EXPECT_EQ(item(tree, 1).place, (YamlPlace{1, 4}));
    EXPECT_EQ(item(tree, 3).text, "2");
    EXPECT_FALSE(item(tree, 3).isPlain);
    EXPECT_EQ(item(tree, 5).kind, YamlKind::sequence);
    EXPECT_EQ(item(tree, 5).items.size(), 2U);
    const YamlNode& map = item(tree, item(tree, 5), 1);
    EXPECT_EQ(map.kind, YamlKind::mapping);
    EXPECT_EQ(map.place, (YamlPlace{5, 5}));
    EXPECT_EQ(item(tree, map, 1).text, "z");
    EXPECT_EQ(item(tree, map, 1).place, (YamlPlace{5, 9}));
}

TEST(YamlTree, AnEmptyTextHasNoNodes) {
    for (const std::string_view text : {"", "\n\n", "# nothing\n", "%YAML 1.1\n"}) {
        const auto read = readYamlTree(text);
        if (const auto* tree = std::get_if<YamlTree>(&read)) {
            EXPECT_TRUE(tree->nodes.empty()) << text;
        } else {
            EXPECT_EQ(text, "%YAML 1.1\n");
        }
    }
    EXPECT_EQ(treeOf("---\n").nodes.size(), 1U);
}

TEST(YamlTree, PlacesCountCharactersAndEveryEndOfALine) {
    // Both letters take two bytes, the note four; a line separator is no end of a line to a person.
    EXPECT_EQ(item(treeOf("\xC3\xA4\xC3\xB6: 1"), 1).place, (YamlPlace{1, 5}));
    EXPECT_EQ(item(treeOf("\"\xF0\x9D\x84\x9E\": 1"), 1).place, (YamlPlace{1, 6}));
    EXPECT_EQ(item(treeOf("a: 1\r\nb: 2\r\n"), 3).place, (YamlPlace{2, 4}));
    EXPECT_EQ(item(treeOf("a: 1\r\r\nb: 2\r\r\n"), 3).place, (YamlPlace{2, 4}));
    EXPECT_EQ(item(treeOf("a: 1\rb: 2\r"), 3).place, (YamlPlace{2, 4}));
    EXPECT_EQ(item(treeOf("a: 1\n\n\nb: 2"), 3).place, (YamlPlace{4, 4}));
    EXPECT_EQ(item(treeOf("a: \"1\xE2\x80\xA8\"\nb: 2"), 3).place, (YamlPlace{2, 4}));
}

TEST(YamlTree, SyntaxErrorsHaveTheirPlace) {
    EXPECT_EQ(troubleOf("a: 1\nb: [1, 2\nc: 3\n"),
              "3:2: This is no valid YAML: did not find expected ',' or ']' while parsing a flow sequence.");
    EXPECT_EQ(troubleOf("a: 1\n\tb: 2\n"),
              "2:1: This is no valid YAML: found a tab character that violates indentation "
              "while scanning a plain scalar.");
    EXPECT_EQ(troubleOf("a:\n\t- 1\n"),
              "2:1: This is no valid YAML: found character that cannot start any token "
              "while scanning for the next token.");
    EXPECT_EQ(troubleOf("a: b: c\n"),
              "1:5: This is no valid YAML: mapping values are not allowed in this context.");
    EXPECT_EQ(troubleOf("\xC3\xA4: \"open\n").substr(0, 4), "1:9:");
    for (const std::string end : {"", "\n", "\r\n", "\r\r\n", "\r"}) {
        EXPECT_EQ(troubleOf("a: 1" + end + (end.empty() ? "" : "b: [c" + end)).substr(0, 4),
                  end.empty() ? "" : "2:6:");
    }
    EXPECT_EQ(troubleOf("a: 1\nb: x\x01y\n"),
              "2:5: This is no valid YAML: control characters are not allowed.");
    EXPECT_EQ(troubleOf("\xC3\xA4: \xFF\n").substr(0, 4), "1:4:");
    EXPECT_EQ(troubleOf("a: 1\n  b: 2\n").substr(0, 4), "2:4:");
    EXPECT_EQ(troubleOf("}"),
              "1:1: This is no valid YAML: did not find expected node content while parsing a block node.");
}

TEST(YamlTree, OneDocumentOnly) {
    EXPECT_EQ(troubleOf("---\na: 1\n...\n"), "");
    EXPECT_EQ(troubleOf("a: 1\n---\nb: 2\n"), "2:1: There is more than one document in the file.");
    EXPECT_EQ(troubleOf("a: 1\n--- # and\n"), "2:1: There is more than one document in the file.");
}

TEST(YamlTree, KeysAreTextsAndStandOnce) {
    EXPECT_EQ(troubleOf("a: 1\nb: {c: 1, d: 2, c: 3}\n"), "2:17: The key \"c\" stands twice.");
    EXPECT_EQ(troubleOf("a: 1\n\"a\": 2\n"), "2:1: The key \"a\" stands twice.");
    EXPECT_EQ(troubleOf("x: &k a\n*k : 1\na: 2\n"), "3:1: The key \"a\" stands twice.");
    EXPECT_EQ(troubleOf("a: {b: 1}\nc: {b: 1}\n"), "");
    EXPECT_EQ(troubleOf("? [a]\n: 1\n"), "1:3: A key must be a text, no list and no map.");
    EXPECT_EQ(troubleOf("x: &k {a: 1}\n*k : 1\n"), "2:1: A key must be a text, no list and no map.");
    EXPECT_EQ(troubleOf("a: 1\n? " + std::string(1001, 'k') + "\n: 1\n"), "2:3: A key is too long.");
    EXPECT_EQ(troubleOf("? " + std::string(1000, 'k') + "\n: 1\n"), "");
}

TEST(YamlTree, MergeKeysAreRefused) {
    EXPECT_EQ(troubleOf("a: &a {b: 1}\nc:\n  <<: *a\n"),
              "3:3: A merge key (<<) is not supported; the values must be written out.");
    EXPECT_EQ(troubleOf("\"<<\": 1\n"), "");
    EXPECT_EQ(troubleOf("a: <<\n"), "");
}

TEST(YamlTree, AliasesAreWhatTheyName) {
    const YamlTree tree = treeOf("a: &x {b: 1}\nc: *x\nd: &x 2\ne: *x\n");
    EXPECT_EQ(&item(tree, 3), &item(tree, 1));
    EXPECT_EQ(item(tree, 7).text, "2");
    EXPECT_EQ(troubleOf("a: 1\nb: *none\n"), "2:4: The alias \"none\" names nothing above it.");
    EXPECT_EQ(troubleOf("a: *later\nb: &later 1\n"), "1:4: The alias \"later\" names nothing above it.");
}

TEST(YamlTree, AnAliasInsideOfWhatItNamesIsRefused) {
    EXPECT_EQ(troubleOf("&a [1, *a]"), "1:8: The alias \"a\" stands inside of what it names.");
    EXPECT_EQ(troubleOf("a: &a\n  b: &b\n    c: *a\n"),
              "3:8: The alias \"a\" stands inside of what it names.");
    EXPECT_EQ(troubleOf("&a {*a : 1}"), "1:5: The alias \"a\" stands inside of what it names.");
    EXPECT_EQ(troubleOf("&a [&a x, *a]"), "");
}

TEST(YamlTree, TagsOfYamlItselfAreTakenWhereTheyFit) {
    EXPECT_EQ(troubleOf("!!map {a: !!float 1, b: !!seq [], c: !!str 2, d: ! 3, e: !!null null}"), "");
    EXPECT_EQ(troubleOf("a: !filter 1"), "1:4: The tag \"!filter\" has no meaning here.");
    EXPECT_EQ(troubleOf("a: !!map 1"), "1:4: The tag \"tag:yaml.org,2002:map\" has no meaning here.");
    EXPECT_EQ(troubleOf("a: !!set {b}"), "1:4: The tag \"tag:yaml.org,2002:set\" has no meaning here.");
    EXPECT_EQ(troubleOf("a: !!float []"), "1:4: The tag \"tag:yaml.org,2002:float\" has no meaning here.");
    EXPECT_EQ(troubleOf("a: !!seq {}"), "1:4: The tag \"tag:yaml.org,2002:seq\" has no meaning here.");
}

TEST(YamlTree, DeepNestingIsRefused) {
    EXPECT_EQ(troubleOf(repeated("[", deepestYamlNode) + repeated("]", deepestYamlNode)), "");
    EXPECT_EQ(troubleOf(repeated("[", deepestYamlNode + 1)), "1:33: The file is nested too deeply.");
    // As much as a file may have, on one line and on as many as possible.
    EXPECT_EQ(troubleOf(repeated("[", 4U << 20U)), "1:33: The file is nested too deeply.");
    EXPECT_EQ(troubleOf(repeated("[\n", 2U << 20U)), "33:1: The file is nested too deeply.");
    EXPECT_EQ(troubleOf(repeated("{a: ", 1U << 20U)), "1:129: The file is nested too deeply.");
    EXPECT_EQ(troubleOf(repeated("- ", 2U << 20U)), "1:65: The file is nested too deeply.");
    EXPECT_EQ(troubleOf(repeated("? ", 2U << 20U)), "1:3: A key must be a text, no list and no map.");
}

TEST(YamlTree, TooManyValuesAreRefused) {
    EXPECT_EQ(troubleOf("[" + repeated("1,", mostYamlNodes - 1) + "]"), "");
    EXPECT_EQ(troubleOf("[" + repeated("1,", mostYamlNodes) + "]"),
              "1:200000: The file has too many values.");
    EXPECT_EQ(troubleOf(repeated("- 1\n", 1U << 20U)), "100000:3: The file has too many values.");
}

TEST(YamlTree, AliasesCountWithAllThatTheyName) {
    // Each line holds ten times what the line before holds: a few lines would become billions of values.
    std::string text = "a: &a0 [1, 1, 1, 1, 1, 1, 1, 1, 1, 1]\n";
    for (int level = 1; level <= 9; ++level) {
        const std::string above = std::to_string(level - 1);
        text.append("b").append(std::to_string(level)).append(": &a").append(std::to_string(level));
        text.append(" [").append(repeated("*a" + above + ", ", 10)).append("]\n");
    }
    EXPECT_EQ(troubleOf(text), "5:45: The file has too many values.");
}

TEST(YamlTree, TooManyDirectivesAreRefusedBeforeTheyTakeTime) {
    std::string text;
    for (int index = 0; index < 200000; ++index) {
        text.append("%TAG !").append(std::to_string(index)).append("! x\n");
    }
    EXPECT_EQ(troubleOf(text + "--- a"), "9:1: The file has too many directives.");
    EXPECT_EQ(troubleOf("%YAML 1.1\n%TAG !a! b\n--- a"), "");
}

}  // namespace
}  // namespace tessavo
