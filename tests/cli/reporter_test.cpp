#include "cli/reporter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>

#include "cli/clip_report.h"
#include "comm/clip_layout.h"

namespace tessavo::test {

using namespace cli;

namespace {

class ReporterTest : public testing::Test {
 protected:
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
};

TEST_F(ReporterTest, MessagesAreOneLine) {
    Reporter reporter({out, err, in});
    EXPECT_EQ(reporter.show("Your filter\r\nis  unstable.\n", BoxIcon::none, BoxButtons::ok), BoxAnswer::ok);
    reporter.error("b");
    reporter.note("c");
    EXPECT_EQ(err.str(), "tessavoctl: Your filter is unstable.\ntessavoctl: b\ntessavoctl: c\n");
    EXPECT_EQ(out.str(), "");
}

TEST_F(ReporterTest, QuestionsAreNotAgreedTo) {
    Reporter reporter({out, err, in});
    EXPECT_EQ(reporter.show("Sure?", BoxIcon::error, BoxButtons::okCancel), BoxAnswer::cancel);
    EXPECT_EQ(reporter.show("Save?", BoxIcon::error, BoxButtons::yesNoCancel), BoxAnswer::cancel);
}

TEST_F(ReporterTest, ABoxShownAgainIsSaidOnce) {
    Reporter reporter({out, err, in});
    reporter.showError("Cannot open COM port!");
    reporter.log(LogKind::status, "Prepare XModem2k Message");
    reporter.showError("Cannot open COM port!");
    reporter.showError("Other");
    reporter.showError("Cannot open COM port!");
    EXPECT_EQ(err.str(),
              "tessavoctl: Cannot open COM port!\nST-->    Prepare XModem2k Message\ntessavoctl: Other\n"
              "tessavoctl: Cannot open COM port!\n");
}

TEST_F(ReporterTest, TheLogHasItsOwnFormat) {
    Reporter reporter({out, err, in});
    reporter.log(LogKind::tx, "a");
    reporter.log(LogKind::rx, "b");
    reporter.log(LogKind::status, "c");
    reporter.log(LogKind::error, "d");
    EXPECT_EQ(err.str(), "TX-->    a\nRX-->    b\nST-->    c\nERR-->   d\n");
}

TEST_F(ReporterTest, QuietKeepsOnlyErrorsAndMessages) {
    Reporter reporter({out, err, in, true});
    reporter.setQuiet(true);
    reporter.log(LogKind::tx, "a");
    reporter.log(LogKind::rx, "b");
    reporter.log(LogKind::status, "c");
    reporter.note("n");
    reporter.progress(1, 4);
    EXPECT_EQ(err.str(), "");
    reporter.log(LogKind::error, "d");
    reporter.showPlain("e");
    EXPECT_EQ(err.str(), "ERR-->   d\ntessavoctl: e\n");
}

TEST_F(ReporterTest, NoProgressBarWithoutATerminal) {
    Reporter reporter({out, err, in, false});
    reporter.progress(1, 4);
    reporter.progress(4, 4);
    reporter.endProgress();
    EXPECT_EQ(err.str(), "");
}

TEST_F(ReporterTest, TheProgressBarGivesWayToLinesAndGoesAtTheEnd) {
    Reporter reporter({out, err, in, true});
    reporter.progress(1, 4);
    const std::string bar = "[##########..............................] 1/4";
    EXPECT_EQ(err.str(), bar);
    err.str("");
    reporter.log(LogKind::status, "line");
    const std::string erased = "\r" + std::string(bar.size(), ' ') + "\r";
    EXPECT_EQ(err.str(), erased + "ST-->    line\n" + bar);
    err.str("");
    reporter.progress(4, 4);
    EXPECT_EQ(err.str(), erased);
    err.str("");
    reporter.log(LogKind::status, "after");
    EXPECT_EQ(err.str(), "ST-->    after\n");
    reporter.progress(0, 0);
    EXPECT_EQ(err.str(), "ST-->    after\n");
}

TEST(ClipReport, NothingClips) {
    EXPECT_EQ(clipReport({}),
              "ADC                -\nInput EQ           -\nSignal Processing  -\nOutput EQ          -\n"
              "Amplifier 1        -\nAmplifier 2        -\n");
}

TEST(ClipReport, EntriesFindTheirNames) {
    ClipState state;
    state.groups[0][0] = 1;
    state.groups[0][5] = 0xFF;
    state.groups[0][6] = 1;
    state.groups[0][7] = 1;
    state.groups[1][7] = 1;
    state.groups[2][0] = 1;
    state.groups[3][2] = 1;
    state.groups[3][1] = 1;
    state.amplifiers[1] = 2;
    EXPECT_EQ(
        clipReport(state),
        "ADC                Vorne Links, Line-In Rechts\nInput EQ           -\nSignal Processing  Kanal 4\n"
        "Output EQ          Kanal 1, Kanal 8\nAmplifier 1        -\nAmplifier 2        clipping\n");
}

TEST(ClipReport, EachEntryOfAStageTellsOneNameAndEachNameIsTold) {
    for (std::size_t stage = 0; stage < clipStages.size(); ++stage) {
        std::multiset<std::string> told;
        for (std::size_t entry = 0; entry < clipEntryCount; ++entry) {
            ClipState state;
            state.groups[stage][entry] = 1;
            const std::string report = clipReport(state);
            const std::string caption(clipStages[stage].caption);
            const std::size_t start = report.find_first_not_of(' ', report.find(caption) + caption.size());
            const std::string name = report.substr(start, report.find('\n', start) - start);
            if (name != "-") {
                told.insert(name);
            }
        }
        EXPECT_THAT(told, testing::UnorderedElementsAreArray(clipStages[stage].names)) << stage;
    }
}

}  // namespace
}  // namespace tessavo::test
