#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "filtertext/readers.h"
#include "said_lines.h"

namespace tessavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view usual = "band PK 100 -3 2 = peak 100 -3 2";

TEST(TextLines, AFilterIsReadInEveryHabit) {
    for (const std::string_view line :
         {"Filter 1: ON PK Fc 100 Hz Gain -3.0 dB Q 2.00",
          "Filter: ON PK Fc 100 Hz Gain -3.0 dB Q 2.00",
          "Filter  1: ON  PK       Fc     100 Hz  Gain  -3.0 dB  Q  2.00   ",
          "filter 1: on PK fc 100 hz gain -3.0 db q 2.00",
          "FILTER 12 12: ON PK FC 100 HZ GAIN -3.0 DB Q 2.00",
          "Filter1: ON PK Fc 100Hz Gain -3.0dB Q 2.00",
          "Filter 1 : ON PK Fc 100 Hz Gain -3.0 dB Q 2.00",
          "  Filter 1:ON PK Fc 100 Hz Gain -3.0 dB Q 2.00",
          "Filter 1 ON PK Fc 100 Hz Gain -3.0 dB Q 2.00",
          "Filter #1: ON PK Fc 100 Hz Gain -3.0 dB Q 2.00",
          "Filter bass: ON PK Fc 100 Hz Gain -3.0 dB Q 2.00",
          "\tFilter 1:\tON\tPK\tFc\t100\tHz\tGain\t-3.0\tdB\tQ\t2.00\t",
          "Filter 1: ON PK Fc +100 Hz Gain -3.0 dB Q +2.00",
          "Filter 1: ON PK Fc     100H z  Gain -3.0 d B Q 2.00",
          "Filter 1: ON PK Fc 0.1 kHz Gain -3.0 dB Q 2.00",
          "Filter 1: ON PK Fc 100 Gain -3.0 Q 2.00",
          "Filter 1: ON PK Fc 100, Gain -3.0, Q 2.00",
          "Filter 1: ON PK Fc: 100 Hz Gain=-3.0 dB Q = 2.00",
          "Filter 1: ON PK Fc100 Hz Gain-3.0 dB Q2.00",
          "Filter 1: ON PK Q 2.00 Gain -3.0 dB Fc 100 Hz",
          "Filter 1: ON PK Fc 100 Hz Gain \u22123.0 dB Q 2.00",
          "Filter 1: ON PK Fc 100 Hz Gain \u20133.0 dB Q 2.00",
          "Filter 1: ON PK Fc 100 Hz Gain - 3.0 dB Q 2.00",
          "Filter\u00A01:\u00A0ON\u00A0PK\u00A0Fc\u00A0100\u00A0Hz Gain -3.0\u202F"
          "dB Q 2.00",
          "Filter 1: ON PK Fc 1e2 Hz Gain -3.0 dB Q 2.00"}) {
        EXPECT_EQ(saidOf(line), usual) << line;
    }
}

TEST(TextLines, BlanksOfEveryKindPartThousands) {
    for (const std::string_view frequency : {"1 067", "1\u00A0067", "1\u202F067", "1\u2009067", "1\u2007067",
                                             "1'067", "1\u2019067", "1,067", "1 067.0"}) {
        EXPECT_EQ(saidOf(std::string("Filter: ON PK Fc ").append(frequency).append(" Hz Gain -3.0 dB Q 2")),
                  "band PK 1067 -3 2 = peak 1067 -3 2")
            << frequency;
    }
    EXPECT_EQ(said(readFilterText("Filter: ON PK Fc 1\xA0"
                                  "067 Hz Gain -5,9 dB Q 22,69",
                                  {})
                       .lines.at(0)),
              "band PK 1067 -5.9 22.69 = peak 1067 -5.9 22.69");
}

TEST(TextLines, ProseIsNoFilter) {
    for (const std::string_view line : {"",
                                        "   ",
                                        "Filter Settings file",
                                        "Filter settings: see below",
                                        "Filters: ON PK",
                                        "Notes:Filter 1: ON PK Fc 100 Hz",
                                        "# Filter 1: ON PK Fc 100 Hz Gain -3 dB Q 2",
                                        "  #Filter 1: ON PK",
                                        "Dated: 16.05.2013 21:56:38",
                                        "No measurement",
                                        "Equaliser: Generic",
                                        "Filter on the left side",
                                        "Filter 1 of 3 is for the bass",
                                        "// Filter 1: ON PK",
                                        "Filterbank 1: ON PK",
                                        "Preamplifier: tubes",
                                        "Preamp settings",
                                        "# Preamp: -3 dB",
                                        "Delayed: yes",
                                        "biquad filters for all",
                                        "1 2 3 4 5"}) {
        EXPECT_EQ(saidOf(line), line.empty() ? "not one line" : "none") << line;
    }
}

TEST(TextLines, LinesKeepTheirTextAndTheirNumber) {
    const FilterText text =
        readTextLines("Filter Settings file\r\n\r\nFilter:\tON PK Fc 1\u00A0067 Hz Gain 3 dB Q 2 \r\n", {});
    ASSERT_EQ(text.lines.size(), 3U);
    EXPECT_EQ(text.lines[0].line, 1U);
    EXPECT_EQ(text.lines[0].text, "Filter Settings file");
    EXPECT_EQ(text.lines[1].text, "");
    EXPECT_EQ(text.lines[2].line, 3U);
    EXPECT_EQ(text.lines[2].text, "Filter:\tON PK Fc 1\u00A0067 Hz Gain 3 dB Q 2 ");
    EXPECT_EQ(text.lines[2].kind, FilterLineKind::band);
    EXPECT_FALSE(text.tellsSamplingRate);
    EXPECT_EQ(text.samplingRateHz, textSamplingRateHz);
    EXPECT_EQ(text.trouble, "");
}

TEST(TextLines, ColumnsCountCharactersAndNotBytes) {
    EXPECT_EQ(saidOf("Filter 1:\u00A0ON PK Fc x Hz Gain 3 dB Q 2"),
              "error@20 PK - 3 2: \"x\" is not a number");
    EXPECT_EQ(saidOf("Filter 1: ON PK Fc 1\u00B2 Hz Gain 3 dB Q 2"),
              "error@20 PK - 3 2: \"1\u00B2\" is not a number");
}

double preampOf(std::string_view text) {
    const FilterText read = readTextLines(text, {});
    EXPECT_TRUE(read.hasPreamp) << text;
    return read.preampDb;
}

TEST(TextLines, PreampsAreSummed) {
    for (const std::string_view line :
         {"Preamp: -6.3 dB", "Preamp:\t-6.3 dB", "preamp: -6.3", "PREAMP -6.3 dB", "Preamp:-6.3dB",
          " Preamp : \u22126.3 dB ", "Preamp: -6,3 dB", "Preamp: - 6.3 dB # for safety"}) {
        EXPECT_DOUBLE_EQ(preampOf(line), -6.3) << line;
    }
    EXPECT_DOUBLE_EQ(preampOf("Preamp: +3 dB"), 3.0);
    EXPECT_DOUBLE_EQ(preampOf("Preamp: 0.0 dB"), 0.0);
    EXPECT_DOUBLE_EQ(preampOf("Preamp: -6.5 dB\nPreamp: 2 dB\n# Preamp: -9 dB"), -4.5);
    EXPECT_EQ(saidOf("Preamp: -4,9 dB"), "none: a preamp of -4.9 dB");
    const FilterText none = readTextLines("Filter: ON None", {});
    EXPECT_FALSE(none.hasPreamp);
    EXPECT_EQ(none.preampDb, 0.0);
}

TEST(TextLines, APreampThatCannotBeReadIsAnError) {
    EXPECT_EQ(saidOf("Preamp:"), "error@8: the gain is missing");
    EXPECT_EQ(saidOf("Preamp: dB"), "error@9: the gain is missing");
    EXPECT_EQ(saidOf("Preamp: low dB"), "error@9: \"low\" is not a number");
    EXPECT_EQ(saidOf("Preamp: 1e999 dB"), "error@9: \"1e999\" is not a number");
    EXPECT_EQ(saidOf("Preamp: 1e300 dB"), "error@9: \"1e300\" is out of every range");
    EXPECT_EQ(saidOf("Preamp: -3 dB 4"), "error@15: \"4\" is not understood");
    EXPECT_FALSE(readTextLines("Preamp: low dB", {}).hasPreamp);
}

TEST(TextLines, CommandsAreReportedWithTheReason) {
    struct Case {
        std::string_view line;
        std::string_view reason;
    };
    for (const Case& one :
         {Case{"Include: other.txt", "another file, which is not read"},
          {"Device: Speakers", "a device of the computer; the target is none"},
          {"Copy: L2=L R2=R", "a mix of channels; only filters are read"},
          {"delay: 500 ms", "a delay; only filters are read"},
          {"Channel: L", "the channel of the lines below"},
          {"EVAL: x=1", "a calculation, which is not done"},
          {"If: x==1", "a condition, which is not looked at; the lines below are read all the same"},
          {"EndIf:", "a condition, which is not looked at; the lines below are read all the same"},
          {"Stage: capture", "a stage of the computer's sound; the target has none"},
          {"GraphicEQ: 20 -1; 30 -2", "a graphic equalizer; the target's is parametric"},
          {"Convolution: room.wav", "a convolution; the target has none"},
          {" VSTPlugin : x", "a plug-in; the target has none"},
          {"LoudnessCorrection: x", "a loudness correction; the target has none"}}) {
        EXPECT_EQ(saidOf(one.line), std::string("unsupported: ").append(one.reason)) << one.line;
    }
    EXPECT_EQ(saidOf("Channel:  "), "error@9: the channel is missing");
}

constexpr std::string_view twoChannels =
    "Preamp: -1 dB\nChannel: L\nPreamp: -2 dB\nFilter: ON PK Fc 100 Hz Gain 1 dB Q 1\nChannel: R\nPreamp: -4 "
    "dB\n"
    "Filter: ON PK Fc 200 Hz Gain 1 dB Q 1\nFilter: ON None\nFilter: OFF PK Fc x\nGraphicEQ: 1 2\n"
    "Channel: all\nFilter: ON PK Fc 300 Hz Gain 1 dB Q 1";

TEST(TextLines, TheFirstChannelIsReadAndTheOthersAreNamed) {
    const FilterText text = readTextLines(twoChannels, {});
    EXPECT_THAT(text.channels, ElementsAre("L", "R"));
    EXPECT_EQ(text.channel, "L");
    EXPECT_EQ(text.preampDb, -3.0);
    EXPECT_THAT(said(text),
                ElementsAre("unsupported: the channel of the lines below", "band PK 100 1 1 = peak 100 1 1",
                            "unsupported: the channel of the lines below", "unsupported: for channel R",
                            "unsupported PK 200 1 1: for channel R", "unsupported None - - -: for channel R",
                            "unsupported PK - - -: for channel R", "unsupported: for channel R",
                            "unsupported: the channel of the lines below", "band PK 300 1 1 = peak 300 1 1"));
}

TEST(TextLines, AnotherChannelIsReadByItsName) {
    for (const std::string_view name : {"R", "r"}) {
        const FilterText text = readTextLines(twoChannels, name);
        EXPECT_EQ(text.channel, "R");
        EXPECT_EQ(text.preampDb, -5.0);
        EXPECT_EQ(said(text.lines.at(3)), "unsupported PK 100 1 1: for channel L");
        EXPECT_EQ(said(text.lines.at(6)), "band PK 200 1 1 = peak 200 1 1");
        EXPECT_EQ(said(text.lines.at(8)), "error@19 PK - - -: \"x\" is not a number");
        EXPECT_EQ(said(text.lines.at(11)), "band PK 300 1 1 = peak 300 1 1");
        EXPECT_EQ(text.trouble, "");
    }
}

TEST(TextLines, LinesMayBeForSeveralChannels) {
    const FilterText text = readTextLines(
        "Channel: L2 R2\nFilter: ON None\nchannel: SUB, C  l2\nFilter: ON None\nChannel: C R2\nFilter: ON "
        "None",
        {});
    EXPECT_THAT(text.channels, ElementsAre("L2", "R2", "SUB", "C"));
    EXPECT_EQ(text.channel, "L2");
    EXPECT_EQ(said(text.lines.at(1)), "empty None - - -");
    EXPECT_EQ(said(text.lines.at(3)), "empty None - - -");
    EXPECT_EQ(said(text.lines.at(5)), "unsupported None - - -: for channels C and R2");
}

TEST(TextLines, AnUnknownChannelIsTrouble) {
    EXPECT_EQ(readTextLines(twoChannels, "SUB").trouble,
              "There is no channel \"SUB\" in it; there are L and R.");
    EXPECT_EQ(readTextLines(twoChannels, "SUB").channel, "");
    EXPECT_EQ(readTextLines("Channel: L\nFilter: ON None", "R").trouble,
              "There is no channel \"R\" in it; there is L.");
    EXPECT_EQ(readTextLines("Filter: ON None", "R").trouble,
              "There is no channel \"R\" in it; it names none.");
    EXPECT_EQ(readTextLines("Channel: all\nFilter: ON None", {}).trouble, "");
    EXPECT_THAT(readTextLines("Channel: all\nFilter: ON None", {}).channels, IsEmpty());
}

TEST(TextLines, BiquadsAreRefusedWithTheirPlace) {
    constexpr std::string_view reason =
        "unsupported: coefficients of a biquad; which filter they are is not told";
    for (const std::string_view list :
         {"# of a room\nbiquad1,\nb0=0.99,\nb1=-1.9,\nb2=0.9,\na1=1.9,\na2=-0.9,\nbiquad2,\nb0=1.0,\nb1=0.0",
          "\nb0 = 0.99\nb1 = -1.9\nb0 = 1.0\nb1 = 0.0",
          "b0 b1 b2 a1 a2\n0.99 -1.9 0.9 1.9 -0.9\n1.0, 0.0, 0.0, 0.0, 0.0,",
          "x\n{0.99f, -1.9f, 0.9f, 1.0f, 1.9f, -0.9f},\n{1.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f}"}) {
        const FilterText text = readTextLines(list, {});
        EXPECT_THAT(said(text), ElementsAre(reason, reason)) << list;
        EXPECT_EQ(text.trouble,
                  "It is a list of biquad coefficients, which do not tell which filters they are. Export the "
                  "filters with their "
                  "frequencies, gains and Q instead.");
        EXPECT_EQ(text.troubleLine, 2U) << list;
        EXPECT_EQ(text.troubleColumn, 1U);
    }
    const FilterText mixed = readTextLines("biquad1,\nb0=1.0\nFilter: ON PK Fc 100 Hz Gain 1 dB Q 1", {});
    EXPECT_EQ(mixed.trouble, "");
    EXPECT_EQ(said(mixed.lines.at(2)), "band PK 100 1 1 = peak 100 1 1");
}

TEST(TextLines, ATextWithoutAFilterIsTrouble) {
    for (const std::string_view text :
         {"", "\n\n", "Filter Settings file\n\nNotes: none", "20 0.5\n30 1.5\n"}) {
        EXPECT_EQ(readTextLines(text, {}).trouble, "There is no filter in it.") << text;
    }
    // A preamp alone is something that a channel can take.
    EXPECT_EQ(readTextLines("Preamp: -3 dB", {}).trouble, "");
    EXPECT_EQ(readTextLines("GraphicEQ: 20 1", {}).trouble, "");
    EXPECT_EQ(readTextLines("Filter 1: ON None", {}).trouble, "");
}

TEST(TextLines, ZeroBytesAreTroubleWithTheirPlace) {
    const FilterText text = readTextLines(std::string_view("Filter: ON None\n\u00E4b\0c", 21), {});
    EXPECT_EQ(text.trouble, "It is no text: a byte of it is zero. A text in UTF-16 must be saved as UTF-8.");
    EXPECT_EQ(text.troubleLine, 2U);
    EXPECT_EQ(text.troubleColumn, 3U);
    EXPECT_THAT(text.lines, IsEmpty());
}

}  // namespace
}  // namespace tessavo
