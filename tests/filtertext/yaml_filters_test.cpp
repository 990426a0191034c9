#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "filtertext/readers.h"

namespace tessavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view filters =
    "filters:\n"
    "  bass: {type: Biquad, parameters: {type: Lowshelf, freq: 80, gain: 3, q: 0.7}}\n"
    "  dip: {type: Biquad, parameters: {type: Peaking, freq: 400, gain: -2, q: 2}}\n"
    "  hum: {type: Biquad, parameters: {type: Notch, freq: 50, q: 9}}\n"
    "  low: {type: BiquadCombo, parameters: {type: ButterworthHighpass, freq: 40, order: 4}}\n"
    "  level: {type: Gain, parameters: {gain: -4.5}}\n";

FilterText readWith(std::string_view more, std::string_view channel = {}) {
    return readYamlFilters(std::string(filters).append(more), channel);
}

/// The rows in short: line, kind, first word of the text.
std::vector<std::string> rowsOf(const FilterText& text) {
    std::vector<std::string> rows;
    for (const FilterLine& line : text.lines) {
        rows.push_back(std::to_string(line.line)
                           .append(" ")
                           .append(kindWord(line.kind))
                           .append(" ")
                           .append(line.text.substr(0, line.text.find(':'))));
    }
    return rows;
}

std::string troubleOf(const FilterText& text) {
    return std::to_string(text.troubleLine)
        .append(":")
        .append(std::to_string(text.troubleColumn))
        .append(": ")
        .append(text.trouble);
}

std::string troubleOf(std::string_view text) {
    return troubleOf(readYamlFilters(text, {}));
}

TEST(YamlFilters, WithoutAPipelineEveryFilterIsOn) {
    const FilterText text = readWith("");
    EXPECT_EQ(text.trouble, "");
    EXPECT_THAT(rowsOf(text), ElementsAre("2 band bass", "3 band dip", "4 unsupported hum", "5 crossover low",
                                          "6 none level"));
    EXPECT_EQ(text.preampDb, -4.5);
    EXPECT_TRUE(text.hasPreamp);
    EXPECT_EQ(text.lines.at(4).source, std::nullopt);
    EXPECT_EQ(text.samplingRateHz, textSamplingRateHz);
    EXPECT_FALSE(text.tellsSamplingRate);
    EXPECT_EQ(text.decimalSign, '.');
    EXPECT_THAT(text.channels, IsEmpty());
    EXPECT_EQ(text.channel, "");
    EXPECT_THAT(rowsOf(readWith("pipeline: null\n")), testing::SizeIs(5));
    EXPECT_EQ(readWith("pipeline: null\n").lines.at(0).kind, FilterLineKind::band);
}

TEST(YamlFilters, AnEmptyPipelinePlaysNone) {
    const FilterText text = readWith("pipeline: []\n");
    EXPECT_THAT(rowsOf(text),
                ElementsAre("2 off bass", "3 off dip", "4 off hum", "5 off low", "6 off level"));
    const std::string none = "in no step of the pipeline";
    EXPECT_EQ(text.lines.at(0).reason, none);
    EXPECT_TRUE(text.lines.at(0).meaning.has_value());
    EXPECT_EQ(text.lines.at(2).reason, "a notch; the target has none; " + none);
    EXPECT_EQ(text.lines.at(2).meaning, std::nullopt);
    EXPECT_EQ(text.lines.at(3).reason,
              "a Butterworth filter of 4th order; the target's is a Linkwitz-Riley filter; " + none);
    EXPECT_EQ(text.lines.at(4).reason, none);
    ASSERT_TRUE(text.lines.at(4).source.has_value());
    EXPECT_EQ(text.lines.at(4).source->gainDb, -4.5);
    EXPECT_FALSE(text.hasPreamp);
    EXPECT_EQ(text.preampDb, 0.0);
}

constexpr std::string_view steps =
    "pipeline:\n"
    "  - {type: Filter, channel: 0, names: [bass, dip, level]}\n"
    "  - {type: Filter, channel: 1, names: [dip, hum]}\n"
    "  - {type: Filter, channel: 1, names: [low], bypassed: true}\n"
    "  - {type: Filter, channels: [1, 2], names: [dip]}\n";

TEST(YamlFilters, TheFirstChannelIsRead) {
    const FilterText text = readWith(steps);
    EXPECT_THAT(text.channels, ElementsAre("0", "1", "2"));
    EXPECT_EQ(text.channel, "0");
    EXPECT_THAT(rowsOf(text),
                ElementsAre("2 band bass", "3 band dip", "4 unsupported hum", "5 off low", "6 none level"));
    EXPECT_EQ(text.lines.at(2).reason, "for channel 1");
    EXPECT_EQ(text.lines.at(3).reason,
              "a Butterworth filter of 4th order; the target's is a Linkwitz-Riley filter; "
              "only in bypassed steps of the pipeline");
    EXPECT_EQ(text.preampDb, -4.5);
}

TEST(YamlFilters, AnotherChannelIsReadByItsNumberAndFiltersPlayAsOftenAsNamed) {
    const FilterText text = readWith(steps, "1");
    EXPECT_EQ(text.channel, "1");
    EXPECT_THAT(rowsOf(text), ElementsAre("2 unsupported bass", "3 band dip", "3 band dip",
                                          "4 unsupported hum", "5 off low", "6 unsupported level"));
    EXPECT_EQ(text.lines.at(0).reason, "for channel 0");
    EXPECT_EQ(text.lines.at(0).meaning, std::nullopt);
    ASSERT_TRUE(text.lines.at(0).source.has_value());
    EXPECT_EQ(text.lines.at(0).source->type, "Lowshelf");
    EXPECT_EQ(text.lines.at(3).reason, "a notch; the target has none");
    EXPECT_EQ(text.lines.at(5).reason, "for channel 0");
    EXPECT_FALSE(text.hasPreamp);
    EXPECT_EQ(troubleOf(readWith(steps, "5")),
              "0:0: There is no channel \"5\" in the file; there are 0, 1, 2.");
    EXPECT_EQ(troubleOf(readWith("", "0")), "0:0: There is no channel \"0\" in the file; it names none.");
}

TEST(YamlFilters, WhatPlaysOnSeveralOtherChannelsIsSaidToBeForOthers) {
    const FilterText text = readWith(
        "pipeline:\n  - {type: Filter, channel: 0, names: [bass]}\n  - {type: Filter, channels: [1, 2], "
        "names: [dip]}\n"
        "  - {type: Filter, channel: 0, names: [low], bypassed: true}\n  - {type: Filter, channel: 1, names: "
        "[low]}\n");
    EXPECT_EQ(text.lines.at(1).kind, FilterLineKind::unsupported);
    EXPECT_EQ(text.lines.at(1).reason, "for other channels");
    // This channel has it, bypassed.
    EXPECT_EQ(text.lines.at(3).kind, FilterLineKind::off);
    EXPECT_TRUE(text.lines.at(3).meaning.has_value());
}

TEST(YamlFilters, PreampsOfTheChannelAddUp) {
    const FilterText text = readYamlFilters(
        "filters:\n  a: {type: Gain, parameters: {gain: -3}}\n  b: {type: Gain, parameters: {gain: 0.5, "
        "scale: linear}}\n"
        "  c: {type: Gain, parameters: {gain: 9}}\n"
        "pipeline:\n  - {type: Filter, channel: 0, names: [a, a]}\n  - {type: Filter, names: [b]}\n"
        "  - {type: Filter, channel: 1, names: [c]}\n",
        {});
    EXPECT_NEAR(text.preampDb, -12.0206, 1e-4);
    EXPECT_THAT(rowsOf(text), ElementsAre("2 none a", "2 none a", "3 none b", "4 unsupported c"));
}

TEST(YamlFilters, NamesWithoutAFilterAreErrorsWhereTheyStand) {
    const FilterText text = readWith("pipeline:\n  - type: Filter\n    names: [bass, bas, bas]\n");
    ASSERT_EQ(text.lines.size(), 6U);
    const FilterLine& line = text.lines.back();
    EXPECT_EQ(line.kind, FilterLineKind::error);
    EXPECT_EQ(line.line, 9U);
    EXPECT_EQ(line.column, 19U);
    EXPECT_EQ(line.text, "bas");
    EXPECT_EQ(line.reason, "the pipeline names this filter, and there is none of that name");
    EXPECT_EQ(line.source, std::nullopt);
    const FilterText several = readWith("pipeline: [{type: Filter, names: [z, y, bass, x]}]\n");
    EXPECT_THAT(rowsOf(several), ElementsAre("2 band bass", "3 off dip", "4 off hum", "5 off low",
                                             "6 off level", "7 error z", "7 error y", "7 error x"));
    // Rows stand in the order of the file, wherever the pipeline does.
    const FilterText before =
        readYamlFilters("pipeline: [{type: Filter, names: [none, a]}]\nfilters: {a: {type: Dither}}\n", {});
    EXPECT_THAT(rowsOf(before), ElementsAre("1 error none", "2 unsupported a"));
}

TEST(YamlFilters, ErrorsStayErrorsWhoeverPlaysThem) {
    for (const char* pipeline :
         {"", "pipeline: []\n", "pipeline: [{type: Filter, names: [f, f]}]\n",
          "pipeline: [{type: Filter, names: [], channel: 0}, {type: Filter, names: [f], channel: 1}]\n"}) {
        const FilterText text = readYamlFilters(
            std::string("filters: {f: {type: Biquad, parameters: {type: Peaking, freq: x}}}\n")
                .append(pipeline),
            {});
        EXPECT_THAT(rowsOf(text), ElementsAre("1 error f")) << pipeline;
        EXPECT_EQ(text.lines.at(0).column, 63U);
        EXPECT_EQ(text.trouble, "");
    }
}

TEST(YamlFilters, TheFilesOwnRateIsTold) {
    for (const char* rate : {"96000", "9.6e4", "'96000'"}) {
        const FilterText text = readWith(std::string("devices: {samplerate: ").append(rate).append("}\n"));
        EXPECT_EQ(text.samplingRateHz, 96000.0) << rate;
        EXPECT_TRUE(text.tellsSamplingRate) << rate;
    }
    EXPECT_FALSE(readWith("devices: {chunksize: 1}\n").tellsSamplingRate);
    EXPECT_FALSE(readWith("devices: null\n").tellsSamplingRate);
    EXPECT_FALSE(readWith("devices: {samplerate: null}\n").tellsSamplingRate);
    for (const char* rate : {"0", "-1", "fast", "[1]", "1e8"}) {
        const FilterText text = readWith(std::string("devices: {samplerate: ").append(rate).append("}\n"));
        EXPECT_EQ(text.troubleLine, 7U) << rate;
        EXPECT_EQ(text.troubleColumn, 23U) << rate;
        EXPECT_EQ(text.trouble.substr(0, 36), "The sampling rate is no rate in Hz: ") << rate;
        EXPECT_THAT(text.lines, IsEmpty()) << rate;
    }
    EXPECT_EQ(troubleOf(readWith("devices: [1]\n")), "7:10: \"devices\" must be a map.");
}

TEST(YamlFilters, TheFilesOwnRateMakesTheWidthOfAPeak) {
    const std::string peak =
        "filters: {p: {type: Biquad, parameters: {type: Peaking, freq: 9000, gain: 6, bandwidth: 1}}}\n";
    const FilterText slow = readYamlFilters(peak, {});
    const FilterText fast = readYamlFilters(peak + "devices: {samplerate: 192000}\n", {});
    EXPECT_DOUBLE_EQ(slow.lines.at(0).meaning.value().q, peakQOfBandwidth(1.0, 9000.0, textSamplingRateHz));
    EXPECT_DOUBLE_EQ(fast.lines.at(0).meaning.value().q, peakQOfBandwidth(1.0, 9000.0, 192000.0));
}

TEST(YamlFilters, TheMapOfFiltersAloneIsEnough) {
    const FilterText text = readYamlFilters(
        "bass:\n  type: Biquad\n  parameters: {type: Lowshelf, freq: 80, gain: 3, q: 0.7}\nnote: 5\n", {});
    EXPECT_THAT(rowsOf(text), ElementsAre("1 band bass", "4 error note"));
}

TEST(YamlFilters, TextsWithoutFiltersAreTrouble) {
    for (const char* text :
         {"", "# nothing\n", "a: 1\n", "filters:\n", "filters: {}\n", "pipeline: []\n", "[1, 2]", "word",
          "devices: {samplerate: 48000}\n", "filters: null\npipeline: []\n"}) {
        EXPECT_EQ(troubleOf(text), "0:0: There is no filter in the file.") << text;
        EXPECT_THAT(readYamlFilters(text, {}).lines, IsEmpty()) << text;
    }
    EXPECT_EQ(troubleOf("filters: [a]\n"), "1:10: \"filters\" must be a map of names and filters.");
    EXPECT_EQ(troubleOf("filters: 5\n"), "1:10: \"filters\" must be a map of names and filters.");
}

TEST(YamlFilters, TroubleOfTheTextAndOfThePipelineHasItsPlace) {
    EXPECT_EQ(troubleOf("filters:\n  a: {type: Gain\n"),
              "2:17: This is no valid YAML: did not find expected ',' or '}' while parsing a flow mapping.");
    EXPECT_EQ(troubleOf(readWith("filters: {}\n")), "7:1: The key \"filters\" stands twice.");
    EXPECT_EQ(troubleOf(readWith("pipeline: 5\n")), "7:11: The pipeline must be a list of steps.");
    EXPECT_THAT(readWith("pipeline: 5\n").lines, IsEmpty());
}

TEST(YamlFilters, AliasesAreFollowed) {
    const FilterText text = readYamlFilters(
        "common: &peak {type: Peaking, freq: 400, gain: -2, q: 2}\n"
        "filters:\n  a: &a {type: Biquad, parameters: *peak}\n  b: *a\n",
        {});
    EXPECT_THAT(rowsOf(text), ElementsAre("3 band a", "4 band b"));
    EXPECT_EQ(text.lines.at(1).text, "b: Peaking, 400 Hz, -2 dB, Q 2");
}

TEST(YamlFilters, AFilterThatPlaysTooOftenIsRefused) {
    std::string text = "filters: {a: {type: Dither}}\nlist: &l [a, a, a, a, a, a, a, a, a, a]\npipeline:\n";
    for (int step = 0; step < 20000; ++step) {
        text.append("- {type: Filter, names: *l}\n");
    }
    const FilterText read = readYamlFilters(text, {});
    EXPECT_EQ(read.trouble, "The file has too many values.");
}

TEST(YamlFilters, LongTextsBehindManyAliasesTakeNoTime) {
    const std::string digits(1U << 20U, '1');
    std::string text = "number: &n \"" + digits + "\"\nfilters:\n";
    for (int filter = 0; filter < 5000; ++filter) {
        text.append("  f").append(std::to_string(filter));
        text.append(": {type: Biquad, parameters: {type: Peaking, freq: *n, gain: *n, q: *n}}\n");
    }
    const FilterText read = readYamlFilters(text, {});
    ASSERT_EQ(read.lines.size(), 5000U);
    for (const FilterLine& line : read.lines) {
        ASSERT_EQ(line.kind, FilterLineKind::error);
        ASSERT_LT(line.text.size(), 500U);
    }
}

}  // namespace
}  // namespace tessavo
