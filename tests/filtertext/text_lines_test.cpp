#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <numbers>
#include <random>
#include <string>

#include "filtertext/filter_text.h"

// Filter lines as other programs write them.

namespace tessavo {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

constexpr double butterworth = std::numbers::sqrt2 / 2.0;

FilterLine onlyLine(const std::string& text) {
    const FilterText read = readFilterText(text);
    EXPECT_EQ(read.trouble, "") << text;
    EXPECT_EQ(read.lines.size(), 1U) << text;
    return read.lines.empty() ? FilterLine{} : read.lines.front();
}

void expectMeaning(const std::string& text, const CookbookFilter& expected) {
    const FilterLine line = onlyLine(text);
    ASSERT_TRUE(line.meaning.has_value()) << text << ": " << line.reason;
    EXPECT_EQ(line.meaning->shape, expected.shape) << text;
    EXPECT_NEAR(line.meaning->frequencyHz, expected.frequencyHz, 1e-9 * expected.frequencyHz) << text;
    EXPECT_NEAR(line.meaning->gainDb, expected.gainDb, 1e-12) << text;
    EXPECT_NEAR(line.meaning->q, expected.q, 1e-9) << text;
    EXPECT_EQ(line.meaning->order, expected.order) << text;
}

TEST(TextLines, APeakIsReadInEveryHabit) {
    for (const char* text : {
             "Filter 1: ON PK Fc 100 Hz Gain -3.0 dB Q 2.00",
             "Filter: ON PK Fc 100 Hz Gain -3.0 dB Q 2.00",
             "Filter  1: ON  PK       Fc     100 Hz  Gain  -3.0 dB  Q  2.00",
             "Filter 1:\tON\tPK\tFc 100 Hz\tGain -3.0 dB\tQ 2.00",
             "filter 12: on pk fc 100hz gain -3db q 2",
             "FILTER 1: ON PEQ FC 100 HZ GAIN -3.0 DB Q 2.00",
             "Filter 1: ON PK Fc 100H z Gain -3.0 dB Q 2.00",
             "Filter 1: ON PK Fc 100.0 Hz Gain -3.0 dB Q +2.00",
             "Filter 1: ON PK Fc 0.1 kHz Gain -3.0 dB Q 2",
             "Filter 1: ON PK Fc 100 Hz Gain \xE2\x88\x92"
             "3.0 dB Q 2.00",
             "Filter 1: ON PK Fc 100 Hz Gain -3,0 dB Q 2,00",
             "Filter 1: ON PK Fc 100 Hz Q 2.00 Gain -3.0 dB",
             "Filter 1: ON PK Fc 100 Hz Gain -3.0 dB Q 2.00 # by hand",
             "Filter 1: ON Modal Fc 100 Hz Gain -3.0 dB Q 2.00 T60 target 100 ms",
             "\xEF\xBB\xBF"
             "Filter 1: ON PK Fc 100 Hz Gain -3.0 dB Q 2.00\r\n",
             "Filter\xC2\xA0"
             "1: ON PK Fc\xC2\xA0"
             "100 Hz Gain -3.0 dB Q 2.00\r\r\n",
             "Filter 1: ON PK Fc 100\xA0Hz Gain -3.0 dB Q 2.00\r",
         }) {
        const FilterLine line = onlyLine(text);
        EXPECT_EQ(line.kind, FilterLineKind::band) << text;
        EXPECT_EQ(line.column, 0U);
        EXPECT_THAT(line.reason, IsEmpty());
        expectMeaning(text, {FilterShape::peak, 100, -3, 2});
        ASSERT_TRUE(line.device.has_value());
        // 2 * 10^(3/40) = 2.377.
        EXPECT_NEAR(line.device->q, 2.4, 1e-9);
    }
}

TEST(TextLines, ABandwidthInOctavesIsAQ) {
    const double w = 2.0 * std::numbers::pi * 1000.0 / 49500.0;
    const double q = 1.0 / (2.0 * std::sinh(std::numbers::ln2 / 2.0 * 0.5 * w / std::sin(w)));
    expectMeaning("Filter 1: ON PK Fc 1000 Hz Gain 3 dB BW Oct 0.5", {FilterShape::peak, 1000, 3, q});
    EXPECT_FALSE(onlyLine("Filter 1: ON PK Fc 1000 Hz Gain 3 dB BW Oct 0.5").source->q.has_value());
}

TEST(TextLines, AShelfMeansItsCentreOrItsCorner) {
    const double gainDb = 6.0;
    const double amplitude = std::pow(10.0, gainDb / 40.0);
    const auto qOf = [&](double slope) {
        return 1.0 / std::sqrt((amplitude + 1.0 / amplitude) * (1.0 / slope - 1.0) + 2.0);
    };
    const auto centre = [&](double corner, double slope, double sign) {
        return corner * std::pow(10.0, sign * gainDb / (80.0 * slope));
    };
    using enum FilterShape;
    expectMeaning("Filter 1: ON LSC Fc 200 Hz Gain 6 dB Q 0.9", {lowShelf, 200, 6, 0.9});
    expectMeaning("Filter 1: ON HSC Fc 200 Hz Gain 6 dB Q 0.9", {highShelf, 200, 6, 0.9});
    expectMeaning("Filter 1: ON LSQ Fc 200 Hz Gain 6 dB Q 0.9", {lowShelf, 200, 6, 0.9});
    expectMeaning("Filter 1: ON HSQ Fc 200 Hz Gain 6 dB Q 0.9", {highShelf, 200, 6, 0.9});
    expectMeaning("Filter 1: ON LSC 9.6 dB Fc 200 Hz Gain 6 dB", {lowShelf, 200, 6, qOf(0.8)});
    expectMeaning("Filter 1: ON LSC Fc 200 Hz Gain 6 dB", {lowShelf, 200, 6, qOf(0.9)});
    expectMeaning("Filter 1: ON LS Fc 200 Hz Gain 6 dB", {lowShelf, 200, 6, qOf(0.9)});
    expectMeaning("Filter 1: ON HS Fc 200 Hz Gain 6 dB", {highShelf, 200, 6, qOf(0.9)});
    expectMeaning("Filter 1: ON LS 6dB Fc 200 Hz Gain 6 dB", {lowShelf, centre(200, 0.5, 1), 6, qOf(0.5)});
    expectMeaning("Filter 1: ON HS 12dB Fc 200 Hz Gain 6 dB",
                  {highShelf, centre(200, 1, -1), 6, butterworth});
    expectMeaning("Filter 1: ON HS 12 dB Fc 200 Hz Gain 6 dB",
                  {highShelf, centre(200, 1, -1), 6, butterworth});
    expectMeaning("Filter 1: ON LS Fc 200 Hz Gain 6 dB Q 0.7071067811865476",
                  {lowShelf, centre(200, 1, 1), 6, butterworth});
    expectMeaning("Filter 1: ON HS Fc 200 Hz Gain 6 dB Q 0.7071067811865476",
                  {highShelf, centre(200, 1, -1), 6, butterworth});
    EXPECT_EQ(onlyLine("Filter 1: ON LS 12dB Fc 200 Hz Gain 6 dB").source->type, "LS 12dB");
}

TEST(TextLines, APassIsACrossoverThatPlaysWhereTheTextSays) {
    for (const char* text : {"Filter 1: ON LP Fc 990 Hz", "Filter 1: ON LPQ Fc 990 Hz Q 0.707"}) {
        const FilterLine line = onlyLine(text);
        EXPECT_EQ(line.kind, FilterLineKind::crossover);
        EXPECT_EQ(line.device.value().shape, FilterShape::lowPass);
        EXPECT_EQ(line.device->frequencyHz, 882.0);
        EXPECT_EQ(line.device->order, 2);
    }
    EXPECT_EQ(onlyLine("Filter 1: ON HP Fc 99 Hz").device.value().frequencyHz, 88.0);
    const FilterLine steep = onlyLine("Filter 1: ON HPQ Fc 100 Hz Q 1.2");
    EXPECT_EQ(steep.kind, FilterLineKind::unsupported);
    EXPECT_THAT(steep.reason, HasSubstr("Butterworth"));
    EXPECT_FALSE(steep.device.has_value());
}

TEST(TextLines, WhatTheTargetLacksIsUnsupportedWithItsReason) {
    const struct {
        const char* text;
        const char* reason;
    } cases[] = {
        {"Filter 1: ON NO Fc 800 Hz", "notch"},
        {"Filter 1: ON AP Fc 900 Hz Q 0.707", "all-pass"},
        {"Filter 1: ON BP Fc 900 Hz", "band-pass"},
        {"Filter 1: ON IIR Order 2 Coefficients 1 2 3", "coefficients"},
        {"Filter 1: ON WHAT Fc 900 Hz", "\"WHAT\""},
        {"Include: other.txt", "file"},
        {"Device: all", "device"},
        {"Copy: L=R", "mix of channels"},
        {"Delay: 5 ms", "delay"},
        {"Eval: a=1", "calculation"},
        {"GraphicEQ: 25 0; 40 0", "graphic"},
        {"Convolution: room.wav", "convolution"},
    };
    for (const auto& [text, reason] : cases) {
        const FilterLine line = onlyLine(text);
        EXPECT_EQ(line.kind, FilterLineKind::unsupported) << text;
        EXPECT_THAT(line.reason, HasSubstr(reason)) << text;
        EXPECT_FALSE(line.device.has_value()) << text;
    }
}

TEST(TextLines, NoneIsEmptyAndWhatIsOffIsOff) {
    for (const char* text : {"Filter 1: ON  None   ", "Filter 1: OFF None", "filter: on none"}) {
        EXPECT_EQ(onlyLine(text).kind, FilterLineKind::empty) << text;
    }
    const FilterLine off = onlyLine("Filter 1: OFF PK Fc 100 Hz Gain -3.0 dB Q 2.00");
    EXPECT_EQ(off.kind, FilterLineKind::off);
    EXPECT_TRUE(off.device.has_value());
    const FilterLine notch = onlyLine("Filter 1: off NO Fc 100 Hz");
    EXPECT_EQ(notch.kind, FilterLineKind::off);
    EXPECT_FALSE(notch.device.has_value());
    EXPECT_EQ(onlyLine("Filter 1: OFF PK Fc 100 Hz Gain -3.0 dB").kind, FilterLineKind::error);
}

TEST(TextLines, WhatIsMissingOrUnreadableIsAnErrorAtItsColumn) {
    const struct {
        const char* text;
        std::size_t column;
        const char* reason;
    } cases[] = {
        {"Filter 1: ON PK Fc 12k5 Hz Gain 1 dB Q 2", 20, "\"12k5\" is not a number"},
        {"Filter 1: ON PK Fc 100 Hz Gain x dB Q 2", 32, "\"x\" is not a number"},
        {"Filter 1: ON PK Fc 100 Hz Gain 1 dB Q two", 39, "\"two\" is not a number"},
        {"Filter 1: ON PK Fc 100 Hz Gain 1 dB Q -2", 39, "the Q is not above 0"},
        {"Filter 1: ON PK Fc 0 Hz Gain 1 dB Q 2", 20, "the frequency is not above 0"},
        {"Filter 1: ON PK Fc 100 Hz Gain 1 dB", 36, "the Q is missing"},
        {"Filter 1: ON PK Fc 100 Hz Q 1", 30, "the gain is missing"},
        {"Filter 1: ON PK Gain 1 dB Q 1", 30, "the frequency is missing"},
        {"Filter 1: ON LPQ Fc 100 Hz", 27, "the Q is missing"},
        {"Filter 1: ON PK Fc 100 Hz Gain 1 dB Q nan", 39, "\"nan\" is not a number"},
        {"Filter 1: ON PK Fc 1e999 Hz Gain 1 dB Q 1", 20, "\"1e999\" is not a number"},
        {"Filter 1: ON", 13, "the type is missing"},
        {"Preamp: loud dB", 9, "\"lou\" is not a number"},
    };
    for (const auto& [text, column, reason] : cases) {
        const FilterLine line = onlyLine(text);
        EXPECT_EQ(line.kind, FilterLineKind::error) << text;
        EXPECT_EQ(line.column, column) << text << ": " << line.reason;
        if (!std::string(text).starts_with("Preamp")) {
            EXPECT_EQ(line.reason, reason) << text;
        }
        EXPECT_FALSE(line.device.has_value()) << text;
    }
}

TEST(TextLines, OtherLinesSpeakOfNoFilter) {
    const FilterText read = readFilterText(
        "Filter Settings file\n\nRoom EQ V5.18\nDated: Jun 24, 2018\nNotes: Filter 3: was bad\n# Filter 1: "
        "ON PK Fc 1 Hz\n"
        "# Preamp: -9 dB\nEqualiser: Generic\nFilter 1: ON None\n");
    ASSERT_EQ(read.lines.size(), 9U);
    for (std::size_t k = 0; k < 8; ++k) {
        EXPECT_EQ(read.lines[k].kind, FilterLineKind::none) << read.lines[k].text;
    }
    EXPECT_FALSE(read.hasPreamp);
    EXPECT_EQ(read.lines[8].line, 9U);
    EXPECT_EQ(read.trouble, "");
}

TEST(TextLines, FrequenciesBeyondTheRangeAreClampedAndBeyondTheRateRefused) {
    const FilterLine high = onlyLine("Filter 1: ON PK Fc 23000 Hz Gain -2 dB Q 1");
    EXPECT_EQ(high.kind, FilterLineKind::band);
    EXPECT_EQ(high.device.value().frequencyHz, 20000.0);
    EXPECT_THAT(high.clamped, testing::ElementsAre(FilterValue::frequency));
    for (const char* text :
         {"Filter 1: ON PK Fc 24750 Hz Gain -2 dB Q 1", "Filter 1: ON PK Fc 30 kHz Gain -2 dB BW Oct 1",
          "Filter 1: ON LP Fc 30000 Hz"}) {
        EXPECT_EQ(onlyLine(text).kind, FilterLineKind::unsupported) << text;
        EXPECT_THAT(onlyLine(text).reason, HasSubstr("sampling rate")) << text;
    }
    // The Q comes from the text's own gain: 0.9 * 10^(21/40) = 3.015.
    const FilterLine loud = onlyLine("Filter 1: ON PK Fc 1250 Hz Gain 21 dB Q 0.9");
    EXPECT_THAT(loud.clamped, testing::ElementsAre(FilterValue::gain));
    EXPECT_EQ(loud.device.value().gainDb, 18.0);
    EXPECT_NEAR(loud.device->q, 3.0, 1e-9);
}

TEST(TextLines, WithoutAnyFilterAFileIsRefused) {
    for (const std::string& text : {std::string(), std::string("hello\nworld\n"), std::string("\n\n")}) {
        EXPECT_EQ(readFilterText(text).trouble, "There is no filter in it.");
    }
    const FilterText binary = readFilterText(std::string("Filter 1: ON None\nab\0cd", 23));
    EXPECT_THAT(binary.trouble, HasSubstr("no text"));
    EXPECT_EQ(binary.troubleLine, 2U);
    const FilterText list =
        readFilterText("biquad1,\nb0=0.99,\nb1=-1.9,\nb2=0.99,\na1=1.9,\na2=-0.9,\nbiquad2,\n");
    EXPECT_THAT(list.trouble, HasSubstr("coefficients"));
    EXPECT_EQ(list.troubleLine, 1U);
    EXPECT_EQ(list.lines[0].kind, FilterLineKind::unsupported);
    EXPECT_EQ(list.lines[1].kind, FilterLineKind::none);
    EXPECT_EQ(list.lines[6].kind, FilterLineKind::unsupported);
}

}  // namespace
}  // namespace tessavo
