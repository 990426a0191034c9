#include <algorithm>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <string>

#include "filter_lines.h"
#include "filtertext/readers.h"
#include "text/text_encoding.h"

namespace tessavo {
namespace {

std::size_t charactersOf(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
    }));
}

void expectValues(const FilterLine& line) {
    if (line.meaning) {
        EXPECT_TRUE(std::isfinite(line.meaning->frequencyHz) && std::isfinite(line.meaning->gainDb) &&
                    std::isfinite(line.meaning->q));
    }
    if (line.device) {
        EXPECT_TRUE(line.meaning);
        EXPECT_TRUE(line.device->frequencyHz >= 20 && line.device->frequencyHz <= 20000);
        EXPECT_LE(std::abs(line.device->gainDb), 18.0);
        EXPECT_TRUE(!isBand(line.device->shape) || (line.device->q >= 0.1 && line.device->q <= 20));
        EXPECT_EQ(line.device->shape, line.meaning->shape);
    } else {
        EXPECT_TRUE(line.clamped.empty());
    }
    if (line.source) {
        for (const std::optional<double>& value :
             {line.source->frequencyHz, line.source->gainDb, line.source->q}) {
            EXPECT_TRUE(!value || std::isfinite(*value));
        }
    }
}

void expectKind(const FilterLine& line) {
    EXPECT_EQ(line.column != 0, line.kind == FilterLineKind::error);
    EXPECT_LE(line.column, charactersOf(line.text) + 1);
    switch (line.kind) {
        case FilterLineKind::band:
        case FilterLineKind::crossover:
            EXPECT_TRUE(line.source && line.meaning && line.device);
            EXPECT_EQ(isBand(line.meaning->shape), line.kind == FilterLineKind::band);
            break;
        case FilterLineKind::off:
            EXPECT_TRUE(line.source);
            EXPECT_TRUE(line.device || !line.reason.empty());
            break;
        case FilterLineKind::none:
        case FilterLineKind::empty:
            EXPECT_FALSE(line.meaning || line.device);
            break;
        case FilterLineKind::unsupported:
        case FilterLineKind::error:
            EXPECT_FALSE(line.device);
            EXPECT_NE(line.reason, "");
            break;
    }
}

/// Whether what the contract promises of every text holds for these bytes, which are no YAML.
void expectContract(std::string_view bytes) {
    const FilterText text = readFilterText(bytes);
    const std::string utf8 = utf8Of(bytes);
    const std::vector<std::string_view> lines = linesOf(utf8);
    bool hasFilter = false;
    for (std::size_t i = 0; i < text.lines.size(); i++) {
        const FilterLine& line = text.lines[i];
        EXPECT_EQ(line.line, i + 1);
        EXPECT_TRUE(i < lines.size() && line.text == lines[i]);
        hasFilter = hasFilter || line.kind != FilterLineKind::none;
        expectValues(line);
        expectKind(line);
    }
    if (text.trouble.empty()) {
        EXPECT_EQ(text.lines.size(), lines.size());
    }
    EXPECT_TRUE(hasFilter || text.hasPreamp || !text.trouble.empty());
    EXPECT_LE(text.troubleLine, lines.size());
    EXPECT_TRUE(text.decimalSign == '.' || text.decimalSign == ',');
    EXPECT_TRUE(std::isfinite(text.preampDb));
    EXPECT_TRUE(text.hasPreamp || text.preampDb == 0.0);
    EXPECT_EQ(text.channels.empty(), text.channel.empty());
    if (testing::Test::HasFailure()) {
        ADD_FAILURE() << "with these bytes: " << testing::PrintToString(std::string(bytes.substr(0, 2000)));
    }
}

const std::string goodText =
    "Filter Settings file\r\nRoom EQ V5,01\r\nPreamp: -4,9 dB\r\n"
    "Filter  1: ON  PK       Fc    50,0 Hz  Gain -10,0 dB  Q  2,50\r\n"
    "Filter  2: ON  Modal    Fc     100H z  Gain   3,0 dB  Q  5,41  T60 target   100 ms\r\n"
    "Filter  3: OFF LSC 9,6 dB Fc 1\u00a0067 Hz Gain \u22123,0 dB\r\n"
    "Channel: L R\r\nFilter: ON LPQ Fc 8.000 Hz Q 0,707\r\n"
    "Filter: ON HS Fc 1.000 Hz Gain 3,0 dB Q 0,6 # comment\r\nFilter: OFF None\r\n"
    "Filter: ON PK Fc 300 Hz Gain 2,0 dB BW Oct 0,5\r\nGraphicEQ: 20 0; 30 1\r\n"
    "Number,Enabled,Control,Type,Frequency(Hz),Gain(dB),Q,Bandwidth(Hz)\r\n"
    "1,True,Auto,PK,52.00,-7.80,3.760,13.83\r\n2,True,Auto,None,\r\nbiquad1,\r\nb0=0,99,\r\nb1=1\r\n";

TEST(TextAttacks, AGoodTextHoldsTheContract) {
    expectContract(goodText);
    expectContract("");
    expectContract("\n");
    expectContract("Preamp: -3 dB\n");
}

TEST(TextAttacks, EveryBeginningHoldsTheContract) {
    for (std::size_t size = 0; size < goodText.size() && !HasFailure(); size++) {
        expectContract(std::string_view(goodText).substr(0, size));
        expectContract(std::string_view(goodText).substr(size));
    }
}

TEST(TextAttacks, EveryByteRemovedOrDoubledHoldsTheContract) {
    for (std::size_t at = 0; at < goodText.size() && !HasFailure(); at++) {
        std::string text = goodText;
        text.erase(at, 1);
        expectContract(text);
        text = goodText;
        text.insert(at, 1, text[at]);
        expectContract(text);
    }
}

TEST(TextAttacks, EveryByteChangedHoldsTheContract) {
    for (std::size_t at = 0; at < goodText.size() && !HasFailure(); at++) {
        for (const char byte : {'\0', ' ', '\t', '\n', '\r', ',', '.', '-', ':', '=', '#', '9', 'e', 'Q',
                                '\x7F', '\xA0', '\xFF'}) {
            std::string text = goodText;
            text[at] = byte;
            expectContract(text);
        }
        for (unsigned bit = 0; bit < 8; bit++) {
            std::string text = goodText;
            text[at] = static_cast<char>(static_cast<unsigned char>(text[at]) ^ (1U << bit));
            expectContract(text);
        }
    }
}

TEST(TextAttacks, HugeLinesHoldTheContract) {
    constexpr std::size_t megabyte = std::size_t{1} << 20U;
    for (const std::string& piece :
         {std::string("9"), std::string(" "), std::string("9 "), std::string("Fc 1 "), std::string("Q "),
          std::string("1,"), std::string("1.000 "), std::string("\t"), std::string("\u00a0"),
          std::string("\xA0"), std::string("LS 9 dB "), std::string("Filter 1: "), std::string("ON "),
          std::string("#")}) {
        for (const char* head :
             {"", "Filter 1: ON PK Fc ", "Filter ", "Preamp: ", "Channel: ", "Filter 1: ON LS "}) {
            std::string text = head;
            while (text.size() < megabyte) {
                text += piece;
            }
            expectContract(text);
        }
    }
    expectContract("Number,Enabled,Control,Type,Frequency(Hz),Gain(dB),Q\n" + std::string(megabyte, ','));
    expectContract("Number,Enabled,Type,Frequency(Hz)" + std::string(megabyte, ',') + "\n1,True,PK,5\n");
}

TEST(TextAttacks, AHundredThousandLinesHoldTheContract) {
    for (const std::string line : {"Filter 1: ON PK Fc 100 Hz Gain -3.0 dB Q 2.00\n", "\n", "\r", "Filter\n",
                                   "biquad1,\n", "Channel: a b c\n", "Preamp: -1 dB\n"}) {
        std::string text;
        for (int i = 0; i < 80000; i++) {
            text += line;
        }
        expectContract(text);
    }
    std::string channels;
    for (int i = 0; i < 100000; i++) {
        channels += "Channel: c" + std::to_string(i) + "\nFilter: ON LP Fc 9 Hz\n";
    }
    expectContract(channels);
}

TEST(TextAttacks, RandomWordsAndBytesHoldTheContract) {
    const std::vector<std::string> words = {"Filter",
                                            "1",
                                            ":",
                                            "ON",
                                            "OFF",
                                            "PK",
                                            "LS",
                                            "6dB",
                                            "12 dB",
                                            "Fc",
                                            "100",
                                            "Hz",
                                            "Gain",
                                            "-3,0",
                                            "3.000",
                                            "dB",
                                            "Q",
                                            "0.7",
                                            "BW",
                                            "Oct",
                                            "None",
                                            "Preamp:",
                                            "Channel:",
                                            "L",
                                            "all",
                                            "\n",
                                            "\r\n",
                                            "\t",
                                            ",",
                                            "#",
                                            "Number,Enabled,Type,Frequency(Hz),Q\n",
                                            "True",
                                            "b0=1",
                                            "\u00a0",
                                            "\u2212",
                                            "1e308",
                                            "kHz"};
    std::mt19937_64 random(17);
    for (int round = 0; round < 20000 && !HasFailure(); round++) {
        std::string text = round % 2 == 0 ? "Filter 1: ON " : "";
        const std::size_t count = random() % 40;
        for (std::size_t i = 0; i < count; i++) {
            text += random() % 50 == 0 ? std::string(1, static_cast<char>(random()))
                                       : words[random() % words.size()];
            text += random() % 3 == 0 ? "" : " ";
        }
        expectContract(text);
    }
}

}  // namespace
}  // namespace tessavo
