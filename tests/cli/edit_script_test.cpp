#include "cli/edit_script.h"

#include <algorithm>
#include <cctype>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>

#include "cli/every_word.h"
#include "params/set_text.h"
#include "support/boxes.h"

namespace tessavo::test {

using namespace cli;

namespace {

using testing::HasSubstr;

ScriptError errorOf(std::string_view text) {
    const auto parsed = parseScript(text);
    if (const auto* error = std::get_if<ScriptError>(&parsed)) {
        return *error;
    }
    return {0, ""};
}

Script scriptOf(std::string_view text) {
    auto parsed = parseScript(text);
    if (const auto* error = std::get_if<ScriptError>(&parsed)) {
        ADD_FAILURE() << error->message;
        return {};
    }
    return std::get<Script>(parsed);
}

/// The line that a text consists of, if it is one of that word.
ScriptLine lineOf(std::string_view word, std::string_view arguments) {
    const std::string text = std::string(word) + " " + std::string(arguments);
    const Script script = scriptOf(text);
    if (script.size() != 1 || script[0].word->name() != word) {
        ADD_FAILURE() << text << " is not one line of that word";
        return {};
    }
    return script[0];
}

/// A line that writes one field.
struct Written {
    FieldId field = FieldId::count;
    double stored = 0;
    FieldIndex index = {};
};

Written writtenBy(std::string_view word, std::string_view arguments) {
    const ScriptLine line = lineOf(word, arguments);
    if (line.values.size() != 1) {
        ADD_FAILURE() << word << " " << arguments << " does not write one field";
        return {};
    }
    return {line.values[0].field, line.values[0].stored, line.index};
}

double storedBy(std::string_view word, std::string_view arguments, FieldId field) {
    const Written written = writtenBy(word, arguments);
    EXPECT_EQ(written.field, field) << word << " " << arguments;
    return written.stored;
}

TEST(EditScript, EachWordWithoutArgumentsTellsHowItIsWritten) {
    ASSERT_GE(scriptWords().size(), 19U);
    for (const ScriptWord& word : scriptWords()) {
        EXPECT_THAT(errorOf(word.name()).message, HasSubstr("write: " + word.usage));
    }
}

TEST(EditScript, EveryWordOfACodeIsTakenAndStandsInTheUsage) {
    std::size_t codes = 0;
    for (const ScriptWord& word : scriptWords()) {
        for (const WordField& each : word.fields) {
            for (const FieldCode& code : fieldOf(each.field).codes) {
                if (!code.script.empty()) {
                    ++codes;
                    std::string alternatives = word.usage + " ";
                    std::ranges::replace(alternatives, '|', ' ');
                    EXPECT_THAT(alternatives, HasSubstr(" " + std::string(code.script) + " "));
                }
            }
        }
    }
    EXPECT_EQ(codes, 7U);
    for (const FieldCode& code : fieldOf(FieldId::bandType).codes) {
        EXPECT_EQ(storedBy("setBandType", "4 " + std::string(code.script), FieldId::bandType), code.code);
    }
    for (const FieldCode& kind : fieldOf(FieldId::crossoverKind).codes) {
        for (const FieldCode& order : fieldOf(FieldId::crossoverOrder).codes) {
            const ScriptLine line = lineOf(
                "setCrossover", "0 " + std::string(kind.script) + " " + std::string(order.script) + " 1");
            ASSERT_EQ(line.values.size(), 3U);
            EXPECT_EQ(line.values[0].stored, kind.code);
            EXPECT_EQ(line.values[1].stored, order.code);
        }
    }
}

TEST(EditScript, EveryFieldOfAWordMayBeEditedAtEachOfItsElements) {
    RecordingBoxes boxes;
    TuningState tuning{boxes};
    tuning.start();
    for (const ScriptWord& word : scriptWords()) {
        for (const WordField& each : word.fields) {
            const Field& field = fieldOf(each.field);
            forEachElement(field, [&](FieldIndex index) {
                EXPECT_TRUE(tuning.edit(each.field, index, storedDefault(field, index), true)) << word.usage;
            });
        }
    }
}

// --- every word, well written
// -----------------------------------------------------------------------------------

TEST(EditScript, SetCountsFromOne) {
    EXPECT_EQ(lineOf("set", "1").state, 0U);
    EXPECT_EQ(lineOf("set", "5").state, 4U);
}

TEST(EditScript, ModeTakesTheThreeMethods) {
    EXPECT_EQ(lineOf("mode", "BZT").state, 0U);
    EXPECT_EQ(lineOf("mode", "MZT").state, 1U);
    EXPECT_EQ(lineOf("mode", "BZT/MZT").state, 2U);
}

TEST(EditScript, SelectTakesPagePositionsFromOne) {
    EXPECT_EQ(lineOf("select", "1").state, 0x80U);
    EXPECT_EQ(lineOf("select", "8 1 3").state, 0xA1U);
    EXPECT_EQ(lineOf("select", "2 2").state, 0x40U);
    EXPECT_EQ(lineOf("select", "none").state, 0U);
    EXPECT_EQ(lineOf("select", "all").state, 0xFFU);
}

TEST(EditScript, ChannelValuesReachBothEndsOfTheirRange) {
    EXPECT_EQ(storedBy("setVolume", "-6", FieldId::volume), -6.0F);
    EXPECT_EQ(storedBy("setVolume", "18.0", FieldId::volume), 18.0F);
    EXPECT_EQ(storedBy("setVolume", "0.05", FieldId::volume), 0.05F);
    EXPECT_EQ(storedBy("setDelay", "0", FieldId::delay), 0.0F);
    EXPECT_EQ(storedBy("setDelay", "2", FieldId::delay), 2.0F);
    EXPECT_EQ(storedBy("setInvertPhase", "1", FieldId::invertPhase), 1);
    EXPECT_EQ(storedBy("setInvertPhase", "0", FieldId::invertPhase), 0);
}

TEST(EditScript, GroupValuesTakeTheRecordChannelAsItIs) {
    const Written gain = writtenBy("setGroupGain", "7 -1.5");
    EXPECT_EQ(gain.field, FieldId::groupGain);
    EXPECT_EQ(gain.index.outer, 7U);
    EXPECT_EQ(gain.stored, -1.5F);
    const Written delay = writtenBy("setGroupDelay", "0 0.5");
    EXPECT_EQ(delay.field, FieldId::groupDelay);
    EXPECT_EQ(delay.index.outer, 0U);
    EXPECT_EQ(delay.stored, 0.5F);
}

TEST(EditScript, BandWords) {
    const Written frequency = writtenBy("setBandFrequency", "7 20000");
    EXPECT_EQ(frequency.field, FieldId::bandFrequency);
    EXPECT_EQ(frequency.index.inner, 7U);
    EXPECT_EQ(frequency.stored, 20000);
    EXPECT_EQ(storedBy("setBandType", "0 high-shelf", FieldId::bandType), 0);
    EXPECT_EQ(storedBy("setBandType", "0 low-shelf", FieldId::bandType), 1);
    EXPECT_EQ(storedBy("setBandType", "0 peak", FieldId::bandType), 2);
    EXPECT_EQ(storedBy("setBandGainOrQ", "3 gain -18", FieldId::bandGain), -18.0F);
    EXPECT_EQ(storedBy("setBandGainOrQ", "3 q 0.1", FieldId::bandQ), 0.1F);
    EXPECT_EQ(writtenBy("setBandGainOrQ", "3 q 0.1").index.inner, 3U);
    EXPECT_EQ(storedBy("setBandOff", "2 1", FieldId::bandOff), 1);
}

TEST(EditScript, CrossoverWords) {
    const ScriptLine crossover = lineOf("setCrossover", "1 lp 4 1");
    EXPECT_EQ(crossover.index.inner, 1U);
    ASSERT_EQ(crossover.values.size(), 3U);
    EXPECT_EQ(crossover.values[0].field, FieldId::crossoverKind);
    EXPECT_EQ(crossover.values[0].stored, 1);
    EXPECT_EQ(crossover.values[1].field, FieldId::crossoverOrder);
    EXPECT_EQ(crossover.values[1].stored, 4);
    EXPECT_EQ(crossover.values[2].field, FieldId::crossoverEnabled);
    EXPECT_EQ(crossover.values[2].stored, 1);
    EXPECT_EQ(lineOf("setCrossover", "0 hp 2 0").values[0].stored, 0);
    EXPECT_EQ(storedBy("setCrossoverFrequency", "0 80", FieldId::crossoverFrequency), 80);
}

TEST(EditScript, InputWords) {
    const Written treble = writtenBy("setInputBandGain", "12 -20");
    EXPECT_EQ(treble.field, FieldId::toneGain);
    EXPECT_EQ(treble.index.outer, 2U);
    EXPECT_EQ(treble.stored, -20.0F);
    EXPECT_EQ(storedBy("setInputEqOn", "1", FieldId::inputEqOn), 1);
    EXPECT_EQ(storedBy("setInputEqOn", "0", FieldId::inputEqOn), 0);
}

TEST(EditScript, InputBandsCountThroughTheGraphicAndThenTheToneBands) {
    for (std::size_t number = 0; number < inputSectionCount; ++number) {
        const Written written = writtenBy("setInputBandGain", std::to_string(number) + " 1");
        const bool isTone = number >= inputBandCount;
        EXPECT_EQ(written.field, isTone ? FieldId::toneGain : FieldId::inputBandGain) << number;
        EXPECT_EQ(written.index.outer, isTone ? number - inputBandCount : number) << number;
    }
}

TEST(EditScript, LimiterLevelsAreDecibelsAndStoredAsTenths) {
    EXPECT_EQ(storedBy("setLimiter", "gain -6.1", FieldId::limiterGain), -61);
    EXPECT_EQ(storedBy("setLimiter", "activate -40", FieldId::limiterActivateLevel), -400);
    EXPECT_EQ(storedBy("setLimiter", "deactivate 0", FieldId::limiterDeactivateLevel), 0);
    EXPECT_EQ(storedBy("setLimiter", "attack 200", FieldId::limiterAttack), 200);
    EXPECT_EQ(storedBy("setLimiter", "release 0", FieldId::limiterRelease), 0);
    EXPECT_EQ(storedBy("setLimiter", "enabled 1", FieldId::limiterEnabled), 1);
    EXPECT_EQ(storedBy("setLimiter", "enabled 0", FieldId::limiterEnabled), 0);
}

TEST(EditScript, RouterSource) {
    const Written source = writtenBy("setRouterSource", "5 13");
    EXPECT_EQ(source.field, FieldId::routerSource);
    EXPECT_EQ(source.index.outer, 5U);
    EXPECT_EQ(source.stored, 13);
}

TEST(EditScript, NameIsTheRestOfTheLine) {
    EXPECT_EQ(lineOf("setName", " Front # 1  mid \t").name, u"Front # 1  mid");
    EXPECT_EQ(lineOf("setName",
                     "Stra\xC3\x9F"
                     "e \xF0\x9F\x9A\x97")
                  .name,
              u"Straße \U0001F697");
    EXPECT_EQ(lineOf("setName", "#1").name, u"#1");
}

// --- every word, badly written
// ----------------------------------------------------------------------------------

struct BadLine {
    const char* line;
    const char* message;
};

// Letters and digits only: the text becomes part of a test's name.
void PrintTo(const BadLine& bad, std::ostream* out) {
    for (const char character : std::string_view(bad.line)) {
        *out << (std::isalnum(static_cast<unsigned char>(character)) != 0 ? character : '_');
    }
}

class EditScriptBadLine : public testing::TestWithParam<BadLine> {};

TEST_P(EditScriptBadLine, IsRefusedWithItsLineAndReason) {
    const ScriptError error = errorOf("# first\n\nset 2\n" + std::string(GetParam().line) + "\nset 3\n");
    EXPECT_EQ(error.line, 4U);
    EXPECT_THAT(error.message, HasSubstr(GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(
    Missing, EditScriptBadLine,
    testing::Values(BadLine{"set", "missing, write: set N"},
                    BadLine{"mode", "missing, write: mode BZT|MZT|BZT/MZT"},
                    BadLine{"select", "missing, write: select CHANNEL...|none|all"},
                    BadLine{"setVolume", "missing, write: setVolume DB"}, BadLine{"setDelay # 1", "missing"},
                    BadLine{"setGroupGain 1", "missing, write: setGroupGain CHANNEL DB"},
                    BadLine{"setGroupDelay 1", "missing"}, BadLine{"setInvertPhase", "missing"},
                    BadLine{"setBandFrequency 1", "missing"}, BadLine{"setBandType 1", "missing"},
                    BadLine{"setBandGainOrQ 1 gain", "missing"}, BadLine{"setBandGainOrQ 1", "missing"},
                    BadLine{"setBandOff 1", "missing"}, BadLine{"setCrossover 0 hp 2", "missing"},
                    BadLine{"setCrossoverFrequency 0", "missing"}, BadLine{"setInputBandGain 0", "missing"},
                    BadLine{"setInputEqOn", "missing"}, BadLine{"setLimiter gain", "missing"},
                    BadLine{"setLimiter", "missing"}, BadLine{"setRouterSource 0", "missing"},
                    BadLine{"setName", "missing"}, BadLine{"setName  \t ", "missing"}));

INSTANTIATE_TEST_SUITE_P(
    TooMuch, EditScriptBadLine,
    testing::Values(
        BadLine{"set 1 2", "\"2\" is too much"}, BadLine{"mode BZT MZT", "too much"},
        BadLine{"select all 1", "too much"}, BadLine{"select none none", "too much"},
        BadLine{"setVolume 1 2", "too much"}, BadLine{"setDelay 1 ms", "too much"},
        BadLine{"setGroupGain 1 2 3", "too much"}, BadLine{"setGroupDelay 1 1 1", "too much"},
        BadLine{"setInvertPhase 1 1", "too much"}, BadLine{"setBandFrequency 1 20 Hz", "too much"},
        BadLine{"setBandType 1 peak 2", "too much"}, BadLine{"setBandGainOrQ 1 q 1 1", "too much"},
        BadLine{"setBandOff 1 1 1", "too much"}, BadLine{"setCrossover 0 hp 2 1 80", "too much"},
        BadLine{"setCrossoverFrequency 0 80 Hz", "too much"}, BadLine{"setInputBandGain 0 1 dB", "too much"},
        BadLine{"setInputEqOn 1 1", "too much"}, BadLine{"setLimiter gain -1 dB", "too much"},
        BadLine{"setRouterSource 0 1 2", "too much"}));

INSTANTIATE_TEST_SUITE_P(
    BelowAndAbove, EditScriptBadLine,
    testing::Values(
        BadLine{"set 0", "from 1 to 5"}, BadLine{"set 6", "from 1 to 5"}, BadLine{"select 0", "from 1 to 8"},
        BadLine{"select 1 9", "from 1 to 8"}, BadLine{"setVolume -6.01", "-6 to 18 dB"},
        BadLine{"setVolume 18.01", "-6 to 18 dB"}, BadLine{"setDelay -0.1", "0 to 2 ms"},
        BadLine{"setDelay 2.1", "0 to 2 ms"}, BadLine{"setGroupGain 8 0", "from 0 to 7"},
        BadLine{"setGroupGain -1 0", "from 0 to 7"}, BadLine{"setGroupGain 0 -7", "-6 to 18 dB"},
        BadLine{"setGroupGain 0 19", "-6 to 18 dB"}, BadLine{"setGroupDelay 8 0", "from 0 to 7"},
        BadLine{"setGroupDelay 0 -1", "0 to 2 ms"}, BadLine{"setGroupDelay 0 2.5", "0 to 2 ms"},
        BadLine{"setInvertPhase 2", "0 to 1"}, BadLine{"setInvertPhase -1", "0 to 1"},
        BadLine{"setBandFrequency 8 100", "from 0 to 7"}, BadLine{"setBandFrequency 0 19", "20 to 20000 Hz"},
        BadLine{"setBandFrequency 0 20001", "20 to 20000 Hz"}, BadLine{"setBandType 8 peak", "from 0 to 7"},
        BadLine{"setBandGainOrQ 8 q 1", "from 0 to 7"},
        BadLine{"setBandGainOrQ 0 gain -18.1", "-18 to 18 dB"},
        BadLine{"setBandGainOrQ 0 gain 18.1", "-18 to 18 dB"},
        BadLine{"setBandGainOrQ 0 q 0.09", "0.1 to 20"}, BadLine{"setBandGainOrQ 0 q 20.1", "0.1 to 20"},
        BadLine{"setBandOff 8 1", "from 0 to 7"}, BadLine{"setBandOff 0 2", "0 to 1"},
        BadLine{"setCrossover 2 hp 2 1", "from 0 to 1"}, BadLine{"setCrossover 0 hp 3 1", "expected 2 or 4"},
        BadLine{"setCrossover 0 hp 2 2", "0 to 1"}, BadLine{"setCrossoverFrequency 2 100", "from 0 to 1"},
        BadLine{"setCrossoverFrequency 0 19", "20 to 20000 Hz"},
        BadLine{"setCrossoverFrequency 0 20001", "20 to 20000 Hz"},
        BadLine{"setInputBandGain 13 0", "from 0 to 12"}, BadLine{"setInputBandGain 0 -20.1", "-20 to 20 dB"},
        BadLine{"setInputBandGain 12 20.1", "-20 to 20 dB"}, BadLine{"setInputEqOn 2", "0 to 1"},
        BadLine{"setLimiter gain -20.1", "-20 to 0 dB"}, BadLine{"setLimiter gain 0.1", "-20 to 0 dB"},
        BadLine{"setLimiter activate -40.1", "-40 to 0 dB"},
        BadLine{"setLimiter deactivate 1", "-40 to 0 dB"}, BadLine{"setLimiter attack -1", "0 to 200 ms"},
        BadLine{"setLimiter attack 201", "0 to 200 ms"}, BadLine{"setLimiter release 201", "0 to 200 ms"},
        BadLine{"setLimiter enabled 2", "0 to 1"}, BadLine{"setRouterSource 8 0", "from 0 to 7"},
        BadLine{"setRouterSource 0 14", "0 to 13"}, BadLine{"setRouterSource 0 -1", "0 to 13"},
        BadLine{"setName 12345678901234567890123456789012", "32 UTF-16 units, expected 1 to 31"}));

INSTANTIATE_TEST_SUITE_P(
    Junk, EditScriptBadLine,
    testing::Values(
        BadLine{"volume 1", "\"volume\" is not a word"}, BadLine{"SETVOLUME 1", "not a word"},
        BadLine{"setVolume nan", "is not a number"}, BadLine{"setVolume -nan", "is not a number"},
        BadLine{"setVolume inf", "is not a number"}, BadLine{"setVolume -inf", "is not a number"},
        BadLine{"setVolume 0x10", "is not a number"}, BadLine{"setVolume 1,5", "is not a number"},
        BadLine{"setVolume 1dB", "is not a number"}, BadLine{"setVolume +1", "is not a number"},
        BadLine{"setVolume 1e999", "is not a number"}, BadLine{"setVolume --1", "is not a number"},
        BadLine{"setVolume .", "is not a number"}, BadLine{"set 1.0", "from 1 to 5"},
        BadLine{"set +1", "from 1 to 5"}, BadLine{"set one", "from 1 to 5"},
        BadLine{"set 18446744073709551617", "from 1 to 5"}, BadLine{"set 0x1", "from 1 to 5"},
        BadLine{"select 1 x", "from 1 to 8"}, BadLine{"select 1 all", "from 1 to 8"},
        BadLine{"mode bzt", "expected BZT, MZT or BZT/MZT"},
        BadLine{"setBandFrequency 0 100.5", "whole number"},
        BadLine{"setBandType 0 notch", "expected high-shelf, low-shelf or peak"},
        BadLine{"setBandGainOrQ 0 Q 1", "expected gain or q"},
        BadLine{"setCrossover 0 bp 2 1", "expected hp or lp"}, BadLine{"setInvertPhase yes", "not a number"},
        BadLine{"setInvertPhase 0.5", "whole number"},
        BadLine{"setLimiter knee 1", "expected gain, activate"},
        BadLine{"setLimiter gain -6.05", "more than one decimal"},
        BadLine{"setLimiter attack 1.5", "whole number"}, BadLine{"setName a\x1B[31m", "control character"},
        BadLine{"setName a\tb", "control character"}, BadLine{"setName \xFF", "not valid UTF-8"},
        BadLine{"setName \xED\xA0\x80", "not valid UTF-8"}, BadLine{"setName \xC0\x80", "not valid UTF-8"},
        BadLine{"setName \xE2\x82", "not valid UTF-8"}, BadLine{"\xFF\xFE", "\\xFF\\xFE"},
        BadLine{"set\r1", "is not a word"}));

// --- lines
// -------------------------------------------------------------------------------------------------------

TEST(EditScript, AcceptsCommentsBlankLinesAndBothLineEnds) {
    const Script script =
        scriptOf("\xEF\xBB\xBF# top\r\n\r\n  \t\r\n set\t2  # why\r\nselect 1 #2\nsetVolume 1");
    ASSERT_EQ(script.size(), 3U);
    EXPECT_EQ(script[0].number, 4U);
    EXPECT_EQ(script[2].number, 6U);
    EXPECT_EQ(script[1].state, 0x80U);
}

TEST(EditScript, AnEmptyTextIsAnEmptyScript) {
    EXPECT_TRUE(scriptOf("").empty());
    EXPECT_TRUE(scriptOf("\n\n").empty());
    EXPECT_TRUE(scriptOf("\r\n# only this").empty());
}

TEST(EditScript, ALineMayBeAsLongAsTheLimitAndNoLonger) {
    const std::string longest = "# " + std::string(longestScriptLine - 2, 'x');
    EXPECT_TRUE(scriptOf(longest).empty());
    EXPECT_TRUE(scriptOf(longest + "\r\n").empty());
    const ScriptError error = errorOf("set 1\n" + longest + "x\n");
    EXPECT_EQ(error.line, 2U);
    EXPECT_THAT(error.message, HasSubstr("longer than 1000 bytes"));
}

TEST(EditScript, AZeroByteIsRefusedAlsoInAComment) {
    const ScriptError error = errorOf(std::string_view("set 1\n# a\0b\n", 12));
    EXPECT_EQ(error.line, 2U);
    EXPECT_THAT(error.message, HasSubstr("zero byte"));
}

TEST(EditScript, LongJunkIsCutInTheMessage) {
    const ScriptError error = errorOf(std::string(900, 'q'));
    EXPECT_EQ(error.line, 1U);
    EXPECT_LT(error.message.size(), 100U);
    EXPECT_THAT(error.message, HasSubstr("...\""));
}

TEST(EditScript, TheFirstErrorIsTheOneReported) {
    EXPECT_EQ(errorOf("setVolume 99\nsetDelay 99\n").line, 1U);
    EXPECT_THAT(errorOf("setGroupGain 9 99\n").message, HasSubstr("record channel"));
}

TEST(EditScript, ANameOf31UnitsFits) {
    EXPECT_EQ(lineOf("setName", std::string(31, 'n')).name.size(), 31U);
    const ScriptError error = errorOf("setName " + std::string(30, 'n') + "\xF0\x9F\x9A\x97");
    EXPECT_THAT(error.message, HasSubstr("32 UTF-16 units"));
}

// --- what a script uses and does
// ---------------------------------------------------------------------------------

TEST(EditScript, UsesTheSetsItEditsAndTheLastOne) {
    using testing::ElementsAre;
    EXPECT_THAT(setsUsed(scriptOf("")), ElementsAre(0U));
    EXPECT_THAT(setsUsed(scriptOf("set 3")), ElementsAre(2U));
    EXPECT_THAT(setsUsed(scriptOf("set 2\nmode MZT\nselect 2\nset 3\nsetVolume 0\nset 5")),
                ElementsAre(2U, 4U));
    EXPECT_THAT(setsUsed(scriptOf("setVolume 0\nset 4")), ElementsAre(0U, 3U));
}

class ScriptRun : public testing::Test {
 protected:
    ScriptRun() { tuning.start(); }
    void apply(std::string_view text) { applyScript(tuning, scriptOf(text)); }
    const ParameterSet& set(std::size_t number) const { return tuning.store().sets[number - 1]; }

    RecordingBoxes boxes;
    TuningState tuning{boxes};
};

TEST_F(ScriptRun, StartsWithSet1AndChannel1) {
    apply("setVolume 3");
    EXPECT_EQ(set(1).channels[7].volumeDb, 3.0F);
    EXPECT_EQ(set(1).channels[0].volumeDb, 0.0F);
    EXPECT_EQ(set(2).channels[7].volumeDb, 0.0F);
}

TEST_F(ScriptRun, SelectedChannelsFollowThePages) {
    apply("select 3 2\nsetDelay 1.5\nsetInvertPhase 1\nselect none\nsetDelay 0.5");
    for (std::size_t channel = 0; channel < channelCount; ++channel) {
        const bool selected = channel == 0 || channel == 3;
        EXPECT_EQ(set(1).channels[channel].delayMs, selected ? 1.5F : 0.0F) << channel;
        EXPECT_EQ(set(1).channels[channel].invertPhase, selected ? 1 : 0) << channel;
    }
}

TEST_F(ScriptRun, EveryWordReachesItsField) {
    const std::string script =
        "set 2\nselect 1\nsetVolume 1\nsetDelay 1\nsetGroupGain 4 2\nsetGroupDelay 4 0.5\nsetInvertPhase 1\n"
        "setBandFrequency 1 200\nsetBandType 1 low-shelf\nsetBandGainOrQ 1 gain 3\nsetBandGainOrQ 1 q 2\n"
        "setBandOff 1 0\nsetCrossover 0 lp 4 1\nsetCrossoverFrequency 0 90\nsetInputBandGain 2 4\n"
        "setInputBandGain 11 5\nsetInputEqOn 1\nsetLimiter gain -1\nsetLimiter activate -2\n"
        "setLimiter deactivate -3\nsetLimiter attack 4\nsetLimiter release 5\nsetLimiter enabled 0\n"
        "setRouterSource 3 6\nsetName Car\nmode MZT\n";
    EXPECT_THAT(leftOutOf(script), testing::IsEmpty());
    apply(script);
    const ParameterSet& edited = set(2);
    const OutputChannelParams& channel = edited.channels[7];
    EXPECT_EQ(channel.volumeDb, 1.0F);
    EXPECT_EQ(channel.delayMs, 1.0F);
    EXPECT_EQ(edited.channels[4].groupGainDb, 2.0F);
    EXPECT_EQ(edited.channels[4].groupDelayMs, 0.5F);
    EXPECT_EQ(channel.invertPhase, 1);
    EXPECT_EQ(channel.bands[1].frequencyHz, 200);
    EXPECT_EQ(channel.bands[1].type, 1);
    EXPECT_EQ(channel.bands[1].gainDb, 3.0F);
    EXPECT_EQ(channel.bands[1].q, 2.0F);
    EXPECT_EQ(channel.bands[1].off, 0);
    EXPECT_EQ(channel.crossovers[0].kind, 1);
    EXPECT_EQ(channel.crossovers[0].order, 4);
    EXPECT_EQ(channel.crossovers[0].enabled, 1);
    EXPECT_EQ(channel.crossovers[0].frequencyHz, 90);
    EXPECT_EQ(edited.inputEqBands[2].gainDb, 4.0F);
    EXPECT_EQ(edited.inputToneBands[1].gainDb, 5.0F);
    EXPECT_EQ(edited.inputEqOn, 1);
    EXPECT_EQ(edited.limiters[7].gainTenthDb, -10);
    EXPECT_EQ(edited.limiters[7].activateTenthDb, -20);
    EXPECT_EQ(edited.limiters[7].deactivateTenthDb, -30);
    EXPECT_EQ(edited.limiters[7].attackMs, 4);
    EXPECT_EQ(edited.limiters[7].releaseMs, 5);
    EXPECT_EQ(edited.limiters[7].enabled, 0);
    EXPECT_EQ(edited.routerSource[3], 6);
    EXPECT_EQ(readSetText(edited.setName), u"Car");
    EXPECT_EQ(tuning.filterMode(), 1U);
    EXPECT_TRUE(tuning.updatePending());
    apply("setLimiter enabled 1");
    EXPECT_EQ(edited.limiters[7].enabled, 1);
}

TEST_F(ScriptRun, ModeShapesOnlyLaterEdits) {
    apply("setBandGainOrQ 6 gain 6");
    const BiquadWords bzt = tuning.bandWords({7}, 6);
    apply("mode MZT");
    EXPECT_EQ(tuning.bandWords({7}, 6), bzt);
    apply("setBandGainOrQ 6 gain 6");
    EXPECT_NE(tuning.bandWords({7}, 6), bzt);
}

}  // namespace
}  // namespace tessavo::test
