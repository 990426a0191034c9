#include "filtertext/yaml_pipeline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A text with a pipeline, and what was read of it.
struct Read {
    YamlTree tree;
    std::variant<YamlPipeline, YamlTrouble> result;
};

void readInto(Read& read, std::string_view text, std::string_view channel = {}) {
    auto tree = readYamlTree(text);
    if (const auto* trouble = std::get_if<YamlTrouble>(&tree)) {
        FAIL() << trouble->text;
    }
    read.tree = std::get<YamlTree>(std::move(tree));
    read.result = readYamlPipeline(read.tree, read.tree.nodes.at(read.tree.root), channel);
}

std::string troubleOf(std::string_view text, std::string_view channel = {}) {
    Read read;
    readInto(read, text, channel);
    const auto* trouble = std::get_if<YamlTrouble>(&read.result);
    if (trouble == nullptr) {
        return {};
    }
    return std::to_string(trouble->place.line)
        .append(":")
        .append(std::to_string(trouble->place.column))
        .append(": ")
        .append(trouble->text);
}

constexpr std::string_view twoChannels =
    "- {type: Mixer, name: stereo, channels: 7}\n"
    "- {type: Filter, channel: 1, names: [both, right, right]}\n"
    "- {type: Filter, channels: [0, 2], names: [both, left], bypassed: null}\n"
    "- {type: Processor, name: gate}\n"
    "- {type: Filter, channel: 0, names: [off, both], bypassed: true}\n"
    "- {type: Filter, names: [all]}\n";

TEST(YamlPipeline, TheFirstChannelIsReadUnlessAnotherIsNamed) {
    Read read;
    readInto(read, twoChannels);
    const auto& first = std::get<YamlPipeline>(read.result);
    EXPECT_THAT(first.channels, ElementsAre("1", "0", "2"));
    EXPECT_EQ(first.channel, "1");
    EXPECT_EQ(first.uses.at("both").playing, 1U);
    EXPECT_EQ(first.uses.at("right").playing, 2U);
    EXPECT_EQ(first.uses.at("left").playing, 0U);
    EXPECT_EQ(first.uses.at("off").playing, 0U);
    EXPECT_FALSE(first.uses.at("off").isBypassed);
    EXPECT_EQ(first.uses.at("all").playing, 1U);
    EXPECT_EQ(first.uses.size(), 5U);
    // Two channels have it.
    EXPECT_TRUE(first.uses.at("left").playsElsewhere);
    EXPECT_EQ(first.uses.at("left").other, std::nullopt);
}

TEST(YamlPipeline, AnotherChannelHasItsOwnUses) {
    Read read;
    readInto(read, twoChannels, "0");
    const auto& pipeline = std::get<YamlPipeline>(read.result);
    EXPECT_EQ(pipeline.channel, "0");
    EXPECT_EQ(pipeline.uses.at("both").playing, 1U);
    EXPECT_TRUE(pipeline.uses.at("both").isBypassed);
    EXPECT_EQ(pipeline.uses.at("left").playing, 1U);
    EXPECT_EQ(pipeline.uses.at("off").playing, 0U);
    EXPECT_TRUE(pipeline.uses.at("off").isBypassed);
    EXPECT_FALSE(pipeline.uses.at("off").playsElsewhere);
    EXPECT_EQ(pipeline.uses.at("right").playing, 0U);
    EXPECT_EQ(pipeline.uses.at("right").other, 1U);
    EXPECT_EQ(pipeline.uses.at("all").playing, 1U);
    EXPECT_FALSE(pipeline.uses.at("all").playsElsewhere);
}

TEST(YamlPipeline, StepsWithoutChannelsAreForAll) {
    Read read;
    readInto(read,
             "- {type: Filter, names: [a], channel: null}\n- {type: Filter, names: [a], channels: null}\n");
    const auto& pipeline = std::get<YamlPipeline>(read.result);
    EXPECT_THAT(pipeline.channels, IsEmpty());
    EXPECT_EQ(pipeline.channel, "");
    EXPECT_EQ(pipeline.uses.at("a").playing, 2U);
    EXPECT_EQ(pipeline.uses.at("a").name->place, (YamlPlace{1, 26}));
    Read none;
    readInto(none, "- {type: Filter, names: [a], channels: []}\n");
    EXPECT_EQ(std::get<YamlPipeline>(none.result).uses.at("a").playing, 0U);
    Read empty;
    readInto(empty, "[]");
    EXPECT_THAT(std::get<YamlPipeline>(empty.result).uses, IsEmpty());
}

TEST(YamlPipeline, AChannelThatStandsTwiceInAStepCountsOnce) {
    Read read;
    readInto(
        read,
        "- {type: Filter, names: [a], channels: [0, 0]}\n- {type: Filter, names: [b], channels: [1, 1]}\n");
    const auto& pipeline = std::get<YamlPipeline>(read.result);
    EXPECT_THAT(pipeline.channels, ElementsAre("0", "1"));
    EXPECT_EQ(pipeline.uses.at("a").playing, 1U);
    EXPECT_EQ(pipeline.uses.at("b").other, 1U);
}

TEST(YamlPipeline, SeveralOtherChannelsAreNotTakenForOne) {
    Read read;
    readInto(read,
             "- {type: Filter, names: [], channel: 0}\n- {type: Filter, names: [a, b], channel: 1}\n"
             "- {type: Filter, names: [a], channel: 2}\n- {type: Filter, names: [a, b], channel: 1}\n"
             "- {type: Filter, names: [c], channel: 3, bypassed: true}\n");
    const auto& uses = std::get<YamlPipeline>(read.result).uses;
    EXPECT_EQ(uses.at("a").other, std::nullopt);
    EXPECT_TRUE(uses.at("a").playsElsewhere);
    EXPECT_EQ(uses.at("b").other, 1U);
    EXPECT_FALSE(uses.at("c").playsElsewhere);
    EXPECT_FALSE(uses.at("c").isBypassed);
}

TEST(YamlPipeline, AnUnknownChannelNamesThoseThereAre) {
    EXPECT_EQ(troubleOf(twoChannels, "3"), "0:0: There is no channel \"3\" in the file; there are 1, 0, 2.");
    EXPECT_EQ(troubleOf(twoChannels, "L"), "0:0: There is no channel \"L\" in the file; there are 1, 0, 2.");
    EXPECT_EQ(troubleOf("[{type: Filter, names: [], channel: 4}]", "0"),
              "0:0: There is no channel \"0\" in the file; it names 4.");
    EXPECT_EQ(troubleOf("[{type: Filter, names: []}]", "0"),
              "0:0: There is no channel \"0\" in the file; it names none.");
    std::string many = "[{type: Filter, names: [], channels: [";
    for (int channel = 0; channel < 20; ++channel) {
        many.append(std::to_string(channel)).append(", ");
    }
    EXPECT_EQ(troubleOf(many + "]}]", "x"),
              "0:0: There is no channel \"x\" in the file; "
              "there are 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15 and others.");
}

TEST(YamlPipeline, WrongKindsOfNodesAreToldWithTheirPlace) {
    EXPECT_EQ(troubleOf("{a: 1}"), "1:1: The pipeline must be a list of steps.");
    EXPECT_EQ(troubleOf("[a]"), "1:2: A step of the pipeline must be a map.");
    EXPECT_EQ(troubleOf("- {names: [a]}"), "1:3: A step of the pipeline has no type.");
    EXPECT_EQ(troubleOf("- {type: [Filter]}"), "1:10: A step of the pipeline has no type.");
    EXPECT_EQ(troubleOf("- {type: Filter}"), "1:3: A step of the pipeline must have a list of names.");
    EXPECT_EQ(troubleOf("- {type: Filter, names: a}"),
              "1:25: A step of the pipeline must have a list of names.");
    EXPECT_EQ(troubleOf("- {type: Filter, names: [[a]]}"),
              "1:26: The name of a filter must be a short text.");
    EXPECT_EQ(troubleOf("- {type: Filter, names: [" + std::string(1001, 'a') + "]}"),
              "1:26: The name of a filter must be a short text.");
    EXPECT_EQ(troubleOf("- {type: Filter, names: [], bypassed: yes}"),
              "1:39: \"bypassed\" must be true or false.");
    EXPECT_EQ(troubleOf("- {type: Filter, names: [], channel: L}"),
              "1:38: A channel must be a number from 0, not \"L\".");
    EXPECT_EQ(troubleOf("- {type: Filter, names: [], channel: -1}"),
              "1:38: A channel must be a number from 0, not \"-1\".");
    EXPECT_EQ(troubleOf("- {type: Filter, names: [], channels: 1}"),
              "1:39: \"channels\" must be a list of numbers.");
    EXPECT_EQ(troubleOf("- {type: Filter, names: [], channels: [0, {}]}"),
              "1:43: A channel must be a number from 0, not a map.");
    EXPECT_EQ(troubleOf("- {type: Filter, names: [], channel: 0, channels: [0]}"),
              "1:51: A step of the pipeline has both \"channel\" and \"channels\".");
}

}  // namespace
}  // namespace tessavo
