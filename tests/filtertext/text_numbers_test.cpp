#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <string>

#include "filtertext/filter_text.h"

// The decimal sign of a file, its channels and its preamps, and what comes of damaged files.

namespace tessavo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string peak(const std::string& frequency, const std::string& gain, const std::string& q) {
    return "Filter 1: ON PK Fc " + frequency + " Hz Gain " + gain + " dB Q " + q + "\n";
}

double firstFrequency(const std::string& text) {
    const FilterText read = readFilterText(text);
    return read.lines.empty() || !read.lines[0].source ? 0.0
                                                       : read.lines[0].source->frequencyHz.value_or(0.0);
}

TEST(TextNumbers, TheDecimalSignIsDecidedForTheFileAsAWhole) {
    EXPECT_EQ(readFilterText(peak("91,9", "1", "2")).decimalSign, ',');
    EXPECT_EQ(readFilterText(peak("91.9", "1", "2")).decimalSign, '.');
    EXPECT_EQ(readFilterText(peak("8.000", "1", "2")).decimalSign, '.');
    // A Q never reaches thousands.
    EXPECT_EQ(readFilterText(peak("100", "1", "1,388")).decimalSign, ',');
    EXPECT_EQ(readFilterText(peak("100", "1", "1.388")).decimalSign, '.');
    EXPECT_EQ(readFilterText("Room EQ V5,01\n" + peak("100", "1", "2")).decimalSign, ',');
    EXPECT_EQ(readFilterText("Room EQ V5,01\n" + peak("100", "1.5", "2")).decimalSign, '.');
    EXPECT_EQ(firstFrequency(peak("8.000", "1,5", "2")), 8000.0);
    EXPECT_EQ(firstFrequency(peak("8.000", "1.5", "2")), 8.0);
    EXPECT_EQ(firstFrequency(peak("8,000", "1.5", "2")), 8000.0);
    EXPECT_EQ(firstFrequency(peak("1.067,5", "1", "2")), 1067.5);
    EXPECT_EQ(firstFrequency(peak("1,067.5", "1", "2")), 1067.5);
    EXPECT_EQ(firstFrequency(peak("1\xC2\xA0"
                                  "067",
                                  "1,5", "2")),
              1067.0);
    EXPECT_EQ(firstFrequency(peak("1\xA0"
                                  "067",
                                  "1,5", "2")),
              1067.0);
    EXPECT_EQ(firstFrequency(peak("1\xE2\x80\xAF"
                                  "067,5",
                                  "1,5", "2")),
              1067.5);
    EXPECT_EQ(firstFrequency(peak("1 067", "1,5", "2")), 1067.0);
}

TEST(TextNumbers, TheOtherMarkIsAnErrorWhereItCannotStandForThousands) {
    const FilterText read = readFilterText(peak("91,9", "1,5", "2,5") + peak("91.9", "1,5", "2,5"));
    EXPECT_EQ(read.decimalSign, ',');
    EXPECT_EQ(read.lines[0].kind, FilterLineKind::band);
    EXPECT_EQ(read.lines[1].kind, FilterLineKind::error);
    EXPECT_EQ(read.lines[1].column, 20U);
    EXPECT_THAT(read.lines[1].reason, HasSubstr("decimal comma"));
}

TEST(TextNumbers, OnlyPlainNumbersAreRead) {
    const auto gainOf = [](const std::string& gain) {
        return readFilterText(peak("100.5", gain, "1")).lines.at(0).source->gainDb;
    };
    EXPECT_EQ(gainOf("1.5"), 1.5);
    EXPECT_EQ(gainOf("+1.5"), 1.5);
    for (const char* text :
         {"+", "-", "+-1", "--1", "1,00", "0x10", "inf", "nan", "1.2.3", "1e999", "1,234", "one"}) {
        EXPECT_FALSE(gainOf(text).has_value()) << text;
    }
    EXPECT_EQ(firstFrequency(peak("1,000,000", "1.5", "1.5")), 1e6);
    for (const char* text : {"1,00", "1,0000", "12345,678", ",123", "1,,234"}) {
        EXPECT_EQ(firstFrequency(peak(text, "1.5", "1.5")), 0.0) << text;
    }
}

TEST(TextChannels, TheFirstChannelOrTheNamedOneIsRead) {
    const std::string text =
        "Preamp: -1 dB\nChannel: L R\nFilter: ON PK Fc 100 Hz Gain 1 dB Q 1\nPreamp: -2 dB\nChannel: r\n"
        "Filter: ON PK Fc 200 Hz Gain 1 dB Q 1\nPreamp: -4.5 dB\nChannel: all\nFilter: ON PK Fc 300 Hz Gain "
        "1 dB Q 1\n";
    const FilterText left = readFilterText(text);
    EXPECT_THAT(left.channels, ElementsAre("L", "R"));
    EXPECT_EQ(left.channel, "L");
    EXPECT_EQ(left.preampDb, -3.0);
    EXPECT_EQ(left.lines[1].kind, FilterLineKind::unsupported);
    EXPECT_EQ(left.lines[2].kind, FilterLineKind::band);
    EXPECT_EQ(left.lines[5].kind, FilterLineKind::unsupported);
    EXPECT_EQ(left.lines[5].reason, "for channel r");
    EXPECT_EQ(left.lines[8].kind, FilterLineKind::band);
    const FilterText right = readFilterText(text, "R");
    EXPECT_EQ(right.preampDb, -7.5);
    EXPECT_EQ(right.lines[5].kind, FilterLineKind::band);
    EXPECT_THAT(readFilterText(text, "C").trouble, HasSubstr("L and R"));
    EXPECT_THAT(readFilterText(peak("100", "1", "1"), "L").trouble, HasSubstr("\"L\""));
}

TEST(FilterTables, RowsAreReadByTheNamesOfTheirColumnsWhateverPartsThem) {
    for (const char separator : {' ', '\t', ',', ';'}) {
        std::string text =
            "Generic\nNumber Enabled Control Type Frequency(Hz) Gain(dB) Q Bandwidth(Hz)\n1 True Auto PK "
            "52.00 -7.80 3.760 13.83\n"
            "2 False Auto LSQ 63.5 2.0 0.7\n3 True Auto None\n4 True Auto PK 100 3\nMax_boost "
            "6\nCompound_filters\n1 True Auto None\n";
        std::replace(text.begin(), text.end(), ' ', separator);
        const FilterText read = readFilterText(text);
        ASSERT_EQ(read.lines.size(), 9U);
        EXPECT_EQ(read.lines[2].kind, FilterLineKind::band);
        EXPECT_EQ(read.lines[2].source->frequencyHz, 52.0);
        EXPECT_EQ(read.lines[2].source->gainDb, -7.8);
        EXPECT_EQ(read.lines[2].source->q, 3.76);
        EXPECT_EQ(read.lines[3].kind, FilterLineKind::off);
        EXPECT_EQ(read.lines[3].meaning->shape, FilterShape::lowShelf);
        EXPECT_EQ(read.lines[4].kind, FilterLineKind::empty);
        EXPECT_EQ(read.lines[5].kind, FilterLineKind::error);
        EXPECT_EQ(read.lines[5].reason, "the Q is missing");
        EXPECT_EQ(read.lines[6].kind, FilterLineKind::none);
        EXPECT_EQ(read.lines[7].kind, FilterLineKind::none);
        EXPECT_EQ(read.lines[8].kind, FilterLineKind::empty);
    }
}

TEST(FilterTables, CrossoversHaveAShapeAndASlope) {
    const std::string head = "Number,Enabled,Control,Type,Frequency(Hz),Gain(dB),Q,Shape,Slope_dB/oct\n";
    const auto row = [&](const std::string& shape, const std::string& slope) {
        return readFilterText(head + "1,True,Manual,LP,990,,," + shape + "," + slope + "\n").lines.at(1);
    };
    EXPECT_EQ(row("BU", "12").device.value().order, 2);
    EXPECT_EQ(row("L-R", "24").device.value().order, 4);
    EXPECT_EQ(row("L-R", "24").reason, "");
    EXPECT_EQ(row("BU", "24").device.value().order, 4);
    EXPECT_THAT(row("BU", "24").reason, HasSubstr("Linkwitz-Riley"));
    EXPECT_EQ(row("BU", "48").kind, FilterLineKind::unsupported);
    EXPECT_EQ(row("BE", "12").kind, FilterLineKind::unsupported);
}

std::string wholeFile() {
    return "Room EQ V5.18\r\nPreamp: -4.5 dB\r\nChannel: L\r\nFilter 1: ON PK Fc 1\xC2\xA0"
           "067 Hz Gain -3.0 dB Q 2.00\r\n"
           "Filter 2: ON LS 12dB Fc 60 Hz Gain 3 dB\r\nFilter 3: ON LP Fc 2000 Hz\r\nFilter 4: OFF HSC Fc "
           "5000 Hz Gain 1 dB Q 0.7\r\n"
           "Number,Enabled,Control,Type,Frequency(Hz),Gain(dB),Q\r\n1,True,Auto,PK,52.0,-7.8,3.7\r\n";
}

void expectSound(const std::string& bytes) {
    const FilterText read = readFilterText(bytes);
    for (std::size_t k = 0; k < read.lines.size(); ++k) {
        const FilterLine& line = read.lines[k];
        ASSERT_EQ(line.line, k + 1);
        const bool plays = line.kind == FilterLineKind::band || line.kind == FilterLineKind::crossover;
        ASSERT_TRUE(!plays || (line.device && line.meaning && line.source));
        ASSERT_TRUE(line.kind != FilterLineKind::error || (line.column > 0 && !line.reason.empty()));
        if (line.device) {
            ASSERT_GE(line.device->frequencyHz, 20.0);
            ASSERT_LE(line.device->frequencyHz, 20000.0);
            ASSERT_LE(std::abs(line.device->gainDb), 18.0);
        }
    }
}

TEST(TextAttacks, AFileThatIsCutOrDamagedAnywhereIsReadSoundly) {
    const std::string whole = wholeFile();
    for (std::size_t at = 0; at < whole.size(); ++at) {
        expectSound(whole.substr(0, at));
        for (const unsigned flip : {0x01U, 0x20U, 0x80U, 0xFFU}) {
            std::string damaged = whole;
            damaged[at] = static_cast<char>(static_cast<unsigned char>(damaged[at]) ^ flip);
            expectSound(damaged);
        }
        std::string shorter = whole;
        expectSound(shorter.erase(at, 1));
    }
}

TEST(TextAttacks, RandomBytesAndHugeFilesAreReadSoundly) {
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
        std::string bytes(random() % 400, ' ');
        for (char& byte : bytes) {
            byte = static_cast<char>(random());
        }
        expectSound(bytes);
    }
    expectSound(std::string(mostFilterTextBytes, ' '));
    expectSound("Filter 1: ON PK " + std::string(mostFilterTextBytes - 100, 'F'));
    std::string many;
    while (many.size() < mostFilterTextBytes / 8) {
        many += "Filter 1: ON PK Fc 100 Hz Gain -3.0 dB Q 2.00\n";
    }
    expectSound(many);
    EXPECT_THAT(readFilterText(std::string(mostFilterTextBytes + 1, 'x')).trouble, HasSubstr("4 MiB"));
}

}  // namespace
}  // namespace tessavo
