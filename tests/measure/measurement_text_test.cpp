#include "measure/measurement_text.h"

#include <chrono>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace tessavo {
namespace {

using testing::ElementsAre;

using Numbers = std::vector<double>;

/// Reads a text that is a measurement.
MeasurementText readGood(std::string_view text, std::optional<MeasurementColumns> columns = std::nullopt) {
    MeasurementText read = readMeasurement(text, columns);
    EXPECT_EQ(read.trouble, "") << text.substr(0, 200);
    EXPECT_EQ(read.troubleLine, 0U);
    EXPECT_EQ(read.troubleColumn, 0U);
    EXPECT_EQ(read.curve.levelsDb.size(), read.curve.frequenciesHz.size());
    return read;
}

void expectCurve(std::string_view text, const Numbers& frequencies, const Numbers& levels) {
    const MeasurementText read = readGood(text);
    EXPECT_EQ(read.curve.frequenciesHz, frequencies) << text;
    EXPECT_EQ(read.curve.levelsDb, levels) << text;
}

TEST(MeasurementText, CommentsBeginWithAnyOfFiveSignsOrThereAreNone) {
    expectCurve("20 60\n30 61\n", {20, 30}, {60, 61});
    for (const std::string_view sign : {"*", "#", "%", ";", "\""}) {
        const std::string text =
            std::string(sign).append(" 10 50\n  ").append(sign).append("5 5\n20 60\n30 61");
        expectCurve(text, {20, 30}, {60, 61});
    }
}

TEST(MeasurementText, ACommentIsNoDataWhicheverColumnsAreChosen) {
    for (const std::string_view sign : {"*", "#", "%", ";", "\""}) {
        const std::string text = std::string("1\t20\t60\n").append(sign).append("\t25\t99\n2\t30\t61\n");
        const MeasurementText read = readGood(text, MeasurementColumns{2, 3});
        EXPECT_THAT(read.curve.frequenciesHz, ElementsAre(20, 30)) << sign;
        EXPECT_EQ(read.skippedLines, 1U);
    }
}

TEST(MeasurementText, ColumnsArePartedByTabsBlanksCommasAndSemicolons) {
    for (const std::string_view separator :
         {"\t", " ", "   ", ",", ", ", " , ", ";", "; ", " \t ", "\t\t", ",\t", "\xC2\xA0"}) {
        std::string text;
        for (const std::string_view row : {"20.5|60.25", "100|61", "20000.125|-3.5"}) {
            const std::size_t bar = row.find('|');
            text.append(row.substr(0, bar)).append(separator).append(row.substr(bar + 1)).append("\n");
        }
        expectCurve(text, {20.5, 100, 20000.125}, {60.25, 61, -3.5});
        expectCurve(std::string("  ").append(text), {20.5, 100, 20000.125}, {60.25, 61, -3.5});
    }
}

TEST(MeasurementText, ACommaIsADecimalSignWhereNothingElseMakesSense) {
    expectCurve("20,5;60,1\n30,5;61\n", {20.5, 30.5}, {60.1, 61});
    expectCurve("20,5\t60,1\n30\t61,5\n", {20.5, 30}, {60.1, 61.5});
    expectCurve("20,5 60,1\n1000,5 60,2\n", {20.5, 1000.5}, {60.1, 60.2});
    expectCurve("20,5 100,1\n25,5 101,2\n", {20.5, 25.5}, {100.1, 101.2});
    expectCurve("20 100,5\n25 101,5\n", {20, 25}, {100.5, 101.5});
    expectCurve("20,5, 60,1\n30,5, 61,2\n", {20.5, 30.5}, {60.1, 61.2});
    expectCurve("20, 60\n30,5, 61,2\n40,5, 62,5\n", {20, 30.5, 40.5}, {60, 61.2, 62.5});
    expectCurve("20,000\t60\n31,500\t61\n", {20, 31.5}, {60, 61});
    expectCurve("20,60\n30,61\n", {20, 30}, {60, 61});
    expectCurve("20, 60\n30, 61\n", {20, 30}, {60, 61});
    expectCurve("20.5,60.5,1\n30.5,61.5,2\n", {20.5, 30.5}, {60.5, 61.5});
}

TEST(MeasurementText, TheOtherMarkMayPartThousandsOfAFrequency) {
    expectCurve("500\t60\n1,000\t61\n20,000\t62\n", {500, 1000, 20000}, {60, 61, 62});
    expectCurve("500,5;60,5\n1.000,5;61\n", {500.5, 1000.5}, {60.5, 61});
    expectCurve("500 60.5 1\n1,000.5 61.5 1\n", {500, 1000.5}, {60.5, 61.5});
}

TEST(MeasurementText, NumbersAreWrittenInManyWays) {
    expectCurve("20 -.5\n30 .5\n1e3 +3.2\n2E+3 4.\n+5000 -1e-1\n", {20, 30, 1000, 2000, 5000},
                {-0.5, 0.5, 3.2, 4, -0.1});
    expectCurve(
        "20 \xE2\x88\x92"
        "3\n30 4\n",
        {20, 30}, {-3, 4});
}

TEST(MeasurementText, LinesEndInAnyWay) {
    for (const std::string_view end : {"\n", "\r\n", "\r\r\n", "\r"}) {
        std::string text("* Freq(Hz) SPL(dB)");
        for (const std::string_view row : {"", "20 60", "", "x", "30 61", ""}) {
            text.append(end).append(row);
        }
        expectCurve(text, {20, 30}, {60, 61});
        EXPECT_EQ(readGood(text).skippedLines, 1U) << "blank lines are not counted, nor counted twice";
    }
}

TEST(MeasurementText, HeadersMayBeUtf8Latin1OrBroken) {
    for (const std::string_view header :
         {"\xEF\xBB\xBF* M\xC3\xA4rz", "* M\xE4rz 0\xB0", "* \xE4\xB8\x94\xE6\x9C\x88 7",
          "* \xEF\xBF\xBD\xEF\xBF\xBDq: 1.0", "* \xFF\xFE\x80\xC3", "* \xC3", "\xEF\xBB\xBF"}) {
        expectCurve(std::string(header).append("\n20 60\n30 61\n"), {20, 30}, {60, 61});
    }
    expectCurve(
        "\xEF\xBB\xBF"
        "20 60\n30 61\n",
        {20, 30}, {60, 61});
}

TEST(MeasurementText, AFirstRowOf0HzIsLeftOutAndNotCounted) {
    const MeasurementText read = readGood("0 -30\n0.000 -20\n35 -3.00\n40 0\n");
    EXPECT_THAT(read.curve.frequenciesHz, ElementsAre(35, 40));
    EXPECT_EQ(read.skippedLines, 0U);
    EXPECT_EQ(readGood("0 1\nx\n35 -3\n40 0\n").skippedLines, 1U) << "0 Hz is the first row of data";
}

TEST(MeasurementText, FallingFrequenciesAreTurnedAndRepeatedOnesBecomeTheirMean) {
    expectCurve("40 3\n30 2\n20 1\n", {20, 30, 40}, {1, 2, 3});
    expectCurve("30 2\n20 1\n40 3\n20 2\n30 -2\n20 6\n", {20, 30, 40}, {3, 0, 3});
    const MeasurementText read = readGood("freq spl phase\n20 1 170\n20 3 -170\n30 2 -160\n30 2 -150\n");
    EXPECT_THAT(read.curve.levelsDb, ElementsAre(2, 2));
    EXPECT_THAT(read.curve.phasesDegrees, ElementsAre(180, 205)) << "the mean is not that of 170 and -170, 0";
}

TEST(MeasurementText, AnEmptyCellShiftsNoColumn) {
    for (const std::string_view separator : {"\t", ";", ","}) {
        std::string text;
        for (const char mark :
             std::string_view("freq|phase|spl\n20|5|60\n30||61\n40|7|\n50|8|63\n|9|64\n60|10|65\n")) {
            text.append(mark == '|' ? separator : std::string_view(&mark, 1));
        }
        const MeasurementText read = readGood(text);
        EXPECT_THAT(read.curve.frequenciesHz, ElementsAre(20, 30, 50, 60)) << text;
        EXPECT_THAT(read.curve.levelsDb, ElementsAre(60, 61, 63, 65)) << text;
        EXPECT_EQ(read.skippedLines, 2U) << text;
        EXPECT_TRUE(read.curve.hasPhase());
    }
    const MeasurementText read = readGood("20\t60\t1\n30\t\t45\n40\t62\t3\n");
    EXPECT_THAT(read.curve.frequenciesHz, ElementsAre(20, 40));
    EXPECT_EQ(read.skippedLines, 1U);
}

TEST(MeasurementText, OfPairedColumnsTheFirstPairIsReadOrTheChosenOne) {
    const std::string_view text = "20\t60\t25\t70\n30\t61\t35\t71\n40\t62\t\t\n";
    EXPECT_THAT(readGood(text).curve.frequenciesHz, ElementsAre(20, 30, 40));
    EXPECT_FALSE(readGood(text).curve.hasPhase());
    const MeasurementText second = readGood(text, MeasurementColumns{3, 4});
    EXPECT_THAT(second.curve.frequenciesHz, ElementsAre(25, 35));
    EXPECT_THAT(second.curve.levelsDb, ElementsAre(70, 71));
    EXPECT_EQ(second.skippedLines, 1U);
    const MeasurementText turned = readGood(text, MeasurementColumns{2, 1});
    EXPECT_THAT(turned.curve.frequenciesHz, ElementsAre(60, 61, 62));
    EXPECT_THAT(turned.curve.levelsDb, ElementsAre(20, 30, 40));
    EXPECT_THAT(readGood(std::string("Freq\tSPL\tFreq\tSPL\n").append(text)).curve.levelsDb,
                ElementsAre(60, 61, 62));
    EXPECT_THAT(
        readGood(std::string("Freq\tSPL\tFreq\tSPL\n").append(text), MeasurementColumns{3, 4}).curve.levelsDb,
        ElementsAre(70, 71));
}

TEST(MeasurementText, AHeadingMayNameOtherColumns) {
    for (const std::string_view text :
         {"SPL;Freq\n60;20\n61;30\n", "No,Frequency (Hz),Level (dB)\n1,20,60\n2,30,61\n",
          "* Freq(Hz), Phase(degrees), SPL(dB)\n20, 1, 60\n30, 2, 61\n",
          "# Level [dB]  Frequency [Hz]\n60 20\n61 30\n", "dB Hz\n60 20\n61 30\n",
          "\"kHz\",\"dB\"\n0.02,60\n0.03,61\n"}) {
        expectCurve(text, {20, 30}, {60, 61});
    }
    EXPECT_THAT(readGood("* Freq(Hz), Phase(degrees), SPL(dB)\n20, 1, 60\n30, 2, 61\n").curve.phasesDegrees,
                ElementsAre(1, 2));
    EXPECT_THAT(readGood("SPL;Freq\n60;20\n61;30\n", MeasurementColumns{1, 2}).curve.frequenciesHz,
                ElementsAre(60, 61))
        << "what was chosen goes before what is named";
    expectCurve("Frequency,raw,error,target\n20,60,1,2\n30,61,3,4\n", {20, 30}, {60, 61});
    expectCurve("Hz\tOffset \n20\t9.0\n60\t9.5\n", {20, 60}, {9, 9.5});
    expectCurve("Based on a classic curve: 1 2 3\nHz  dB\n20  0.5\n31  0.25\n", {20, 31}, {0.5, 0.25});
}

TEST(MeasurementText, APhaseIsNamedByAHeading) {
    for (const std::string_view heading :
         {"* Freq(Hz) SPL(dB) Phase(degrees)", "Freq[Hz]     dBSPL  Phase[Deg]", "Freq      dB         Phase",
          "frequency,magnitude,phase", "Freq [Hz] dB SPL Phase [Deg]", "# Hz\tdB\tdegrees",
          "\"Frequency\";\"Level\";\"Phase\""}) {
        const MeasurementText read = readGood(std::string(heading).append("\n20 60 1\n30 61 2\n40 62 3\n"));
        EXPECT_THAT(read.curve.phasesDegrees, ElementsAre(1, 2, 3)) << heading;
    }
    for (const std::string_view heading : {"Freq SPL", "Frequency,Left,Right", "Hz dB dB",
                                           "Freq(Hz) SPL(dB) Phase(rad)", "Frequency\tdB\tUnweighted"}) {
        const MeasurementText read =
            readGood(std::string(heading).append("\n20 60 100\n30 61 -100\n40 62 100\n"));
        EXPECT_FALSE(read.curve.hasPhase()) << heading;
    }
}

TEST(MeasurementText, PhasesAreUnwrapped) {
    const MeasurementText read =
        readGood("Freq SPL Phase\n20 60 170\n30 61 -170\n40 62 -10\n50 63 150\n60 64 -50\n");
    EXPECT_THAT(read.curve.phasesDegrees, ElementsAre(170, 190, 350, 510, 670));
}

TEST(MeasurementText, RowsWithoutAPhaseHaveThatOfTheLineBetweenTheirNeighbours) {
    const MeasurementText read =
        readGood("Freq;SPL;Phase\n10;60;170\n20;61;\n40;62;-170\n50;62;x\n60;62;1e9\n70;1;-160\n");
    ASSERT_EQ(read.curve.phasesDegrees.size(), 6U);
    EXPECT_NEAR(read.curve.phasesDegrees[1], 180.0, 1e-9);
    EXPECT_NEAR(read.curve.phasesDegrees.back(), 200.0, 1e-9);
    EXPECT_FALSE(readGood("Freq;SPL;Phase\n10;60;170\n20;61;\n40;62;\n").curve.hasPhase())
        << "most have none";
    EXPECT_FALSE(readGood("Freq;SPL;Phase\n10;60;\n20;61;\n").curve.hasPhase());
}

TEST(MeasurementText, WithoutAHeadingAThirdColumnIsAPhaseWhereItTurns) {
    const std::string_view phase = "# made by hand\n20 60 10\n30 61 -5\n40 62 -22\n";
    EXPECT_THAT(readGood(phase).curve.phasesDegrees, ElementsAre(10, -5, -22));
    for (const std::string_view none : {"20 60 10\n30 61 -5\n40 62 -20\n", "20 80 0\n30 81 0\n40 82 0\n",
                                        "20 60 10 1\n30 61 -5 1\n40 62 -22 1\n", "20 60\n30 61\n"}) {
        EXPECT_FALSE(readGood(none).curve.hasPhase())
            << none << "turns by 30 degrees, not by more, or is no third column";
    }
    EXPECT_FALSE(readGood(phase, MeasurementColumns{1, 2}).curve.hasPhase()) << "columns were chosen";
    EXPECT_THAT(readGood("20 70 170\n30 71 -170\n40 72 -130\n").curve.phasesDegrees,
                ElementsAre(170, 190, 230));
    EXPECT_FALSE(readGood("20 70 179\n30 71 -179\n40 72 -170\n").curve.hasPhase())
        << "it turns by 11 degrees only";
    EXPECT_TRUE(readGood("20 70 -100\n30 71 -900\n40 72 -1740\n50 71 -2600\n").curve.hasPhase())
        << "of many turns";
    EXPECT_TRUE(readGood("20 120 300\n30 20 340\n40 120 20\n50 20 60\n").curve.hasPhase())
        << "no level falls by 320 dB";
    EXPECT_TRUE(readGood("100 0 0\n1000 -3 -45\n10000 -20 -84\n").curve.hasPhase()) << "a low-pass";
}

TEST(MeasurementText, AThirdColumnOfLevelsIsNoPhase) {
    for (const std::string_view levels :
         {"20 60 90\n30 61 50\n40 62 40\n", "20 90 92\n100 60 58\n1000 30 33\n",
          "20 90 30\n100 60 60\n1000 30 90\n", "20 -5 -6\n100 -40 -38\n1000 -80 -77\n",
          "20 10 12\n100 0 -3\n1000 -40 -38\n", "20 60 20\n300 61 300\n4000 62 4000\n",
          "20 60 5000\n30 61 100\n40 62 7000\n50 62 -900\n"}) {
        const MeasurementText read = readGood(levels);
        EXPECT_FALSE(read.curve.hasPhase()) << levels;
        EXPECT_GE(read.curve.levelsDb.size(), 3U);
    }
}

TEST(MeasurementText, CalibrationsOfMicrophonesAreRead) {
    expectCurve(
        "\"Sens Factor =-.8643dB, SERNO: 7047870\"\n\"Auto-generated 90-degree "
        "file\"\n10.054\t-3.9156\n10.179\t-3.7592\n",
        {10.054, 10.179}, {-3.9156, -3.7592});
    expectCurve("Sens Factor =-.8643dB, SERNO: 7047870\n10.054 -3.9156\n10.179 -3.7592\n", {10.054, 10.179},
                {-3.9156, -3.7592});
    expectCurve("*1000Hz\t-37.5\n20\t-.5\n1000\t0\n", {20, 1000}, {-0.5, 0});
    const MeasurementText read =
        readGood("00.0000 -0.07 31.9\n20.0000 -0.07 31.9 \n31.69 0.275 20.2\n22050.0 -4.92 -15.0");
    EXPECT_THAT(read.curve.frequenciesHz, ElementsAre(20, 31.69, 22050));
    EXPECT_THAT(read.curve.phasesDegrees, ElementsAre(31.9, 20.2, -15.0));
}

TEST(MeasurementText, SkippedLinesAreThoseBehindTheFirstRowThatAreNeitherBlankNorData) {
    const MeasurementText read = readGood(
        "Freq dB\nmore words\n-5 60\n20 60\n\n \t \n# note\n30 61\npeak\t0.0Hz\n"
        "saved --/--\n40\n50 1000.5\n60 nan\n70 inf\n-80 1\n1e10 5\n90 -1000\n100 1e400\n1e-9 1");
    EXPECT_THAT(read.curve.frequenciesHz, ElementsAre(20, 30, 90));
    EXPECT_THAT(read.curve.levelsDb, ElementsAre(60, 61, -1000));
    EXPECT_EQ(read.skippedLines, 11U);
}

TEST(MeasurementText, SixtyThousandRowsAreReadAtOnce) {
    std::string text("* Freq(Hz) SPL(dB) Phase(degrees)\r\r\n");
    constexpr int count = 60000;
    for (int row = 1; row <= count; ++row) {
        text.append(std::to_string(row)).append(".125 ").append(std::to_string(40 + row % 60)).append(".5 ");
        text.append(std::to_string(row % 360 - 180)).append(".25\r\r\n");
    }
    const auto begin = std::chrono::steady_clock::now();
    const MeasurementText read = readGood(text);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(3))
        << "it takes 40 ms when nothing else runs";
    ASSERT_EQ(read.curve.frequenciesHz.size(), std::size_t{count});
    EXPECT_EQ(read.curve.frequenciesHz.back(), 60000.125);
    EXPECT_EQ(read.curve.levelsDb[59], 40.5);
    EXPECT_EQ(read.curve.phasesDegrees.size(), std::size_t{count});
    EXPECT_EQ(read.skippedLines, 0U);
}

}  // namespace
}  // namespace tessavo
