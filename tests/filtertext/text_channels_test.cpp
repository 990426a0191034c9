#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "filter_lines.h"

namespace tessavo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string twoChannels =
    "Preamp: -1 dB\n"                           // 1
    "Filter: ON PK Fc 50 Hz Gain 1 dB Q 1\n"    // 2
    "Channel: L\n"                              // 3
    "Preamp: -2 dB\n"                           // 4
    "Filter: ON PK Fc 100 Hz Gain 1 dB Q 1\n"   // 5
    "Channel: R\n"                              // 6
    "Preamp: -4 dB\n"                           // 7
    "Filter: ON PK Fc 200 Hz Gain 1 dB Q 1\n"   // 8
    "Channel: l r\n"                            // 9
    "Filter: ON PK Fc 400 Hz Gain 1 dB Q 1\n"   // 10
    "Channel: all\n"                            // 11
    "Preamp: -8 dB\n"                           // 12
    "Filter: ON PK Fc 800 Hz Gain 1 dB Q 1\n";  // 13

std::vector<std::size_t> bandLines(const FilterText& text) {
    std::vector<std::size_t> lines;
    for (const FilterLine& line : text.lines) {
        if (line.kind == FilterLineKind::band) {
            lines.push_back(line.line);
        }
    }
    return lines;
}

TEST(TextChannels, TheFirstChannelIsReadUnlessAnotherIsNamed) {
    const FilterText first = readFilterText(twoChannels);
    EXPECT_THAT(first.channels, ElementsAre("L", "R"));
    EXPECT_EQ(first.channel, "L");
    EXPECT_THAT(bandLines(first), ElementsAre(2, 5, 10, 13));
    EXPECT_EQ(first.preampDb, -11.0);
    EXPECT_EQ(first.lines[7].kind, FilterLineKind::unsupported);
    EXPECT_THAT(first.lines[7].reason, HasSubstr("for channel R"));
    EXPECT_FALSE(first.lines[7].device);
    for (const char* name : {"R", "r"}) {
        const FilterText second = readFilterText(twoChannels, name);
        EXPECT_EQ(second.channel, "R");
        EXPECT_THAT(bandLines(second), ElementsAre(2, 8, 10, 13));
        EXPECT_EQ(second.preampDb, -13.0);
        EXPECT_EQ(second.lines[4].kind, FilterLineKind::unsupported);
        EXPECT_THAT(second.lines[4].reason, HasSubstr("for channel L"));
    }
}

TEST(TextChannels, ChannelLinesAreToldAsTheyApply) {
    const FilterText text = readFilterText(twoChannels);
    for (const std::size_t line : {3U, 6U, 9U, 11U}) {
        EXPECT_EQ(text.lines[line - 1].kind, FilterLineKind::unsupported) << line;
        EXPECT_NE(text.lines[line - 1].reason, "") << line;
        EXPECT_FALSE(text.lines[line - 1].device) << line;
    }
}

TEST(TextChannels, AnUnknownChannelIsTroubleThatNamesThoseThereAre) {
    const FilterText text = readFilterText(twoChannels, "SUB");
    EXPECT_THAT(text.trouble, HasSubstr("SUB"));
    EXPECT_THAT(text.trouble, HasSubstr("L"));
    EXPECT_THAT(text.trouble, HasSubstr("R"));
    EXPECT_NE(readFilterText("Filter: ON PK Fc 50 Hz Gain 1 dB Q 1\n", "L").trouble, "");
}

TEST(TextChannels, ATextForAllHasNoChannels) {
    for (const char* head : {"", "Channel: all\n", "channel: ALL\n"}) {
        const FilterText text = readFilterText(std::string(head) + "Filter: ON PK Fc 50 Hz Gain 1 dB Q 1\n");
        EXPECT_THAT(text.channels, IsEmpty());
        EXPECT_EQ(text.channel, "");
        EXPECT_EQ(bandLines(text).size(), 1U);
        EXPECT_EQ(text.trouble, "");
    }
}

TEST(TextChannels, EveryHabitOfAPreampIsRead) {
    const struct {
        const char* line;
        double db;
    } cases[] = {
        {"Preamp: -6.5 dB", -6.5},  {"Preamp:\t-0.8 dB", -0.8}, {"preamp: -6.5db", -6.5},
        {"PREAMP: 3", 3},           {"Preamp: +3,0 dB", 3},     {"Preamp: \u22124,9 dB", -4.9},
        {"  Preamp : -2 dB  ", -2}, {"Preamp: 0.0 dB", 0},      {"Preamp:-6 dB", -6},
    };
    for (const auto& [line, db] : cases) {
        const FilterText text = readFilterText(std::string(line) + "\nFilter: ON LP Fc 50 Hz\n");
        EXPECT_TRUE(text.hasPreamp) << line;
        EXPECT_DOUBLE_EQ(text.preampDb, db) << line;
        EXPECT_EQ(text.lines.at(0).kind, FilterLineKind::none) << line;
    }
}

TEST(TextChannels, PreampsInCommentsDoNotCount) {
    for (const char* line : {"# Preamp: -6 dB", "#Preamp: -6 dB", "Notes: Preamp: -6 dB",
                             "Filter: ON LP Fc 60 Hz # Preamp: -6 dB"}) {
        const FilterText text = readFilterText(std::string(line) + "\nFilter: ON LP Fc 50 Hz\n");
        EXPECT_FALSE(text.hasPreamp) << line;
        EXPECT_EQ(text.preampDb, 0.0) << line;
    }
}

TEST(TextChannels, AnUnreadablePreampIsAnErrorAtItsColumn) {
    for (const std::string wrong : {"x", "--6", "6,5.4.3"}) {
        const std::string line = "Preamp: " + wrong + " dB";
        const FilterText text = readFilterText("Filter: ON PK Fc 50.5 Hz Gain 1.5 dB Q 2.5\n" + line + "\n");
        ASSERT_EQ(text.lines.size(), 2U);
        expectError(text.lines[1], 9, wrong);
        EXPECT_FALSE(text.hasPreamp);
    }
    const FilterText missing = readFilterText("Preamp:\nFilter: ON LP Fc 50 Hz\n");
    EXPECT_EQ(missing.lines.at(0).kind, FilterLineKind::error);
    EXPECT_EQ(missing.lines.at(0).column, 8U);
    EXPECT_NE(missing.lines.at(0).reason, "");
}

TEST(TextChannels, CommandsAreUnsupportedWithAReason) {
    for (const char* line : {"Include: other.txt", "Device: Speakers", "Copy: L2=L R2=R",
                             "Copy: L=0.5*L+0.5*L2", "Delay: 500 ms", "Eval: x=3", "GraphicEQ: 20 0; 30 1.5",
                             "graphiceq: 20 0", "Convolution: room.wav", "DELAY: 5 samples"}) {
        const FilterText text = readFilterText(std::string(line) + "\nFilter: ON LP Fc 50 Hz\n");
        ASSERT_EQ(text.lines.size(), 2U);
        EXPECT_EQ(text.lines[0].kind, FilterLineKind::unsupported) << line;
        EXPECT_NE(text.lines[0].reason, "") << line;
        EXPECT_EQ(text.lines[0].column, 0U) << line;
        EXPECT_FALSE(text.lines[0].device) << line;
        EXPECT_EQ(text.lines[1].kind, FilterLineKind::crossover) << line;
        EXPECT_EQ(readFilterText(std::string("# ") + line + "\nFilter: ON LP Fc 50 Hz\n").lines[0].kind,
                  FilterLineKind::none)
            << line;
    }
}

}  // namespace
}  // namespace tessavo
