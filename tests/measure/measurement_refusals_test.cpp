#include <cmath>
#include <cstddef>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include "base/number_text.h"
#include "measure/measurement_text.h"

namespace tessavo {
namespace {

using testing::HasSubstr;

void expectTrouble(std::string_view text, std::string_view part, std::size_t line = 0, std::size_t column = 0,
                   std::optional<MeasurementColumns> columns = std::nullopt) {
    const MeasurementText read = readMeasurement(text, columns);
    EXPECT_THAT(read.trouble, HasSubstr(std::string(part))) << text.substr(0, 200);
    EXPECT_EQ(read.troubleLine, line) << text.substr(0, 200);
    EXPECT_EQ(read.troubleColumn, column) << text.substr(0, 200);
    EXPECT_TRUE(read.curve.frequenciesHz.empty());
    EXPECT_TRUE(read.curve.levelsDb.empty());
    EXPECT_TRUE(read.curve.phasesDegrees.empty());
}

/// What every reading promises.
void checkPromises(std::string_view text, std::optional<MeasurementColumns> columns = std::nullopt) {
    const MeasurementText read = readMeasurement(text, columns);
    const LevelCurve& curve = read.curve;
    if (!read.trouble.empty()) {
        EXPECT_TRUE(curve.frequenciesHz.empty() && curve.levelsDb.empty() && curve.phasesDegrees.empty());
        return;
    }
    ASSERT_GE(curve.frequenciesHz.size(), 2U);
    ASSERT_EQ(curve.levelsDb.size(), curve.frequenciesHz.size());
    ASSERT_TRUE(curve.phasesDegrees.empty() || curve.phasesDegrees.size() == curve.frequenciesHz.size());
    double before = 0.0;
    for (const double frequencyHz : curve.frequenciesHz) {
        ASSERT_GT(frequencyHz, before);
        before = frequencyHz;
    }
    for (std::size_t index = 0; index < curve.levelsDb.size(); ++index) {
        ASSERT_TRUE(std::abs(curve.levelsDb[index]) <= 1000.0);
        ASSERT_TRUE(curve.phasesDegrees.empty() || std::isfinite(curve.phasesDegrees[index]));
    }
}

/// An impedance of a loudspeaker of 4 ohms with its resonance at 50 Hz, from the formula.
std::string impedanceTable() {
    std::string text;
    for (double frequencyHz = 10.0; frequencyHz < 20000.0; frequencyHz *= 1.2) {
        const double detuning = 3.0 * (frequencyHz / 50.0 - 50.0 / frequencyHz);
        const double inductance = frequencyHz * 0.001;
        const double real = 4.0 + 20.0 / (1.0 + detuning * detuning);
        const double imaginary = inductance - 20.0 * detuning / (1.0 + detuning * detuning);
        text.append(fixedText(frequencyHz, 3)).append("  ").append(fixedText(std::hypot(real, imaginary), 3));
        text.append("  ").append(fixedText(std::atan2(imaginary, real) * 57.29578, 3)).append("\r\n");
    }
    return text;
}

/// A decaying swing, sample by sample.
std::string impulseTable(double step) {
    std::string text;
    for (int sample = 0; sample < 400; ++sample) {
        const double value = sample < 20 ? 0.0001 * std::sin(sample)
                                         : std::exp((20 - sample) / 12.0) * std::cos(0.9 * (sample - 20));
        text.append(fixedText(sample * step, 7)).append(step > 0.0 ? "," : "");
        text.resize(step > 0.0 ? text.size() : text.rfind('\n') + 1);
        text.append(fixedText(value, 6)).append("\n");
    }
    return text;
}

TEST(MeasurementRefusals, Impedances) {
    expectTrouble("* Freq(Hz) Impedance(Ohms) Phase(degrees)\n20 100 5\n30 200 -5\n", "impedance in ohms", 1,
                  12);
    expectTrouble("Freq[Hz]  Ohm  Phase[Deg]\n20 5 5\n30 6 -5\n", "impedance", 1, 11);
    expectTrouble("Freq;Magnitude (Ohm);Phase\n20;5;5\n30;6;-5\n", "impedance", 1, 6);
    expectTrouble("f;Z(f)\n20;5\n30;6\n", "impedance", 1, 3);
    expectTrouble("# Impedance of a tweeter\n20 5\n30 6\n", "impedance", 1, 3);
    expectTrouble(impedanceTable(), "impedance in ohms");
    expectTrouble(impedanceTable(), "impedance in ohms", 0, 0, MeasurementColumns{1, 2});
}

TEST(MeasurementRefusals, ImpulseResponses) {
    expectTrouble("Time (s),Value\n0.1,30\n0.2,40\n", "impulse response over time", 1, 1);
    expectTrouble("* Sample Amplitude\n0 30\n1 40\n", "impulse response", 1, 3);
    expectTrouble("Time\tRight\n0.1\t30\n0.2\t40\n", "impulse response", 1, 1);
    expectTrouble("# Impulse response of the left one\n100 0.5\n110 -0.5\n", "impulse response", 1, 3);
    for (const double step : {1.0 / 48000.0, 1000.0 / 48000.0, 1.0}) {
        expectTrouble(impulseTable(step), "impulse response");
    }
    expectTrouble(impulseTable(0.0), "impulse response");
    expectTrouble("0 .5\n.1 .4\n.2 .3\n.3 .4\n.4 .5\n.5 .4\n.6 .3\n.7 .2\n.8 .1\n", "impulse response");
    expectTrouble("Impulse Response data\n0 // Excitation\n0.5\n0.25\n", "impulse response", 1, 1);
}

TEST(MeasurementRefusals, Coherences) {
    expectTrouble("Freq,Coherence\n20,0.5\n30,0.9\n", "coherence", 1, 6);
    expectTrouble("# Coherence\n20 0.5\n30 0.9\n", "coherence", 1, 3);
    EXPECT_EQ(readMeasurement("Frequency;Magnitude;Phase;Coherence\n20;1;2;0.5\n30;2;3;0.9\n").trouble, "");
    expectTrouble("Frequency;Magnitude;Phase;Coherence\n20;1;2;0.5\n30;2;3;0.9\n", "coherence", 1, 27,
                  MeasurementColumns{1, 4});
}

TEST(MeasurementRefusals, WhatOnlyLooksLikeThemIsRead) {
    std::string microphone;  // of even steps, within +-2 dB
    for (int frequencyHz = 0; frequencyHz <= 20000; frequencyHz += 50) {
        microphone.append(std::to_string(frequencyHz)).append(" ");
        microphone.append(fixedText(0.3 * std::sin(frequencyHz / 900.0) + frequencyHz / 20000.0, 3))
            .append("\n");
    }
    std::string ripple;  // swings about zero without a peak
    for (int frequencyHz = 0; frequencyHz <= 2000; frequencyHz += 10) {
        ripple.append(std::to_string(frequencyHz)).append(frequencyHz % 20 == 0 ? " -0.5\n" : " 0.75\n");
    }
    const std::string commented =
        "* Impulse length = 65536\n* Impulse response window 5 ms, amplifier's output impedance low, "
        "coherence good\n"
        "* Freq(Hz) SPL(dB)\n20 1.5\n30 0.5\n";
    for (const std::string_view text :
         {std::string_view(microphone), std::string_view(ripple), std::string_view(commented),
          std::string_view("# amplifier impedance 0.1 ohm\n20 -5\n30 6\n"),
          std::string_view("# impulse response gated\n20 85\n30 86\n"),
          std::string_view("# Coherence was good\n20 85\n30 0.5\n"),
          std::string_view("20 9\n30 8\n40 7\n50 6\n60 5\n70 4\n80 3\n90 2\n"),
          std::string_view("20 9 8\n30 8 8\n40 7 7\n50 6 7\n60 5 6\n70 4 5\n80 3 2\n90 2 1\n"),
          std::string_view(
              "20 80 40\n30 81 20\n40 82 10\n50 83 0\n60 84 -20\n70 83 -40\n80 85 -50\n90 82 -60\n")}) {
        EXPECT_EQ(readMeasurement(text).trouble, "") << text.substr(0, 100);
    }
}

TEST(MeasurementRefusals, EmptyTextsAndTextsWithoutARowOrWithOne) {
    for (const std::string_view empty : {"", " ", "\n\r\n \t\r", "\xEF\xBB\xBF", "\xEF\xBB\xBF\r\n"}) {
        expectTrouble(empty, "It is empty.");
    }
    for (const std::string_view none : {"words", "* 20 60\n# 30 61\n", "20\n30\n", "nan nan\ninf inf\n",
                                        "-20 60\n-30 61\n", "a,b\nc,d\n"}) {
        expectTrouble(none, "no row of numbers");
    }
    expectTrouble("Freq dB\n20 60\n", "only one frequency", 2);
    expectTrouble("\n20 60\n20 61\nx\n", "only one frequency", 2);
    expectTrouble("0 60\n20 61\n", "only one frequency", 1);
    expectTrouble("0 60\n0 61\n", "no frequency above 0 Hz");
}

TEST(MeasurementRefusals, ChosenColumnsThatAreNotThere) {
    expectTrouble("Freq dB\n20 60\n30 61\n", "There is no column 5; this row has 2.", 2, 0,
                  MeasurementColumns{1, 5});
    expectTrouble("20 60\n30 61\n", "There is no column 3", 1, 0, MeasurementColumns{3, 2});
    expectTrouble("20;60;left\n30;61;left\n", "no number in column 3", 1, 7, MeasurementColumns{1, 3});
    expectTrouble("20 60\n", "counted from 1", 0, 0, MeasurementColumns{0, 2});
    expectTrouble("20 60\n", "counted from 1", 0, 0, MeasurementColumns{1, 0});
    expectTrouble("20 60\n", "two columns", 0, 0, MeasurementColumns{2, 2});
    expectTrouble("20 60\n30 61\n", "There is no column", 1, 0, MeasurementColumns{1, SIZE_MAX});
    expectTrouble("words\n", "no row of numbers", 0, 0, MeasurementColumns{1, 5});
}

TEST(MeasurementRefusals, WhatIsNoTextAndWhatIsTooLarge) {
    using namespace std::string_view_literals;
    expectTrouble("20 60\n\xE4 30 61\0\n40 62\n"sv,
                  "a byte of it is zero. A text in UTF-16 must be saved as UTF-8.", 2, 8);
    expectTrouble(
        "\xFF\xFE"
        "2\0000\0\n\0"sv,
        "UTF-16", 1, 4);
    expectTrouble("\0"sv, "zero", 1, 1);
    std::string large = "20 60\n30 61\n";
    large.resize(mostMeasurementBytes, ' ');
    EXPECT_EQ(readMeasurement(large).trouble, "");
    large.push_back(' ');
    expectTrouble(large, "more than 16 MiB");
}

const std::string_view wholeText =
    "* M\xC3\xA4rz\r\r\n* Freq(Hz), SPL(dB), Phase(degrees)\r\r\n0.0, 50.0, 1\r\r\n20.5, 60.25, "
    "170.0\r\r\n30, -.5, -170\r\r\n"
    "30, 1e1, -165\r\r\n\r\r\n4,000.5; 3\r\r\n40,,5\r\r\npeak\t0.0Hz\r\r\n50.5, 61.5, 160";

TEST(MeasurementRefusals, ACutOrADamagedTextBreaksNoPromise) {
    std::string text(wholeText);
    ASSERT_EQ(readMeasurement(text).trouble, "");
    for (std::size_t length = 0; length <= text.size(); ++length) {
        checkPromises(std::string_view(text).substr(0, length));
        checkPromises(std::string_view(text).substr(length));
    }
    for (char& character : text) {
        const char kept = character;
        for (unsigned value = 0; value < 256; ++value) {
            character = static_cast<char>(value);
            checkPromises(text);
        }
        character = kept;
    }
}

TEST(MeasurementRefusals, RandomTextsBreakNoPromise) {
    std::mt19937 random(20260823);
    constexpr std::string_view pieces[] = {"1",     "20", "9999999999", ".",        ",",     ";",   " ",
                                           "\t",    "\n", "\r",         "-",        "+",     "e5",  "E-300",
                                           "1e308", "0",  "Freq",       "dB",       "Phase", "Ohm", "*",
                                           "\"",    "(",  "]",          "\xC3\xA4", "\xFF",  "'"};
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (std::size_t count = random() % 40; count > 0; --count) {
            text.append(pieces[random() % std::size(pieces)]);
        }
        checkPromises(text);
        checkPromises(text, MeasurementColumns{1 + random() % 4, 1 + random() % 4});
    }
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        for (std::size_t count = random() % 200; count > 0; --count) {
            text.push_back(static_cast<char>(1 + random() % 255));
        }
        checkPromises(text);
    }
}

TEST(MeasurementRefusals, NumbersOfAnySizeBreakNoPromise) {
    for (const std::string_view number :
         {"1e308", "-1e308", "1e-320", "1e309", "999999999999999999999999999999", "1e99999999999999999999",
          "4.9e-324"}) {
        for (const std::string_view row : {"20 60 @\n30 61 @\n", "@ 60\n@ 61\n30 1\n", "20 @\n30 @\n40 1\n",
                                           "Freq dB phase\n20 1 @\n30 2 @\n"}) {
            std::string text(row);
            for (std::size_t at = 0; (at = text.find('@')) != std::string::npos;) {
                text.replace(at, 1, number);
            }
            checkPromises(text);
        }
    }
    checkPromises(std::string(100000, '9').append(" 1\n20 60\n"));
    checkPromises("Freq dB phase\n1e-6 1 1\n1e9 2 2\n1e-5 1 -1e6\n");
}

}  // namespace
}  // namespace tessavo
