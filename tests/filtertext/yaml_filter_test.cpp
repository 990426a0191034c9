#include "filtertext/yaml_filter.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

#include "filtertext/cookbook.h"
#include "filtertext/yaml_values.h"

namespace tessavo {
namespace {

constexpr double rateHz = 48000.0;
constexpr double butterworthQ = std::numbers::sqrt2 / 2.0;

/// The filter of a text with one key and one value.
YamlFilter filterOf(std::string_view text) {
    auto read = readYamlTree(text);
    if (const auto* trouble = std::get_if<YamlTrouble>(&read)) {
        ADD_FAILURE() << trouble->text;
        return {};
    }
    const YamlTree& tree = std::get<YamlTree>(read);
    const YamlNode& root = tree.nodes.at(tree.root);
    return readYamlFilter(tree, tree.nodes.at(root.items.at(0)), tree.nodes.at(root.items.at(1)), rateHz);
}

/// A filter on one line, with these parameters.
FilterLine lineOf(const std::string& parameters, const std::string& type = "Biquad") {
    return filterOf("f: {type: " + type + ", parameters: {" + parameters + "}}").line;
}

void expectMeaning(const FilterLine& line, FilterShape shape, double frequencyHz, double gainDb, double q,
                   int order = 2) {
    ASSERT_TRUE(line.meaning.has_value()) << line.text << line.reason;
    EXPECT_EQ(line.meaning->shape, shape) << line.text;
    EXPECT_EQ(line.meaning->frequencyHz, frequencyHz) << line.text;
    EXPECT_EQ(line.meaning->gainDb, gainDb) << line.text;
    EXPECT_DOUBLE_EQ(line.meaning->q, q) << line.text;
    EXPECT_EQ(line.meaning->order, order) << line.text;
    EXPECT_EQ(line.column, 0U) << line.text;
}

void expectError(const FilterLine& line, std::size_t column, const std::string& reason) {
    EXPECT_EQ(line.kind, FilterLineKind::error) << line.text;
    EXPECT_EQ(line.column, column) << line.text;
    EXPECT_EQ(line.reason, reason) << line.text;
    EXPECT_EQ(line.meaning, std::nullopt);
}

void expectUnsupported(const FilterLine& line, const std::string& reason) {
    EXPECT_EQ(line.kind, FilterLineKind::unsupported) << line.text;
    EXPECT_EQ(line.column, 0U) << line.text;
    EXPECT_EQ(line.reason, reason) << line.text;
    EXPECT_EQ(line.meaning, std::nullopt);
}

TEST(YamlFilter, APeakTellsWhatStandsThere) {
    const FilterLine line =
        filterOf(
            "Filter_00:\n  type: Biquad\n  parameters:\n    type: Peaking\n    freq: 105.0\n"
            "    gain: '-3.2'\n    q: 7e-1\n")
            .line;
    EXPECT_EQ(line.kind, FilterLineKind::band);
    EXPECT_EQ(line.line, 1U);
    EXPECT_EQ(line.text, "Filter_00: Peaking, 105.0 Hz, -3.2 dB, Q 7e-1");
    EXPECT_EQ(line.reason, "");
    ASSERT_TRUE(line.source.has_value());
    EXPECT_EQ(line.source->type, "Peaking");
    EXPECT_EQ(line.source->frequencyHz, 105.0);
    EXPECT_EQ(line.source->gainDb, -3.2);
    EXPECT_EQ(line.source->q, 0.7);
    EXPECT_EQ(line.device, std::nullopt);
    expectMeaning(line, FilterShape::peak, 105.0, -3.2, 0.7);
}

TEST(YamlFilter, EveryShapeIsRead) {
    FilterLine line = lineOf("type: Lowshelf, freq: 80, gain: 4, q: 0.6");
    EXPECT_EQ(line.kind, FilterLineKind::band);
    expectMeaning(line, FilterShape::lowShelf, 80.0, 4.0, 0.6);
    line = lineOf("type: Highshelf, freq: 8000, gain: -2, q: 0.9");
    EXPECT_EQ(line.kind, FilterLineKind::band);
    expectMeaning(line, FilterShape::highShelf, 8000.0, -2.0, 0.9);
    line = lineOf("type: Lowpass, freq: 3000, q: 0.707");
    EXPECT_EQ(line.kind, FilterLineKind::crossover);
    EXPECT_EQ(line.source->gainDb, std::nullopt);
    expectMeaning(line, FilterShape::lowPass, 3000.0, 0.0, 0.707);
    // Another Q is told later, where it is put on the target.
    line = lineOf("type: Highpass, freq: 30, q: 1.3");
    EXPECT_EQ(line.kind, FilterLineKind::crossover);
    expectMeaning(line, FilterShape::highPass, 30.0, 0.0, 1.3);
}

TEST(YamlFilter, WidthsBecomeTheCookbooksQ) {
    FilterLine line = lineOf("type: Peaking, freq: 1000, gain: 6, bandwidth: 1.5");
    EXPECT_EQ(line.text, "f: Peaking, 1000 Hz, 6 dB, 1.5 octaves");
    EXPECT_EQ(line.source->q, std::nullopt);
    const double w = 2.0 * std::numbers::pi * 1000.0 / rateHz;
    expectMeaning(line, FilterShape::peak, 1000.0, 6.0,
                  1.0 / (2.0 * std::sinh(std::numbers::ln2 / 2.0 * 1.5 * w / std::sin(w))));
    line = lineOf("type: Lowshelf, freq: 100, gain: 9, slope: 6");
    EXPECT_EQ(line.text, "f: Lowshelf, 100 Hz, 9 dB, 6 dB per octave");
    EXPECT_EQ(line.source->q, std::nullopt);
    const double amplitude = std::pow(10.0, 9.0 / 40.0);
    expectMeaning(line, FilterShape::lowShelf, 100.0, 9.0,
                  1.0 / std::sqrt(amplitude + 1.0 / amplitude + 2.0));
    expectMeaning(lineOf("type: Highshelf, freq: 100, gain: -9, slope: 12"), FilterShape::highShelf, 100.0,
                  -9.0, butterworthQ);
}

TEST(YamlFilter, AFrequencyOutOfTheRateIsLeftToBeTold) {
    const FilterLine line = lineOf("type: Peaking, freq: 24000, gain: 6, bandwidth: 1");
    EXPECT_EQ(line.kind, FilterLineKind::band);
    ASSERT_TRUE(line.meaning.has_value());
    EXPECT_FALSE(isConvertible(*line.meaning, rateHz));
}

TEST(YamlFilter, MissingValuesAreErrorsAtTheName) {
    expectError(lineOf("type: Peaking, gain: 1, q: 1"), 1, "the frequency is missing");
    expectError(lineOf("type: Peaking, freq: 100, q: 1"), 1, "the gain is missing");
    expectError(lineOf("type: Peaking, freq: 100, gain: 1"), 1, "the Q or bandwidth is missing");
    expectError(lineOf("type: Lowshelf, freq: 100, gain: 1"), 1, "the Q or slope is missing");
    expectError(lineOf("type: Highshelf, freq: 100, gain: null, q: 1"), 1, "the gain is missing");
    expectError(lineOf("type: Lowpass, freq: 100"), 1, "the Q is missing");
    expectError(lineOf("type: Highpass, freq: , q: 1"), 1, "the frequency is missing");
    expectError(lineOf("freq: 100, gain: 1, q: 1"), 1, "the parameters have no type");
    expectError(filterOf("f: {type: Biquad}").line, 1, "the parameters have no type");
    expectError(filterOf("f: {parameters: {type: Peaking}}").line, 1, "the filter has no type");
    expectError(filterOf("f: {}").line, 1, "the filter has no type");
}

TEST(YamlFilter, WhatIsReadableOfAnErrorIsTold) {
    const FilterLine line = lineOf("type: Peaking, freq: 100, gain: x, q: 2");
    EXPECT_EQ(line.text, "f: Peaking, 100 Hz, x dB, Q 2");
    ASSERT_TRUE(line.source.has_value());
    EXPECT_EQ(line.source->type, "Peaking");
    EXPECT_EQ(line.source->frequencyHz, 100.0);
    EXPECT_EQ(line.source->gainDb, std::nullopt);
    EXPECT_EQ(line.source->q, 2.0);
    EXPECT_EQ(filterOf("f: {parameters: {type: Peaking}}").line.source, std::nullopt);
}

TEST(YamlFilter, UnreadableValuesAreErrorsAtTheirPlace) {
    // The parameters begin at column 32.
    expectError(lineOf("type: Peaking, freq: abc, gain: 1, q: 1"), 53, "the frequency is no number: \"abc\"");
    expectError(lineOf("type: Peaking, freq: 1, gain: \"-3,2\", q: 1"), 62,
                "the gain is no number: \"-3,2\"");
    expectError(lineOf("type: Peaking, freq: 1, gain: [1], q: 1"), 62, "the gain is no number: a list");
    expectError(lineOf("type: Peaking, freq: 1, gain: {a: 1}, q: 1"), 62, "the gain is no number: a map");
    expectError(lineOf("type: Peaking, freq: 1, gain: .inf, q: 1"), 62, "the gain is no number: \".inf\"");
    expectError(lineOf("type: Peaking, freq: 1, gain: 1, q: 0x1"), 68, "the Q is no number: \"0x1\"");
    expectError(lineOf("type: Peaking, freq: 0, gain: 1, q: 1"), 53, "the frequency must be above 0, not 0");
    expectError(lineOf("type: Peaking, freq: -5, gain: 1, q: 1"), 53,
                "the frequency must be above 0, not -5");
    expectError(lineOf("type: Peaking, freq: 5, gain: 1, q: 0"), 68, "the Q must be above 0, not 0");
    expectError(lineOf("type: Peaking, freq: 5, gain: 1, bandwidth: -1"), 76,
                "the bandwidth must be above 0, not -1");
    expectError(lineOf("type: Lowshelf, freq: 5, gain: 1, slope: 0"), 73, "the slope must be above 0, not 0");
    expectError(lineOf("type: Lowshelf, freq: 5, gain: 20, slope: 99"), 74,
                "the slope \"99\" is too steep for a shelf");
    expectError(lineOf("type: [Peaking]"), 38, "the parameters have no type");
    expectError(filterOf("f: 5").line, 4, "a filter is a map of type and parameters, not \"5\"");
    expectError(filterOf("f:").line, 3, "a filter is a map of type and parameters, not \"\"");
    expectError(filterOf("f: [a]").line, 4, "a filter is a map of type and parameters, not a list");
    expectError(filterOf("f: {type: [Biquad]}").line, 11, "the filter has no type");
    expectError(filterOf("f: {type: Biquad, parameters: 5}").line, 31, "the parameters are a map, not \"5\"");
}

TEST(YamlFilter, OneWidthOnlyAndOneThatTheTypeHas) {
    expectError(lineOf("type: Peaking, freq: 5, gain: 1, q: 1, bandwidth: 1"), 68,
                "the filter has both Q and bandwidth");
    expectError(lineOf("type: Lowshelf, freq: 5, gain: 1, slope: 6, q: 1"), 79,
                "the filter has both Q and slope");
    expectError(lineOf("type: Peaking, freq: 5, gain: 1, slope: 6"), 72,
                "a filter of this type has no slope");
    expectError(lineOf("type: Highshelf, freq: 5, gain: 1, bandwidth: 6"), 78,
                "a filter of this type has no bandwidth");
    expectError(lineOf("type: Lowpass, freq: 5, q: 1, slope: 6"), 69, "a filter of this type has no slope");
    expectError(lineOf("type: Highpass, freq: 5, bandwidth: 6"), 68,
                "a filter of this type has no bandwidth");
}

TEST(YamlFilter, APlaceOnAnotherLineIsToldInTheReason) {
    const FilterLine line =
        filterOf("\n  eq:\n    type: Biquad\n    parameters:\n      type: Peaking\n      freq: 1O0\n").line;
    EXPECT_EQ(line.line, 2U);
    expectError(line, 3, "the frequency is no number: \"1O0\" (line 6, column 13)");
}

TEST(YamlFilter, CombosOfTheTargetsOrdersAreCrossovers) {
    FilterLine line = lineOf("type: LinkwitzRileyHighpass, freq: 2000, order: 4", "BiquadCombo");
    EXPECT_EQ(line.kind, FilterLineKind::crossover);
    EXPECT_EQ(line.text, "f: LinkwitzRileyHighpass, 2000 Hz, order 4");
    EXPECT_EQ(line.reason, "");
    expectMeaning(line, FilterShape::highPass, 2000.0, 0.0, butterworthQ, 4);
    expectMeaning(lineOf("type: LinkwitzRileyLowpass, freq: 90, order: 4", "BiquadCombo"),
                  FilterShape::lowPass, 90.0, 0.0, butterworthQ, 4);
    for (const auto& [type, shape] : {std::pair("ButterworthHighpass", FilterShape::highPass),
                                      std::pair("ButterworthLowpass", FilterShape::lowPass)}) {
        line = lineOf(std::string("freq: 50, order: 2, type: ") + type, "BiquadCombo");
        EXPECT_EQ(line.reason, "");
        expectMeaning(line, shape, 50.0, 0.0, butterworthQ, 2);
        line = lineOf(std::string("freq: 50, order: 4, type: ") + type, "BiquadCombo");
        EXPECT_EQ(line.kind, FilterLineKind::crossover);
        EXPECT_EQ(line.reason, "a Butterworth filter of 4th order; the target's is a Linkwitz-Riley filter");
        expectMeaning(line, shape, 50.0, 0.0, butterworthQ, 4);
    }
}

TEST(YamlFilter, OtherCombosAreRefused) {
    const std::string orders =
        "; the target has Butterworth filters of 2nd and Linkwitz-Riley filters of 4th order";
    expectUnsupported(lineOf("type: LinkwitzRileyLowpass, freq: 90, order: 2", "BiquadCombo"),
                      "order 2" + orders);
    expectUnsupported(lineOf("type: LinkwitzRileyHighpass, freq: 90, order: 8", "BiquadCombo"),
                      "order 8" + orders);
    for (const char* order : {"0", "1", "3", "5", "6", "8"}) {
        expectUnsupported(
            lineOf(std::string("type: ButterworthLowpass, freq: 90, order: ") + order, "BiquadCombo"),
            std::string("order ") + order + orders);
    }
    expectUnsupported(lineOf("type: FivePointPeq, fls: 90", "BiquadCombo"),
                      "five filters in one; they can be read where each stands for itself");
    expectUnsupported(lineOf("type: Tilt, gain: 3", "BiquadCombo"),
                      "a tilt of several shelves; the target has none");
    expectUnsupported(lineOf("type: GraphicEqualizer, gains: [1, 2]", "BiquadCombo"),
                      "a graphic equalizer; the target's channels have none");
    expectUnsupported(lineOf("type: Peaking, freq: 1, gain: 1, q: 1", "BiquadCombo"),
                      "the type \"Peaking\" is not known");
    expectError(lineOf("type: LinkwitzRileyLowpass, freq: 90", "BiquadCombo"), 1, "the order is missing");
    expectError(lineOf("type: LinkwitzRileyLowpass, order: 4", "BiquadCombo"), 1, "the frequency is missing");
    expectError(lineOf("type: LinkwitzRileyLowpass, freq: 90, order: 4.5", "BiquadCombo"), 82,
                "the order \"4.5\" is no whole number");
}

TEST(YamlFilter, TypesThatTheTargetLacksAreRefusedByName) {
    const std::pair<const char*, const char*> biquads[]{
        {"Notch", "a notch; the target has none"},
        {"GeneralNotch", "a notch; the target has none"},
        {"Bandpass", "a band-pass; the target has none"},
        {"Allpass", "an all-pass; the target has none"},
        {"AllpassFO", "an all-pass; the target has none"},
        {"LowpassFO", "a low-pass of 1st order; the target has those of 2nd and 4th order"},
        {"HighpassFO", "a high-pass of 1st order; the target has those of 2nd and 4th order"},
        {"LowshelfFO", "a shelf of 1st order; the target has those of 2nd order"},
        {"HighshelfFO", "a shelf of 1st order; the target has those of 2nd order"},
        {"LinkwitzTransform", "a Linkwitz transform; the target has none"},
        {"Free", "coefficients of a biquad, which tell no frequency, gain and Q"},
        {"peaking", "the type \"peaking\" is not known"},
        {"LinkwitzRileyLowpass", "the type \"LinkwitzRileyLowpass\" is not known"},
        {"''", "the type \"\" is not known"}};
    for (const auto& [type, reason] : biquads) {
        const FilterLine line = lineOf(std::string("type: ") + type + ", freq: 100, q: 2");
        expectUnsupported(line, reason);
        ASSERT_TRUE(line.source.has_value());
        EXPECT_EQ(line.source->frequencyHz, 100.0);
        EXPECT_EQ(line.source->q, 2.0);
    }
    const std::pair<const char*, const char*> others[]{
        {"Conv", "a convolution; the target has none"},
        {"Delay", "a delay, which is no filter"},
        {"DiffEq", "coefficients of a filter, which tell no frequency, gain and Q"},
        {"Dither", "a dither; the target has none"},
        {"Limiter", "a limiter, which is no filter"},
        {"LookaheadLimiter", "a limiter, which is no filter"},
        {"Loudness", "a loudness compensation; the target has none"},
        {"Volume", "a volume control, which is no filter"},
        {"Peaking", "the type \"Peaking\" is not known"}};
    for (const auto& [type, reason] : others) {
        const FilterLine line = filterOf(std::string("f: {type: ") + type + "}").line;
        expectUnsupported(line, reason);
        EXPECT_EQ(line.text, std::string("f: ") + type);
        ASSERT_TRUE(line.source.has_value());
        EXPECT_EQ(line.source->type, type);
        EXPECT_EQ(line.source->frequencyHz, std::nullopt);
    }
}

YamlFilter gainOf(const std::string& parameters) {
    return filterOf("f: {type: Gain, parameters: {" + parameters + "}}");
}

TEST(YamlFilter, GainsArePreamps) {
    YamlFilter filter = gainOf("gain: '-6.3', scale: dB, inverted: false, mute: null");
    EXPECT_EQ(filter.line.kind, FilterLineKind::none);
    EXPECT_EQ(filter.line.text, "f: Gain, -6.3 dB");
    EXPECT_EQ(filter.line.reason, "part of the preamp");
    EXPECT_EQ(filter.preampDb, -6.3);
    EXPECT_EQ(gainOf("gain: 0").preampDb, 0.0);
    filter = gainOf("gain: 0.5, scale: linear");
    EXPECT_EQ(filter.line.text, "f: Gain, 0.5 linear");
    EXPECT_DOUBLE_EQ(filter.preampDb.value(), 20.0 * std::log10(0.5));
    EXPECT_DOUBLE_EQ(filter.line.source->gainDb.value(), 20.0 * std::log10(0.5));
    // Turned over twice it is as it was.
    EXPECT_DOUBLE_EQ(gainOf("gain: -2, scale: linear, inverted: true").preampDb.value(),
                     20.0 * std::log10(2.0));
}

TEST(YamlFilter, GainsThatAreNoPreampAreRefused) {
    const auto refused = [](const std::string& parameters, const std::string& reason) {
        const YamlFilter filter = gainOf(parameters);
        expectUnsupported(filter.line, reason);
        EXPECT_EQ(filter.preampDb, std::nullopt);
    };
    refused("gain: -3, inverted: true", "a gain that inverts the polarity, which no preamp does");
    refused("gain: -3, scale: linear", "a gain that inverts the polarity, which no preamp does");
    refused("gain: -3, mute: true", "a mute, which is no preamp");
    refused("gain: 0, scale: linear", "a mute, which is no preamp");
    const auto failed = [](const std::string& parameters, std::size_t column, const std::string& reason) {
        const YamlFilter filter = gainOf(parameters);
        expectError(filter.line, column, reason);
        EXPECT_EQ(filter.preampDb, std::nullopt);
    };
    failed("scale: dB", 1, "the gain is missing");
    failed("gain: x", 36, "the gain is no number: \"x\"");
    failed("gain: 150.5", 36, "the gain is out of every range");
    failed("gain: 1e300, scale: linear", 36, "the gain is out of every range");
    failed("gain: 1, scale: bel", 46, "the scale is dB or linear, not \"bel\"");
    failed("gain: 1, inverted: yes", 49, "inverted is true or false, not \"yes\"");
    failed("gain: 1, mute: 1", 45, "mute is true or false, not \"1\"");
    EXPECT_EQ(gainOf("gain: -150").preampDb, -150.0);
}

TEST(YamlFilter, NamesAndTypesOfAnyLengthStayOnOneLine) {
    const FilterLine line = filterOf("\"a\\nb\": {type: \"" + std::string(5000, 'x') + "\"}").line;
    EXPECT_EQ(line.kind, FilterLineKind::unsupported);
    EXPECT_EQ(line.text.substr(0, 5), "a b: ");
    EXPECT_LT(line.text.size(), 200U);
    EXPECT_LT(line.reason.size(), 200U);
    EXPECT_LT(line.source->type.size(), 200U);
}

}  // namespace
}  // namespace tessavo
